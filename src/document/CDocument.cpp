#include "document/CDocument.h"

#include "aspfilter/ASPMarkers.h"
#include "aspfilter/CASPFilter.h"
#include "cms/CMSLockCommands.h"
#include "cms/CMSTables.h"
#include "config/CPublicSettings.h"
#include "config/MGlobalProjectObjects.h"
#include "config/frmMessageBoxOnce.h"
#include "document/CDocEventHandler.h"
#include "document/CPageBackgrounds.h"
#include "document/CPageEncoding.h"
#include "document/CPageMetaTags.h"
#include "document/CSaveText.h"
#include "document/CSendPath.h"
#include "document/DocumentAddress.h"
#include "document/FolderIndexSearch.h"
#include "history/CRollback.h"
#include "objects/AppletPlaceholders.h"
#include "objects/CHTMLImg.h"
#include "objects/CHTMLMedia.h"
#include "objects/CSPANASP.h"
#include "objects/CVisibility.h"
#include "objects/ctlVisibility.h"
#include "objects/frmDocumentInnerHTML.h"
#include "platform/EngineProfile.h"
#include "platform/GlyphTable.h"
#include "platform/PageScriptCall.h"
#include "platform/WebBrowser.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "transfer/CFTPS.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QLocale>

#include <algorithm>

QStringList CDocument::g_astrDocURLs;

namespace {

constexpr long kNoIndexFile = 90000;
constexpr long kNotLoading = -25061;
constexpr long kMsgForeignContent = 22000;
constexpr long kTitleForeignContent = 22001;
constexpr long kMsgNoSubIndex = 22002;
constexpr long kMsgNotLoading = 22003;
constexpr long kNoSite = 10002;
constexpr long kSaveFailed = 10012; // our own number for a save that stopped without a reason of its own
constexpr long kMsgNoSite = 22100;
constexpr long kMsgSaveFailed = 22101;
constexpr long kMsgSourceUnread = 22102;
constexpr long kMsgScriptNotKept = 22103;
constexpr long kMsgWrittenWhole = 22104;
constexpr long kScriptNotKept = 10013; // our own number: a save stopped to keep the page's script
constexpr int kBodyWaitLimitMs = 1000;
constexpr qsizetype kTextRangeMinimum = 21;

const QString kKey = QStringLiteral("keldaKey");

using G = MGlobalProjectObjects;

} // namespace

CDocument::CDocument() = default;

// Objects go first, while the page they point into is still held.
CDocument::~CDocument()
{
    m_Objects.clear();
}

QString CDocument::Position(const QString &operation) const
{
    return QStringLiteral("CDocument.") + operation;
}

QString CDocument::SavePosition(const QString &path, long line)
{
    return QStringLiteral("CDocument.Save{pathname: %1}{line: %2}").arg(path).arg(line);
}

long CDocument::GetDirty(bool &boolDocIsDirty_p) const
{
    boolDocIsDirty_p = m_boolDirty;
    return 1;
}

long CDocument::SetDirty()
{
    m_boolDirty = true;
    return 1;
}

long CDocument::GetDocumentEventHandler(CDocEventHandler *&CDocEventHandler_p) const
{
    CDocEventHandler_p = m_DocEventHandler;
    return 1;
}

long CDocument::GetDocument(HtmlDocument &HTMLDocument_p) const
{
    HTMLDocument_p = m_Document;
    return 1;
}

long CDocument::RemoveObject(const QString &strKey_p)
{
    m_Objects.erase(strKey_p);
    return 1;
}

long CDocument::AddObject(std::unique_ptr<CIHTMLObject> CIHTMLObject_p)
{
    const long count = long(m_Objects.size());
    m_Objects[QString::number(count)] = std::move(CIHTMLObject_p);
    return count + 1;
}

CIHTMLObject *CDocument::Object(const QString &strKey_p) const
{
    const auto it = m_Objects.find(strKey_p);
    return it == m_Objects.end() ? nullptr : it->second.get();
}

long CDocument::GetDocIndex(long &lIndex_p) const
{
    lIndex_p = m_lDocIndex;
    return 1;
}

long CDocument::GetASPEdited(bool &bASPEdited_p) const
{
    bASPEdited_p = m_boolASPEdited;
    return 1;
}

long CDocument::GetURL_FullPath(QString &strFullURL_p) const
{
    strFullURL_p = DocumentAddress::FullPath(m_Document.href(), m_strURL);
    return 1;
}

long CDocument::GetURL(QString &strURL_p) const
{
    strURL_p = m_strURL.isEmpty() ? m_Document.pathname() : m_strURL;
    return 1;
}

long CDocument::GetVisible(bool &boolIsVisible_p) const
{
    boolIsVisible_p = !m_boolIsIFrame && m_boolIsNotFrameset;
    return 1;
}

long CDocument::GetIsIFrame(bool &boolIsIFrame_p) const
{
    boolIsIFrame_p = m_boolIsIFrame;
    return 1;
}

long CDocument::setDocumentControledByCMS(bool boolDocumentControledByCMS_p)
{
    m_boolControledByCMS = boolDocumentControledByCMS_p;
    return 1;
}

long CDocument::Init(CDocEventHandler *CDocEventHandler_p)
{
    if (InitDocument(CDocEventHandler_p) != 1)
        return 0;
    const long bound = BindServerPath();
    if (bound != 1)
        return bound;
    const QString strPath = m_strURL.isEmpty() ? m_Document.pathname() : m_strURL;
    const QString address = DocumentAddress::DocumentFullAddress(m_Document.href(), m_strURL);
    g_astrDocURLs.append(address);
    CheckCMS(address);
    if (DocumentAddress::CheckExtension(DocumentAddress::ExtensionOf(strPath), boolNoEdit) != 1)
        return -1;
    if (m_lDocIndex == 0)
        m_strTopHTML = m_Document.documentElement().outerHTML();
    m_lElementsAtInit = m_Document.allLength();
    ReadFrames();
    return m_Style.Init(m_Document);
}

long CDocument::InitDocument(CDocEventHandler *handler)
{
    m_DocEventHandler = handler;
    if (!handler || handler->GetDocument(m_Document) != 1 || handler->GetDocIndex(m_lDocIndex) != 1
        || handler->GetIE(m_IE) != 1 || handler->GetForm(m_frmVindrell) != 1 || m_Document.isNull()) {
        MError::SetErrorIfClear(91, QStringLiteral("Object variable not set"), Position(QStringLiteral("Init")));
        return 0;
    }
    return 1;
}

// Settles m_strURL: empty for an address that names its file, else the
// file that the folder of the address serves.
long CDocument::BindServerPath()
{
    const auto &sites = MGlobalProjectObjects::URLDATA;
    const long current = MGlobalProjectObjects::lCurrentURL;
    const SiteRecord site = current >= 0 && current < long(sites.size()) ? sites[current] : SiteRecord();
    const long n = DocumentAddress::CalculateNumberSubDomainLevel();
    const long found = DocumentAddress::ServerPathOf(m_Document.pathname(), m_Document.URL(), site, n, m_strURL,
                                                     m_Document.characterSet());
    if (found == DocumentAddress::kAskServer)
        return FindIndexOnServer(m_strURL);
    return found;
}

// The server tells which file the folder serves; the answer is kept in
// the site's subindex so that the next visit needs no FTP session.
long CDocument::FindIndexOnServer(QString folder)
{
    m_strURL.clear();
    QString index;
    const long result = FolderIndexSearch::GetSpecificIndexFile(folder, index);
    if (result == 0)
        return 0;
    if (result != 1) {
        MError::SetError(kNoIndexFile, MResources::LoadResourceString(kMsgNoSubIndex), Position(QStringLiteral("Init")));
        return 0;
    }
    m_strURL = folder + index;
    auto &sites = MGlobalProjectObjects::URLDATA;
    const long current = MGlobalProjectObjects::lCurrentURL;
    if (current >= 0 && current < long(sites.size())) {
        DocumentAddress::AddSubIndex(sites[current].subindex, m_strURL);
        CPublicSettings settings;
        settings.SetURLSettings();
    }
    return 1;
}

// Loaded CMS data puts every page under the CMS; a listed page also tells
// whether this client's user is tied to it.
void CDocument::CheckCMS(const QString &address)
{
    if (g_aCMSUsers.size() > 1)
        m_boolControledByCMS = true;
    for (size_t i = 0; i + 1 < g_aCMSPages.size(); ++i) {
        if (g_aCMSPages[i].strPath != address)
            continue;
        m_boolControledByCMS = true;
        // The user list keeps a spare last element that is no user.
        const QList<float> &users = g_aCMSPages[i].sngUsers;
        m_boolUserMayEdit = users.first(std::max<qsizetype>(users.size() - 1, 0)).contains(g_sngCMSUser);
        return;
    }
}

void CDocument::ReadFrames()
{
    m_boolIsNotFrameset = m_Document.getElementsByTagName(QStringLiteral("FRAME")).isEmpty();
    m_boolIsIFrame = m_boolIsNotFrameset && !m_Document.getElementsByTagName(QStringLiteral("IFRAME")).isEmpty();
}

// The script's output can't be edited: it is sealed in the page. The
// filter holds the blocks' sources, as the file has them, for the dialog
// that edits them.
long CDocument::SetASPFilter(CASPFilter *CASPFilter_p)
{
    m_ASPFilter = CASPFilter_p;
    m_boolIsASP = true;
    if (m_ASPFilter && m_Faithful.IsPrepared())
        m_ASPFilter->LetBlocks(m_Faithful.RegionSources());
    return SealASPBlocks();
}

long CDocument::SealASPBlocks()
{
    QStringList ids;
    if (m_Document.sealScript(&ids) < 0)
        return 0;
    m_aSPANASP.clear();
    for (const QString &id : ids) {
        auto span = std::make_unique<CSPANASP>();
        span->Init(id, m_DocEventHandler, m_frmVindrell, this);
        m_aSPANASP.push_back(std::move(span));
    }
    return 1;
}

CSPANASP *CDocument::ASPSpan(const QString &strMarker_p) const
{
    for (const auto &span : m_aSPANASP) {
        if (span->Marker() == strMarker_p)
            return span.get();
    }
    return nullptr;
}

long CDocument::KeepSource(const QByteArray &original)
{
    m_strRefusal.clear();
    if (original.isEmpty()) {
        m_strRefusal = MResources::LoadResourceString(kMsgSourceUnread);
        return 0;
    }
    return m_Faithful.Prepare(original, m_Document.snapshot(), m_strRefusal);
}

long CDocument::FetchOriginal(QByteArray &bytes)
{
    QString path;
    GetPreparedSendPath(m_strURL, path);
    CFTPS ftp;
    if (OpenTransfer(ftp, Position(QStringLiteral("FetchOriginal"))) != 1)
        return 0;
    return ftp.GetASCIIFile(path, bytes) == 1 ? 1 : 0;
}

// A script page is editable when every stretch of its script's output was
// found in the page and the page lines up with its file. The file on the
// server is put back by the session before the user is asked anything.
long CDocument::IsEditable(CASPFilter &)
{
    if (m_Faithful.IsPrepared())
        return 1;
    if (m_strRefusal.isEmpty())
        m_strRefusal = MResources::LoadResourceString(kMsgSourceUnread);
    return 0;
}

long CDocument::ShowDisableGlyphs(bool AnchorsOn_p, bool LayerOn_p, bool ScriptsOn_p, bool SpanOn_p, bool FontOn_p)
{
    m_Document.execDesign(HtmlDocument::EmptyGlyphTable);
    GlyphTable::Switches on;
    on.anchors = AnchorsOn_p;
    on.layers = LayerOn_p;
    on.scripts = ScriptsOn_p;
    on.spans = SpanOn_p;
    on.fonts = FontOn_p;
    const QString rows = GlyphTable::rowsText(on);
    if (!rows.isEmpty())
        m_Document.execDesign(HtmlDocument::AddToGlyphTable, rows);
    return 1;
}

long CDocument::setDocumentWindowHatched()
{
    return m_Document.setHatched(true) == 1 ? 1 : 0;
}

long CDocument::EditOn(bool boolEdit_p)
{
    if (!m_boolIsNotFrameset)
        return boolEdit_p ? EditOnFrameset() : 1;
    return boolEdit_p ? EditOnPage() : EditOffPage();
}

// The frames have documents of their own; the frameset only gets borders
// that can be dragged, and what it had is kept for Save to put back.
long CDocument::EditOnFrameset()
{
    const QList<HtmlElement> framesets = m_Document.getElementsByTagName(QStringLiteral("FRAMESET"));
    if (framesets.isEmpty())
        return 1;
    HtmlElement frameset = framesets.first();
    m_vFrameBorder = frameset.getAttribute(QStringLiteral("frameBorder"));
    frameset.setAttribute(QStringLiteral("frameBorder"), QStringLiteral("yes"));
    m_abNoResize.clear();
    for (HtmlElement &frame : m_Document.getElementsByTagName(QStringLiteral("FRAME"))) {
        m_abNoResize.append(!frame.getAttribute(QStringLiteral("noresize")).isNull());
        frame.setAttribute(QStringLiteral("noresize"), QStringLiteral("noresize"));
    }
    return 1;
}

long CDocument::EditOnPage()
{
    EngineProfile::SetSpellCheck(MGlobalProjectObjects::useSpellCheck);
    m_boolASPEdited = false;
    m_Objects.clear();
    // Content a script adds after the page has loaded is counted from the
    // moment the document was bound: the few milliseconds between two reads
    // here are too short to see a script at work.
    const int now = m_Document.allLength();
    const int before = m_lElementsAtInit > 0 ? std::min(now, m_lElementsAtInit) : now;
    m_Document.setDesignMode(QStringLiteral("On"));
    PageScriptCall::pumpUntil([this] { return m_Document.allLength() > 0; }, kBodyWaitLimitMs);
    ShowForeignContentOnce(before);
    m_Document.execDesign(HtmlDocument::RespectVisibilityInDesign, true);
    m_Document.execDesign(HtmlDocument::ShowZeroBorderAtDesignTime, 0);
    m_boolEditOn = true;
    if (!WaitForBody()) {
        MError::SetError(kNotLoading, MResources::LoadResourceString(kMsgNotLoading), Position(QStringLiteral("EditOn")));
        return 0;
    }
    m_HTMLBody = m_Document.body();
    if (m_boolControledByCMS)
        MarkCMSAreas();
    if (boolNoEdit)
        m_HTMLBody.setContentEditable(false);
    if (RegisterImages() != 1)
        return 0;
    if (CHTMLMedia::ShowExisting(*this) != 1)
        return 0;
    if (ShowLayersAndApplets() != 1)
        return 0;
    if (m_HTMLBody.innerText().size() >= kTextRangeMinimum)
        m_TextRange = HtmlTextRange::aroundElement(m_HTMLBody);
    return 1;
}

// A script that writes content from elsewhere grows the page; that content
// is gone in design mode and comes back after it.
void CDocument::ShowForeignContentOnce(int elementsBefore)
{
    const bool scripts = !m_Document.getElementsByTagName(QStringLiteral("SCRIPT")).isEmpty();
    if (scripts && m_Document.allLength() > elementsBefore)
        frmMessageBoxOnce::Show(MResources::LoadResourceString(kMsgForeignContent),
                                MResources::LoadResourceString(kTitleForeignContent), QStringLiteral("ScriptOnPage"));
}

// Each round waits 100 ms longer than the last, up to about a second.
bool CDocument::WaitForBody()
{
    int waited = 0;
    for (int round = 1; waited <= kBodyWaitLimitMs; ++round) {
        if (!m_Document.getElementsByTagName(QStringLiteral("BODY")).isEmpty())
            return true;
        PageScriptCall::pumpUntil([] { return false; }, round * 100);
        waited += round * 100;
    }
    return false;
}

// Areas the user may change get a green frame and are editable; locked
// areas a red one. Other values of the mark are left alone. An
// administrator, and a client whose user the CMS doesn't know, edit the
// whole page. A user who is no administrator edits only inside the
// unlocked areas of a page tied to him: the rest of that page, and all of
// a page not tied to him, stays locked and shows no frame.
void CDocument::MarkCMSAreas()
{
    // The engine's design mode makes every element editable, whatever it
    // says of itself: for such a user the page leaves it, and only his
    // areas are editable, as islands in a page that isn't.
    const bool restricted = CMSRestrictedUser();
    if (restricted)
        m_Document.setDesignMode(QStringLiteral("Off"));
    else
        m_boolUserMayEdit = true;
    if (!m_boolUserMayEdit)
        return;
    for (HtmlElement &element : m_Document.all()) {
        const QString mark = element.getAttribute(QStringLiteral("keldaedit")).toString();
        if (mark == QStringLiteral("1")) {
            CMSLockCommands::ShowUnlocked(element);
        } else if (mark == QStringLiteral("0")) {
            if (restricted)
                element.setContentEditable(false);
            element.setStyleValue(QStringLiteral("border"), QStringLiteral("red 3px solid"));
        }
    }
}

// The images are keyed in the page in one call and then registered in the
// same document order, so key i is the i-th image.
long CDocument::RegisterImages()
{
    const long keyed = m_Document.keyAndStrip(QStringLiteral("IMG"), kKey, {});
    if (keyed < 0)
        return 0;
    long key = 0;
    for (const HtmlElement &img : m_Document.getElementsByTagName(QStringLiteral("IMG"))) {
        auto object = std::make_unique<CHTMLImg>();
        if (object->Init(img, this, key++) != 1)
            return 0;
        AddObject(std::move(object));
    }
    return 1;
}

// The frames of a frameset share the one list of the Visibility pane, by
// which each document's layers are listed on a right click with Shift.
// Without that list nothing could show a hidden layer: the page then shows
// them all while it is edited (a look of the editor's own, never saved).
long CDocument::ShowLayersAndApplets()
{
    ctlVisibility *list = m_frmVindrell ? m_frmVindrell->findChild<ctlVisibility *>(ctlVisibility::ObjectName()) : nullptr;
    if (!list)
        m_Document.execDesign(HtmlDocument::RespectVisibilityInDesign, false);
    m_Visibility = std::make_unique<CVisibility>();
    if (m_Visibility->Init(list, m_Document, m_lDocIndex) != 1)
        return 0;
    return AppletPlaceholders::Show(m_Document);
}

long CDocument::EditOffPage()
{
    m_Objects.clear();
    m_Visibility.reset();
    m_TextRange = HtmlTextRange();
    AppletPlaceholders::Hide(m_Document);
    m_Document.removeAttributesEverywhere(
        {kKey, CHTMLMedia::BoxAttribute(), QStringLiteral("vismark"), QStringLiteral("no_visibility")});
    m_Document.setDesignMode(QStringLiteral("Off"));
    m_Document.execDesign(HtmlDocument::ShowZeroBorderAtDesignTime, 0);
    m_boolEditOn = false;
    return 1;
}

// ------------------------------------------------------------------ Save

// Runs once at the end of a session: the marks of editing are taken off
// the live page on the way, so the page is no longer fit for editing
// afterwards, whatever the result (-2 aside, which touches nothing but a
// frameset's borders).
long CDocument::Save()
{
    m_strSavePath.clear();
    if (m_Document.URL() == QLatin1String("about:blank"))
        return 1;
    QByteArray bytes;
    const long made = SaveText(bytes, false);
    return made == 1 ? SendSaved(bytes) : made;
}

// The page's file as Save writes it: 1 with its bytes (and m_strLastSaved
// with its text), or what Save gives. Pictures the user put in from his
// disk go up on the way, since the text names them where they then lie.
// With keepPage, what the save does to the page itself (the marks of edit
// mode taken off, the head tags settled) is taken back as soon as the text
// is made: the page stays exactly as the user is editing it. A background
// picture from his disk keeps its marks that way too, so a later save
// sends it once more, to the same place.
long CDocument::SaveText(QByteArray &bytes, bool keepPage)
{
    bool found = false;
    DocumentAddress::GetCurrentURLIndex(m_Document.URL(), found);
    if (!found)
        return SaveFailed(3, kNoSite, MResources::LoadResourceString(kMsgNoSite));
    GetPreparedSendPath(m_strURL, m_strSavePath);
    if (m_boolIsNotFrameset && SaveObjects() != 1)
        return SaveFailed(4);
    if (!keepPage)
        return UnmarkedText(bytes);
    if (m_Document.holdChanges() != 1)
        return SaveFailed(5);
    const long made = UnmarkedText(bytes);
    if (m_Document.undoHeldChanges() != 1)
        return SaveFailed(6);
    return made;
}

// The page without the marks of editing, written into the file's bytes.
long CDocument::UnmarkedText(QByteArray &bytes)
{
    if (!m_boolIsNotFrameset)
        RestoreFrameset();
    if (!m_boolDirty)
        return -2;
    if (m_boolIsNotFrameset && StripEditMarks(CurrentSite()) != 1)
        return SaveFailed(7);
    if (m_boolControledByCMS && StripLockMarks() != 1)
        return SaveFailed(8);
    const long made = m_ASPFilter ? MakeASPText(bytes) : MakePageText(bytes);
    if (made == -1)
        return -1;
    return made == 1 ? 1 : SaveFailed(9);
}

// An object that wrote a change into the page makes the page changed.
long CDocument::SaveObjects()
{
    for (auto &[key, object] : m_Objects) {
        const long saved = object->Save(m_Document);
        if (saved == 0)
            return 0;
        if (saved == 1)
            m_boolDirty = true;
    }
    return 1;
}

// The frameset gets back the borders and resizing that edit mode changed.
void CDocument::RestoreFrameset()
{
    const QList<HtmlElement> framesets = m_Document.getElementsByTagName(QStringLiteral("FRAMESET"));
    if (framesets.isEmpty())
        return;
    HtmlElement frameset = framesets.first();
    if (m_vFrameBorder.isNull() || m_vFrameBorder.toString().isEmpty())
        frameset.removeAttribute(QStringLiteral("frameborder"));
    else
        frameset.setAttribute(QStringLiteral("frameborder"), QStringLiteral("no"));
    const QList<HtmlElement> frames = m_Document.getElementsByTagName(QStringLiteral("FRAME"));
    for (qsizetype i = 0; i < frames.size(); ++i) {
        if (i >= m_abNoResize.size() || !m_abNoResize.at(i)) {
            HtmlElement frame = frames.at(i);
            frame.removeAttribute(QStringLiteral("noresize"));
        }
    }
}

// The layers get the visibility they had when edit mode began and the
// applets lose their boxes; pictures chosen from the user's disk go up;
// then one pass takes every other mark of edit mode off the page.
long CDocument::StripEditMarks(const SiteRecord &site)
{
    if (m_Visibility && m_Visibility->RestoreLayers() != 1)
        return 0;
    if (AppletPlaceholders::Hide(m_Document) != 1)
        return 0;
    HtmlElement body = m_Document.body();
    if (CPageBackgrounds::SaveBodyBackground(body, site, m_strSavePath) == 0)
        return 0;
    bool ok = false;
    const QList<HtmlDocument::PendingBackground> pending = m_Document.stripEditMarks(ok);
    if (!ok)
        return 0;
    for (const HtmlDocument::PendingBackground &background : pending) {
        if (CPageBackgrounds::SaveElementBackground(background, site) != 1)
            return 0;
    }
    QCoreApplication::processEvents();
    return 1;
}

long CDocument::StripLockMarks()
{
    return m_Document.stripLockMarks(CMSLockCommands::BorderProperties()) >= 0 ? 1 : 0;
}

// The head tags are settled in the live page; then only what changed in
// the page since Edit is written into the file's own bytes. The author's
// META tags keep their spelling (the engine's reordering of their
// attributes never reaches the file this way). Tidy, when the user turned
// it on, runs on the whole result. A page whose change can't be placed
// exactly, and which has no server script, is written whole as the engine
// has it, and error.log says so.
long CDocument::MakePageText(QByteArray &bytes)
{
    if (CPageMetaTags::CheckCharCodeMetaTag(m_Document, m_Faithful.IsPrepared()) == -1)
        return -1;
    if (!m_Faithful.IsPrepared())
        return MakeWholePageText(bytes);
    const QString before = m_Document.snapshot();
    if (CPageMetaTags::AddMetaEditTags(m_Document, SaveDate()) != 1)
        MError::LogError();
    QString reason;
    if (m_Faithful.Splice(m_Document.snapshot(), bytes, reason) != 1) {
        MError::SetError(kMsgWrittenWhole, MResources::LoadResourceString(kMsgWrittenWhole) + QLatin1Char(' ') + reason,
                         Position(QStringLiteral("MakePageText")));
        MError::LogError();
        return MakeWholePageText(bytes);
    }
    m_strLastSaved = CPageEncoding::DecodeAs(bytes, m_Faithful.Charset());
    QString tidied;
    if (G::UseTidy && CSaveText::TidyUpHTML(m_strLastSaved, tidied) == 1) {
        m_strLastSaved = tidied;
        bytes = CPageEncoding::Encode(tidied);
    }
    return before.isEmpty() ? 0 : 1;
}

// The page as the engine writes it: the way of a page whose file could not
// be read or lined up. A step that fails after the charset question costs
// only its own work: the text from before it goes out and the reason goes
// to error.log. The META tags go out with their name first.
long CDocument::MakeWholePageText(QByteArray &bytes)
{
    const QString before = m_Document.serialize();
    if (before.isEmpty())
        return 0;
    QString text = before;
    if (CPageMetaTags::AddMetaEditTags(m_Document, SaveDate()) != 1)
        MError::LogError();
    else
        text = m_Document.serialize();
    if (!G::UseTidy || CSaveText::TidyUpHTML(text, text) != 1)
        CSaveText::ReArrangeMetaNames(text, text);
    m_strLastSaved = text;
    bytes = CPageEncoding::Encode(text);
    return text.isEmpty() ? 0 : 1;
}

// The page's script is copied from the file; only the user's changes are
// written into it. When the script would not come back exactly, nothing
// is sent and the user keeps his page open with his changes in it.
long CDocument::MakeASPText(QByteArray &bytes)
{
    ApplyASPEdits();
    QString reason = m_strRefusal;
    if (!m_Faithful.IsPrepared() || m_Faithful.Splice(m_Document.snapshot(), bytes, reason) != 1) {
        MError::SetError(kScriptNotKept, MResources::LoadResourceString(kMsgScriptNotKept) + QStringLiteral("\r\n\r\n") + reason,
                         SavePosition(m_strSavePath, 9));
        return 0;
    }
    m_strLastSaved = CPageEncoding::DecodeAs(bytes, m_Faithful.Charset());
    return 1;
}

// The blocks the user gave a new source, and the copies he pasted, go to
// the save as the filter holds them. A block whose text is the file's own
// is left to keep its bytes.
void CDocument::ApplyASPEdits()
{
    if (!m_ASPFilter || !m_Faithful.IsPrepared())
        return;
    const QStringList sources = m_Faithful.RegionSources();
    for (long id = 0; id <= m_ASPFilter->GetLastASPPos(); id += 2) {
        QString text;
        const int region = int(id / 2);
        if (m_ASPFilter->GetASP(ASPMarkers::FormatID(id), text) == 1 && (region >= sources.size() || text != sources[region]))
            m_Faithful.SetRegionText(region, text);
    }
}

// What stands on the server is kept as a revision before it is replaced.
// When no revision could be kept (-1: the page isn't on the server yet, or
// the revision folder is write-protected and the user has just been told
// "The page will be saved anyway") the page is sent all the same: the user
// was promised his save, and the session ends after it, so holding the page
// back would throw his edit away. Only a failure (0) stops the save.
long CDocument::SendSaved(const QByteArray &bytes)
{
    CRollback rollback;
    const long kept = rollback.BackupPage(m_strSavePath);
    if (kept == 0)
        return SaveFailed(12);
    m_boolRevisionKept = kept == 1;
    MError::ClearError();
    CFTPS ftp;
    if (OpenTransfer(ftp, SavePosition(m_strSavePath, 10)) != 1)
        return 0;
    if (ftp.SendPage(bytes, m_strSavePath) != 1)
        return SaveFailed(13);
    return 1;
}

long CDocument::SaveFailed(long line, long number, const QString &description)
{
    const QString position = SavePosition(m_strSavePath, line);
    if (number != 0)
        MError::SetError(number, description, position);
    else
        MError::SetErrorIfClear(kSaveFailed, MResources::LoadResourceString(kMsgSaveFailed), position);
    return 0;
}

// The date the save under way set, or, for a save of its own (a page
// edited by hand), the time now.
QString CDocument::SaveDate()
{
    if (G::g_boolSaveDateValid && !G::g_strSaveDate.isEmpty())
        return G::g_strSaveDate;
    return QLocale::c().toString(QDateTime::currentDateTimeUtc(), QStringLiteral("ddd, dd MMM yyyy hh:mm:ss 'GMT'"));
}

SiteRecord CDocument::CurrentSite()
{
    const auto &sites = G::URLDATA;
    const long current = G::lCurrentURL;
    return current >= 0 && current < long(sites.size()) ? sites[current] : SiteRecord();
}

// A client of its own for the site in use, without the transfer window: the
// save shows its own wait.
long CDocument::OpenTransfer(CFTPS &ftp, const QString &position) const
{
    const SiteRecord site = CurrentSite();
    if (ftp.Init(site.baseaddress, site.baseurl, site.userid, site.password) != 1) {
        MError::SetErrorIfClear(kSaveFailed, MResources::LoadResourceString(kMsgSaveFailed), position);
        return 0;
    }
    ftp.SetHideTransferDialog(true);
    return 1;
}

long CDocument::GetPreparedSendPath(const QString &strUnCorrectedPath_p, QString &strCorrectedPath) const
{
    return CSendPath::GetPreparedSendPath(CurrentSite(), strUnCorrectedPath_p, m_Document.pathname(), strCorrectedPath,
                                          m_Document.characterSet());
}

// ------------------------------------------------- the page's source as text

long CDocument::SendDocumentToServer(const QString &strHTMLStream_p)
{
    QString path;
    GetPreparedSendPath(m_strURL, path);
    if (CRollback().BackupPage(path) == 0)
        return 0;
    MError::ClearError();
    CFTPS ftp;
    if (OpenTransfer(ftp, Position(QStringLiteral("SendDocumentToServer"))) != 1)
        return 0;
    return ftp.SendPage(CPageEncoding::Encode(strHTMLStream_p), path) == 1 ? 1 : 0;
}

// The file is read by the same server path a save writes to, so a path
// with escaped characters finds the same file.
long CDocument::GetDocumentFromServer(QString &strHTMLStream_p)
{
    QString path;
    GetPreparedSendPath(m_strURL, path);
    CFTPS ftp;
    if (OpenTransfer(ftp, Position(QStringLiteral("GetDocumentFromServer"))) != 1)
        return 0;
    QByteArray bytes;
    if (ftp.GetASCIIFile(path, bytes) != 1)
        return 0;
    strHTMLStream_p = CPageEncoding::Decode(bytes);
    return 1;
}

// The source the user edits by hand is the page's own file with his
// changes so far, made as Save makes it but sent nowhere, and the page
// stays as he is editing it. OK sends his text once, the way Save sends:
// what stood on the server becomes one revision. Cancel sends nothing: he
// is back in the page with his changes, as unsaved as they were; so is he
// when the send fails.
long CDocument::EditAspDocument()
{
    const bool wasDirty = m_boolDirty;
    m_boolDirty = true; // the file is shown even when nothing in it changed yet
    QByteArray bytes;
    const long made = SaveText(bytes, true);
    if (made != 1) {
        m_boolDirty = wasDirty;
        return made == 0 ? 0 : -1;
    }
    QString caption;
    GetURL(caption);
    frmDocumentInnerHTML form(m_frmVindrell);
    form.Init(m_strLastSaved, m_boolIsASP, caption);
    form.Show();
    // A text the user left as it came keeps the bytes the save made.
    const QString text = form.Text();
    if (!form.Cancelled() && SendSaved(text == m_strLastSaved ? bytes : CPageEncoding::Encode(text)) == 1)
        return EndEditByHand();
    m_boolDirty = wasDirty;
    return form.Cancelled() ? -1 : 0;
}

// The page's file now holds what the user wrote: the page leaves edit
// mode and is shown as the server gives it.
long CDocument::EndEditByHand()
{
    if (m_ASPFilter)
        m_ASPFilter->SetFilterState(CASPFilter::StateFilteredIn);
    m_boolDirty = false;
    m_boolASPEdited = true;
    if (EditOn(false) != 1)
        return 0;
    m_Document.execCommand(QStringLiteral("Refresh"));
    return 1;
}
