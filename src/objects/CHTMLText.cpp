#include "objects/CHTMLText.h"

#include "cms/CMSLockCommands.h"
#include "cms/CMSTables.h"
#include "config/MGlobalProjectObjects.h"
#include "fileviews/SiteTreeKeys.h"
#include "document/CDocEventHandler.h"
#include "document/CDocument.h"
#include "objects/CHTMLImg.h"
#include "objects/CHTMLMedia.h"
#include "objects/LinkCommand.h"
#include "objects/M_HTMLClipboard.h"
#include "objects/PageBackgroundCommand.h"
#include "objects/PageClipboardPaste.h"
#include "objects/ScriptBlockCommand.h"
#include "objects/StyleSheetCommand.h"
#include "objects/TableCommands.h"
#include "objects/frmColorDropper.h"
#include "objects/frmImgZOrder.h"
#include "objects/frmMenu.h"
#include "platform/HtmlSelection.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QAction>
#include <QClipboard>
#include <QCursor>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QSet>
#include <QUrl>

namespace {

enum Text : long { txtSetBackground = 17624, txtChangeBackground = 17625, txtPasteForeign = 17634,
                   txtPasteForeign2 = 17635, txtPaste = 17636, txtProceed = 17649, txtSetColor = 17607,
                   txtWhatsH1H7 = 17653, txtWhatsH1H7Title = 17605, txtOutsideBody = 17654, txtSealed = 17655,
                   txtTitlePrompt = 17656, txtDocumentTitle = 17620, txtPicture = 17641, txtBookmark = 17643,
                   txtAbsolute = 17200, txtCenter = 17204, txtRule = 17657, txtFormField = 17658,
                   txtTable = 17629, txtSound = 17615, txtVideo = 17616, txtFlash = 17642 };

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

// The bits of a CMS user's limits for this menu: a set bit allows.
enum LimitBit : std::int32_t { FontBit = 1, JustifyBit = 2, SizeBit = 4, ColorBit = 8, FontStyleBit = 16,
                               InsertBit = 32, DocumentBit = 64, TableBit = 128, AbsoluteBit = 256,
                               CreateLinkBit = 512 };

const QString kPosition = QStringLiteral("position");
const QString kAbsolute = QStringLiteral("absolute");

bool IsTag(const HtmlElement &e, std::initializer_list<const char *> tags)
{
    const QString tag = e.tagName();
    for (const char *t : tags)
        if (tag == QLatin1String(t))
            return true;
    return false;
}

// The addresses of the pictures in a fragment of HTML, as written.
QStringList PictureSources(const QString &fragment)
{
    static const QRegularExpression img(QStringLiteral("<img\\b[^>]*?\\bsrc\\s*=\\s*[\"']?([^\"'\\s>]+)"),
                                        QRegularExpression::CaseInsensitiveOption);
    QStringList sources;
    for (auto it = img.globalMatch(fragment); it.hasNext();)
        sources << it.next().captured(1);
    return sources;
}

// A picture is the site's own when it comes from the site's host, its
// address read from the page it was copied on.
bool FromOtherSite(const QString &src, const QString &strSource_p, const QUrl &site)
{
    const QUrl address = QUrl(strSource_p).resolved(QUrl(src));
    if (address.scheme() == QLatin1String("data"))
        return false;
    return address.host().compare(site.host(), Qt::CaseInsensitive) != 0 || address.port(80) != site.port(80);
}

} // namespace

long CHTMLText::Init(CDocument *CDocument_p, long x_p, long y_p)
{
    if (!CDocument_p) {
        MError::SetErrorIfClear(91, QStringLiteral("Object variable not set"), QStringLiteral("CHTMLText.Init"));
        return 0;
    }
    m_Document = CDocument_p;
    m_Document->GetDocument(m_HTMLDocument);
    ReadPage(x_p, y_p);
    frmMenu menu;
    Prepare(menu);
    if (MError::ErrorNumber() != 0)
        return 0;
    Connect(menu);
    menu.PopupMenu(QStringLiteral("mnuHTMLText"), QCursor::pos());
    m_Range.release();
    return m_boolDirty ? 1 : -1;
}

// The element under the pointer (the table commands find its cell), and
// above it the link and the floating element it stands in, up to the body.
void CHTMLText::ReadPage(long x_p, long y_p)
{
    m_Range = HtmlSelection(m_HTMLDocument).createRange();
    m_Element = m_HTMLDocument.elementFromPoint(int(x_p), int(y_p));
    for (HtmlElement e = m_Element; !e.isNull() && !IsTag(e, {"HTML", "BODY"}); e = e.parentElement())
        if (e.styleValue(kPosition) == kAbsolute) {
            m_Positioned = e;
            break;
        }
    m_Link = LinkCommand::GetHREF(m_Range.parentElement());
}

void CHTMLText::Prepare(frmMenu &menu)
{
    PrepareSelection(menu);
    menu.Item(QStringLiteral("mnuUndo"))->setEnabled(m_HTMLDocument.queryCommandEnabled(QStringLiteral("Undo")));
    const bool absolute = !m_Positioned.isNull();
    menu.Item(QStringLiteral("mnuAbsolutePosition"))->setChecked(absolute);
    menu.Item(QStringLiteral("mnuZOrder"))->setEnabled(absolute);
    for (const auto &[item, command] : {std::pair{"mnuBold", "Bold"}, {"mnuItalic", "Italic"}, {"mnuUnderline", "Underline"}})
        menu.Item(QString::fromLatin1(item))->setChecked(m_HTMLDocument.queryCommandState(QString::fromLatin1(command)));
    const bool background = PageBackgroundCommand::HasPicture(m_HTMLDocument.body());
    menu.Item(QStringLiteral("mnuSetBkndImg"))->setText(L(background ? txtChangeBackground : txtSetBackground));
    menu.Item(QStringLiteral("mnuRemBkndImg"))->setEnabled(background);
    TableCommands::PrepareMenu(menu, *m_Document, m_Element);
    PrepareLimits(menu);
    CMSLockCommands::PrepareTextMenu(menu, *m_Document, m_Range);
}

// What acts on selected text needs some; a link offers to be edited or
// removed instead of made.
void CHTMLText::PrepareSelection(frmMenu &menu)
{
    const bool text = !m_Range.text().isEmpty();
    for (const char *name : {"mnuCut", "mnuCopy", "mnuDelete", "mnuCreateLink"})
        menu.Item(QString::fromLatin1(name))->setEnabled(text);
    for (const char *name : {"mnuSelectAll", "mnuPaste", "mnuInsertImage", "mnuInsertSoundClip", "mnuInsertFlash",
                             "mnuInsertVideo"})
        menu.Item(QString::fromLatin1(name))->setEnabled(true);
    const bool linked = !m_Link.isNull();
    menu.Item(QStringLiteral("mnuEditLink"))->setVisible(linked);
    menu.Item(QStringLiteral("mnuRemoveLink"))->setVisible(linked);
    menu.Item(QStringLiteral("mnuCreateLink"))->setVisible(!linked);
}

// With no CMS user found no limit applies.
void CHTMLText::PrepareLimits(frmMenu &menu) const
{
    const long user = long(g_sngCMSUser);
    if (g_sngCMSUser == CMS_NO_USER || user < 0 || user + 1 >= long(g_aCMSUsers.size()))
        return;
    const std::int32_t allowed = g_aCMSUsers[size_t(user)].limits.lRightClick;
    // One row per item: a list of names inside a pair would not outlive the
    // table's own line.
    const std::pair<LimitBit, const char *> rows[] = {
        {FontBit, "mnuFont"}, {JustifyBit, "mnuJustify"}, {SizeBit, "mnuSize"}, {ColorBit, "mnuFontColorMenu"},
        {FontStyleBit, "mnuBold"}, {FontStyleBit, "mnuItalic"}, {FontStyleBit, "mnuUnderline"},
        {InsertBit, "mnuInsertObject"}, {DocumentBit, "mnuDocument"}, {TableBit, "mnuTbl"},
        {AbsoluteBit, "mnuAbsolutePosition"}, {CreateLinkBit, "mnuCreateLink"}};
    for (const auto &[bit, name] : rows)
        if ((allowed & bit) == 0)
            menu.Item(QString::fromLatin1(name))->setEnabled(false);
}

void CHTMLText::On(frmMenu &menu, const char *item, std::function<long()> work)
{
    connect(menu.Item(QString::fromLatin1(item)), &QAction::triggered, this, [this, work] { Run(work); });
}

void CHTMLText::Connect(frmMenu &menu)
{
    for (const auto &[item, command] : {std::pair{"mnuUndo", "Undo"}, {"mnuCut", "Cut"}, {"mnuCopy", "Copy"},
                                        {"mnuDelete", "Delete"}, {"mnuSelectAll", "SelectAll"}, {"mnuBold", "Bold"},
                                        {"mnuItalic", "Italic"}, {"mnuUnderline", "Underline"},
                                        {"mnuJustifyLeft", "JustifyLeft"}, {"mnuJustifyRight", "JustifyRight"}}) {
        const QString name = QString::fromLatin1(command);
        On(menu, item, [this, name] { return Exec(name); });
    }
    static const char *const fonts[] = {"arial", "helvetica", "times new roman", "courier new", "georgia", "verdana"};
    for (int i = 0; i <= 6; ++i) {
        const QString item = QStringLiteral("mnuFonSelect%1").arg(i);
        const QString name = i < 6 ? QString::fromLatin1(fonts[i]) : menu.Item(item)->text();
        On(menu, item.toLatin1().constData(), [this, name] { return Exec(QStringLiteral("fontname"), name); });
    }
    for (int n = 1; n <= 7; ++n)
        On(menu, QStringLiteral("mnuH%1").arg(n).toLatin1().constData(),
           [this, n] { return Exec(QStringLiteral("FontSize"), QString::number(n)); });
    CDocument &doc = *m_Document;
    On(menu, "mnuPaste", [this] { return m_mnuPaste_Click(); });
    On(menu, "mnuPasteText", [this] { return m_mnuPasteText_Click(false); });
    On(menu, "mnuPasteHTML", [this] { return m_mnuPasteText_Click(true); });
    On(menu, "mnuJustifyCenter", [this] { return m_mnuJustifyCenter_Click(); });
    On(menu, "mnuWhatsH1H7", [this] { return m_mnuWhatsH1H7_Click(); });
    On(menu, "mnuColor", [this] { return m_mnuColor_Click(); });
    On(menu, "mnuGetColorToFont", [this] { return m_mnuGetColorToFont_Click(); });
    On(menu, "mnuAbsolutePosition", [this] { return m_mnuAbsolutePosition_Click(); });
    On(menu, "mnuZOrder", [this] { return m_mnuZOrder_Click(); });
    On(menu, "mnuCreateLink", [&doc] { return LinkCommand::CreateLink(doc); });
    On(menu, "mnuEditLink", [this, &doc] { return LinkCommand::EditLink(doc, m_Link); });
    On(menu, "mnuRemoveLink", [this] { return m_mnuRemoveLink_Click(); });
    On(menu, "mnuInsertImage", [this] { return m_mnuInsertImage_Click(); });
    On(menu, "mnuInsertTable", [this] { return m_mnuInsertTable_Click(); });
    for (const auto &[item, kind] : {std::pair{"mnuInsertSoundClip", CHTMLMedia::Sound}, {"mnuInsertFlash", CHTMLMedia::Flash},
                                     {"mnuInsertVideo", CHTMLMedia::Video}})
        On(menu, item, [this, kind = kind] { return InsertMedia(kind); });
    On(menu, "mnuInsertBookMark", [this] { return m_mnuInsertBookMark_Click(); });
    On(menu, "mnuInsertRule", [this] { return m_mnuInsertRule_Click(); });
    for (const auto &[item, kind] : {std::pair{"mnuInsertTextBox", "text"}, {"mnuInsertCheckBox", "checkbox"},
                                     {"mnuInsertOptionButton", "radio"}, {"mnuInsertDropDown", "select"},
                                     {"mnuInsertButton", "submit"}}) {
        const QString name = QString::fromLatin1(kind);
        On(menu, item, [this, name] { return InsertFormField(name); });
    }
    On(menu, "mnuBkgndColor", [&doc] { return PageBackgroundCommand::SetColor(doc); });
    On(menu, "mnuBkgndColorRemove", [&doc] { return PageBackgroundCommand::RemoveColor(doc); });
    On(menu, "mnuBkgndColorGetFroOther", [&doc] { return PageBackgroundCommand::RetrieveColor(doc); });
    On(menu, "mnuSetBkndImg", [&doc] { return PageBackgroundCommand::SetPicture(doc); });
    On(menu, "mnuRemBkndImg", [&doc] { return PageBackgroundCommand::RemovePicture(doc); });
    On(menu, "mnuDocumentTitle", [this] { return m_mnuDocumentTitle_Click(); });
    On(menu, "mnuInsertStyleSheet", [&doc] { return StyleSheetCommand::InsertStyleSheet(doc); });
    On(menu, "mnuEditScriptBlock", [&doc] { return ScriptBlockCommand::EditScriptBlock(doc); });
    On(menu, "mnuEditDocumentByHTML", [this] { return m_mnuEditDocumentByHTML_Click(); });
    On(menu, "mnuCMS_AdminLockPage", [&doc] { return CMSLockCommands::LockPage(doc); });
    On(menu, "mnuCMS_AdminLockUpPage", [&doc] { return CMSLockCommands::UnlockPage(doc); });
    On(menu, "mnuCMS_AdminLockUpArea", [this, &doc] { return CMSLockCommands::UnlockArea(doc, m_Range); });
    On(menu, "mnuCMS_AdminLockSubArea", [this, &doc] { return CMSLockCommands::LockSubArea(doc, m_Range); });
}

// Every command but "What's H1 - H7?" may change the page; a failure is
// shown where it happened.
void CHTMLText::Run(const std::function<long()> &work)
{
    const long result = work();
    if (result == 1) {
        m_boolDirty = true;
        m_Document->SetDirty();
    }
    if (MError::ErrorNumber() != 0)
        MError::ShowError();
}

long CHTMLText::Exec(const QString &command, const QVariant &value)
{
    m_Range.select();
    m_HTMLDocument.execCommand(command, false, value);
    return MError::ErrorNumber() == 0 ? 1 : 0;
}

// Something new goes in only where the user can write: inside the body,
// and not in what the server's script wrote. Said in words otherwise.
bool CHTMLText::InsertionRefused(const QString &strWhat_p)
{
    const HtmlElement parent = m_Range.parentElement();
    long reason = long(txtOutsideBody);
    for (HtmlElement e = parent; !e.isNull() && !IsTag(e, {"HTML"}); e = e.parentElement())
        if (IsTag(e, {"BODY"})) {
            reason = parent.isContentEditable() ? 0 : long(txtSealed);
            break;
        }
    // A caret in text the script wrote, or a selection reaching into it,
    // has an editable parent: the page's runtime knows the sealed parts.
    if (reason == 0 && m_Range.reachesSeal())
        reason = long(txtSealed);
    if (reason == 0)
        return false;
    UserQuestions::MsgBox(L(reason), UserQuestions::vbExclamation, strWhat_p);
    return true;
}

long CHTMLText::m_mnuPaste_Click()
{
    QString fragment, source;
    if (M_HTMLClipboard::GetHTMLClipboard2(fragment, source) == 1) {
        const QUrl site(SiteTreeKeys::CurrentSite().baseaddress);
        bool foreign = false;
        for (const QString &src : PictureSources(fragment))
            foreign = foreign || FromOtherSite(src, source, site);
        if (foreign && UserQuestions::MsgBox(L(txtPasteForeign) + QLatin1Char('\n') + L(txtPasteForeign2) + QLatin1Char('\n')
                                                 + L(txtProceed),
                                             UserQuestions::vbYesNo | UserQuestions::vbQuestion, L(txtPaste))
                           != UserQuestions::vbYes)
            return -1;
    }
    m_Range.select();
    return PageClipboardPaste::Paste(*m_Document);
}

// Plain text, or text that the user wants read as markup (HTML written in
// another program), whose addresses are taken as the site's.
long CHTMLText::m_mnuPasteText_Click(bool asHTML)
{
    m_Range.select();
    return PageClipboardPaste::PasteText(*m_Document, QGuiApplication::clipboard()->text(), asHTML,
                                         SiteTreeKeys::CurrentSite().baseaddress);
}

long CHTMLText::m_mnuJustifyCenter_Click()
{
    if (InsertionRefused(L(txtCenter)))
        return -1;
    HtmlElement paragraph = m_HTMLDocument.createElement(QStringLiteral("P"));
    paragraph.setAttribute(QStringLiteral("align"), QStringLiteral("center"));
    m_Range.surroundWith(paragraph);
    return MError::ErrorNumber() == 0 ? 1 : 0;
}

long CHTMLText::m_mnuWhatsH1H7_Click()
{
    UserQuestions::MsgBox(L(txtWhatsH1H7), UserQuestions::vbInformation, L(txtWhatsH1H7Title));
    return -1;
}

long CHTMLText::m_mnuColor_Click()
{
    const QString color = frmColorDropper::ChooseColor(nullptr, QString(), L(txtSetColor));
    return color.isEmpty() ? -1 : Exec(QStringLiteral("ForeColor"), color);
}

// The dropper writes the color it picked on a scratch cell outside the
// page, from where it goes to the text.
long CHTMLText::m_mnuGetColorToFont_Click()
{
    HtmlElement scratch = m_HTMLDocument.createElement(QStringLiteral("TD"));
    frmColorDropper dropper;
    dropper.Init(QStringLiteral("bgColor"), scratch);
    if (dropper.Show() != 1)
        return -1;
    return Exec(QStringLiteral("ForeColor"), scratch.getAttribute(QStringLiteral("bgColor")).toString());
}

// The selection floats in an inline layer of its own; a floating element
// picked again goes back into the flow where it stands in the page.
long CHTMLText::m_mnuAbsolutePosition_Click()
{
    if (!m_Positioned.isNull()) {
        for (const char *name : {"position", "top", "left"})
            m_Positioned.removeStyleValue(QString::fromLatin1(name));
        return MError::ErrorNumber() == 0 ? 1 : 0;
    }
    if (InsertionRefused(L(txtAbsolute)))
        return -1;
    HtmlElement layer = m_HTMLDocument.createElement(QStringLiteral("DIV"));
    layer.setStyleValue(QStringLiteral("display"), QStringLiteral("inline"));
    layer.setStyleValue(kPosition, kAbsolute);
    m_Range.surroundWith(layer);
    return MError::ErrorNumber() == 0 ? 1 : 0;
}

long CHTMLText::m_mnuZOrder_Click()
{
    if (m_Positioned.isNull())
        return -1;
    frmImgZOrder form;
    form.LetImgZOrder(m_Positioned.styleValue(QStringLiteral("zIndex")));
    if (form.Show() != 1)
        return -1;
    m_Positioned.setStyleValue(QStringLiteral("zIndex"), form.GetImgZOrder());
    return MError::ErrorNumber() == 0 ? 1 : 0;
}

// A caret in a link takes the whole link off.
long CHTMLText::m_mnuRemoveLink_Click()
{
    if (m_Link.isNull())
        return -1;
    if (m_Range.text().isEmpty())
        HtmlTextRange::aroundElement(m_Link).select();
    else
        m_Range.select();
    m_HTMLDocument.execCommand(QStringLiteral("Unlink"), false, {});
    return MError::ErrorNumber() == 0 ? 1 : 0;
}

long CHTMLText::m_mnuInsertImage_Click()
{
    if (InsertionRefused(L(txtPicture)))
        return -1;
    const QString file = CHTMLImg::ChoosePictureFile(nullptr);
    if (file.isEmpty())
        return -1;
    m_Range.select();
    return CHTMLImg::InsertLocalPicture(*m_Document, file);
}

// Clips the engine can't play go in as their tags, shown as boxes.
long CHTMLText::InsertMedia(int kind)
{
    static const long captions[] = {txtSound, txtFlash, txtVideo};
    if (InsertionRefused(L(captions[kind])))
        return -1;
    return CHTMLMedia::Insert(*m_Document, m_Range, CHTMLMedia::Kind(kind));
}

long CHTMLText::m_mnuInsertTable_Click()
{
    if (InsertionRefused(L(txtTable)))
        return -1;
    return TableCommands::InsertTable(*m_Document, m_Range);
}

long CHTMLText::m_mnuInsertBookMark_Click()
{
    if (InsertionRefused(L(txtBookmark)))
        return -1;
    m_Range.select();
    return LinkCommand::InsertBookmark(*m_Document);
}

long CHTMLText::m_mnuDocumentTitle_Click()
{
    QString title = m_HTMLDocument.title();
    if (UserQuestions::InputBox(L(txtTitlePrompt), L(txtDocumentTitle), false, title) != UserQuestions::vbOK)
        return -1;
    m_HTMLDocument.setTitle(title);
    return MError::ErrorNumber() == 0 ? 1 : 0;
}

// The source the user edits is the page's file with his changes so far,
// as Save writes it, not the engine's rewriting of the body: what he
// doesn't touch keeps its bytes. It reaches the server the way Save
// sends, after a revision. Sending it took the page out of editing, so the
// session ends here, with the other frames saved; after a Cancel he goes
// on editing.
long CHTMLText::m_mnuEditDocumentByHTML_Click()
{
    long index = 0;
    m_Document->GetDocIndex(index);
    const long edited = m_Document->EditAspDocument();
    if (edited != 1)
        return edited;
    CDocEventHandler *handler = nullptr;
    m_Document->GetDocumentEventHandler(handler);
    if (handler)
        handler->EditASPStop(index);
    return edited;
}

long CHTMLText::m_mnuInsertRule_Click()
{
    if (InsertionRefused(L(txtRule)))
        return -1;
    // An empty value: the engine would take any other as the rule's id.
    return Exec(QStringLiteral("InsertHorizontalRule"), QStringLiteral(""));
}

// A field gets a name no other field of the page has, so that the form
// sends each one's value apart; its properties are set afterwards from the
// field's own menu.
long CHTMLText::InsertFormField(const QString &strKind_p)
{
    if (InsertionRefused(L(txtFormField)))
        return -1;
    int n = 1;
    QSet<QString> taken;
    for (const QString &tag : {QStringLiteral("INPUT"), QStringLiteral("SELECT")})
        for (const HtmlElement &e : m_HTMLDocument.getElementsByTagName(tag))
            taken.insert(e.getAttribute(QStringLiteral("name")).toString());
    while (taken.contains(QStringLiteral("field%1").arg(n)))
        ++n;
    const QString name = QStringLiteral("field%1").arg(n);
    QString html;
    if (strKind_p == QLatin1String("select"))
        html = QStringLiteral("<select name=\"%1\"><option value=\"1\">1</option></select>").arg(name);
    else if (strKind_p == QLatin1String("submit"))
        html = QStringLiteral("<input type=\"submit\" name=\"%1\" value=\"OK\">").arg(name);
    else
        html = QStringLiteral("<input type=\"%1\" name=\"%2\">").arg(strKind_p, name);
    m_Range.pasteHTML(html);
    return MError::ErrorNumber() == 0 ? 1 : 0;
}
