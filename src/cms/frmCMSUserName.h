#pragma once

#include "cms/CMSTables.h"

#include <QDialog>

#include <vector>

class QCheckBox;
class QLineEdit;
class QPushButton;

// Asks for one CMS user: name, password and whether he administers the
// site. OK takes only a user the CMS file can keep and whose name no other
// user has; otherwise the reason is said and the dialog stays.
class frmCMSUserName : public QDialog
{
    Q_OBJECT

public:
    explicit frmCMSUserName(QWidget *parent = nullptr);

    // Either text empty: both boxes start empty and OK waits for both.
    void init(const QString &strUsername_p = {}, const QString &strPassword_p = {}, long lIsAdmin_p = 0);
    // The users the name must differ from; lSkip_p is the one being edited.
    void SetUsers(const std::vector<CMSUSER> &aUsers_p, long lSkip_p);

    bool Cancelled() const { return m_boolCancelled; }
    QString UserName() const { return m_strUserName; }
    QString Password() const { return m_strPassword; }
    long IsAdmin() const { return m_lIsAdmin; }

private:
    void TextChanged();
    void chkIsAdmin_Click(bool ticked);
    void cmdOK_Click();

    QLineEdit *txtUserName = nullptr;
    QLineEdit *txtPassword = nullptr;
    QCheckBox *chkIsAdmin = nullptr;
    QPushButton *cmdOK = nullptr;
    const std::vector<CMSUSER> *m_aUsers = nullptr;
    long m_lSkip = -1;
    bool m_boolCancelled = true;
    bool m_boolSilent = false;
    QString m_strUserName;
    QString m_strPassword;
    long m_lIsAdmin = 0;
};
