#pragma once

#include "document/CDocEventHandler.h"
#include "platform/WebBrowser.h"
#include "shell/RevisionPaneHost.h"
#include "shell/VersionCheck.h"

#include <QMainWindow>

#include <memory>

class BandEvents;
class CGUI;
class EditKeyGuard;
class QComboBox;
class QHBoxLayout;
class QPushButton;
class QVBoxLayout;
class RevisionPane;
class SitePane;
class EditSession;

// The main window. At the left stands the band: Edit, Undo and Redo, the
// administrator's button, the four pane buttons, the small Help, Comment and
// Settings buttons and Save, from the top down. At the right the browser,
// and beneath it, on the level of Save, the address row. Every control has
// its name as object name, so that the band's layout can take them by name.
//
// When no page is under edit the window is simply a browser. It opens on
// the home page kept in the settings store (key Browser, value HomePage),
// and goes to the maker's download page when the user asks for a new
// version, which is asked for in the background once the window stands.
// It is always the stand-alone window: the program is never a bar inside
// another browser.
//
// The edit session (EditSession) is run from here: Edit enters and leaves
// it, Save ends it; the documents of the session reach the window through
// its CDocEventHandler side.
class frmVindrell : public QMainWindow, public CDocEventHandler, public RevisionPaneHost
{
    Q_OBJECT

public:
    // Builds the controls and runs Form_Load. A failed load shows the error
    // and closes the window, which ends the program.
    explicit frmVindrell(QWidget *parent = nullptr);
    ~frmVindrell() override;

    WebBrowser *browser() const { return m_IE; }

    // False when Form_Load failed; the window closes as soon as events run.
    bool Loaded() const { return m_boolLoaded; }

    // The home page from the settings store, or about:blank when none is set.
    static QString homePage();

    // Shows the given address in the browser.
    void navigateTo(const QString &address);

    // Asks the maker's server for the latest version and, when it is newer
    // than this program, asks the user whether to get it. answer comes back
    // vbYes (6) only when the user asked for the download, else untouched.
    // Returns 1, or 0 with the pending error set.
    long checkForNewVersions(long &answer);
    // The version request started at the first showing, or its question,
    // is still to come.
    bool VersionCheckPending() const { return m_boolVersionPending; }

    // The controls and states the edit session works with.
    QPushButton *EditButton() const { return cmdEdit; }
    QPushButton *SaveButton() const { return cmdSave; }
    EditSession &Session() const { return *m_session; }
    void cmdEditEnable(bool boolEnabled_p);
    // While a page is under edit the address row can't take the browser
    // elsewhere.
    void LockAddressRow(bool locked);
    void SetTopComplete(bool complete) { m_boolTopComplete = complete; }
    bool TopComplete() const { return m_boolTopComplete; }
    QString SystemInformation() const { return m_strSystemInfo; }
    // True when an active site holds the page on screen. Otherwise offers
    // the sites, goes to the chosen one, and answers false.
    bool SiteOfPageOrOffer();
    // The status bar's line: what the last save did.
    void ShowStatus(const QString &text);
    // The open revision pane lists the page under edit, or the page it
    // listed last when the edit has ended.
    void RevisionsFollowPage();

    // CDocEventHandler.
    long StartTransfer(const QString &strTransferID_p) override;
    long EndTransfer(const QString &strTransferID_p) override;
    long SetNavigateComplete(const QString &strURL_p) override;
    long GetNavigateComplete(const QString &strURL_p, bool &boolNavigateComplete_p) override;
    long Show(bool boolShow_p) override;
    long Click(long index, bool &boolClick_p) override;
    long DebugMsg(const QString &strMsg_p) override;
    long GetFrameNames(QStringList &astrNames_p) override;
    long GetNumberOfFrames() override;
    long GetDocumentTitle(QString &strDocumentTitle_p) override;
    long LetDocumentTitle(const QString &strTitle_p) override;
    long GetDocument(HtmlDocument &HTMLDocument_p) override;
    long GetIE(WebBrowser *&IE_p) override;
    long GetDocIndex(long &lIndex_p) override;
    long GetForm(QWidget *&frmVindrell_p) override;
    long GetPaneStatus(long &lPaneStatus_p) override;
    long EditASPStop(long lEditedDoc_p) override;

    // True once the version was asked for in this process: a second window
    // does not ask again.
    static bool g_boolVersionChecked;
    // Base address of the on-line help in the current language.
    static QString g_strHelpBase;

    // The revision pane and the keyboard rules of editing. The edit session
    // calls keyGuard()->setEditing() as Edit goes down and up, and a tree
    // registers itself with keyGuard()->registerTree().
    RevisionPane *revisionPane() const { return m_RevisionPane; }
    SitePane *sitePane() const { return m_SitePane; }
    EditKeyGuard *keyGuard() const { return m_KeyGuard; }
    // The look of the band: its panes, their buttons, the splitter.
    CGUI *GUI() const { return m_GUI; }
    QList<SessionDocument> SessionDocuments() override;

protected:
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void buildControls();
    QWidget *buildBand();
    QWidget *buildBrowserColumn();
    QPushButton *addButton(QWidget *parent, const char *name, bool checkable = false);
    void fillAddressList();
    void connectControls();
    void addShortcuts();
    void OnVersionReply(const VersionCheck::Reply &reply);
    // Asks about the version in the reply; 1, or 0 with the error pending.
    long AnnounceVersion(const VersionCheck::Reply &reply, long &answer);

    void Form_Load();
    void Form_Load_Trap(int step);
    void Form_QueryUnload();
    void cmdGo_Click();
    void hookUpPaneAndKeys();
    void PaneToggled(int pane, bool open);

    // Events of the browser.
    void m_IE_BeforeNavigate2(const QString &url, bool isTopFrame, bool *cancel);
    void m_IE_NewWindow2(const QString &url, bool *cancel);
    void m_IE_NavigateComplete2(const QString &url);
    void m_IE_OnQuit();
    void m_IE_DocumentComplete(const QList<int> &framePath, const QString &url, bool isTop);
    void BuildSystemInfo();

    WebBrowser *m_IE = nullptr;
    QComboBox *cmbAddress = nullptr;
    QPushButton *cmdEdit = nullptr;
    QPushButton *cmdSave = nullptr;
    QString m_strCurrentURL;
    QString m_strLastNavigated;
    QStringList m_astrVisited{QStringLiteral("empty")};
    QStringList m_lstDebug;
    QString m_strSystemInfo;
    bool m_boolTopComplete = false;
    std::unique_ptr<EditSession> m_session;
    QString m_strVersionReply;
    VersionCheck *m_VersionCheck = nullptr;
    bool m_boolVersionPending = false;
    bool m_boolLoaded = false;
    RevisionPane *m_RevisionPane = nullptr;
    SitePane *m_SitePane = nullptr;
    EditKeyGuard *m_KeyGuard = nullptr;
    CGUI *m_GUI = nullptr;
    BandEvents *m_Band = nullptr;
};
