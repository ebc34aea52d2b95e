#include "objects/LinkCommand.h"

#include "document/CDocEventHandler.h"
#include "document/CDocument.h"
#include "objects/frmBookMarkSettings.h"
#include "objects/frmLinkDialog.h"
#include "platform/HtmlSelection.h"
#include "platform/HtmlTextRange.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QDateTime>
#include <QRegularExpression>

namespace {

enum Text : long { txtCreateLink = 17611, txtEditLink = 17612, txtSpansCells = 17626, txtRenameBookmark = 17627,
                   txtSearchPane = 17628, txtBookmarkWillBe = 17630, txtSpansCells2 = 17647,
                   txtReferredTo = 17650, txtBookmarkTitle = 18814 };

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

const QString kHref = QStringLiteral("href");
const QString kTarget = QStringLiteral("target");
const QString kTitle = QStringLiteral("title");
const QString kName = QStringLiteral("name");

// A selection whose markup holds a cell beyond its very start spans cells.
bool MultipleCellsSelected(const QString &htmlText)
{
    static const QRegularExpression cell(QStringLiteral("<td\\b"), QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch m = cell.match(htmlText, 1);
    return m.hasMatch();
}

// The choice of the dialog by a link's target.
void ShowTarget(frmLinkDialog &dialog, const QString &target)
{
    const QString t = target.toLower();
    if (t == QLatin1String("_new") || t == QLatin1String("_blank"))
        dialog.SetTarget(0);
    else if (t.isEmpty() || t == QLatin1String("_top"))
        dialog.SetTarget(1);
    else if (t == QLatin1String("_self"))
        dialog.SetTarget(2);
    else
        dialog.SetTarget(3, t == QLatin1String("_search") ? L(txtSearchPane) : target);
}

// What the dialog holds goes onto the link; an empty box takes its
// attribute off.
void WriteLink(const frmLinkDialog &dialog, HtmlElement &link)
{
    QString address, target;
    dialog.GetURL(address);
    dialog.GetTarget(target);
    link.setAttribute(kHref, address);
    if (target.isEmpty())
        link.removeAttribute(kTarget);
    else
        link.setAttribute(kTarget, target);
    auto write = [&link](const QString &name, const QString &value) {
        if (value.isEmpty())
            link.removeAttribute(name);
        else
            link.setAttribute(name, value);
    };
    write(kTitle, dialog.GetAlt());
    for (const QString &name : frmLinkDialog::ExtraProperties())
        write(name.toLower(), dialog.GetExtraProperty(name));
}

void PrepareDialog(frmLinkDialog &dialog, CDocument &document, long lReferrer)
{
    CDocEventHandler *handler = nullptr;
    document.GetDocumentEventHandler(handler);
    HtmlDocument page;
    document.GetDocument(page);
    dialog.Init(handler, lReferrer);
    dialog.SetPageAddress(page.URL());
    dialog.EnableFrameOptions(handler && handler->GetNumberOfFrames() > 0);
}

} // namespace

HtmlElement LinkCommand::GetHREF(const HtmlElement &element)
{
    for (HtmlElement e = element; !e.isNull(); e = e.parentElement()) {
        const QString tag = e.tagName();
        if (tag == QLatin1String("HTML") || tag == QLatin1String("BODY"))
            break;
        if (tag == QLatin1String("A") && (!e.getAttribute(kHref).isNull() || !e.getAttribute(kName).isNull()))
            return e;
    }
    return {};
}

long LinkCommand::CreateLink(CDocument &document)
{
    HtmlDocument page;
    document.GetDocument(page);
    HtmlSelection selection(page);
    if (MultipleCellsSelected(selection.htmlText())) {
        UserQuestions::MsgBox(L(txtSpansCells) + QLatin1Char('\n') + L(txtSpansCells2), UserQuestions::vbExclamation,
                              L(txtCreateLink));
        return -1;
    }
    HtmlTextRange range = selection.createRange();
    frmLinkDialog dialog;
    PrepareDialog(dialog, document, 0);
    dialog.SetTarget(1);
    dialog.SetURL(QString());
    if (dialog.Show() != 1)
        return -1;
    // The engine makes the link with an address of its own, by which the
    // new element is found again among the page's links.
    const QString temporary = QStringLiteral("kelda-link-") + QString::number(QDateTime::currentMSecsSinceEpoch());
    range.select();
    page.execCommand(QStringLiteral("CreateLink"), false, temporary);
    long made = 0;
    for (HtmlElement link : page.getElementsByTagName(QStringLiteral("A"))) {
        if (link.getAttribute(kHref).toString() != temporary)
            continue;
        WriteLink(dialog, link);
        ++made;
    }
    if (MError::ErrorNumber() != 0)
        return 0;
    if (made == 0)
        return -1;
    document.SetDirty();
    return 1;
}

long LinkCommand::EditLink(CDocument &document, const HtmlElement &element)
{
    HtmlElement link = GetHREF(element);
    if (link.isNull())
        return -1;
    if (link.getAttribute(kHref).toString().isEmpty() && !link.getAttribute(kName).isNull())
        return EditBookmark(document, link);
    frmLinkDialog dialog;
    PrepareDialog(dialog, document, 0);
    dialog.setWindowTitle(L(txtEditLink));
    dialog.SetURL(link.getAttribute(kHref).toString());
    ShowTarget(dialog, link.getAttribute(kTarget).toString());
    dialog.SetAlt(link.getAttribute(kTitle).toString());
    for (const QString &name : frmLinkDialog::ExtraProperties())
        dialog.SetExtraProperty(name, link.getAttribute(name).toString());
    if (dialog.Show() != 1)
        return -1;
    WriteLink(dialog, link);
    if (MError::ErrorNumber() != 0)
        return 0;
    document.SetDirty();
    return 1;
}

long LinkCommand::EditBookmark(CDocument &document, HtmlElement &anchor)
{
    frmBookMarkSettings dialog;
    dialog.setWindowTitle(L(txtRenameBookmark));
    dialog.SetBookMarkName(anchor.getAttribute(kName).toString());
    if (dialog.Show() != 1)
        return -1;
    anchor.setAttribute(kName, dialog.BookMarkName());
    if (MError::ErrorNumber() != 0)
        return 0;
    document.SetDirty();
    return 1;
}

long LinkCommand::InsertBookmark(CDocument &document)
{
    HtmlDocument page;
    document.GetDocument(page);
    HtmlTextRange range = HtmlSelection(page).createRange();
    frmBookMarkSettings dialog;
    if (dialog.Show() != 1)
        return -1;
    const QString name = dialog.BookMarkName();
    UserQuestions::MsgBox(L(txtBookmarkWillBe) + QLatin1Char(' ') + name + QLatin1Char(' ') + L(txtReferredTo) + name,
                          UserQuestions::vbInformation, L(txtBookmarkTitle));
    HtmlElement anchor = page.createElement(QStringLiteral("A"));
    anchor.setAttribute(kName, name);
    range.surroundWith(anchor);
    if (MError::ErrorNumber() != 0)
        return 0;
    document.SetDirty();
    return 1;
}
