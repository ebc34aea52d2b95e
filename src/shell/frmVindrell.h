#pragma once

#include "platform/WebBrowser.h"
#include "shell/RevisionPaneHost.h"

#include <QMainWindow>

class EditKeyGuard;
class QComboBox;
class QHBoxLayout;
class QPushButton;
class QVBoxLayout;
class RevisionPane;

// The main window. At the left stands the band: Edit, Undo and Redo, the
// administrator's button, the four pane buttons, the small Help, Comment and
// Settings buttons and Save, from the top down. At the right the browser,
// and beneath it, on the level of Save, the address row. Every control has
// its name as object name, so that the band's layout can take them by name.
//
// When no page is under edit the window is simply a browser. It opens on
// the home page kept in the settings store (key Browser, value HomePage),
// or on the maker's download page when the user asks for a new version.
// It is always the stand-alone window: the program is never a bar inside
// another browser.
class frmVindrell : public QMainWindow, public RevisionPaneHost
{
    Q_OBJECT

public:
    // Builds the controls and runs Form_Load. A failed load shows the error
    // and closes the window, which ends the program.
    explicit frmVindrell(QWidget *parent = nullptr);

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

    // True once the version was asked for in this process: a second window
    // does not ask again.
    static bool g_boolVersionChecked;
    // Base address of the on-line help in the current language.
    static QString g_strHelpBase;

    // The revision pane and the keyboard rules of editing. The edit session
    // calls keyGuard()->setEditing() as Edit goes down and up, and a tree
    // registers itself with keyGuard()->registerTree().
    RevisionPane *revisionPane() const { return m_RevisionPane; }
    EditKeyGuard *keyGuard() const { return m_KeyGuard; }
    QList<SessionDocument> SessionDocuments() override;
    WebBrowser *Browser() override { return m_IE; }

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void buildControls();
    QWidget *buildBand();
    QWidget *buildBrowserColumn();
    QPushButton *addButton(QWidget *parent, const char *name, bool checkable = false);
    void LoadResCaps();
    void fillAddressList();
    void connectControls();

    void Form_Load();
    void Form_Load_Trap(int step);
    void Form_QueryUnload();
    void cmdEdit_Click(bool pressed);
    void cmdGo_Click();
    void hookUpPaneAndKeys();
    void cmdPane3_Click(bool open);

    WebBrowser *m_IE = nullptr;
    QComboBox *cmbAddress = nullptr;
    QPushButton *cmdEdit = nullptr;
    QPushButton *cmdSave = nullptr;
    QString m_strCurrentURL;
    QString m_strVersionReply;
    bool m_boolLoaded = false;
    RevisionPane *m_RevisionPane = nullptr;
    EditKeyGuard *m_KeyGuard = nullptr;
};
