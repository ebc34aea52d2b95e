#include "objects/ScriptBlockCommand.h"

#include "document/CDocument.h"
#include "objects/frmEditScriptBlock.h"
#include "support/MError.h"

#include <QDateTime>

namespace {

const QString kText = QStringLiteral("text");

// A block without type and language is JavaScript too, as browsers take
// it; one that loads its script from a file has no text of its own here.
bool IsOwnJavaScript(const HtmlElement &script)
{
    if (!script.getAttribute(QStringLiteral("src")).isNull())
        return false;
    const QString type = script.getAttribute(QStringLiteral("type")).toString().trimmed().toLower();
    const QString language = script.getAttribute(QStringLiteral("language")).toString().trimmed().toLower();
    if (type.isEmpty() && language.isEmpty())
        return true;
    return type == QLatin1String("text/javascript") || language.startsWith(QLatin1String("javascript"));
}

} // namespace

HtmlElement ScriptBlockCommand::FindScriptBlock(const HtmlDocument &page)
{
    const QList<HtmlElement> heads = page.getElementsByTagName(QStringLiteral("HEAD"));
    if (heads.isEmpty())
        return {};
    HtmlElement last;
    for (const HtmlElement &e : heads.first().all())
        if (e.tagName() == QLatin1String("SCRIPT"))
            last = e;
    return !last.isNull() && IsOwnJavaScript(last) ? last : HtmlElement();
}

// Written as markup, so that the engine never runs the block while it is
// edited.
HtmlElement ScriptBlockCommand::MakeScriptBlock(HtmlDocument &page)
{
    const QList<HtmlElement> heads = page.getElementsByTagName(QStringLiteral("HEAD"));
    if (heads.isEmpty())
        return {};
    const QString id = QStringLiteral("VindrellJava") + QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMddHHmm"));
    HtmlElement head = heads.first();
    head.insertAdjacentHTML(QStringLiteral("beforeEnd"),
                            QStringLiteral("<script id=\"%1\" language=\"JavaScript\"></script>").arg(id));
    return page.getElementById(id);
}

long ScriptBlockCommand::EditScriptBlock(CDocument &document)
{
    HtmlDocument page;
    document.GetDocument(page);
    HtmlElement script = FindScriptBlock(page);
    const bool made = script.isNull();
    if (made)
        script = MakeScriptBlock(page);
    if (script.isNull()) {
        MError::SetErrorIfClear(91, QStringLiteral("Object variable not set"),
                                QStringLiteral("ScriptBlockCommand.EditScriptBlock"));
        return 0;
    }
    QString text = script.property(kText).toString();
    if (text.isEmpty())
        text = QStringLiteral("<!-- \n\n//-->");
    frmEditScriptBlock dialog;
    dialog.Init(text);
    if (dialog.Show() != 1) {
        if (made)
            script.removeNode(true);
        return -1;
    }
    script.setProperty(kText, dialog.Text());
    if (MError::ErrorNumber() != 0)
        return 0;
    document.SetDirty();
    return 1;
}
