#include "shell/frmVindrell.h"

#include "config/CPublicSettings.h"
#include "config/CSettingsFileDropTarget.h"
#include "config/frmSettingsEx.h"
#include "config/frmSettingsHelp.h"
#include "config/CSiteChoice.h"
#include "config/frmMessageBoxYesNoOnce.h"
#include "platform/CReg.h"
#include "platform/HttpControl.h"
#include "document/CDocument.h"
#include "platform/PageScriptCall.h"
#include "shell/BandEvents.h"
#include "shell/CGUI.h"
#include "shell/CSiteOfAddress.h"
#include "shell/EditKeyGuard.h"
#include "shell/FrameList.h"
#include "shell/RevisionPane.h"
#include "fileviews/SitePane.h"
#include "objects/ctlVisibility.h"
#include "shell/EditSession.h"
#include "shell/CVersionAnnouncement.h"
#include "shell/VersionCheck.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/StringIds.h"
#include "support/UserQuestions.h"
#include "support/MWait.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QShowEvent>
#include <QSplitter>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>

bool frmVindrell::g_boolVersionChecked = false;
QString frmVindrell::g_strHelpBase;

namespace {
constexpr long kMsgNoNewWindow = 14200;
constexpr long kCaptionPrefix = 14201;
// How long a version question waits before it looks again whether the
// window is free for it.
constexpr int kVersionRetryMs = 1000;
} // namespace

frmVindrell::frmVindrell(QWidget *parent)
    : QMainWindow(parent)
{
    buildControls();
    m_GUI = new CGUI(this);
    m_GUI->Init(this);
    m_session = std::make_unique<EditSession>(*this);
    m_Band = new BandEvents(*m_GUI, *m_session, m_IE, this);
    m_VersionCheck = new VersionCheck(this);
    connectControls();
    hookUpPaneAndKeys();
    addShortcuts();
    Form_Load();
}

frmVindrell::~frmVindrell()
{
    MWait::Wait_End();
}

QPushButton *frmVindrell::addButton(QWidget *parent, const char *name, bool checkable)
{
    auto *button = new QPushButton(parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setCheckable(checkable);
    return button;
}

// The band and the browser side by side, divided by the splitter picSplit.
void frmVindrell::buildControls()
{
    auto *split = new QSplitter(Qt::Horizontal, this);
    split->setObjectName(QStringLiteral("picSplit"));
    split->addWidget(buildBand());
    split->addWidget(buildBrowserColumn());
    setCentralWidget(split);
}

// The band's column from the top. The panes' frames go under their buttons
// (CGUI); the filler takes the room while no pane is open.
QWidget *frmVindrell::buildBand()
{
    auto *band = new QWidget(this);
    band->setObjectName(QStringLiteral("picBand"));
    auto *column = new QVBoxLayout(band);
    column->setContentsMargins(8, 8, 4, 8);
    cmdEdit = addButton(band, "cmdEdit", true);
    column->addWidget(cmdEdit);
    auto *undoRow = new QHBoxLayout;
    undoRow->addWidget(addButton(band, "cmdUndo"));
    undoRow->addWidget(addButton(band, "cmdRedo"));
    column->addLayout(undoRow);
    column->addWidget(addButton(band, "cmdShowAdminSettings"));
    for (const char *pane : {"cmdPane1", "cmdPane2", "cmdPane3", "cmdPane4"})
        column->addWidget(addButton(band, pane, true));
    auto *filler = new QWidget(band);
    filler->setObjectName(QStringLiteral("picFiller"));
    column->addWidget(filler, 1);
    auto *smallRow = new QHBoxLayout;
    for (const char *small : {"cmdHelp", "cmdComment", "cmdSettings"})
        smallRow->addWidget(addButton(band, small));
    column->addLayout(smallRow);
    cmdSave = addButton(band, "cmdSave", true);
    column->addWidget(cmdSave);
    for (QPushButton *button : band->findChildren<QPushButton *>())
        button->setEnabled(false);
    return band;
}

QWidget *frmVindrell::buildBrowserColumn()
{
    auto *side = new QWidget(this);
    auto *column = new QVBoxLayout(side);
    column->setContentsMargins(4, 8, 8, 8);
    m_IE = new WebBrowser(side);
    m_IE->setObjectName(QStringLiteral("m_IE"));
    column->addWidget(m_IE, 1);
    auto *addressRow = new QHBoxLayout;
    addressRow->addWidget(addButton(side, "cmdBack"));
    addressRow->addWidget(addButton(side, "cmdForward"));
    cmbAddress = new QComboBox(side);
    cmbAddress->setObjectName(QStringLiteral("cmbAddress"));
    cmbAddress->setEditable(true);
    // The list grows only through cmdGo_Click, which keeps it free of repeats.
    cmbAddress->setInsertPolicy(QComboBox::NoInsert);
    addressRow->addWidget(cmbAddress, 1);
    addressRow->addWidget(addButton(side, "cmdGo"));
    column->addLayout(addressRow);
    return side;
}

void frmVindrell::connectControls()
{
    auto *go = findChild<QPushButton *>(QStringLiteral("cmdGo"));
    connect(go, &QPushButton::clicked, this, &frmVindrell::cmdGo_Click);
    connect(cmbAddress->lineEdit(), &QLineEdit::returnPressed, this, &frmVindrell::cmdGo_Click);
    connect(cmbAddress, &QComboBox::activated, this, &frmVindrell::cmdGo_Click);
    connect(findChild<QPushButton *>(QStringLiteral("cmdBack")), &QPushButton::clicked, m_IE,
            &WebBrowser::GoBack);
    connect(findChild<QPushButton *>(QStringLiteral("cmdForward")), &QPushButton::clicked, m_IE,
            &WebBrowser::GoForward);
    // Every change of Edit's state runs the session's handler, also one
    // made by the code; the session's click depth sorts them out.
    connect(cmdEdit, &QPushButton::toggled, this, [this](bool) { m_session->cmdEdit_Click(); });
    // A click that the button takes as a release is no save: Save's state
    // is set by the save itself.
    connect(cmdSave, &QPushButton::clicked, this, [this](bool) {
        cmdSave->setChecked(false);
        m_session->cmdSave_MouseUp();
    });
    // The settings dialog edits the site records in place; the address row
    // lists them anew when it closes.
    connect(findChild<QPushButton *>(QStringLiteral("cmdSettings")), &QPushButton::clicked, this, [this] {
        frmSettingsEx form(this);
        form.init(this);
        form.exec();
        fillAddressList();
    });
    connect(m_VersionCheck, &VersionCheck::Finished, this, &frmVindrell::OnVersionReply);
    connect(m_IE, &WebBrowser::BeforeNavigate2, this, &frmVindrell::m_IE_BeforeNavigate2);
    connect(m_IE, &WebBrowser::NewWindow2, this, &frmVindrell::m_IE_NewWindow2);
    connect(m_IE, &WebBrowser::OnQuit, this, &frmVindrell::m_IE_OnQuit);
    // A page that ends in an error has no completion of its own to give
    // Edit back.
    connect(m_IE, &QWebEngineView::loadFinished, this, [this](bool) { cmdEditEnable(true); });
    connect(m_IE, &WebBrowser::NavigateComplete2, this, &frmVindrell::m_IE_NavigateComplete2);
    // The page's event arrives while its channel is still delivering it; the
    // page can be asked nothing until that is over, so the work waits for
    // the next turn of the event loop.
    connect(m_IE, &WebBrowser::DocumentComplete, this, [this](const QList<int> &path, const QString &url, bool isTop) {
        QTimer::singleShot(0, this, [this, path, url, isTop] { m_IE_DocumentComplete(path, url, isTop); });
    });
    connect(m_IE, &WebBrowser::urlChanged, this,
            [this](const QUrl &url) { cmbAddress->setEditText(url.toString()); });
    new CSettingsFileDropTarget(this, [this](const QString &address) { navigateTo(address); });
}

// Ctrl+E and Ctrl+S work wherever the keyboard is in the window, in the
// page too, and only when their button could be pressed.
void frmVindrell::addShortcuts()
{
    const std::pair<QKeyCombination, QPushButton *> keys[] = {{Qt::CTRL | Qt::Key_E, cmdEdit},
                                                              {Qt::CTRL | Qt::Key_S, cmdSave}};
    for (const auto &[key, button] : keys) {
        auto *shortcut = new QShortcut(QKeySequence(key), this);
        connect(shortcut, &QShortcut::activated, button, [button] {
            if (button->isEnabled() && button->isVisible())
                button->click();
        });
    }
}

void frmVindrell::ShowStatus(const QString &text)
{
    statusBar()->showMessage(text);
}

void frmVindrell::fillAddressList()
{
    cmbAddress->clear();
    for (const SiteRecord &record : MGlobalProjectObjects::URLDATA)
        cmbAddress->addItem(record.baseaddress);
    cmbAddress->setEditText(QString());
}

// The start, step by step. A step that fails leaves the pending error and
// goes to the trap with its number.
void frmVindrell::Form_Load()
{
    m_strCurrentURL = m_IE->LocationURL();
    if (!MResources::InitLangSupport())
        return Form_Load_Trap(2);
    g_strHelpBase = MResources::LoadResourceString(StringIds::HelpBase);
    MGlobalProjectObjects::g_strUserName = CReg::GetSetting(QStringLiteral("settings"), QStringLiteral("username"));
    MGlobalProjectObjects::g_strUserMail = CReg::GetSetting(QStringLiteral("settings"), QStringLiteral("usermail"));
    setWindowTitle(QStringLiteral("VindrellCMS"));
    // The site tree, the local tree and the band's layout object come with
    // the file views and the band; the document callbacks with the documents.
    if (!CPublicSettings().GetURLSettings())
        return Form_Load_Trap(9);
    // The frames' address list comes with the edit session.
    fillAddressList();
    m_GUI->LoadResCaps();
    // The version is asked for once the window stands (showEvent).
    cmdEdit->setEnabled(true);
    findChild<QPushButton *>(QStringLiteral("cmdSettings"))->setEnabled(true);
    LockAddressRow(false);
    m_IE->GoHome();
    m_boolLoaded = true;
}

// The error of the failed step stays as it was set, where it was set; only
// an error without a place gets this one.
void frmVindrell::Form_Load_Trap(int step)
{
    MError::SetErrorIfClear(MError::ErrorNumber(), MError::ErrorDescription(),
                            QStringLiteral("frmVindrell.Form_Load  Err.Description: ") + MError::ErrorDescription()
                                + QStringLiteral(" {line: %1 URL: %2}").arg(step).arg(m_IE->LocationURL()));
    MError::ShowError();
    QTimer::singleShot(0, this, &QWidget::close);
}

long frmVindrell::checkForNewVersions(long &answer)
{
    const QString url = VersionCheck::Address();
    if (url.isEmpty())
        return 1;
    HttpControl p_HTTP;
    p_HTTP.Timeout = 10;
    MGlobalProjectObjects::ApplyHttpProxy(p_HTTP);
    return AnnounceVersion(VersionCheck::Fetch(p_HTTP, url), answer);
}

// The window's first showing starts the version request in the background;
// the window is usable at once, whatever the maker's server does.
void frmVindrell::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    if (g_boolVersionChecked || !m_boolLoaded)
        return;
    g_boolVersionChecked = true;
    m_boolVersionPending = m_VersionCheck->Start();
}

// The question waits while a page is edited: a Yes takes the browser to the
// download page, which an edit must not lose its page to. A window closed
// meanwhile asks nothing.
void frmVindrell::OnVersionReply(const VersionCheck::Reply &reply)
{
    if (!isVisible()) {
        m_boolVersionPending = false;
        return;
    }
    if (m_session->Running() || cmdEdit->isChecked() || QApplication::activeModalWidget()) {
        QTimer::singleShot(kVersionRetryMs, this, [this, reply] { OnVersionReply(reply); });
        return;
    }
    long answer = 0;
    if (!AnnounceVersion(reply, answer))
        MError::LogError();
    m_boolVersionPending = false;
    if (answer == UserQuestions::vbYes)
        m_IE->Navigate2(CVersionAnnouncement::DownloadPage());
}

long frmVindrell::AnnounceVersion(const VersionCheck::Reply &reply, long &answer)
{
    if (reply.status != 1) {
        MError::SetErrorIfClear(reply.errorNumber, reply.errorDescription, CVersionAnnouncement::Position());
        return 0;
    }
    m_strVersionReply = reply.text;
    // An empty file, or one of blanks only, announces nothing.
    if (m_strVersionReply.trimmed().isEmpty())
        return 1;
    long lMajor = 0;
    long lMinor = 0;
    if (!CVersionAnnouncement::Parse(m_strVersionReply, lMajor, lMinor))
        return 0;
    if (!CVersionAnnouncement::IsNewer(lMajor, lMinor, CVersionAnnouncement::AppMajor(),
                                       CVersionAnnouncement::AppMinor()))
        return 1;
    const long shown = frmMessageBoxYesNoOnce::Show(CVersionAnnouncement::Message(m_strVersionReply),
                                                    CVersionAnnouncement::Title(),
                                                    CVersionAnnouncement::MessageName(lMajor, lMinor), this);
    if (shown != 0)
        answer = shown;
    return 1;
}

// The edit session decides first: a step under way is stopped and the
// window closes once it is down (never while a network call still runs
// under the close), and changes on the page are asked about.
void frmVindrell::closeEvent(QCloseEvent *event)
{
    if (!m_session->QueryClose()) {
        event->ignore();
        return;
    }
    Form_QueryUnload();
    event->accept();
}

// Tears down in a fixed order. The frame list, the ASP filters and the
// documents of an edit session, the helper windows of the site tree, the
// menus and the administrator panel come with their parts of the program;
// there are no window hooks to detach, as the widgets receive their own
// focus and keys.
void frmVindrell::Form_QueryUnload()
{
    m_GUI->SaveLayout();
    disconnect(m_IE, nullptr, this, nullptr);
    m_IE->stop();
}

bool frmVindrell::SiteOfPageOrOffer()
{
    m_strCurrentURL = m_IE->LocationURL();
    bool found = false;
    CSiteOfAddress::GetCurrentURLIndex(m_strCurrentURL, found);
    if (found)
        return true;
    QString strNavigate;
    CSiteChoice::OfferSites(strNavigate);
    if (!strNavigate.isEmpty())
        navigateTo(strNavigate);
    return false;
}

void frmVindrell::cmdEditEnable(bool boolEnabled_p)
{
    cmdEdit->setEnabled(boolEnabled_p);
}

void frmVindrell::LockAddressRow(bool locked)
{
    cmbAddress->setEnabled(!locked);
    for (const char *name : {"cmdBack", "cmdForward", "cmdGo"})
        findChild<QPushButton *>(QString::fromLatin1(name))->setEnabled(!locked);
}

void frmVindrell::cmdGo_Click()
{
    const QString text = cmbAddress->currentText();
    if (cmbAddress->findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive) < 0)
        cmbAddress->addItem(text);
    navigateTo(text);
}

QString frmVindrell::homePage()
{
    return WebBrowser::homePage();
}

void frmVindrell::navigateTo(const QString &address)
{
    m_IE->load(QUrl::fromUserInput(address));
}

// The revision pane stands beside the browser while cmdPane3 is down.
void frmVindrell::hookUpPaneAndKeys()
{
    m_KeyGuard = new EditKeyGuard(m_IE, this);
    m_RevisionPane = new RevisionPane(this, this);
    m_RevisionPane->setObjectName(QStringLiteral("picRollback"));
    // A revision put back ends the edit as a stop does: nothing is asked or
    // saved, and the restored page is loaded fresh.
    connect(m_RevisionPane, &RevisionPane::RevisionReset, this, [this] {
        m_session->EditStop();
        RevisionsFollowPage();
    });
    m_SitePane = new SitePane(this);
    m_SitePane->SiteTree().documentAddresses = [this] { return QStringList{m_IE->LocationURL()}; };
    m_SitePane->SiteTree().openPage = [this](const QString &address) { navigateTo(address); };
    connect(m_GUI, &CGUI::PaneToggled, this, &frmVindrell::PaneToggled);
    m_GUI->SetPaneFrame(CGUI::RecoverPane, m_RevisionPane);
    m_GUI->SetPaneFrame(CGUI::SitePane, m_SitePane);
    // The documents under edit find the layer list by its name.
    m_GUI->SetLayerList(new ctlVisibility);
    connect(m_GUI, &CGUI::HelpRequested, this, [](const QString &topic) { frmSettingsHelp::ShowHelpOn(topic); });
    // The keys are guarded for as long as Edit is down.
    connect(cmdEdit, &QPushButton::toggled, m_KeyGuard, &EditKeyGuard::setEditing);
}

// What a pane needs as it opens and closes, beyond its look: the revision
// pane lists the page's revisions (outside an edit its list is empty, or,
// after a save or a reset, of the page that was edited while it stays on
// screen), the site pane fills its tree, the Font pane shows the caret.
void frmVindrell::PaneToggled(int pane, bool open)
{
    switch (pane) {
    case CGUI::RecoverPane:
        if (!open) {
            m_RevisionPane->ClearHighlight();
            return;
        }
        m_RevisionPane->Conclude(m_RevisionPane->Open(), QStringLiteral("frmVindrell.cmdPane3_Click"));
        return;
    case CGUI::SitePane:
        if (open)
            m_SitePane->Open();
        return;
    case CGUI::FontPane:
        if (open)
            m_Band->Follow();
        return;
    default:
        return;
    }
}

// The open pane lists the page under edit: at Edit, and after a Save or a
// Reset, which end the edit but leave its page on screen, so the list is
// read again for the page it shows.
void frmVindrell::RevisionsFollowPage()
{
    if (m_RevisionPane->isHidden())
        return;
    const long listed = m_session->Documents().empty() ? m_RevisionPane->Refresh() : m_RevisionPane->Open();
    m_RevisionPane->Conclude(listed, QStringLiteral("frmVindrell.RevisionsFollowPage"));
}

// The documents of the edit session; none while no page is edited.
QList<SessionDocument> frmVindrell::SessionDocuments()
{
    QList<SessionDocument> documents;
    for (const auto &doc : m_session->Documents()) {
        SessionDocument entry;
        doc->GetDocument(entry.document);
        doc->GetVisible(entry.visible);
        doc->GetIsIFrame(entry.isIFrame);
        doc->GetURL(entry.url);
        documents.append(entry);
    }
    return documents;
}

// ---------------------------------------------------------------- browser events

// Between sessions every page comes from the server, so that the user sees
// what is there now. While a session stands nothing leaves the page; during
// the entry the session's own reloads pass, as the flag is not yet set.
void frmVindrell::m_IE_BeforeNavigate2(const QString &url, bool isTopFrame, bool *cancel)
{
    if (url.left(6).compare(QStringLiteral("mailto"), Qt::CaseInsensitive) == 0)
        return;
    if (cmdEdit->isChecked()) {
        *cancel = m_session->DocumentLoaded();
        return;
    }
    m_IE->removeFromCache(QUrl(url));
    MGlobalProjectObjects::g_boolSaveDateValid = false;
    // The list of revisions is of the page on screen: another page has none
    // of them.
    const auto page = [](const QString &address) { return QUrl(address).adjusted(QUrl::RemoveFragment); };
    if (isTopFrame && page(url) != page(m_IE->LocationURL()))
        m_RevisionPane->Forget();
    // Edit waits for the new page to be there; a frame loading inside the
    // page on screen leaves it as it is.
    if (isTopFrame) {
        m_strLastNavigated = url;
        cmdEditEnable(false);
    }
}

// The page's script closed the window: the band goes, then the window.
void frmVindrell::m_IE_OnQuit()
{
    for (const char *name : {"cmdEdit", "cmdUndo", "cmdRedo", "cmdPane1", "cmdPane2", "cmdPane3", "cmdPane4",
                             "cmdSettings", "cmdHelp", "cmdSave"})
        findChild<QPushButton *>(QString::fromLatin1(name))->setVisible(false);
    close();
}

void frmVindrell::m_IE_NewWindow2(const QString &, bool *cancel)
{
    *cancel = true;
    UserQuestions::MsgBox(MResources::LoadResourceString(kMsgNoNewWindow), UserQuestions::vbInformation);
}

void frmVindrell::m_IE_NavigateComplete2(const QString &url)
{
    m_strCurrentURL = url;
    if (cmdEdit->isChecked())
        SetNavigateComplete(url);
}

void frmVindrell::m_IE_DocumentComplete(const QList<int> &, const QString &url, bool isTop)
{
    m_strCurrentURL = url;
    cmdEditEnable(true);
    if (m_IE->Document().isNull())
        return;
    // The engine keeps the top document's title: asking the page for it
    // would wait on a page that may already be leaving.
    setWindowTitle(MResources::LoadResourceString(kCaptionPrefix) + m_IE->title());
    if (isTop)
        m_boolTopComplete = true;
    if (m_strSystemInfo.isEmpty())
        BuildSystemInfo();
}

// What the error reports say about the page engine, read once.
void frmVindrell::BuildSystemInfo()
{
    const QVariant info = PageScriptCall::run(
        m_IE->page(),
        QStringLiteral("(function(n){return ['Browser CodeName: '+n.appCodeName,'Major version: '+n.appVersion,"
                       "'Minor version: '+(n.appMinorVersion||''),'Name: '+n.appName,'Platform: '+n.platform,"
                       "'SysLang: '+(n.systemLanguage||n.language)].join('\\r\\n');})(navigator)"),
        QStringLiteral("frmVindrell.DocumentComplete"));
    if (MError::ErrorNumber() != 0) {
        MError::ClearError();
        return;
    }
    m_strSystemInfo = info.toString();
}

// ---------------------------------------------------------------- CDocEventHandler

long frmVindrell::StartTransfer(const QString &)
{
    return 1;
}

long frmVindrell::EndTransfer(const QString &)
{
    return 1;
}

long frmVindrell::SetNavigateComplete(const QString &strURL_p)
{
    if (m_astrVisited.size() == 1 && m_astrVisited.first() == QStringLiteral("empty"))
        m_astrVisited.first() = strURL_p;
    else
        m_astrVisited.append(strURL_p);
    return 1;
}

long frmVindrell::GetNavigateComplete(const QString &, bool &)
{
    return 1;
}

long frmVindrell::Show(bool)
{
    return 1;
}

long frmVindrell::Click(long index, bool &)
{
    m_session->SetDocIndex(index);
    return 1;
}

long frmVindrell::DebugMsg(const QString &strMsg_p)
{
    m_lstDebug.append(strMsg_p);
    return 1;
}

long frmVindrell::GetFrameNames(QStringList &astrNames_p)
{
    QList<HtmlDocument> frames;
    return FrameList::GetFrameNames(SessionDocuments(), frames, astrNames_p);
}

long frmVindrell::GetNumberOfFrames()
{
    long count = 0;
    for (const auto &doc : m_session->Documents()) {
        bool visible = false;
        doc->GetVisible(visible);
        count += visible ? 1 : 0;
    }
    return count == 0 ? -1 : count;
}

long frmVindrell::GetDocumentTitle(QString &strDocumentTitle_p)
{
    strDocumentTitle_p = m_IE->Document().title();
    return 1;
}

long frmVindrell::LetDocumentTitle(const QString &strTitle_p)
{
    m_IE->Document().setTitle(strTitle_p);
    if (!m_session->Documents().empty())
        m_session->Documents().front()->SetDirty();
    setWindowTitle(MResources::LoadResourceString(kCaptionPrefix) + strTitle_p);
    return 1;
}

long frmVindrell::GetDocument(HtmlDocument &HTMLDocument_p)
{
    HTMLDocument_p = m_session->FrameDocument();
    return 1;
}

long frmVindrell::GetIE(WebBrowser *&IE_p)
{
    IE_p = m_IE;
    return 1;
}

long frmVindrell::GetDocIndex(long &lIndex_p)
{
    lIndex_p = m_session->DocIndex();
    return 1;
}

long frmVindrell::GetForm(QWidget *&frmVindrell_p)
{
    frmVindrell_p = this;
    return 1;
}

long frmVindrell::GetPaneStatus(long &lPaneStatus_p)
{
    lPaneStatus_p = m_GUI->OpenPane();
    return 1;
}

long frmVindrell::EditASPStop(long lEditedDoc_p)
{
    return m_session->EditASPStop(lEditedDoc_p);
}
