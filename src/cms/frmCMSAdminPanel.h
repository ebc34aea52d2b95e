#pragma once

#include "cms/CMSTables.h"

#include <QDialog>

#include <vector>

class CMSPageListModel;
class CMSUserListModel;
class QBoxLayout;
class QMimeData;
class QPushButton;
class QRadioButton;
class QTreeView;

// The administrator's panel: the site's CMS users with their passwords and
// limits, the pages tied to them, the lock mode, a settings file for one
// user, and the save of it all to cms.dat on the server. It works on its
// own copies of the tables; only "Save to server" gives them back.
//
// The band's administrator button opens it with ShowAdminPanel.
class frmCMSAdminPanel : public QDialog
{
    Q_OBJECT

public:
    explicit frmCMSAdminPanel(QWidget *parent = nullptr);

    // Copies the tables (read first when this client has not read the
    // current site's file yet) and fills the lists.
    long init(QWidget *hwndParent_p);

    // The one entry for the band: the panel, modal over the window.
    static void ShowAdminPanel(QWidget *parent);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void BuildUsers(QBoxLayout *layout);
    void BuildPages(QBoxLayout *layout);
    void BuildLockMode(QBoxLayout *layout);
    void BuildButtons(QBoxLayout *layout);
    void CopyTables();
    void Refill();
    void EnableUserButtons(bool on);
    void EnablePageButtons(bool on);
    long SelectedUser() const;
    long SelectedPage() const;

    void OptionFileLock_Click(bool boolAll_p);
    void cmdAddUser_Click();
    void cmdEditUser_Click();
    void cmdDeleteUser_Click();
    void cmdShowUserlimits_Click();
    void cmdGenerateSettingsFile_Click();
    void cmdRemoveFile_Click();
    void cmdDeleteAllLockFiles_Click();
    void cmdSetUsersToFile_Click();
    void cmdSaveSettings_Click();
    bool ServerStillAsRead();
    bool AcceptsDrop(const QMimeData *data) const;
    void DropPage(const QMimeData *data);

    std::vector<CMSUSER> m_aUsers;
    std::vector<CMSPAGE> m_aPages;
    bool m_boolAllLocked = true;
    bool m_boolSilentOption = false;
    QWidget *m_hwndParent = nullptr;

    CMSUserListModel *m_userModel = nullptr;
    CMSPageListModel *m_pageModel = nullptr;
    QTreeView *ListUsers = nullptr;
    QTreeView *ListLockedFiles = nullptr;
    QRadioButton *OptionFileLockAll = nullptr;
    QRadioButton *OptionFileLockOnlySelected = nullptr;
    QList<QPushButton *> m_userButtons;
    QList<QPushButton *> m_pageButtons;
};
