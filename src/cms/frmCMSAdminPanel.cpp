#include "cms/frmCMSAdminPanel.h"

#include "cms/CCMS.h"
#include "cms/CMSPageListModel.h"
#include "cms/CMSUserListModel.h"
#include "cms/frmAddUserToDocument.h"
#include "cms/frmCMSSetUserLimits.h"
#include "cms/frmCMSUserName.h"
#include "config/CSettingsFile.h"
#include "config/MGlobalProjectObjects.h"
#include "config/frmSettingsHelp.h"
#include "fileviews/CSiteTreeView.h"
#include "fileviews/SiteFileDialogs.h"
#include "platform/CReg.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QDir>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QFileInfo>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QRadioButton>
#include <QStandardPaths>
#include <QTreeView>
#include <QUrl>
#include <QVBoxLayout>

namespace {
enum : long {
    txtCaption = 20404, txtInfo = 20405, txtUsersFrame = 20406, txtPagesFrame = 20417, txtPagesTip = 20424,
    txtLockFrame = 20425, txtLockFrameTip = 20426, txtCMSTitle = 20438, txtLockAllInfo = 20439,
    txtLockSelectedInfo = 20440, txtDeleteUser = 20441, txtDeleteAll = 20442, txtChanged = 20454, txtKeyNote = 20456,
    txtSaveFolder = 13007, txtNotSaved = 14009, txtTransferError = 14010
};

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

// A button: its name, caption and tool tip.
struct ButtonRow
{
    const char *name;
    long caption;
    long tip;
};

constexpr ButtonRow kUserButtons[] = {{"cmdShowUserlimits", 20407, 20408}, {"cmdAddUser", 20409, 20410},
                                      {"cmdEditUser", 20411, 20412}, {"cmdGenerateSettingsFile", 20413, 20414},
                                      {"cmdDeleteUser", 20415, 20416}};
constexpr ButtonRow kPageButtons[] = {{"cmdSetUsersToFile", 20418, 20419}, {"cmdDeleteAllLockFiles", 20420, 20421},
                                      {"cmdRemoveFile", 20422, 20423}};
constexpr ButtonRow kFormButtons[] = {{"cmdSaveSettings", 20229, 20431}, {"cmdCancel", 14625, 20432},
                                      {"cmdHelp", 20451, 20433}};

QPushButton *AddButton(QWidget *parent, QBoxLayout *layout, const ButtonRow &row)
{
    auto *button = new QPushButton(L(row.caption), parent);
    button->setObjectName(QString::fromLatin1(row.name));
    button->setToolTip(L(row.tip));
    layout->addWidget(button);
    return button;
}

QTreeView *MakeList(QWidget *parent, const char *name)
{
    auto *list = new QTreeView(parent);
    list->setObjectName(QString::fromLatin1(name));
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    list->setSelectionBehavior(QAbstractItemView::SelectRows);
    list->setAllColumnsShowFocus(true);
    return list;
}

SiteRecord CurrentSite()
{
    const auto &sites = MGlobalProjectObjects::URLDATA;
    const long index = MGlobalProjectObjects::lCurrentURL;
    return index >= 0 && index < long(sites.size()) ? sites[std::size_t(index)] : SiteRecord();
}

// A name offered for the settings file: the user name, with what no file
// name can hold put aside. The dialog only offers it.
QString ProposedFileName(const QString &strUser_p)
{
    QString name = strUser_p;
    name.replace(QLatin1Char('/'), QLatin1Char('_'));
    name.remove(QChar(0));
    return name + QStringLiteral(".pset");
}
} // namespace

frmCMSAdminPanel::frmCMSAdminPanel(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmCMSAdminPanel"));
    setWindowTitle(L(txtCaption));
    auto *layout = new QVBoxLayout(this);
    auto *info = new QLabel(L(txtInfo), this);
    info->setObjectName(QStringLiteral("lblInfoAboutPanel"));
    info->setWordWrap(true);
    layout->addWidget(info);
    // What the file is, said where the administrator decides about it.
    auto *note = new QLabel(L(txtKeyNote), this);
    note->setObjectName(QStringLiteral("lblCMSFileNote"));
    note->setWordWrap(true);
    layout->addWidget(note);
    m_userModel = new CMSUserListModel(m_aUsers, true, false, this);
    m_pageModel = new CMSPageListModel(m_aPages, m_aUsers, this);
    BuildUsers(layout);
    BuildPages(layout);
    BuildLockMode(layout);
    BuildButtons(layout);
    resize(720, 640);
}

void frmCMSAdminPanel::BuildUsers(QBoxLayout *layout)
{
    auto *frame = new QGroupBox(L(txtUsersFrame), this);
    frame->setObjectName(QStringLiteral("fmeCMSUsers"));
    auto *row = new QHBoxLayout(frame);
    ListUsers = MakeList(frame, "ListUsers");
    ListUsers->setModel(m_userModel);
    row->addWidget(ListUsers, 1);
    auto *buttons = new QVBoxLayout;
    for (const ButtonRow &b : kUserButtons)
        m_userButtons.append(AddButton(frame, buttons, b));
    buttons->addStretch(1);
    row->addLayout(buttons);
    layout->addWidget(frame, 1);
    connect(ListUsers->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { EnableUserButtons(SelectedUser() >= 0); });
    connect(m_userButtons[0], &QPushButton::clicked, this, &frmCMSAdminPanel::cmdShowUserlimits_Click);
    connect(m_userButtons[1], &QPushButton::clicked, this, &frmCMSAdminPanel::cmdAddUser_Click);
    connect(m_userButtons[2], &QPushButton::clicked, this, &frmCMSAdminPanel::cmdEditUser_Click);
    connect(m_userButtons[3], &QPushButton::clicked, this, &frmCMSAdminPanel::cmdGenerateSettingsFile_Click);
    connect(m_userButtons[4], &QPushButton::clicked, this, &frmCMSAdminPanel::cmdDeleteUser_Click);
}

void frmCMSAdminPanel::BuildPages(QBoxLayout *layout)
{
    auto *frame = new QGroupBox(L(txtPagesFrame), this);
    frame->setObjectName(QStringLiteral("fmeCMSLockedFiles"));
    auto *row = new QHBoxLayout(frame);
    ListLockedFiles = MakeList(frame, "ListLockedFiles");
    ListLockedFiles->setToolTip(L(txtPagesTip));
    ListLockedFiles->setModel(m_pageModel);
    ListLockedFiles->setAcceptDrops(true);
    ListLockedFiles->viewport()->setAcceptDrops(true);
    ListLockedFiles->viewport()->installEventFilter(this);
    row->addWidget(ListLockedFiles, 1);
    auto *buttons = new QVBoxLayout;
    for (const ButtonRow &b : kPageButtons)
        m_pageButtons.append(AddButton(frame, buttons, b));
    buttons->addStretch(1);
    row->addLayout(buttons);
    layout->addWidget(frame, 1);
    connect(ListLockedFiles->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { EnablePageButtons(SelectedPage() >= 0); });
    connect(m_pageButtons[0], &QPushButton::clicked, this, &frmCMSAdminPanel::cmdSetUsersToFile_Click);
    connect(m_pageButtons[1], &QPushButton::clicked, this, &frmCMSAdminPanel::cmdDeleteAllLockFiles_Click);
    connect(m_pageButtons[2], &QPushButton::clicked, this, &frmCMSAdminPanel::cmdRemoveFile_Click);
}

void frmCMSAdminPanel::BuildLockMode(QBoxLayout *layout)
{
    auto *frame = new QGroupBox(L(txtLockFrame), this);
    frame->setObjectName(QStringLiteral("fmeCMSFileLockSettings"));
    frame->setToolTip(L(txtLockFrameTip));
    auto *row = new QVBoxLayout(frame);
    OptionFileLockAll = new QRadioButton(L(20427), frame);
    OptionFileLockAll->setObjectName(QStringLiteral("OptionFileLockAll"));
    OptionFileLockAll->setToolTip(L(20428));
    OptionFileLockOnlySelected = new QRadioButton(L(20429), frame);
    OptionFileLockOnlySelected->setObjectName(QStringLiteral("OptionFileLockOnlySelected"));
    OptionFileLockOnlySelected->setToolTip(L(20430));
    row->addWidget(OptionFileLockAll);
    row->addWidget(OptionFileLockOnlySelected);
    layout->addWidget(frame);
    connect(OptionFileLockAll, &QRadioButton::clicked, this, [this] { OptionFileLock_Click(true); });
    connect(OptionFileLockOnlySelected, &QRadioButton::clicked, this, [this] { OptionFileLock_Click(false); });
}

void frmCMSAdminPanel::BuildButtons(QBoxLayout *layout)
{
    auto *row = new QHBoxLayout;
    row->addStretch(1);
    QPushButton *save = AddButton(this, row, kFormButtons[0]);
    QPushButton *cancel = AddButton(this, row, kFormButtons[1]);
    QPushButton *help = AddButton(this, row, kFormButtons[2]);
    layout->addLayout(row);
    connect(save, &QPushButton::clicked, this, &frmCMSAdminPanel::cmdSaveSettings_Click);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(help, &QPushButton::clicked, this,
            [] { frmSettingsHelp::ShowHelpOn(QStringLiteral("content/quickstart_cms.htm")); });
}

long frmCMSAdminPanel::init(QWidget *hwndParent_p)
{
    m_hwndParent = hwndParent_p;
    // Opened before any Edit on this site, the panel would otherwise save
    // empty tables over the administrators' file.
    if (!CCMS::KnownForCurrentSite()) {
        ResetCMSTables();
        if (CCMS().GetCMSData() == 0)
            MError::ShowError();
    }
    CopyTables();
    return 1;
}

void frmCMSAdminPanel::ShowAdminPanel(QWidget *parent)
{
    frmCMSAdminPanel panel(parent);
    panel.init(parent);
    panel.exec();
}

void frmCMSAdminPanel::CopyTables()
{
    m_aUsers = g_aCMSUsers;
    m_aPages = g_aCMSPages;
    m_boolAllLocked = g_boolAllFilesLocked;
    // The option is set by the code: its message is not for this.
    m_boolSilentOption = true;
    (m_boolAllLocked ? OptionFileLockAll : OptionFileLockOnlySelected)->setChecked(true);
    m_boolSilentOption = false;
    Refill();
}

void frmCMSAdminPanel::Refill()
{
    m_userModel->Rebuild();
    m_pageModel->Rebuild();
    ListUsers->setColumnWidth(0, 200);
    ListLockedFiles->setColumnWidth(0, 440);
    EnableUserButtons(false);
    EnablePageButtons(false);
}

// Add user works without a selection; the other four need one.
void frmCMSAdminPanel::EnableUserButtons(bool on)
{
    for (QPushButton *button : m_userButtons)
        if (button->objectName() != QLatin1String("cmdAddUser"))
            button->setEnabled(on);
}

void frmCMSAdminPanel::EnablePageButtons(bool on)
{
    for (QPushButton *button : m_pageButtons)
        if (button->objectName() != QLatin1String("cmdDeleteAllLockFiles"))
            button->setEnabled(on);
}

long frmCMSAdminPanel::SelectedUser() const
{
    const QModelIndexList rows = ListUsers->selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : m_userModel->UserIndex(rows.first().row());
}

long frmCMSAdminPanel::SelectedPage() const
{
    const QModelIndexList rows = ListLockedFiles->selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

// The lock state goes no further than the panel: a save always writes the
// site locked, and every read makes it locked again.
void frmCMSAdminPanel::OptionFileLock_Click(bool boolAll_p)
{
    if (!m_boolSilentOption)
        UserQuestions::MsgBox(L(boolAll_p ? txtLockAllInfo : txtLockSelectedInfo), UserQuestions::vbInformation,
                              L(txtCMSTitle));
    m_boolAllLocked = boolAll_p;
}

// ------------------------------------------------------------------ users

void frmCMSAdminPanel::cmdAddUser_Click()
{
    frmCMSUserName form(this);
    form.init();
    form.SetUsers(m_aUsers, -1);
    form.exec();
    if (form.Cancelled())
        return;
    // The new user goes into the spare entry, and a new spare stands behind.
    CMSUSER &user = m_aUsers.back();
    user = CMSUSER{form.UserName(), form.Password(),
                   {CMS_ALL_ENABLED, CMS_ALL_ENABLED, CMS_ALL_ENABLED, CMS_ALL_ENABLED, std::int32_t(form.IsAdmin())},
                   0};
    m_aUsers.emplace_back();
    Refill();
}

void frmCMSAdminPanel::cmdEditUser_Click()
{
    const long index = SelectedUser();
    if (index < 0)
        return;
    CMSUSER &user = m_aUsers[std::size_t(index)];
    frmCMSUserName form(this);
    form.init(user.strName, user.strPassword, user.limits.lIsAdmin);
    form.SetUsers(m_aUsers, index);
    form.exec();
    if (!form.Cancelled()) {
        user.strName = form.UserName();
        user.strPassword = form.Password();
        user.limits.lIsAdmin = std::int32_t(form.IsAdmin());
    }
    Refill();
}

// The page lists keep their numbers: a page of a later user now names the
// one who moved into his place. The question says so.
void frmCMSAdminPanel::cmdDeleteUser_Click()
{
    const long index = SelectedUser();
    if (index < 0)
        return;
    if (UserQuestions::MsgBox(L(txtDeleteUser), UserQuestions::vbOKCancel | UserQuestions::vbQuestion, L(txtCMSTitle))
        != UserQuestions::vbOK)
        return;
    m_aUsers.erase(m_aUsers.begin() + index);
    Refill();
}

void frmCMSAdminPanel::cmdShowUserlimits_Click()
{
    const long index = SelectedUser();
    if (index < 0)
        return;
    CMSUSER &user = m_aUsers[std::size_t(index)];
    frmCMSSetUserLimits form(this);
    form.init(user.limits, user.strName);
    form.move(pos());
    form.exec();
    if (!form.Cancelled())
        form.GetCMS_LIMITS(user.limits);
    EnableUserButtons(false);
    ListUsers->clearSelection();
}

// One file carries the site's FTP account and the user's identity: the
// user drops it on his window and is set up.
void frmCMSAdminPanel::cmdGenerateSettingsFile_Click()
{
    const long index = SelectedUser();
    if (index < 0)
        return;
    const CMSUSER &user = m_aUsers[std::size_t(index)];
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString folder = CReg::GetSetting(QStringLiteral("lastdialogs"), QStringLiteral("savepath"), documents);
    QString path = SiteFileDialogs::SaveFileName(this, L(txtSaveFolder), QDir(folder).filePath(ProposedFileName(user.strName)));
    if (path.isEmpty())
        return;
    if (!path.endsWith(QStringLiteral(".pset"), Qt::CaseInsensitive))
        path += QStringLiteral(".pset");
    CReg::SaveSetting(QStringLiteral("lastdialogs"), QStringLiteral("savepath"), QFileInfo(path).absolutePath());
    if (CSettingsFile::WriteFile(path, CSettingsFile::FromSite(CurrentSite(), user.strName, user.strPassword)) != 1)
        MError::ShowError();
}

// ------------------------------------------------------------------ pages

void frmCMSAdminPanel::cmdRemoveFile_Click()
{
    const long index = SelectedPage();
    if (index < 0)
        return;
    m_aPages.erase(m_aPages.begin() + index);
    Refill();
}

void frmCMSAdminPanel::cmdDeleteAllLockFiles_Click()
{
    if (UserQuestions::MsgBox(L(txtDeleteAll), UserQuestions::vbYesNo | UserQuestions::vbQuestion, L(txtCMSTitle))
        == UserQuestions::vbNo)
        return;
    m_aPages.assign(1, CMSPAGE{QString(), {-1.0f}});
    Refill();
}

void frmCMSAdminPanel::cmdSetUsersToFile_Click()
{
    const long index = SelectedPage();
    if (index < 0)
        return;
    frmAddUserToDocument::AskForUsers(this, m_aPages, std::size_t(index), true, m_aUsers);
    m_pageModel->Rebuild();
    EnablePageButtons(false);
}

// A page of the site tree dragged onto the list joins it once.
bool frmCMSAdminPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != ListLockedFiles->viewport())
        return QDialog::eventFilter(watched, event);
    if (event->type() == QEvent::DragEnter || event->type() == QEvent::DragMove) {
        auto *drag = static_cast<QDropEvent *>(event);
        if (AcceptsDrop(drag->mimeData())) {
            drag->setDropAction(Qt::CopyAction);
            drag->accept();
        } else {
            drag->ignore();
        }
        return true;
    }
    if (event->type() == QEvent::Drop) {
        auto *drop = static_cast<QDropEvent *>(event);
        if (AcceptsDrop(drop->mimeData())) {
            DropPage(drop->mimeData());
            drop->acceptProposedAction();
        }
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

bool frmCMSAdminPanel::AcceptsDrop(const QMimeData *data) const
{
    if (!CSiteTreeView::g_boolSiteTreeDrag || !data->hasUrls() || data->urls().isEmpty())
        return false;
    const QString path = data->urls().first().path().toLower();
    return path.endsWith(QStringLiteral(".html")) || path.endsWith(QStringLiteral(".htm"));
}

void frmCMSAdminPanel::DropPage(const QMimeData *data)
{
    const QString address = data->urls().first().toString();
    for (std::size_t i = 0; i + 1 < m_aPages.size(); ++i)
        if (m_aPages[i].strPath == address)
            return;
    m_aPages.back() = CMSPAGE{address, {-1.0f}};
    m_aPages.push_back(CMSPAGE{QString(), {-1.0f}});
    Refill();
}

// ------------------------------------------------------------------- save

// Another administrator may have saved since this client read the file:
// he is told, and may read it again, save over it or go back.
bool frmCMSAdminPanel::ServerStillAsRead()
{
    bool changed = false;
    if (CCMS().ServerChanged(changed) != 1) {
        MError::ShowError();
        return false;
    }
    if (!changed)
        return true;
    const long answer = UserQuestions::MsgBox(L(txtChanged), UserQuestions::vbYesNoCancel | UserQuestions::vbExclamation,
                                              L(txtCMSTitle));
    if (answer == UserQuestions::vbNo)
        return true;
    if (answer == UserQuestions::vbYes) {
        const long read = CCMS().GetCMSData();
        if (read == 0)
            MError::ShowError();
        if (read == -1)
            ResetCMSTables();
        CopyTables();
    }
    return false;
}

void frmCMSAdminPanel::cmdSaveSettings_Click()
{
    if (!CCMS::MayWriteOverNewer() || !ServerStillAsRead())
        return;
    g_aCMSUsers = m_aUsers;
    g_aCMSPages = m_aPages;
    g_boolAllFilesLocked = true;
    const long saved = CCMS().SetCMSData();
    if (saved == 0) {
        MError::SetErrorIfClear(0, QStringLiteral("The CMS file was not saved"),
                                QStringLiteral("frmCMSAdminPanel.cmdSaveSettings"));
        MError::ShowError();
    } else if (saved == -1) {
        UserQuestions::MsgBox(L(txtNotSaved), UserQuestions::vbExclamation, L(txtTransferError));
    }
    accept();
}
