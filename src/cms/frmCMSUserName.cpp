#include "cms/frmCMSUserName.h"

#include "cms/CMSNameRules.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
enum : long { txtUserInfo = 20434, txtUsernameLabel = 20400, txtPasswordLabel = 20435, txtIsAdmin = 20436, txtCMSInfo = 20443,
              txtWholeWeb = 20444, txtOK = 14624, txtCancel = 14625, txtAdminTitle = 20228 };

QString L(long id)
{
    return MResources::LoadResourceString(id);
}
} // namespace

frmCMSUserName::frmCMSUserName(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmCMSUserName"));
    setWindowTitle(L(txtUserInfo));
    auto *layout = new QVBoxLayout(this);
    auto *form = new QFormLayout;
    txtUserName = new QLineEdit(this);
    txtUserName->setObjectName(QStringLiteral("txtUserName"));
    txtPassword = new QLineEdit(this);
    txtPassword->setObjectName(QStringLiteral("txtPassword"));
    form->addRow(L(txtUsernameLabel), txtUserName);
    form->addRow(L(txtPasswordLabel), txtPassword);
    layout->addLayout(form);
    chkIsAdmin = new QCheckBox(L(txtIsAdmin), this);
    chkIsAdmin->setObjectName(QStringLiteral("chkIsAdmin"));
    layout->addWidget(chkIsAdmin);
    auto *buttons = new QDialogButtonBox(this);
    cmdOK = buttons->addButton(L(txtOK), QDialogButtonBox::AcceptRole);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    QPushButton *cancel = buttons->addButton(L(txtCancel), QDialogButtonBox::RejectRole);
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    layout->addWidget(buttons);
    connect(cmdOK, &QPushButton::clicked, this, &frmCMSUserName::cmdOK_Click);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(txtUserName, &QLineEdit::textChanged, this, &frmCMSUserName::TextChanged);
    connect(txtPassword, &QLineEdit::textChanged, this, &frmCMSUserName::TextChanged);
    connect(chkIsAdmin, &QCheckBox::toggled, this, &frmCMSUserName::chkIsAdmin_Click);
    init();
}

void frmCMSUserName::init(const QString &strUsername_p, const QString &strPassword_p, long lIsAdmin_p)
{
    const bool both = !strUsername_p.isEmpty() && !strPassword_p.isEmpty();
    txtUserName->setText(both ? strUsername_p : QString());
    txtPassword->setText(both ? strPassword_p : QString());
    // Showing a stored administrator is no decision to warn about.
    m_boolSilent = both && lIsAdmin_p == 1 && !chkIsAdmin->isChecked();
    chkIsAdmin->setChecked(both && lIsAdmin_p == 1);
    m_boolSilent = false;
    m_lIsAdmin = chkIsAdmin->isChecked() ? 1 : 0;
    TextChanged();
}

void frmCMSUserName::SetUsers(const std::vector<CMSUSER> &aUsers_p, long lSkip_p)
{
    m_aUsers = &aUsers_p;
    m_lSkip = lSkip_p;
}

void frmCMSUserName::TextChanged()
{
    cmdOK->setEnabled(!txtUserName->text().isEmpty() && !txtPassword->text().isEmpty());
}

void frmCMSUserName::chkIsAdmin_Click(bool ticked)
{
    m_lIsAdmin = ticked ? 1 : 0;
    if (ticked && !m_boolSilent)
        UserQuestions::MsgBox(L(txtWholeWeb), UserQuestions::vbInformation, L(txtCMSInfo));
    m_boolSilent = false;
}

void frmCMSUserName::cmdOK_Click()
{
    const QString refusal = CMSNameRules::Refusal(txtUserName->text(), txtPassword->text(),
                                                  m_aUsers ? *m_aUsers : std::vector<CMSUSER>(), m_lSkip);
    if (!refusal.isEmpty()) {
        UserQuestions::MsgBox(refusal, UserQuestions::vbExclamation, L(txtAdminTitle));
        return;
    }
    m_strUserName = txtUserName->text();
    m_strPassword = txtPassword->text();
    m_boolCancelled = false;
    accept();
}
