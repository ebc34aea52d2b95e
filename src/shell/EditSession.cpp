#include "shell/EditSession.h"

#include "aspfilter/CASPFilter.h"
#include "cms/CCMS.h"
#include "cms/CMSTables.h"
#include "config/MGlobalProjectObjects.h"
#include "config/frmMessageBoxOnce.h"
#include "document/CDocument.h"
#include "objects/frmDocumentInnerHTML.h"
#include "platform/CurlErrorMap.h"
#include "platform/FtpControl.h"
#include "objects/ContextMenuDispatcher.h"
#include "objects/M_HTMLClipboard.h"
#include "objects/PageClipboardPaste.h"
#include "platform/PageEvent.h"
#include "platform/PageScriptCall.h"
#include "platform/WebBrowser.h"
#include "shell/CGUI.h"
#include "shell/frmVindrell.h"
#include "shell/HttpDate.h"
#include "shell/PagePictureDrop.h"
#include "support/ErrorReport.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/MWait.h"
#include "support/StringIds.h"
#include "support/UserQuestions.h"
#include "transfer/CFTPS.h"

#include <QApplication>
#include <QDateTime>
#include <QLocale>
#include <QPushButton>
#include <QTimer>

namespace {
constexpr long kEnteringEditMode = 14000;
constexpr long kNotACMSUser = 14002;
constexpr long kExtensionNotSupported = 14003;
constexpr long kComplexASP = 14004;
constexpr long kEditManually = 14005;
constexpr long kEditingAborted = 14007;
constexpr long kSaveChanges = 14008;
constexpr long kCMSNotSaved = 14009;
constexpr long kTransferError = 14010;
constexpr long kSaving = 23001;
constexpr long kWrittenWhole = 22104; // a page saved as the engine writes it
constexpr long kSaveCancelled = 22150;
constexpr long kStoppingEntry = 22151;
constexpr long kStoppingSave = 22152;
constexpr long kLogonRefused = -530;
// A status of DoTheServerSideDance: the file of a page is not on the server.
constexpr long kPageMissing = -2;
// The settings name of the "don't show again" box of the note about CMS data.
const char *const kNoCMSFileName = "ShowNoCMSFile";

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

// The server answered a read with 550: it has no such file (or folder). A
// refused write has its own number (-550), so it never passes for this.
bool PendingErrorIsMissingFile()
{
    return MError::ErrorNumber() == ControlError::Protocol
           && MError::ErrorDescription().startsWith(QStringLiteral("550"));
}

QString TimeNow()
{
    return QLocale().toString(QTime::currentTime(), QLocale::ShortFormat);
}

// The first line of an error's text: what the status bar has room for.
QString FirstLine(const QString &text)
{
    return text.section(QLatin1Char('\n'), 0, 0).trimmed();
}
} // namespace

EditSession::EditSession(frmVindrell &form)
    : m_form(form)
    , m_IE(form.browser())
{
    QObject::connect(m_IE, &WebBrowser::pageEvent, &form, [this](const PageEvent &event) { OnPageEvent(event); });
    new PagePictureDrop(*this, m_IE);
}

// While a session stands the page's events keep the documents' state: a
// press makes its document the current one, a right click and a paste are
// the program's own, and the rest goes to the document it happened in.
void EditSession::OnPageEvent(const PageEvent &event)
{
    if (event.type == QStringLiteral("copy") || event.type == QStringLiteral("cut"))
        M_HTMLClipboard::NoteEngineCopy(HtmlDocument(m_IE, event.frame).URL());
    if (!m_boolDocumentLoaded)
        return;
    for (size_t n = 0; n < m_Documents.size(); ++n) {
        HtmlDocument html;
        m_Documents[n]->GetDocument(html);
        if (html.framePath() != event.frame)
            continue;
        if (event.type == QStringLiteral("mousedown"))
            m_lDocIndex = long(n);
        else if (event.type == QStringLiteral("contextmenu"))
            OnContextMenu(*m_Documents[n], event);
        else if (event.type == QStringLiteral("paste") && event.cancelled)
            OnPaste(*m_Documents[n]);
        else if (!m_Documents[n]->OnPageEvent(event))
            MError::ShowError();
        return;
    }
}

// A right click builds the page object for what it fell on. Not while a
// save is writing the page out, nor on a page shown but not edited.
void EditSession::OnContextMenu(CDocument &document, const PageEvent &event)
{
    if (m_boolSaving || !document.EditIsOn() || document.boolNoEdit)
        return;
    StepGuard running(*this);
    ContextMenuDispatcher(document).Dispatch(event.x, event.y);
}

// The engine's paste was cancelled in the page: the clipboard's HTML goes
// in with its addresses made right for this page.
void EditSession::OnPaste(CDocument &document)
{
    if (m_boolSaving || !document.EditIsOn() || document.boolNoEdit)
        return;
    StepGuard running(*this);
    if (PageClipboardPaste::Paste(document) == 0)
        MError::ShowError();
}

EditSession::~EditSession() = default;

CDocument *EditSession::CurrentDocument() const
{
    if (!m_boolDocumentLoaded || m_lDocIndex < 0 || size_t(m_lDocIndex) >= m_Documents.size())
        return nullptr;
    return m_Documents[size_t(m_lDocIndex)].get();
}

EditSession::StepGuard::StepGuard(EditSession &session)
    : m_session(session)
{
    ++m_session.m_nRunning;
}

// The close comes again from the event loop, once every handler and its
// nested loops are gone from the stack.
EditSession::StepGuard::~StepGuard()
{
    if (--m_session.m_nRunning > 0 || !m_session.m_boolCloseWhenDone)
        return;
    m_session.m_boolCloseWhenDone = false;
    frmVindrell *form = &m_session.m_form;
    QTimer::singleShot(0, form, [form] { form->close(); });
}

// Nothing of the page can be read or saved without the log-on, so Edit
// stops at a failed one, with the failure in the pending error. A refused
// password is said with the site's name: the control never sends it again
// in this run, so nothing works before the user has changed it.
long EditSession::LogOnForEdit()
{
    if (!m_FTP)
        m_FTP = std::make_unique<CFTPS>();
    if (m_FTP->Connected() || m_FTP->Logon() == 1)
        return 1;
    if (MError::ErrorNumber() != kLogonRefused)
        return 0;
    const QString said = MError::ErrorDescription().section(QStringLiteral("\r\n\r\n"), 1);
    QString text = L(StringIds::LogonRefusedAtEdit).arg(ErrorReport::SiteAddress());
    if (!said.isEmpty())
        text += QStringLiteral("\r\n\r\n") + said;
    MError::SetError(kLogonRefused, text, MError::ErrorSource());
    return 0;
}

// A failed logon is not reported here: the step that needs the server
// reports it in its own words.
void EditSession::HoldConnection()
{
    if (!m_FTP)
        m_FTP = std::make_unique<CFTPS>();
    const bool wasClear = MError::ErrorNumber() == 0;
    if (!m_FTP->Connected() && m_FTP->Logon() != 1 && wasClear)
        MError::ClearError();
}

// Between sessions no connection is kept open. Never called while one of
// the client's own operations runs: a release during the entry leaves the
// client to the entry.
void EditSession::DropConnection()
{
    m_FTP.reset();
}

void EditSession::Hourglass(bool on)
{
    if (on && !QApplication::overrideCursor())
        QApplication::setOverrideCursor(Qt::WaitCursor);
    while (!on && QApplication::overrideCursor())
        QApplication::restoreOverrideCursor();
}

// The code changes the button by itself: the click this causes falls
// through and only resets the depth. A button already in that state fires
// nothing, so the depth is raised only for a real change.
void EditSession::SetEditValue(bool pressed)
{
    if (m_form.EditButton()->isChecked() == pressed)
        return;
    ++nClickDepth;
    m_form.EditButton()->setChecked(pressed);
}

void EditSession::cmdEdit_Click()
{
    if (nClickDepth >= 2) {
        nClickDepth = 0;
        return;
    }
    ++nClickDepth;
    if (m_form.EditButton()->isChecked())
        Press();
    else
        Release();
}

// ---------------------------------------------------------------- entry

void EditSession::Press()
{
    if (m_boolEntering) {
        // A cancelled entry is still putting the server back.
        SetEditValue(false);
        nClickDepth = 0;
        return;
    }
    StepGuard running(*this);
    MWait::g_boolWaitCancelled = false;
    if (!m_form.SiteOfPageOrOffer()) {
        SetEditValue(false);
        nClickDepth = 0;
        return;
    }
    m_boolASPTagged = false;
    m_lDocIndex = 0;
    if (m_boolSkipEditClick) {
        // The user kept on editing after the save question: this press is
        // the button going down again, not a new session.
        m_boolSkipEditClick = false;
        nClickDepth = 0;
        return;
    }
    Hourglass(true);
    boolEditAborted = false;
    m_boolSavedInSession = false;
    MWait::Wait_Start(
        L(kEnteringEditMode), &m_form,
        [this] {
            CancelEntry();
            m_form.EditButton()->setChecked(false);
        },
        QString());
    m_form.cmdEditEnable(false);
    int step = 7;
    m_boolEntering = true;
    const long entered = Enter(step);
    m_boolEntering = false;
    if (entered == 0)
        Trap(QStringLiteral("cmdEdit_Click"), step);
    else if (entered == 1 || boolEditAborted)
        CommonTail(); // a cancelled entry gives the window back only now
    if (entered == 1)
        m_form.RevisionsFollowPage();
}

// The call the entry waits on fails at once, and the entry stops at its
// next check, which puts the marked pages back. A put-back under way is
// let finish: the entry stops after it.
void EditSession::CancelEntry()
{
    if (boolEditAborted)
        return;
    boolEditAborted = true;
    if (!m_boolPuttingBack)
        FtpControl::AbortRunning();
}

// 1 the session stands, -1 the entry ended on its own terms, 0 error.
long EditSession::Enter(int &step)
{
    if (!IsRealDocument()) {
        Hourglass(false);
        MWait::Wait_End();
        m_form.cmdEditEnable(true);
        SetEditValue(false);
        ReleaseDocuments();
        nClickDepth = 0;
        return -1;
    }
    step = 8;
    // Inside the entry: a Cancel during the logon leaves the client alone.
    const long logon = LogOnForEdit();
    if (StopIfAborted())
        return -1;
    if (logon != 1)
        return 0;
    LoadCMSData();
    if (m_form.GUI())
        m_form.GUI()->ApplyCMSLimits();
    if (StopIfAborted())
        return -1;
    step = 10;
    const long dance = DoTheServerSideDance();
    if (dance == kPageMissing) {
        Refuse(L(StringIds::PageNotOnServer).arg(m_strMissingFile, ErrorReport::SiteAddress()));
        return -1;
    }
    if (dance == 0)
        return 0;
    m_boolASPTagged = dance == 1;
    if (StopIfAborted())
        return -1;
    step = 11;
    if (!m_CustomDoc.IsBound())
        m_CustomDoc.Init(m_IE);
    step = 12;
    m_IE->waitUntilComplete();
    if (StopIfAborted())
        return -1;
    return EnterDocuments(step);
}

long EditSession::EnterDocuments(int &step)
{
    step = 13;
    const long loaded = DocLoad(true);
    if (loaded == 0)
        return 0;
    if (loaded == -1) {
        Refuse(L(kExtensionNotSupported));
        return -1;
    }
    m_boolDocumentLoaded = true;
    m_IE->setCancelPaste(true);
    if (StopIfAborted())
        return -1;
    step = 16;
    long nComplexDoc = -1;
    if (TieFilters(nComplexDoc) == 0)
        return 0;
    if (nComplexDoc >= 0) {
        ComplexASP(nComplexDoc);
        return -1;
    }
    step = 18;
    if (RemoveASPTags() == 0)
        return 0;
    if (StopIfAborted())
        return -1;
    LockBrowser(true);
    m_form.SaveButton()->setEnabled(true);
    return 1;
}

// A page engine that shows an error page or nothing has no document of a
// site to edit.
bool EditSession::IsRealDocument() const
{
    const QUrl url(m_IE->LocationURL());
    const QString scheme = url.scheme().toLower();
    return !m_IE->Document().isNull() && (scheme == QStringLiteral("http") || scheme == QStringLiteral("https"));
}

// The session goes on whatever the CMS data gave; it only decides what
// this user may do.
void EditSession::LoadCMSData()
{
    ResetCMSTables();
    const long result = CCMS().GetCMSData();
    if (boolEditAborted) {
        // What a Cancel cut short is no news to the user.
        if (MError::ErrorNumber() != 0)
            MError::LogError();
        return;
    }
    const bool missing = result == -1 || result == -2;
    m_boolCMSLoaded = result == 1;
    if (missing)
        TellNoCMSFile();
    else if (result == 0)
        MError::LogError();
    const auto &users = g_aCMSUsers;
    for (size_t i = 0; i + 1 < users.size(); ++i) {
        if (users[i].strName == MGlobalProjectObjects::CMSUserName
            && users[i].strPassword == MGlobalProjectObjects::CMSUserPassword) {
            g_sngCMSUser = float(i);
            g_boolCMSAdmin = users[i].limits.lIsAdmin == 1;
            return;
        }
    }
    if (!missing)
        UserQuestions::MsgBox(L(kNotACMSUser), UserQuestions::vbInformation);
}

// A site without CMS data is the usual first run, not a fault: it is said
// once per site in the window's life, and never again once the user ticked
// "don't show again".
void EditSession::TellNoCMSFile()
{
    const QString site = ErrorReport::SiteAddress();
    if (m_sitesToldNoCMS.contains(site))
        return;
    m_sitesToldNoCMS.insert(site);
    frmMessageBoxOnce::Show(L(StringIds::NoCMSFileOnce).arg(site), L(StringIds::NoCMSFileTitle),
                            QString::fromLatin1(kNoCMSFileName), &m_form);
}

// The Cancel of the wait dialog has already given the window back. What is
// left to the entry: the live site must not keep a marked page, so the
// originals go back, and the documents leave design mode.
bool EditSession::StopIfAborted()
{
    if (!boolEditAborted)
        return false;
    if (!m_ASP.Filters().empty() && RemoveASPTags() != 1)
        MError::LogError();
    EndQuietly();
    nClickDepth = 0;
    return true;
}

long EditSession::TieFilters(long &nComplexDoc)
{
    for (const auto &filter : m_ASP.Filters()) {
        QString strFilterURL;
        filter->GetURL(strFilterURL);
        for (size_t n = 0; n < m_Documents.size(); ++n) {
            QString strURL;
            m_Documents[n]->GetURL(strURL);
            if (ASPTagging::FullServerPath(strURL) != ASPTagging::FullServerPath(strFilterURL))
                continue;
            const long editable = m_Documents[n]->IsEditable(*filter);
            if (editable != 1) {
                nComplexDoc = long(n);
                return 1;
            }
            if (m_Documents[n]->SetASPFilter(filter.get()) != 1)
                return 0;
            m_HeldFilters.push_back(filter);
            break;
        }
    }
    return 1;
}

// The page's script can't be mapped back from its output. Every marked
// page goes back to the server before the user is asked anything.
void EditSession::ComplexASP(long nDoc)
{
    if (RemoveASPTags() != 1)
        MError::ShowError();
    MWait::Wait_End();
    const QString reason = nDoc >= 0 && nDoc < long(m_Documents.size()) ? m_Documents[size_t(nDoc)]->RefusalReason() : QString();
    const QString why = reason.isEmpty() ? QString() : QStringLiteral("\r\n\r\n") + reason;
    const long answer = UserQuestions::MsgBox(L(kComplexASP) + why + QStringLiteral("\r\n\r\n") + L(kEditManually),
                                              UserQuestions::vbYesNo | UserQuestions::vbQuestion
                                                  | UserQuestions::vbDefaultButton2);
    Hourglass(false);
    if (answer == UserQuestions::vbYes && EditAspDocument(nDoc) == 0)
        MError::ShowError();
    EndQuietly();
    m_form.cmdEditEnable(true);
    nClickDepth = 0;
}

// The page can't be edited, for a reason the user can act on: every marked
// page goes back first, then the reason is said and the window browses on.
void EditSession::Refuse(const QString &text)
{
    if (!m_ASP.Filters().empty() && RemoveASPTags() != 1)
        MError::LogError();
    MWait::Wait_End();
    UserQuestions::MsgBox(text, UserQuestions::vbInformation);
    Hourglass(false);
    EndQuietly();
    m_form.cmdEditEnable(true);
    nClickDepth = 0;
}

// Ends an entry that did not become a session: the documents leave design
// mode, the button comes up without running the release, and a page that
// was reloaded with markers is shown fresh from the server.
void EditSession::EndQuietly()
{
    for (const auto &doc : m_Documents)
        doc->EditOn(false);
    ReleaseDocuments();
    m_boolSaving = false;
    m_boolDocumentLoaded = false;
    m_IE->setCancelPaste(false);
    SetEditValue(false);
    if (m_boolASPTagged) {
        // The reload of the marked page may still be under way; the fresh
        // load must not be lost to it.
        m_IE->waitUntilComplete();
        m_IE->Navigate2(m_IE->LocationURL(), WebBrowser::NavNoReadFromCache);
    }
    m_boolASPTagged = false;
    DropConnection();
}

// The originals go back whatever the user does meanwhile: the wait's Cancel
// is withdrawn, and a close only stops the entry after the put-back.
long EditSession::RemoveASPTags()
{
    const bool couldCancel = MWait::CancelEnabled();
    MWait::EnableCancel(false);
    m_boolPuttingBack = true;
    const long status = m_ASP.RemoveASPTags();
    m_boolPuttingBack = false;
    m_ASP.ReleaseFilters();
    if (couldCancel && !boolEditAborted)
        MWait::EnableCancel(true);
    return status;
}

// ---------------------------------------------------------------- documents

long EditSession::DoTheServerSideDance()
{
    const long loaded = DocLoad(false);
    if (loaded != 1)
        return loaded;
    m_ASP.ResetOriginals();
    bool someASP = false;
    for (const auto &doc : m_Documents) {
        if (boolEditAborted)
            break;
        QString strURL;
        doc->GetURL(strURL);
        const QString ext = strURL.right(3).toLower();
        const bool isASP = ext == QStringLiteral("asp");
        long read = 1;
        if (isASP) {
            read = SetASPTags(strURL);
            someASP = true;
        } else {
            if (ext == QStringLiteral("php"))
                doc->boolNoEdit = true;
            QByteArray bytes;
            if (!doc->boolNoEdit)
                read = Source(*doc, bytes);
            m_ASP.AddSource(bytes);
        }
        if (read != 1 && PendingErrorIsMissingFile()) {
            MError::ClearError();
            m_strMissingFile = ASPTagging::FullServerPath(strURL);
            return kPageMissing;
        }
        if (read != 1 && isASP)
            return 0;
    }
    if (someASP && !boolEditAborted)
        ReloadMarkedPages();
    ReleaseDocuments();
    return someASP ? 1 : -1;
}

// The file of a page without script, as the server holds it. 0 with the
// error pending when it can't be read: a file the server has not got
// refuses the edit, any other failure is logged and the page is then saved
// as the engine writes it.
long EditSession::Source(CDocument &doc, QByteArray &bytes)
{
    if (doc.FetchOriginal(bytes) == 1)
        return 1;
    bytes.clear();
    if (!PendingErrorIsMissingFile())
        MError::LogError();
    return 0;
}

// The whole page is reloaded, which reloads every frame with it, each
// request past the cache so that the marked pages come from the server.
void EditSession::ReloadMarkedPages()
{
    DeleteCachedDocs();
    m_IE->Refresh();
    PageScriptCall::pumpUntil([this] { return m_IE->ReadyState() != WebBrowser::ReadyStateComplete; }, 2000);
}

long EditSession::DocLoad(bool boolEdit)
{
    m_boolKeepSources = boolEdit;
    m_HTMLDocument = m_HTMLFrameDocument = m_IE->Document();
    CDocument::g_astrDocURLs.clear();
    m_Documents.assign(1, std::make_shared<CDocument>());
    // The top document completes only once all of its frames have loaded,
    // so its frames can be read as soon as it is complete: no wait beyond.
    m_IE->waitUntilComplete();
    const int nFrames = m_HTMLDocument.frameCount();
    m_lDocIndex = 0;
    const auto top = m_Documents[0];
    const long bound = BindDocument(0, boolEdit && nFrames == 0);
    if (bound != 1)
        return bound;
    if (boolEdit && nFrames > 0 && !top->boolNoEdit && top->EditOn(true) != 1)
        return 0;
    if (nFrames == 0)
        return 1;
    const long sub = SubDocLoad(m_HTMLDocument, nFrames, boolEdit);
    if (sub == -1) {
        for (const auto &doc : m_Documents)
            doc->EditOn(false);
    }
    return sub;
}

// The page is lined up with its file before edit mode touches it. A page
// without script that can't be lined up is saved as the engine writes it,
// and error.log says why; a script page is refused when edit mode begins.
void EditSession::KeepSource(CDocument &doc, long index)
{
    const QList<QByteArray> &sources = m_ASP.OriginalSources();
    const QByteArray bytes = index < sources.size() ? sources[index] : QByteArray();
    if (doc.KeepSource(bytes) == 1 || doc.boolNoEdit || m_boolASPTagged)
        return;
    MError::SetError(kWrittenWhole, doc.RefusalReason(), QStringLiteral("frmVindrell.KeepSource"));
    MError::LogError();
}

// Inits document index; for a page without frames (boolEdit) switches it
// on, or shows it hatched when it is of a type that is only shown.
long EditSession::BindDocument(long index, bool boolEdit)
{
    const auto doc = m_Documents[size_t(index)];
    const long init = doc->Init(&m_form);
    if (init != 1)
        return init;
    if (m_boolKeepSources)
        KeepSource(*doc, index);
    if (!boolEdit)
        return 1;
    if (doc->boolNoEdit)
        return doc->setDocumentWindowHatched();
    return doc->EditOn(true);
}

long EditSession::SubDocLoad(const HtmlDocument &parent, int nFrames, bool boolEdit)
{
    for (int i = 0; i < nFrames; ++i) {
        m_IE->waitUntilComplete();
        if (parent.frameCount() < 1)
            break;
        const HtmlDocument frame = parent.frame(i);
        const long real = TryIfDocIsReal(frame);
        if (real == -1)
            break;
        if (real == 0)
            return 0;
        const int nSubFrames = frame.frameCount();
        m_Documents.push_back(std::make_shared<CDocument>());
        m_HTMLFrameDocument = frame;
        m_lDocIndex = long(m_Documents.size()) - 1;
        const long bound = BindDocument(m_lDocIndex, boolEdit && nSubFrames == 0);
        if (bound != 1)
            return bound;
        if (nSubFrames > 0) {
            const long sub = SubDocLoad(frame, nSubFrames, boolEdit);
            if (sub != 1)
                return sub;
        }
    }
    return 1;
}

// A frame of another origin refuses to be read: it is logged and the
// frames after it are left alone.
long EditSession::TryIfDocIsReal(const HtmlDocument &frame)
{
    const bool wasClear = MError::ErrorNumber() == 0;
    frame.URL();
    if (MError::ErrorNumber() == 0)
        return 1;
    if (wasClear && MError::ErrorDescription() == QStringLiteral("Permission denied")) {
        MError::LogError();
        return -1;
    }
    return 0;
}

void EditSession::ReleaseDocuments()
{
    while (!m_Documents.empty())
        m_Documents.pop_back();
    m_HeldFilters.clear();
    m_HTMLDocument = m_HTMLFrameDocument = HtmlDocument();
}

long EditSession::DeleteCachedDocs()
{
    if (m_Documents.size() <= 1) {
        m_IE->removeFromCache(QUrl(m_IE->LocationURL()));
        return 1;
    }
    for (const auto &doc : m_Documents) {
        HtmlDocument html;
        doc->GetDocument(html);
        const QString url = html.URL();
        if (!url.isEmpty())
            m_IE->removeFromCache(QUrl(url));
    }
    MError::ClearError(); // a frame of another origin has no address to give
    return 1;
}

// The page's source as the server holds it, edited by hand: the text goes
// back as the user left it, unless he cancelled.
long EditSession::EditAspDocument(long nDoc)
{
    if (nDoc < 0 || nDoc >= long(m_Documents.size()))
        return 1;
    const auto doc = m_Documents[size_t(nDoc)];
    frmDocumentInnerHTML form(&m_form);
    QString source;
    if (doc->GetDocumentFromServer(source) != 1)
        return 0;
    QString strURL;
    doc->GetURL(strURL);
    form.Init(source, true, strURL);
    form.Show();
    if (!form.Cancelled() && doc->SendDocumentToServer(form.Text()) != 1)
        return 0;
    return 1;
}

// ---------------------------------------------------------------- release

// The entry below still holds the documents it is working on: it takes them
// down at its next check of boolEditAborted and puts the marked pages back;
// the wait says so meanwhile, and Edit comes back when the entry is down.
void EditSession::ReleaseDuringEntry()
{
    CancelEntry();
    LockBrowser(false);
    m_form.SaveButton()->setEnabled(false);
    MWait::Wait_Stopping(L(kStoppingEntry), &m_form);
    nClickDepth = 0;
}

void EditSession::Release()
{
    StepGuard running(*this);
    Hourglass(true);
    m_form.cmdEditEnable(false);
    if (MWait::g_boolWaitCancelled) {
        UserQuestions::MsgBox(L(kEditingAborted), UserQuestions::vbInformation);
        boolEditAborted = true;
    }
    if (m_boolEntering)
        return ReleaseDuringEntry();
    bool boolKeepEditing = false;
    const bool dirty = AskToSave(boolKeepEditing) == 1;
    if (boolKeepEditing)
        return;
    LeaveDocuments(dirty || m_boolSavedInSession);
    DropConnection();
    LockBrowser(false);
    m_form.SaveButton()->setEnabled(false);
    MWait::Wait_End();
    CommonTail();
}

// 1 when some document is dirty. A Cancel, or a save that failed, keeps
// the session: the button goes down again and the next click it causes is
// skipped.
long EditSession::AskToSave(bool &boolKeepEditing)
{
    bool aspEdited = false;
    const bool dirty = UnsavedChanges(aspEdited);
    if (!dirty || m_boolSaving || aspEdited || m_boolReleaseQuietly)
        return dirty ? 1 : 0;
    const long answer = UserQuestions::MsgBox(L(kSaveChanges), UserQuestions::vbYesNoCancel | UserQuestions::vbQuestion);
    if (answer == UserQuestions::vbYes) {
        cmdSave_MouseUp();
        boolKeepEditing = !m_boolSavedInSession;
    }
    if (answer == UserQuestions::vbCancel)
        boolKeepEditing = true;
    if (boolKeepEditing) {
        m_boolSkipEditClick = true;
        nClickDepth = std::max(0, nClickDepth - 1);
        m_form.EditButton()->setChecked(true);
        m_form.cmdEditEnable(true);
        Hourglass(false);
    }
    return 1;
}

// Whether some document is dirty; aspEdited when the source of one was
// edited by hand (it went to the server then).
bool EditSession::UnsavedChanges(bool &aspEdited) const
{
    bool dirty = false;
    aspEdited = false;
    for (const auto &doc : m_Documents) {
        bool flag = false;
        if (!dirty && doc->GetDirty(flag) == 1)
            dirty = flag;
        if (!aspEdited && doc->GetASPEdited(flag) == 1)
            aspEdited = flag;
    }
    return dirty;
}

bool EditSession::QueryClose()
{
    if (m_nRunning > 0) {
        m_boolCloseWhenDone = true;
        if (m_boolEntering && !boolEditAborted) {
            CancelEntry();
            MWait::Wait_Stopping(L(kStoppingEntry), &m_form);
        } else if (m_boolSaving) {
            CancelSave();
        }
        return false;
    }
    if (!m_boolDocumentLoaded || !m_form.EditButton()->isChecked())
        return true;
    StepGuard running(*this);
    bool aspEdited = false;
    if (UnsavedChanges(aspEdited) && !aspEdited) {
        const long answer =
            UserQuestions::MsgBox(L(kSaveChanges), UserQuestions::vbYesNoCancel | UserQuestions::vbQuestion);
        if (answer == UserQuestions::vbCancel) {
            m_boolCloseWhenDone = false; // the user's last word keeps the window
            return false;
        }
        if (answer == UserQuestions::vbYes) {
            // A save that succeeds ends the session itself.
            cmdSave_MouseUp();
            if (m_boolDocumentLoaded)
                return false;
            m_boolCloseWhenDone = false;
            return true;
        }
    }
    // The release ends the session as Edit's does, without its question.
    m_boolReleaseQuietly = true;
    m_form.EditButton()->setChecked(false);
    m_boolReleaseQuietly = false;
    if (m_boolDocumentLoaded)
        return false;
    m_boolCloseWhenDone = false;
    return true;
}

// Every error on the way out is passed over: the session must end.
void EditSession::LeaveDocuments(bool boolReload)
{
    for (const auto &doc : m_Documents)
        doc->EditOn(false);
    if (m_Documents.size() >= 2) {
        if (boolReload)
            DeleteCachedDocs();
        for (size_t n = m_Documents.size() - 1; n >= 1; --n) {
            HtmlDocument html;
            m_Documents[n]->GetDocument(html);
            html.execCommand(QStringLiteral("Refresh"));
        }
    }
    const size_t count = m_Documents.size();
    ReleaseDocuments();
    m_boolDocumentLoaded = false;
    m_IE->setCancelPaste(false);
    m_form.SetTopComplete(false);
    if (count == 1 && boolReload)
        m_IE->Navigate2(m_IE->LocationURL(), WebBrowser::NavNoReadFromCache);
    else if (count == 1)
        m_IE->Refresh();
    MError::ClearError();
}

void EditSession::LockBrowser(bool locked)
{
    m_form.LockAddressRow(locked);
}

void EditSession::CommonTail()
{
    Hourglass(false);
    MWait::Wait_End();
    m_form.cmdEditEnable(true);
    m_boolSaving = false;
    nClickDepth = 0;
}

// The trap of a press: the session ends where it stands. A marked page
// still on the server goes back first. An error that a Cancel caused is
// not shown: the user has been told that the editing was aborted, or he
// is closing the window.
void EditSession::Trap(const QString &procedure, int step)
{
    MError::SetErrorIfClear(MError::ErrorNumber(), MError::ErrorDescription(),
                            QStringLiteral("frmVindrell.") + procedure + QStringLiteral(" {line: %1 URL: %2}")
                                .arg(step)
                                .arg(m_IE->LocationURL()));
    const long number = MError::ErrorNumber();
    const QString description = MError::ErrorDescription();
    const QString source = MError::ErrorSource();
    MError::ClearError();
    if (!m_ASP.Filters().empty() && RemoveASPTags() != 1)
        MError::LogError();
    MWait::Wait_End();
    Hourglass(false);
    EndQuietly();
    LockBrowser(false);
    m_form.cmdEditEnable(true);
    nClickDepth = 0;
    if (MWait::g_boolWaitCancelled || boolEditAborted)
        return;
    MError::SetError(number, description, source);
    MError::ShowError();
}

// ---------------------------------------------------------------- save

void EditSession::cmdSave_MouseUp()
{
    StepGuard running(*this);
    m_boolSaveCancelled = false;
    MWait::Wait_Start(L(kSaving), &m_form, [this] { CancelSave(); }, QString());
    Hourglass(true);
    m_boolSaving = true;
    m_form.cmdEditEnable(false);
    m_form.SaveButton()->setChecked(true);
    m_form.SaveButton()->setEnabled(false);
    HoldConnection();
    DeleteCachedDocs();
    MGlobalProjectObjects::g_strSaveDate = HttpDate::Format(QDateTime::currentDateTimeUtc());
    MGlobalProjectObjects::g_boolSaveDateValid = true;
    int step = 4;
    const long saved = SaveDocuments(-1, step);
    // The save's Cancel is told below; the release must not take it for the
    // Cancel of an entry.
    MWait::g_boolWaitCancelled = false;
    if (saved == 0) {
        // The session stays: the user keeps his edit and may save again.
        if (!m_boolSaveCancelled)
            MError::SetErrorIfClear(MError::ErrorNumber(), MError::ErrorDescription(),
                                    QStringLiteral("frmVindrell.cmdSave_MouseUp {line: %1 URL: %2}")
                                        .arg(step)
                                        .arg(m_IE->LocationURL()));
        MWait::Wait_End();
        Hourglass(false);
        m_boolSaving = false;
        m_form.SaveButton()->setChecked(false);
        m_form.SaveButton()->setEnabled(true);
        m_form.cmdEditEnable(true);
        TellNotSaved();
        if (m_boolSaveCancelled)
            ReportCancelledSave();
        else
            MError::ShowError();
        return;
    }
    TellSaved();
    m_boolSavedInSession = true;
    // The release asks nothing while m_boolSaving holds.
    m_form.EditButton()->setChecked(false);
    m_form.SaveButton()->setChecked(false);
    m_form.cmdEditEnable(true);
    Hourglass(false);
    MWait::Wait_End();
    m_boolSaving = false;
    m_form.RevisionsFollowPage();
}

// The status bar says what the save wrote and when; a save that found
// nothing changed says nothing.
void EditSession::TellSaved()
{
    if (m_astrSavedPages.isEmpty())
        return;
    const long text = m_boolRevisionsKept ? StringIds::SavedStatus : StringIds::SavedWithoutRevisionStatus;
    m_form.ShowStatus(L(text).arg(m_astrSavedPages.join(QStringLiteral(", ")), TimeNow()));
}

// Said before the error dialog clears the pending error, whose first line
// is what failed. A cancelled save left every page whole, old or new: the
// dialog after it says which.
void EditSession::TellNotSaved()
{
    if (m_boolSaveCancelled)
        m_form.ShowStatus(L(StringIds::SaveCancelledStatus).arg(TimeNow()));
    else
        m_form.ShowStatus(L(StringIds::NotSavedStatus).arg(TimeNow(), FirstLine(MError::ErrorDescription())));
}

// The transfer under way fails at once; the transfer layer leaves the page
// whole, and the save goes no further than that page.
void EditSession::CancelSave()
{
    if (m_boolSaveCancelled)
        return;
    m_boolSaveCancelled = true;
    FtpControl::AbortRunning();
    MWait::Wait_Stopping(L(kStoppingSave), &m_form);
}

// The transfer the Cancel cut short has left a pending error that says
// which page the server holds now; a Cancel that came between two
// transfers has only this to say.
void EditSession::ReportCancelledSave()
{
    if (MError::ErrorNumber() != 0)
        MError::ShowError();
    else
        UserQuestions::MsgBox(L(kSaveCancelled), UserQuestions::vbInformation);
}

// Saves every document that is edited, first to last, but lSkipDoc; the
// first failure, or a Cancel, stops the rest. Then the CMS data, when the
// session loaded some or a page was locked or unlocked in it: a site
// without CMS data gets no file it never asked for.
long EditSession::SaveDocuments(long lSkipDoc, int &step)
{
    const auto documents = m_Documents;
    m_astrSavedPages.clear();
    m_boolRevisionsKept = true;
    for (size_t n = 0; n < documents.size(); ++n) {
        if (long(n) == lSkipDoc || documents[n]->boolNoEdit)
            continue;
        const long saved = documents[n]->Save();
        if (saved == 0 || m_boolSaveCancelled)
            return 0;
        if (saved != 1)
            continue;
        QString strURL;
        documents[n]->GetURL(strURL);
        m_astrSavedPages.append(strURL);
        m_boolRevisionsKept = m_boolRevisionsKept && documents[n]->RevisionKept();
    }
    step = 5;
    if (!m_boolCMSLoaded && !g_boolCMSTablesChanged)
        return 1;
    const long cms = CCMS().SetCMSData();
    if (cms == -1)
        UserQuestions::MsgBox(L(kCMSNotSaved), UserQuestions::vbExclamation, L(kTransferError));
    else if (cms == 0)
        MError::ShowError();
    return 1;
}

long EditSession::EditASPStop(long lEditedDoc_p)
{
    StepGuard running(*this);
    m_boolSaveCancelled = false;
    DeleteCachedDocs();
    int step = 1;
    m_boolSaving = true;
    if (SaveDocuments(lEditedDoc_p, step) == 1) {
        TellSaved();
    } else {
        TellNotSaved();
        if (m_boolSaveCancelled)
            ReportCancelledSave();
        else
            MError::ShowError();
    }
    m_form.EditButton()->setChecked(false);
    m_form.SaveButton()->setChecked(false);
    m_form.cmdEditEnable(true);
    Hourglass(false);
    m_form.RevisionsFollowPage();
    return 1;
}

long EditSession::EditStop()
{
    DeleteCachedDocs();
    m_boolSaving = true;
    m_form.EditButton()->setChecked(false);
    m_form.SaveButton()->setChecked(false);
    m_form.cmdEditEnable(true);
    Hourglass(false);
    m_CustomDoc.Init(nullptr);
    m_IE->Navigate2(m_IE->LocationURL(), WebBrowser::NavNoReadFromCache);
    CDocument::g_astrDocURLs.clear();
    return 1;
}
