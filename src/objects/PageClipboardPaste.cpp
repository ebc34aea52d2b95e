#include "objects/PageClipboardPaste.h"

#include "aspfilter/ASPMarkers.h"
#include "document/CDocument.h"
#include "objects/FragmentAddresses.h"
#include "objects/M_HTMLClipboard.h"
#include "platform/PageScriptCall.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace {

constexpr long txtPaste = 17636;
constexpr long txtTooLarge = 18826;
const QString kPosition = QStringLiteral("PageClipboardPaste.Paste");

// Puts the text into the page at its selection; the runtime says how.
long Insert(const HtmlDocument &page, const QString &text, bool asText)
{
    QVariantList path;
    for (int i : page.framePath())
        path.append(i);
    const QString how = PageScriptCall::call(page.browser()->page(), QStringLiteral("clip.paste"),
                                             {QVariant(path), text, asText}, kPosition)
                            .toString();
    if (MError::ErrorNumber() != 0)
        return 0;
    return how == QLatin1String("none") || how == QLatin1String("refused") ? -1 : 1;
}

long TooLarge(qsizetype characters)
{
    const QString megabytes = QString::number(double(characters) / (1024 * 1024), 'f', 1);
    UserQuestions::MsgBox(MResources::LoadResourceString(txtTooLarge).arg(megabytes), UserQuestions::vbExclamation,
                          MResources::LoadResourceString(txtPaste));
    return -1;
}

} // namespace

long PageClipboardPaste::Paste(CDocument &document)
{
    HtmlDocument page;
    document.GetDocument(page);
    if (page.isNull()) {
        MError::SetErrorIfClear(91, QStringLiteral("Object variable not set"), kPosition);
        return 0;
    }
    if (const long block = PasteScriptBlock(document); block != -1)
        return block;
    QString fragment, source;
    long result = -1;
    if (M_HTMLClipboard::GetHTMLClipboard2(fragment, source) == 1) {
        if (fragment.size() > kLargestFragment)
            return TooLarge(fragment.size());
        FragmentAddresses::ConvertAbsoluteURL(fragment, source, page.URL());
        result = Insert(page, fragment, false);
        // HTML copied from this page may carry a block's marks.
        if (result == 1 && document.IsASPDocument() && document.ResolvePastedASP() != 1)
            return 0;
    } else {
        const QMimeData *data = QGuiApplication::clipboard()->mimeData();
        const QString text = data ? data->text() : QString();
        if (text.size() > kLargestFragment)
            return TooLarge(text.size());
        if (!text.isEmpty())
            result = Insert(page, text, true);
    }
    if (result == 1)
        document.SetDirty();
    return result;
}

// A script block copied in this program reaches the clipboard as text
// that starts with its start mark: on a script page it goes back in as a
// block, not as the text of its mark. -1 when the clipboard holds no such
// text or the page is no script page.
long PageClipboardPaste::PasteScriptBlock(CDocument &document)
{
    const QMimeData *data = QGuiApplication::clipboard()->mimeData();
    const QString text = data && data->hasText() ? data->text() : QString();
    const QString mark = QLatin1String(ASPMarkers::StartMarker);
    if (!document.IsASPDocument() || !text.startsWith(mark))
        return -1;
    return document.PasteASPObject(text.left(mark.size() + 5));
}

long PageClipboardPaste::PasteText(CDocument &document, const QString &strText_p, bool asHTML, const QString &strBase_p)
{
    HtmlDocument page;
    document.GetDocument(page);
    if (page.isNull()) {
        MError::SetErrorIfClear(91, QStringLiteral("Object variable not set"), kPosition);
        return 0;
    }
    if (strText_p.size() > kLargestFragment)
        return TooLarge(strText_p.size());
    if (strText_p.isEmpty())
        return -1;
    QString text = strText_p;
    if (asHTML)
        FragmentAddresses::ConvertAbsoluteURL(text, strBase_p, page.URL());
    const long result = Insert(page, text, !asHTML);
    if (result == 1)
        document.SetDirty();
    return result;
}
