#pragma once

#include "config/MGlobalProjectObjects.h"

#include <QDialog>
#include <QHash>

#include <vector>

class QCheckBox;
class QComboBox;
class QLabel;
class QLayout;
class QLineEdit;
class SshKeyField;
class QPushButton;
class QRadioButton;
class QStackedWidget;
class QTreeWidget;
class QTreeWidgetItem;

// The one place where the user adds, changes, activates and removes sites
// and sets the global options. It edits URLDATA in place, so that a change
// is live at once, and keeps a copy of the array for Cancel. A tree on the
// left picks the pane on the right.
class frmSettingsEx : public QDialog
{
    Q_OBJECT

public:
    explicit frmSettingsEx(QWidget *parent = nullptr);

    // The owner, the main window: OK shows its band anew.
    long init(QWidget *frmVindrell_p);
    long GetCurrentUrl(long &lCurrentURL_p) const;
    // Opens straight on a new site.
    long ShowAddNewWebPane();
    long ValidateFields(bool &bOK, long &lStatus) const;
    long ValidateTempFields(long &lStatus);
    long CheckActivateChange(long &lStatus);
    long SaveFlags();
    long Apply();

    // Shows the dialog modally on a new site, as the first-run question's
    // Yes does.
    static long ShowOnNewSite(QWidget *parent);

protected:
    void reject() override;

private:
    enum Pane { paneSites, paneSite, paneAdvancedSite, paneMisc, paneScript, paneTidy, paneCMS, paneAbout, paneWelcome };

    void BuildControls();
    QWidget *BuildSitesPane();
    QLayout *BuildSiteButtons();
    QWidget *BuildSitePane();
    QWidget *BuildAdvancedSitePane();
    QWidget *BuildMiscPane();
    QWidget *BuildScriptPane();
    QWidget *BuildTidyPane();
    QWidget *BuildCMSPane();
    QWidget *BuildAboutPane();
    QWidget *BuildWelcomePane();
    QLineEdit *AddField(QWidget *pane, const char *name, long caption, const char *page, long tooltip);
    QLabel *HelpLabel(QWidget *parent, long caption, const char *page, long tooltip);
    QCheckBox *AddCheck(QWidget *pane, const char *name, long caption);
    void Form_Load();
    void FillOptions();
    void BuildSiteNodes();
    static QString NodeText(const SiteRecord &site);
    void TreeView1_NodeClick(QTreeWidgetItem *node);
    void ShowPane(Pane pane);
    void FillSite(const SiteRecord &site);
    void ShowStatus(bool boolActive_p);
    void cmdAddUrl_Click();
    void cmdRemoveURL_Click();
    void cmdActivate_Click();
    void cmdOk_Click();
    void cmdSaveSiteToFile_Click();
    void cmdLoadSiteFromFile_Click();
    void cmdForgetCertificate_Click();
    void cmdProxy_Click();
    void cboLangs_Click();
    void FieldChanged(QLineEdit *field);
    bool ValidateNoAsc32(QString &strLastGood_p, QLineEdit *field);
    bool ValidatePassword(QString &strLastGood_p, QLineEdit *field);
    void WriteField(QLineEdit *field);
    void CheckChanged(QCheckBox *box);
    void SecurityChanged(int index);
    void RemoveMarkedRecords();
    bool OnSite() const;
    static bool OnlyPlaceholder();
    SiteRecord &Site();
    QTreeWidgetItem *SitesNode() const;

    QWidget *m_owner = nullptr;
    std::vector<SiteRecord> m_copy; // URLDATA as it was, for Cancel
    long m_lCurrentURL = -1;
    bool m_boolLoading = false;
    QHash<QLineEdit *, QString> m_lastGood; // the seven boxes that refuse blanks

    QTreeWidget *TreeView1 = nullptr;
    QStackedWidget *m_panes = nullptr;
    QPushButton *cmdAddUrl = nullptr;
    QPushButton *cmdRemoveURL = nullptr;
    QPushButton *cmdImport = nullptr;
    QLineEdit *txtBASEADDRESS = nullptr;
    QLineEdit *txtBASEURL = nullptr;
    QComboBox *cboFTPSecurity = nullptr;
    QLineEdit *txtUserID = nullptr;
    QLineEdit *txtPassWord = nullptr;
    SshKeyField *m_sshKey = nullptr;
    QCheckBox *chkUseRemoteFolder = nullptr;
    QLineEdit *txtRemoteFolder = nullptr;
    QLabel *lblRemotePath = nullptr;
    QCheckBox *chkUseAbsoluteFTPPaths = nullptr;
    QCheckBox *chkAutoIndex = nullptr;
    QLineEdit *txtFTPRoot = nullptr;
    QLineEdit *txtIndexFile = nullptr;
    QCheckBox *chkAutoMode = nullptr;
    QRadioButton *optMode0 = nullptr;
    QRadioButton *optMode1 = nullptr;
    QCheckBox *chkWwwAlias = nullptr;
    QPushButton *cmdForgetCertificate = nullptr;
    QLabel *lblStatusCheck = nullptr;
    QLabel *imgStatus = nullptr;
    QPushButton *cmdActivate = nullptr;
    QPushButton *cmdSaveSiteToFile = nullptr;
    QComboBox *cboLangs = nullptr;
    QCheckBox *chkEditASP = nullptr;
    QCheckBox *chkEditDocsJavaScript = nullptr;
    QCheckBox *chkEnableHTML_Editor = nullptr;
    QCheckBox *chkEnableDeleteFiles = nullptr;
    QCheckBox *chkEnableMakeFolders = nullptr;
    QCheckBox *chkUseSpellCheck = nullptr;
    QCheckBox *chkShowAllFiles = nullptr;
    QCheckBox *chkUseTidyComp = nullptr;
    QComboBox *cmbCharEncodingType = nullptr;
    QComboBox *cmbIntendent = nullptr;
    QLineEdit *txtCMSUserName = nullptr;
    QLineEdit *txtCMSUserPassword = nullptr;
    QCheckBox *Check2 = nullptr;
};
