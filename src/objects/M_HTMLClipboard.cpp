#include "objects/M_HTMLClipboard.h"

#include "objects/HTMLClipboardFormat.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QTextDocumentFragment>

namespace {

QString g_strEngineCopySource;

QClipboard *Clipboard()
{
    return qobject_cast<QGuiApplication *>(QCoreApplication::instance()) ? QGuiApplication::clipboard() : nullptr;
}

// Another program that takes the clipboard takes the source with it. Bound
// once, on the first note.
void WatchClipboard(QClipboard *clipboard)
{
    static bool bound = false;
    if (bound)
        return;
    bound = true;
    QObject::connect(clipboard, &QClipboard::dataChanged, clipboard, [clipboard] {
        if (!clipboard->ownsClipboard())
            g_strEngineCopySource.clear();
    });
}

} // namespace

long M_HTMLClipboard::PutHTMLClipboard(const QString &strFragment_p, const QString &strPrefix_p,
                                       const QString &strSuffix_p, const QString &strSourceURL_p)
{
    QClipboard *clipboard = Clipboard();
    if (!clipboard)
        return 0;
    QMimeData *data = HTMLClipboardFormat::ToMimeData(
        HTMLClipboardFormat::Build(strFragment_p, strPrefix_p, strSuffix_p, strSourceURL_p));
    if (!data)
        return 0;
    data->setText(QTextDocumentFragment::fromHtml(strFragment_p).toPlainText());
    clipboard->clear();
    clipboard->setMimeData(data);
    return 1;
}

QByteArray M_HTMLClipboard::ClipboardBlock()
{
    QClipboard *clipboard = Clipboard();
    const QMimeData *data = clipboard ? clipboard->mimeData() : nullptr;
    if (!data)
        return {};
    return HTMLClipboardFormat::FromMimeData(*data, EngineCopySource());
}

QString M_HTMLClipboard::GetHTMLClipboard()
{
    QString fragment, source;
    GetHTMLClipboard2(fragment, source);
    return fragment;
}

long M_HTMLClipboard::GetHTMLClipboard2(QString &strFragment_p, QString &strSourceURL_p)
{
    strFragment_p.clear();
    strSourceURL_p.clear();
    const QByteArray block = ClipboardBlock();
    if (block.isEmpty())
        return 0;
    return HTMLClipboardFormat::Parse(block, strFragment_p, strSourceURL_p);
}

// The fragment keeps the address of its own page: that is what its
// relative addresses mean when it is pasted.
long M_HTMLClipboard::EmbeddHTMLInClipboardInDIV(const QString &strId_p)
{
    QString fragment, source;
    if (GetHTMLClipboard2(fragment, source) != 1)
        return 0;
    const QString wrapped = QStringLiteral("<DIV id='") + strId_p + QStringLiteral("'><!-- P id='clipStart' -->")
                            + fragment + QStringLiteral("<!-- P id='clipEnd' --></DIV>");
    return PutHTMLClipboard(wrapped, QStringLiteral("<HTML><BODY>"), QStringLiteral("</BODY></HTML>"), source);
}

void M_HTMLClipboard::NoteEngineCopy(const QString &strSourceURL_p)
{
    QClipboard *clipboard = Clipboard();
    if (!clipboard)
        return;
    WatchClipboard(clipboard);
    g_strEngineCopySource = strSourceURL_p;
}

QString M_HTMLClipboard::EngineCopySource()
{
    QClipboard *clipboard = Clipboard();
    return clipboard && clipboard->ownsClipboard() ? g_strEngineCopySource : QString();
}
