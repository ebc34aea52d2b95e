#include "config/frmSettingsEx.h"

#include "config/AnsiCodePage.h"
#include "config/CPublicSettings.h"
#include "config/CSettingsFile.h"
#include "config/CSettingsFileDrop.h"
#include "config/frmActivateHow.h"
#include "config/frmProxySettings.h"
#include "config/frmSettingsHelp.h"
#include "config/SshKeyField.h"
#include "fileviews/SiteFileDialogs.h"
#include "platform/CReg.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/StringIds.h"
#include "support/UserQuestions.h"
#include "transfer/FtpAddress.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QStyle>
#include <QTreeWidget>
#include <QVBoxLayout>

using G = MGlobalProjectObjects;

namespace {
enum Text : long {
    txtScript = 14406, txtOk = 14624, txtCancel = 14625,
    txtMySites = 14800, txtSitesIntro = 14801, txtAddSite = 14802, txtRemoveSite = 14803, txtMoreOptions = 14804,
    txtMisc = 14805, txtTidy = 14806, txtCMS = 14807, txtAbout = 14808, txtVersion = 14809, txtNewSite = 14810,
    txtHttpAddress = 14811, txtFtpAddress = 14812, txtRemotePath = 14813, txtAbsolute = 14814, txtAutoIndex = 14815,
    txtFtpRoot = 14816, txtIndexName = 14817, txtAutoMode = 14818, txtStatusOf = 14819, txtActivate = 14820,
    txtProxy = 14821, txtEditASP = 14822, txtEditJava = 14823, txtEditHTML = 14824, txtDeleteFiles = 14825,
    txtMakeFolders = 14826, txtAllFiles = 14827, txtUseSpellCheck = 20817, txtFormat = 14828, txtCharSet = 14829, txtCMSUser = 14830,
    txtCMSPassword = 14831, txtShowNextTime = 14832, txtScriptInfo = 14833, txtScriptInfo2 = 14834,
    txtTidyInfo = 14835, txtTidyInfo2 = 14836, txtCMSInfo = 14837, txtWelcome = 14838, txtWelcome2 = 14839,
    txtActivateMySite = 14840, txtStartEditing = 14841, txtAboutDialog = 14842, txtNotActivated = 14843,
    txtNoSpaces = 14844, txtAbsolutePath = 14845, txtActivated = 14846, txtRemoveTitle = 14847,
    txtRemoveQuestion = 14848, txtSaveTitle = 14849, txtChanges = 14850, txtSaveQuestion = 14851,
    txtTipHttp = 14853, txtTipFtp = 14854, txtTipUser = 14855, txtTipPassword = 14856, txtTipRemote = 14857,
    txtTipRoot = 14858, txtTipMode = 14859, txtHelp = 14860, txtLanguage = 14863, txtPath = 14864,
    txtActive = 14865, txtPassive = 14866, txtApply = 14867, txtSecurity = 14868, txtPlain = 14869,
    txtExplicit = 14870, txtImplicit = 14871, txtWwwAlias = 14872, txtForget = 14873, txtBadPassword = 14874,
    txtImport = 14875, txtExport = 14876, txtRestart = 14878, txtBack = 14879,
    txtSiteTree = 14880, txtUsername = 20400, txtPassword = 20435, txtSaveFolder = 13007
};

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

const QString kNode = QStringLiteral("URL");
const QString kNotInUse = CPublicSettings::NotInUseAddress();

QString Key(QTreeWidgetItem *node)
{
    return node ? node->data(0, Qt::UserRole).toString() : QString();
}

QTreeWidgetItem *Node(QTreeWidgetItem *parent, const QString &key, const QString &text)
{
    auto *node = new QTreeWidgetItem(parent, {text});
    node->setData(0, Qt::UserRole, key);
    return node;
}

const QString kPset = QStringLiteral(".pset");

QString Bool(bool value)
{
    return value ? QStringLiteral("1") : QStringLiteral("0");
}
} // namespace

frmSettingsEx::frmSettingsEx(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmSettingsEx"));
    setWindowTitle(L(txtMisc));
    BuildControls();
    Form_Load();
}

long frmSettingsEx::init(QWidget *frmVindrell_p)
{
    m_owner = frmVindrell_p;
    return 1;
}

long frmSettingsEx::GetCurrentUrl(long &lCurrentURL_p) const
{
    lCurrentURL_p = m_lCurrentURL;
    return 1;
}

long frmSettingsEx::ShowOnNewSite(QWidget *parent)
{
    frmSettingsEx form(parent);
    form.init(parent);
    form.ShowAddNewWebPane();
    return form.exec();
}

// ---------------------------------------------------------------- building

void frmSettingsEx::BuildControls()
{
    auto *row = new QHBoxLayout;
    TreeView1 = new QTreeWidget(this);
    TreeView1->setObjectName(QStringLiteral("TreeView1"));
    TreeView1->setHeaderHidden(true);
    TreeView1->setMinimumWidth(220);
    m_panes = new QStackedWidget(this);
    for (QWidget *pane : {BuildSitesPane(), BuildSitePane(), BuildAdvancedSitePane(), BuildMiscPane(),
                          BuildScriptPane(), BuildTidyPane(), BuildCMSPane(), BuildAboutPane(), BuildWelcomePane()})
        m_panes->addWidget(pane);
    auto *left = new QVBoxLayout;
    left->addWidget(TreeView1, 1);
    left->addLayout(BuildSiteButtons());
    row->addLayout(left);
    row->addWidget(m_panes, 1);
    auto *buttons = new QHBoxLayout;
    auto *cmdHelp = new QPushButton(L(txtHelp), this);
    auto *cmdOk = new QPushButton(L(txtOk), this);
    auto *cmdCancel = new QPushButton(L(txtCancel), this);
    auto *cmdApply = new QPushButton(L(txtApply), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdApply->setObjectName(QStringLiteral("cmdApply"));
    cmdHelp->setObjectName(QStringLiteral("cmdHelp"));
    buttons->addWidget(cmdHelp);
    buttons->addStretch(1);
    for (QPushButton *b : {cmdOk, cmdCancel, cmdApply})
        buttons->addWidget(b);
    auto *column = new QVBoxLayout(this);
    column->addLayout(row, 1);
    column->addLayout(buttons);
    connect(TreeView1, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem *node) { TreeView1_NodeClick(node); });
    connect(cmdOk, &QPushButton::clicked, this, &frmSettingsEx::cmdOk_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmSettingsEx::reject);
    connect(cmdApply, &QPushButton::clicked, this, &frmSettingsEx::Apply);
    connect(cmdHelp, &QPushButton::clicked, this, [] { frmSettingsHelp::ShowHelpOn(QStringLiteral("010100.htm")); });
    resize(760, 520);
}

QLabel *frmSettingsEx::HelpLabel(QWidget *parent, long caption, const char *page, long tooltip)
{
    auto *label = new QLabel(parent);
    const QString text = L(caption).toHtmlEscaped();
    label->setText(page ? QStringLiteral("<a href=\"%1\">%2</a>").arg(QLatin1String(page), text) : text);
    if (tooltip)
        label->setToolTip(L(tooltip));
    connect(label, &QLabel::linkActivated, this, [](const QString &link) { frmSettingsHelp::ShowHelpOn(link); });
    return label;
}

QLineEdit *frmSettingsEx::AddField(QWidget *pane, const char *name, long caption, const char *page, long tooltip)
{
    auto *field = new QLineEdit(pane);
    field->setObjectName(QString::fromLatin1(name));
    static_cast<QFormLayout *>(pane->layout())->addRow(HelpLabel(pane, caption, page, tooltip), field);
    connect(field, &QLineEdit::textChanged, this, [this, field] { FieldChanged(field); });
    m_lastGood.insert(field, QString());
    return field;
}

QCheckBox *frmSettingsEx::AddCheck(QWidget *pane, const char *name, long caption)
{
    auto *box = new QCheckBox(L(caption), pane);
    box->setObjectName(QString::fromLatin1(name));
    pane->layout()->addWidget(box);
    connect(box, &QCheckBox::toggled, this, [this, box] { CheckChanged(box); });
    return box;
}

// The introduction of "My web sites". The buttons that add, remove and
// import sites stand under the tree, where they can act on the site
// picked in it.
QWidget *frmSettingsEx::BuildSitesPane()
{
    auto *pane = new QWidget(this);
    auto *column = new QVBoxLayout(pane);
    auto *intro = new QLabel(L(txtSitesIntro), pane);
    intro->setWordWrap(true);
    column->addWidget(intro);
    column->addStretch(1);
    return pane;
}

QLayout *frmSettingsEx::BuildSiteButtons()
{
    cmdAddUrl = new QPushButton(L(txtAddSite), this);
    cmdAddUrl->setObjectName(QStringLiteral("cmdAddUrl"));
    cmdRemoveURL = new QPushButton(L(txtRemoveSite), this);
    cmdRemoveURL->setObjectName(QStringLiteral("cmdRemoveURL"));
    cmdImport = new QPushButton(L(txtImport), this);
    cmdImport->setObjectName(QStringLiteral("cmdLoadSiteFromFile"));
    auto *column = new QVBoxLayout;
    for (QWidget *w : std::initializer_list<QWidget *>{cmdAddUrl, cmdRemoveURL, cmdImport})
        column->addWidget(w);
    connect(cmdAddUrl, &QPushButton::clicked, this, &frmSettingsEx::cmdAddUrl_Click);
    connect(cmdRemoveURL, &QPushButton::clicked, this, &frmSettingsEx::cmdRemoveURL_Click);
    connect(cmdImport, &QPushButton::clicked, this, &frmSettingsEx::cmdLoadSiteFromFile_Click);
    return column;
}

// picThisURL: the fields of the pair and the state of the site.
QWidget *frmSettingsEx::BuildSitePane()
{
    auto *pane = new QWidget(this);
    pane->setObjectName(QStringLiteral("picThisURL"));
    new QFormLayout(pane);
    auto *form = static_cast<QFormLayout *>(pane->layout());
    txtBASEADDRESS = AddField(pane, "txtBASEADDRESS", txtHttpAddress, "010104.htm", txtTipHttp);
    txtBASEURL = AddField(pane, "txtBASEURL", txtFtpAddress, "010105.htm", txtTipFtp);
    cboFTPSecurity = new QComboBox(pane);
    cboFTPSecurity->setObjectName(QStringLiteral("cboFTPSecurity"));
    cboFTPSecurity->addItems({L(txtPlain), L(txtExplicit), L(txtImplicit), L(StringIds::SftpChoice)});
    form->addRow(L(txtSecurity), cboFTPSecurity);
    txtUserID = AddField(pane, "txtUserID", txtUsername, "010106.htm", txtTipUser);
    txtPassWord = AddField(pane, "txtPassWord", txtPassword, "010107.htm", txtTipPassword);
    txtPassWord->setEchoMode(QLineEdit::Password);
    m_sshKey = new SshKeyField(pane);
    form->addRow(L(StringIds::SshKeyFile), m_sshKey);
    connect(m_sshKey, &SshKeyField::PathChanged, this, [this](const QString &path) {
        if (!m_boolLoading && OnSite())
            Site().sshkey = path;
    });
    lblStatusCheck = new QLabel(pane);
    lblStatusCheck->setObjectName(QStringLiteral("lblStatusCheck"));
    imgStatus = new QLabel(pane);
    auto *status = new QHBoxLayout;
    status->addWidget(imgStatus);
    status->addWidget(lblStatusCheck, 1);
    form->addRow(L(txtStatusOf), status);
    cmdActivate = new QPushButton(L(txtActivate), pane);
    cmdActivate->setObjectName(QStringLiteral("cmdActivate"));
    auto *cmdShowAdvanced = new QPushButton(L(txtMoreOptions), pane);
    cmdShowAdvanced->setObjectName(QStringLiteral("cmdShowAdvanced"));
    cmdSaveSiteToFile = new QPushButton(L(txtExport), pane);
    cmdSaveSiteToFile->setObjectName(QStringLiteral("cmdSaveSiteToFile"));
    auto *actions = new QHBoxLayout;
    for (QPushButton *b : {cmdActivate, cmdShowAdvanced, cmdSaveSiteToFile})
        actions->addWidget(b);
    form->addRow(actions);
    connect(cboFTPSecurity, &QComboBox::activated, this, &frmSettingsEx::SecurityChanged);
    connect(cmdActivate, &QPushButton::clicked, this, &frmSettingsEx::cmdActivate_Click);
    connect(cmdShowAdvanced, &QPushButton::clicked, this, [this] { ShowPane(paneAdvancedSite); });
    connect(cmdSaveSiteToFile, &QPushButton::clicked, this, &frmSettingsEx::cmdSaveSiteToFile_Click);
    return pane;
}

// picAdvanced: how the pair maps, and what the connection trusts.
QWidget *frmSettingsEx::BuildAdvancedSitePane()
{
    auto *pane = new QWidget(this);
    pane->setObjectName(QStringLiteral("picAdvanced"));
    auto *form = new QFormLayout(pane);
    chkUseRemoteFolder = new QCheckBox(pane);
    chkUseRemoteFolder->setObjectName(QStringLiteral("chkUseRemoteFolder"));
    lblRemotePath = HelpLabel(pane, txtRemotePath, "010108.htm", txtTipRemote);
    form->addRow(lblRemotePath, chkUseRemoteFolder);
    txtRemoteFolder = AddField(pane, "txtRemoteFolder", txtPath, "010108.htm", txtTipRemote);
    chkUseAbsoluteFTPPaths = new QCheckBox(pane);
    chkUseAbsoluteFTPPaths->setObjectName(QStringLiteral("chkUseAbsoluteFTPPaths"));
    form->addRow(HelpLabel(pane, txtAbsolute, "010208.htm", 0), chkUseAbsoluteFTPPaths);
    chkAutoIndex = new QCheckBox(pane);
    chkAutoIndex->setObjectName(QStringLiteral("chkAutoIndex"));
    form->addRow(HelpLabel(pane, txtAutoIndex, "010109.htm", 0), chkAutoIndex);
    txtFTPRoot = AddField(pane, "txtFTPRoot", txtFtpRoot, "010110.htm", txtTipRoot);
    txtIndexFile = AddField(pane, "txtIndexFile", txtIndexName, "010111.htm", txtTipRoot);
    chkAutoMode = new QCheckBox(pane);
    chkAutoMode->setObjectName(QStringLiteral("chkAutoMode"));
    form->addRow(HelpLabel(pane, txtAutoMode, "010112.htm", txtTipMode), chkAutoMode);
    optMode0 = new QRadioButton(L(txtActive), pane);
    optMode1 = new QRadioButton(L(txtPassive), pane);
    optMode0->setObjectName(QStringLiteral("optMode0"));
    optMode1->setObjectName(QStringLiteral("optMode1"));
    auto *modes = new QHBoxLayout;
    modes->addWidget(optMode0);
    modes->addWidget(optMode1);
    form->addRow(modes);
    chkWwwAlias = new QCheckBox(L(txtWwwAlias), pane);
    chkWwwAlias->setObjectName(QStringLiteral("chkWwwAlias"));
    form->addRow(chkWwwAlias);
    cmdForgetCertificate = new QPushButton(L(txtForget), pane);
    cmdForgetCertificate->setObjectName(QStringLiteral("cmdForgetCertificate"));
    auto *cmdProxy = new QPushButton(L(txtProxy), pane);
    cmdProxy->setObjectName(QStringLiteral("cmdProxy"));
    connect(cmdProxy, &QPushButton::clicked, this, &frmSettingsEx::cmdProxy_Click);
    auto *cmdHideAdvanced = new QPushButton(L(txtBack), pane);
    cmdHideAdvanced->setObjectName(QStringLiteral("cmdHideAdvanced"));
    auto *actions = new QHBoxLayout;
    for (QPushButton *b : {cmdHideAdvanced, cmdForgetCertificate, cmdProxy})
        actions->addWidget(b);
    form->addRow(actions);
    for (QCheckBox *box : {chkUseRemoteFolder, chkUseAbsoluteFTPPaths, chkAutoIndex, chkAutoMode, chkWwwAlias})
        connect(box, &QCheckBox::toggled, this, [this, box] { CheckChanged(box); });
    connect(optMode1, &QRadioButton::toggled, this, [this](bool on) {
        if (!m_boolLoading && OnSite())
            Site().passivemode = on;
        long status = 0;
        CheckActivateChange(status);
    });
    connect(cmdForgetCertificate, &QPushButton::clicked, this, &frmSettingsEx::cmdForgetCertificate_Click);
    connect(cmdHideAdvanced, &QPushButton::clicked, this, [this] { ShowPane(paneSite); });
    return pane;
}

// The language, and the three boxes of the site tree, which the node
// "Site tree" under this one leads to, so that they can be reached at all.
QWidget *frmSettingsEx::BuildMiscPane()
{
    auto *pane = new QWidget(this);
    pane->setObjectName(QStringLiteral("fmeAdvanced"));
    auto *column = new QVBoxLayout(pane);
    column->addWidget(new QLabel(L(txtLanguage), pane));
    cboLangs = new QComboBox(pane);
    cboLangs->setObjectName(QStringLiteral("cboLangs"));
    column->addWidget(cboLangs);
    chkEnableDeleteFiles = AddCheck(pane, "chkEnableDeleteFiles", txtDeleteFiles);
    chkEnableMakeFolders = AddCheck(pane, "chkEnableMakeFolders", txtMakeFolders);
    chkShowAllFiles = AddCheck(pane, "chkShowAllFiles", txtAllFiles);
    chkUseSpellCheck = AddCheck(pane, "chkUseSpellCheck", txtUseSpellCheck);
    column->addStretch(1);
    connect(cboLangs, &QComboBox::activated, this, &frmSettingsEx::cboLangs_Click);
    return pane;
}

QWidget *frmSettingsEx::BuildScriptPane()
{
    auto *pane = new QWidget(this);
    pane->setObjectName(QStringLiteral("fmeAdvancedScript"));
    auto *column = new QVBoxLayout(pane);
    for (long text : {txtScriptInfo, txtScriptInfo2}) {
        auto *label = new QLabel(L(text), pane);
        label->setWordWrap(true);
        column->addWidget(label);
    }
    chkEditASP = AddCheck(pane, "chkEditASP", txtEditASP);
    chkEditDocsJavaScript = AddCheck(pane, "chkEditDocsJavaScript", txtEditJava);
    chkEnableHTML_Editor = AddCheck(pane, "chkEnableHTML_Editor", txtEditHTML);
    column->addStretch(1);
    return pane;
}

QWidget *frmSettingsEx::BuildTidyPane()
{
    auto *pane = new QWidget(this);
    pane->setObjectName(QStringLiteral("fmeTidyOptions"));
    auto *column = new QVBoxLayout(pane);
    auto *info = new QLabel(L(txtTidyInfo), pane);
    info->setWordWrap(true);
    column->addWidget(info);
    chkUseTidyComp = AddCheck(pane, "chkUseTidyComp", txtFormat);
    column->addWidget(HelpLabel(pane, txtTidyInfo2, "010500.htm", 0));
    column->addWidget(new QLabel(L(txtCharSet), pane));
    cmbCharEncodingType = new QComboBox(pane);
    cmbCharEncodingType->setObjectName(QStringLiteral("cmbCharEncodingType"));
    cmbCharEncodingType->addItem(QStringLiteral("ASCII"), 0);
    cmbCharEncodingType->addItem(QStringLiteral("LATIN1"), 1);
    cmbCharEncodingType->addItem(QStringLiteral("UTF8"), 3);
    cmbIntendent = new QComboBox(pane);
    cmbIntendent->setObjectName(QStringLiteral("cmbIntendent"));
    cmbIntendent->addItems({QStringLiteral("NOINDENT"), QStringLiteral("INDENTBLOCKS"), QStringLiteral("AUTOINDENT")});
    column->addWidget(cmbCharEncodingType);
    column->addWidget(cmbIntendent);
    column->addStretch(1);
    return pane;
}

QWidget *frmSettingsEx::BuildCMSPane()
{
    auto *pane = new QWidget(this);
    pane->setObjectName(QStringLiteral("fmeCMSOptions"));
    auto *form = new QFormLayout(pane);
    auto *info = new QLabel(L(txtCMSInfo), pane);
    info->setWordWrap(true);
    form->addRow(info);
    txtCMSUserName = new QLineEdit(pane);
    txtCMSUserName->setObjectName(QStringLiteral("txtCMSUserName"));
    txtCMSUserPassword = new QLineEdit(pane);
    txtCMSUserPassword->setObjectName(QStringLiteral("txtCMSUserPassword"));
    txtCMSUserPassword->setEchoMode(QLineEdit::Password);
    form->addRow(L(txtCMSUser), txtCMSUserName);
    form->addRow(L(txtCMSPassword), txtCMSUserPassword);
    return pane;
}

QWidget *frmSettingsEx::BuildAboutPane()
{
    auto *pane = new QWidget(this);
    pane->setObjectName(QStringLiteral("fmeAboutVindrell"));
    auto *form = new QFormLayout(pane);
    form->addRow(L(txtVersion), new QLabel(QCoreApplication::applicationVersion(), pane));
    return pane;
}

// picHELPSTART. Its links: the first adds a site, the second closes the
// dialog for the browser, the third opens the help on the dialog.
QWidget *frmSettingsEx::BuildWelcomePane()
{
    auto *pane = new QWidget(this);
    pane->setObjectName(QStringLiteral("picHELPSTART"));
    auto *column = new QVBoxLayout(pane);
    for (long text : {txtWelcome, txtWelcome2})
        column->addWidget(new QLabel(L(text), pane));
    const QList<QPair<long, QString>> links = {{txtActivateMySite, QStringLiteral("add")},
                                              {txtStartEditing, QStringLiteral("edit")},
                                              {txtAboutDialog, QStringLiteral("010100.htm")}};
    for (const auto &link : links) {
        auto *label = new QLabel(QStringLiteral("<a href=\"%1\">%2</a>").arg(link.second, L(link.first).toHtmlEscaped()), pane);
        column->addWidget(label);
        connect(label, &QLabel::linkActivated, this, [this](const QString &target) {
            if (target == QLatin1String("add"))
                cmdAddUrl_Click();
            else if (target == QLatin1String("edit"))
                cmdOk_Click();
            else
                frmSettingsHelp::ShowHelpOn(target);
        });
    }
    Check2 = new QCheckBox(L(txtShowNextTime), pane);
    Check2->setObjectName(QStringLiteral("Check2"));
    Check2->setChecked(true);
    column->addWidget(Check2);
    column->addStretch(1);
    connect(Check2, &QCheckBox::toggled, this, [](bool on) {
        CReg::SaveSetting(QStringLiteral("environment"), QStringLiteral("setw"), on ? QString() : QStringLiteral("1"));
    });
    return pane;
}

// ---------------------------------------------------------------- loading

void frmSettingsEx::Form_Load()
{
    m_boolLoading = true;
    QList<MResources::Language> languages;
    MResources::GetLanguages(languages);
    const long stored = CReg::GetSetting(QStringLiteral("Environment"), QStringLiteral("Lang"), QStringLiteral("1033")).toLong();
    for (const MResources::Language &language : languages) {
        cboLangs->addItem(language.name, static_cast<qlonglong>(language.id));
        if (language.id == stored)
            cboLangs->setCurrentIndex(cboLangs->count() - 1);
    }
    if (G::URLDATA.empty())
        CPublicSettings().GetURLSettings();
    m_copy = G::URLDATA;
    auto *sites = Node(nullptr, QStringLiteral("node1"), L(txtMySites));
    TreeView1->addTopLevelItem(sites);
    BuildSiteNodes();
    auto *misc = Node(nullptr, QStringLiteral("node2"), L(txtMisc));
    TreeView1->addTopLevelItem(misc);
    Node(misc, QStringLiteral("node21"), L(txtScript));
    Node(misc, QStringLiteral("node22"), L(txtSiteTree));
    Node(misc, QStringLiteral("node23"), L(txtTidy));
    Node(misc, QStringLiteral("node24"), L(txtCMS));
    TreeView1->addTopLevelItem(Node(nullptr, QStringLiteral("node4"), L(txtAbout)));
    TreeView1->expandAll();
    FillOptions();
    const bool welcome = CReg::GetSetting(QStringLiteral("environment"), QStringLiteral("setw")).isEmpty();
    ShowPane(welcome ? paneWelcome : paneSites);
    m_boolLoading = false;
}

void frmSettingsEx::FillOptions()
{
    const long bits = G::AdvancedUserSettings;
    const QList<QPair<QCheckBox *, long>> boxes = {
        {chkEditASP, advEditASP}, {chkEditDocsJavaScript, advEditDocsJavaScript},
        {chkEnableHTML_Editor, advEnableHTMLEditor}, {chkEnableDeleteFiles, advEnableDeleteFiles},
        {chkEnableMakeFolders, advEnableMakeFolders}, {chkShowAllFiles, advShowAllFiles}};
    for (const auto &box : boxes)
        if (box.first)
            box.first->setChecked((bits & box.second) != 0);
    chkUseTidyComp->setChecked(G::UseTidy);
    chkUseSpellCheck->setChecked(G::useSpellCheck);
    cmbCharEncodingType->setCurrentIndex(qMax(0, cmbCharEncodingType->findData(static_cast<int>(G::TidyCharEncodingType))));
    cmbIntendent->setCurrentIndex(static_cast<int>(qBound(0L, G::TidyIndentScheme, 2L)));
    cmbCharEncodingType->setEnabled(G::UseTidy);
    cmbIntendent->setEnabled(G::UseTidy);
    txtCMSUserName->setText(G::CMSUserName);
    txtCMSUserPassword->setText(G::CMSUserPassword);
}

QString frmSettingsEx::NodeText(const SiteRecord &site)
{
    QString text = site.baseaddress;
    if (text.startsWith(QStringLiteral("http://"), Qt::CaseInsensitive))
        text = text.mid(7);
    return text.isEmpty() ? L(txtNewSite) : text;
}

QTreeWidgetItem *frmSettingsEx::SitesNode() const
{
    return TreeView1->topLevelItem(0);
}

// The children of "node1" from the array, in order; a site not activated
// shows in red.
void frmSettingsEx::BuildSiteNodes()
{
    QTreeWidgetItem *sites = SitesNode();
    qDeleteAll(sites->takeChildren());
    for (size_t i = 0; i < G::URLDATA.size(); ++i) {
        const SiteRecord &site = G::URLDATA[i];
        if (site.isremoved || site.baseaddress == kNotInUse)
            continue;
        auto *node = Node(sites, kNode + QString::number(i), NodeText(site));
        if (site.isactive == QLatin1String("0"))
            node->setForeground(0, QColor(255, 0, 0));
    }
    cmdRemoveURL->setEnabled(sites->childCount() > 0);
}

void frmSettingsEx::ShowPane(Pane pane)
{
    m_panes->setCurrentIndex(pane);
    const bool welcome = pane == paneWelcome;
    cmdAddUrl->setVisible(!welcome);
    cmdRemoveURL->setVisible(!welcome);
    cmdImport->setVisible(!welcome);
}

// No site at all: the placeholder of a store whose sites were all
// removed, or the empty record of a store that never had one.
bool frmSettingsEx::OnlyPlaceholder()
{
    return G::URLDATA.size() == 1
           && (G::URLDATA.front().baseaddress == kNotInUse || G::URLDATA.front().baseaddress.isEmpty());
}

bool frmSettingsEx::OnSite() const
{
    return m_lCurrentURL >= 0 && m_lCurrentURL < static_cast<long>(G::URLDATA.size());
}

SiteRecord &frmSettingsEx::Site()
{
    return G::URLDATA[static_cast<size_t>(m_lCurrentURL)];
}

void frmSettingsEx::TreeView1_NodeClick(QTreeWidgetItem *node)
{
    const QString key = Key(node);
    static const QHash<QString, Pane> panes = {{QStringLiteral("node1"), paneSites}, {QStringLiteral("node2"), paneMisc},
                                              {QStringLiteral("node21"), paneScript}, {QStringLiteral("node22"), paneMisc},
                                              {QStringLiteral("node23"), paneTidy}, {QStringLiteral("node24"), paneCMS},
                                              {QStringLiteral("node4"), paneAbout}};
    if (!key.startsWith(kNode)) {
        ShowPane(panes.value(key, paneSites));
        if (key == QLatin1String("node22") && chkEnableDeleteFiles)
            chkEnableDeleteFiles->setFocus();
        return;
    }
    m_lCurrentURL = key.mid(3).toLong();
    G::lCurrentURL = m_lCurrentURL;
    if (!OnSite())
        return;
    ShowPane(paneSite);
    FillSite(Site());
}

void frmSettingsEx::FillSite(const SiteRecord &site)
{
    m_boolLoading = true;
    const QList<QPair<QLineEdit *, QString>> fields = {
        {txtBASEADDRESS, site.baseaddress}, {txtBASEURL, site.baseurl}, {txtUserID, site.userid},
        {txtPassWord, site.password}, {txtRemoteFolder, site.remotefolder}, {txtFTPRoot, site.ftproot},
        {txtIndexFile, site.indexfile}};
    for (const auto &field : fields) {
        field.first->setText(field.second);
        m_lastGood[field.first] = field.second;
    }
    cboFTPSecurity->setCurrentIndex(FtpAddress::Parse(site.baseurl, true).security);
    m_sshKey->SetPath(site.sshkey);
    m_sshKey->setEnabled(cboFTPSecurity->currentIndex() == FtpAddress::Sftp);
    chkUseRemoteFolder->setChecked(site.useremotef == QLatin1String("1"));
    txtRemoteFolder->setEnabled(chkUseRemoteFolder->isChecked());
    chkAutoIndex->setChecked(site.usesubindex != QLatin1String("0"));
    txtFTPRoot->setEnabled(!chkAutoIndex->isChecked());
    txtIndexFile->setEnabled(!chkAutoIndex->isChecked());
    (site.passivemode ? optMode1 : optMode0)->setChecked(true);
    chkAutoMode->setChecked(site.automode == QLatin1String("1"));
    optMode0->setEnabled(!chkAutoMode->isChecked());
    optMode1->setEnabled(!chkAutoMode->isChecked());
    chkUseAbsoluteFTPPaths->setChecked(site.useabsol);
    chkWwwAlias->setChecked(site.wwwalias);
    cmdForgetCertificate->setEnabled(!site.tlskeypin.isEmpty() || !site.tlsfingerprint.isEmpty());
    ShowStatus(site.isactive != QLatin1String("0"));
    long status = 0;
    ValidateTempFields(status);
    if (site.isnew) {
        txtBASEADDRESS->setFocus();
        txtBASEADDRESS->end(false);
    }
    m_boolLoading = false;
}

void frmSettingsEx::ShowStatus(bool boolActive_p)
{
    lblStatusCheck->setText(L(boolActive_p ? txtActivated : txtNotActivated));
    imgStatus->setPixmap(style()->standardIcon(boolActive_p ? QStyle::SP_DialogApplyButton : QStyle::SP_DialogCancelButton).pixmap(16));
    cmdActivate->setVisible(!boolActive_p);
    cmdSaveSiteToFile->setEnabled(boolActive_p);
    for (int i = 0; OnSite() && i < SitesNode()->childCount(); ++i) {
        QTreeWidgetItem *node = SitesNode()->child(i);
        if (Key(node) == kNode + QString::number(m_lCurrentURL))
            node->setForeground(0, boolActive_p ? palette().text().color() : QColor(255, 0, 0));
    }
}

// ---------------------------------------------------------------- editing

void frmSettingsEx::FieldChanged(QLineEdit *field)
{
    if (m_boolLoading || !OnSite())
        return;
    QString &lastGood = m_lastGood[field];
    if (!ValidateNoAsc32(lastGood, field))
        return;
    if (field == txtPassWord && !ValidatePassword(lastGood, field))
        return;
    lastGood = field->text();
    long status = 0;
    CheckActivateChange(status);
    if (Site().isactive == QLatin1String("0"))
        ValidateTempFields(status);
    WriteField(field);
}

// A blank is refused in every box of the pair: the text goes back to what
// it was, the caret at its end.
bool frmSettingsEx::ValidateNoAsc32(QString &strLastGood_p, QLineEdit *field)
{
    if (!field->text().contains(QLatin1Char(' ')))
        return true;
    UserQuestions::MsgBox(L(txtNoSpaces), UserQuestions::vbOKOnly | UserQuestions::vbExclamation);
    const QSignalBlocker quiet(field);
    field->setText(strLastGood_p);
    field->end(false);
    return false;
}

// The store keeps the password in the Western code page: a character it
// can't hold would come back as "?", and the log-on would fail for no
// reason the user could see.
bool frmSettingsEx::ValidatePassword(QString &strLastGood_p, QLineEdit *field)
{
    for (const QChar c : field->text()) {
        if (AnsiCodePage::Chr(AnsiCodePage::Asc(c)) == c)
            continue;
        UserQuestions::MsgBox(L(txtBadPassword) + c, UserQuestions::vbOKOnly | UserQuestions::vbExclamation);
        const QSignalBlocker quiet(field);
        field->setText(strLastGood_p);
        field->end(false);
        return false;
    }
    return true;
}

void frmSettingsEx::WriteField(QLineEdit *field)
{
    SiteRecord &site = Site();
    const QString text = field->text();
    if (field == txtBASEADDRESS) {
        site.baseaddress = text;
        site.isnew = false;
        QTreeWidgetItem *node = TreeView1->currentItem();
        if (node && Key(node).startsWith(kNode))
            node->setText(0, NodeText(site));
    } else if (field == txtBASEURL) {
        site.baseurl = text;
        const QSignalBlocker quiet(cboFTPSecurity);
        cboFTPSecurity->setCurrentIndex(FtpAddress::Parse(text, true).security);
        m_sshKey->setEnabled(cboFTPSecurity->currentIndex() == FtpAddress::Sftp);
    } else if (field == txtUserID) {
        site.userid = text;
    } else if (field == txtPassWord) {
        site.password = text;
    } else if (field == txtRemoteFolder) {
        site.remotefolder = text;
    } else if (field == txtFTPRoot) {
        site.ftproot = text;
    } else if (field == txtIndexFile) {
        site.indexfile = text;
    }
}

// The combo box writes the scheme of the FTP address, which is where the
// record keeps the choice.
void frmSettingsEx::SecurityChanged(int index)
{
    static const QString schemes[] = {QString(), QStringLiteral("ftpes://"), QStringLiteral("ftps://"),
                                      QStringLiteral("sftp://")};
    const QString host = FtpAddress::Parse(txtBASEURL->text().trimmed(), true).host;
    txtBASEURL->setText(schemes[qBound(0, index, 3)] + host);
}

void frmSettingsEx::CheckChanged(QCheckBox *box)
{
    if (box == chkUseTidyComp) {
        cmbCharEncodingType->setEnabled(box->isChecked());
        cmbIntendent->setEnabled(box->isChecked());
    }
    if (m_boolLoading || !OnSite())
        return;
    SiteRecord &site = Site();
    const bool on = box->isChecked();
    if (box == chkUseRemoteFolder) {
        txtRemoteFolder->setEnabled(on);
        site.useremotef = Bool(on);
    } else if (box == chkAutoIndex) {
        txtFTPRoot->setEnabled(!on);
        txtIndexFile->setEnabled(!on);
        site.usesubindex = Bool(on);
    } else if (box == chkAutoMode) {
        optMode0->setEnabled(!on);
        optMode1->setEnabled(!on);
        site.automode = Bool(on);
    } else if (box == chkUseAbsoluteFTPPaths) {
        if (on)
            chkUseRemoteFolder->setChecked(true);
        lblRemotePath->setText(QStringLiteral("<a href=\"010108.htm\">%1</a>").arg(L(on ? txtAbsolutePath : txtRemotePath).toHtmlEscaped()));
        site.useabsol = on;
    } else if (box == chkWwwAlias) {
        site.wwwalias = on;
    }
    long status = 0;
    CheckActivateChange(status);
}

long frmSettingsEx::ValidateFields(bool &bOK, long &lStatus) const
{
    bOK = true;
    for (const QLineEdit *field : {txtBASEADDRESS, txtBASEURL, txtUserID, txtPassWord})
        bOK = bOK && !field->text().isEmpty();
    lStatus = 1;
    return 1;
}

long frmSettingsEx::ValidateTempFields(long &lStatus)
{
    bool ok = false;
    ValidateFields(ok, lStatus);
    cmdActivate->setEnabled(ok);
    return 1;
}

// An edit can take the activation away, and undoing the edit gives it back.
long frmSettingsEx::CheckActivateChange(long &lStatus)
{
    lStatus = 1;
    if (m_boolLoading || !OnSite() || m_lCurrentURL >= static_cast<long>(m_copy.size()))
        return 1;
    const SiteRecord &was = m_copy[static_cast<size_t>(m_lCurrentURL)];
    bool changed = was.isactive != QLatin1String("1");
    const QList<QPair<QString, QString>> pairs = {
        {txtBASEADDRESS->text(), was.baseaddress}, {txtBASEURL->text(), was.baseurl}, {txtUserID->text(), was.userid},
        {txtPassWord->text(), was.password}, {txtFTPRoot->text(), was.ftproot}, {txtRemoteFolder->text(), was.remotefolder},
        {Bool(chkUseRemoteFolder->isChecked()), was.useremotef}, {Bool(chkAutoIndex->isChecked()), was.usesubindex},
        {txtIndexFile->text(), was.indexfile}, {Bool(optMode1->isChecked()), Bool(was.passivemode)}};
    for (const auto &pair : pairs)
        changed = changed || pair.first != pair.second;
    Site().isactive = changed ? QStringLiteral("0") : QStringLiteral("1");
    ShowStatus(!changed);
    if (changed)
        ValidateTempFields(lStatus);
    return 1;
}

// ---------------------------------------------------------------- sites

long frmSettingsEx::ShowAddNewWebPane()
{
    cmdAddUrl_Click();
    return 1;
}

void frmSettingsEx::cmdAddUrl_Click()
{
    SiteRecord fresh;
    fresh.baseaddress = QStringLiteral("http://");
    fresh.usesubindex = QStringLiteral("1");
    fresh.ischanged = true;
    fresh.isnew = true;
    const bool placeholder = OnlyPlaceholder();
    if (placeholder)
        G::URLDATA.front() = fresh;
    else
        G::URLDATA.push_back(fresh);
    const long index = placeholder ? 0 : static_cast<long>(G::URLDATA.size()) - 1;
    CPublicSettings().SetURLSettings();
    BuildSiteNodes();
    for (int i = 0; i < SitesNode()->childCount(); ++i)
        if (Key(SitesNode()->child(i)) == kNode + QString::number(index)) {
            QFont bold = SitesNode()->child(i)->font(0);
            bold.setBold(true);
            SitesNode()->child(i)->setFont(0, bold);
            TreeView1->setCurrentItem(SitesNode()->child(i));
        }
    txtBASEADDRESS->setFocus();
    txtBASEADDRESS->end(false);
}

void frmSettingsEx::cmdRemoveURL_Click()
{
    QTreeWidgetItem *node = TreeView1->currentItem();
    if (!node || !Key(node).startsWith(kNode))
        return;
    const long answer = UserQuestions::MsgBox(L(txtRemoveQuestion) + node->text(0) + QLatin1Char('?'),
                                              UserQuestions::vbOKCancel | UserQuestions::vbQuestion, L(txtRemoveTitle));
    if (answer != UserQuestions::vbOK)
        return;
    G::URLDATA[static_cast<size_t>(Key(node).mid(3).toLong())].isremoved = true;
    m_lCurrentURL = -1;
    BuildSiteNodes();
    TreeView1->setCurrentItem(SitesNode());
}

void frmSettingsEx::cmdActivate_Click()
{
    if (!OnSite())
        return;
    const long index = m_lCurrentURL;
    m_copy = G::URLDATA;
    G::lCurrentURL = index;
    frmActivateHow how(index, this);
    how.exec();
    // The run normalised the addresses and filled what it found, whatever
    // its end.
    if (!how.Activated()) {
        FillSite(Site());
        return;
    }
    m_copy = G::URLDATA;
    CPublicSettings().SetURLSettings();
    BuildSiteNodes();
    for (int i = 0; i < SitesNode()->childCount(); ++i)
        if (Key(SitesNode()->child(i)) == kNode + QString::number(index)) {
            TreeView1->setCurrentItem(SitesNode()->child(i));
            TreeView1->scrollToItem(SitesNode()->child(i));
        }
    FillSite(Site());
}

// The proxy dialog tries its settings on the site shown, the one the user
// wants to reach; the page engine follows what its OK set at once.
void frmSettingsEx::cmdProxy_Click()
{
    const SiteRecord site = OnSite() ? Site() : SiteRecord();
    if (frmProxySettings::Edit(this, site.baseaddress, site.baseurl, site.userid, site.password))
        MGlobalProjectObjects::ApplyEngineProxy();
}

void frmSettingsEx::cmdForgetCertificate_Click()
{
    if (!OnSite())
        return;
    Site().tlsfingerprint.clear();
    Site().tlskeypin.clear();
    cmdForgetCertificate->setEnabled(false);
}

// ---------------------------------------------------------------- files

void frmSettingsEx::cmdSaveSiteToFile_Click()
{
    if (!OnSite() || Site().isactive != QLatin1String("1"))
        return;
    const SiteRecord &site = Site();
    const QString folder = CReg::GetSetting(QStringLiteral("lastdialogs"), QStringLiteral("savepath"), QDir::homePath());
    const QString proposed = site.baseaddress.mid(7).replace(QLatin1Char('/'), QLatin1Char('_'));
    QString path = SiteFileDialogs::SaveFileName(this, L(txtSaveFolder), QDir(folder).filePath(proposed + kPset));
    if (path.isEmpty())
        return;
    if (!path.endsWith(kPset, Qt::CaseInsensitive))
        path += kPset;
    CReg::SaveSetting(QStringLiteral("lastdialogs"), QStringLiteral("savepath"), QFileInfo(path).absolutePath());
    const QStringList texts = CSettingsFile::FromSite(site, txtCMSUserName->text(), txtCMSUserPassword->text());
    if (CSettingsFile::WriteFile(path, texts) != 1)
        MError::ShowError();
}

// A settings file becomes a new site of the dialog, active as a dropped
// one is; Cancel takes it away again like any other change.
void frmSettingsEx::cmdLoadSiteFromFile_Click()
{
    const QString folder = CReg::GetSetting(QStringLiteral("lastdialogs"), QStringLiteral("savepath"), QDir::homePath());
    const QString path = SiteFileDialogs::OpenFileName(this, L(txtImport), folder);
    QStringList texts;
    if (path.isEmpty())
        return;
    if (CSettingsFile::ReadFile(path, texts) != 1) {
        MError::ShowError();
        return;
    }
    SiteRecord site;
    CSettingsFile::ApplyTo(texts, site);
    site.isactive = QStringLiteral("1");
    site.ischanged = true;
    if (OnlyPlaceholder())
        G::URLDATA.front() = site;
    else
        G::URLDATA.push_back(site);
    BuildSiteNodes();
    m_boolLoading = true;
    FillOptions();
    m_boolLoading = false;
}

// ---------------------------------------------------------------- options

// The language is stored at once; the string table is read at start.
// The message names this program rather than the browser the text was
// first written for.
void frmSettingsEx::cboLangs_Click()
{
    const QString chosen = QString::number(cboLangs->currentData().toLongLong());
    const QString stored = CReg::GetSetting(QStringLiteral("Environment"), QStringLiteral("Lang"), QStringLiteral("1033"));
    if (chosen == stored)
        return;
    UserQuestions::MsgBox(L(txtRestart), UserQuestions::vbOKOnly | UserQuestions::vbInformation);
    CReg::SaveSetting(QStringLiteral("Environment"), QStringLiteral("Lang"), chosen);
}

// Bit 8 (an option of the link dialog that a settings file may carry) is
// not offered here, and a press of OK keeps it as it stands rather than
// dropping what the administrator set.
long frmSettingsEx::SaveFlags()
{
    long bits = G::AdvancedUserSettings & advLinkDialogOption;
    const QList<QPair<QCheckBox *, long>> boxes = {
        {chkEditASP, advEditASP}, {chkEditDocsJavaScript, advEditDocsJavaScript},
        {chkEnableHTML_Editor, advEnableHTMLEditor}, {chkEnableDeleteFiles, advEnableDeleteFiles},
        {chkEnableMakeFolders, advEnableMakeFolders}, {chkShowAllFiles, advShowAllFiles}};
    for (const auto &box : boxes)
        if (box.first && box.first->isChecked())
            bits += box.second;
    G::AdvancedUserSettings = bits;
    G::UseTidy = chkUseTidyComp->isChecked();
    // The spell check's switch is kept here too, so that a user can turn it
    // on without editing the settings file by hand.
    G::useSpellCheck = chkUseSpellCheck->isChecked();
    CReg::SaveSetting(QStringLiteral("Spell"), QStringLiteral("useSpellCheck"),
                      G::useSpellCheck ? QStringLiteral("True") : QStringLiteral("False"));
    G::TidyCharEncodingType = cmbCharEncodingType->currentData().toLongLong();
    G::TidyIndentScheme = cmbIntendent->currentIndex();
    G::CMSUserName = txtCMSUserName->text();
    G::CMSUserPassword = txtCMSUserPassword->text();
    return CSettingsFileDrop::SaveAdvanced();
}

// The removed records leave the array, the others keep their order.
void frmSettingsEx::RemoveMarkedRecords()
{
    std::vector<SiteRecord> kept;
    for (const SiteRecord &site : G::URLDATA)
        if (!site.isremoved)
            kept.push_back(site);
    if (kept.empty()) {
        kept.resize(1);
        kept.front().baseaddress = kNotInUse;
    }
    G::URLDATA = kept;
}

long frmSettingsEx::Apply()
{
    RemoveMarkedRecords();
    m_lCurrentURL = -1;
    const long ok = SaveFlags() == 1 && CPublicSettings().SetURLSettings() == 1;
    if (!ok)
        MError::ShowError();
    m_copy = G::URLDATA;
    BuildSiteNodes();
    return ok ? 1 : 0;
}

void frmSettingsEx::cmdOk_Click()
{
    if (Apply() == 1)
        accept();
}

// Closing the window counts as Cancel. Changes to sites added or removed
// here are offered for saving; anything else goes back to the copy.
void frmSettingsEx::reject()
{
    bool touched = false;
    for (const SiteRecord &site : G::URLDATA)
        touched = touched || site.ischanged || site.isremoved;
    long answer = UserQuestions::vbNo;
    if (touched)
        answer = UserQuestions::MsgBox(L(txtChanges) + QLatin1Char('\n') + L(txtSaveQuestion),
                                       UserQuestions::vbYesNoCancel | UserQuestions::vbQuestion, L(txtSaveTitle));
    if (answer == UserQuestions::vbYes) {
        for (SiteRecord &site : G::URLDATA)
            site.ischanged = false;
        RemoveMarkedRecords();
    } else {
        G::URLDATA = m_copy;
    }
    if (!CPublicSettings().SetURLSettings())
        MError::ShowError();
    QDialog::reject();
}
