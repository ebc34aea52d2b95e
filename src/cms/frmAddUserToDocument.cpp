#include "cms/frmAddUserToDocument.h"

#include "cms/CMSUserListModel.h"
#include "support/MResources.h"
#include "support/OkCancelButtons.h"

#include <QHeaderView>
#include <QTreeView>
#include <QVBoxLayout>

namespace {
enum : long { txtCaption = 20437 };
}

frmAddUserToDocument::frmAddUserToDocument(const std::vector<CMSUSER> &aUsers_p, QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmAddUserToDocument"));
    setWindowTitle(MResources::LoadResourceString(txtCaption));
    auto *layout = new QVBoxLayout(this);
    m_model = new CMSUserListModel(aUsers_p, false, true, this);
    auto *list = new QTreeView(this);
    list->setObjectName(QStringLiteral("ListUsers"));
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setModel(m_model);
    layout->addWidget(list);
    OkCancelButtons::Add(this, layout, [this] { cmdOK_Click(); });
}

void frmAddUserToDocument::SetCheckedUsers(const QList<float> &sngUsers_p)
{
    QSet<long> checked;
    for (qsizetype i = 0; i + 1 < sngUsers_p.size(); ++i)
        checked.insert(long(sngUsers_p[i]));
    m_model->SetChecked(checked);
}

void frmAddUserToDocument::cmdOK_Click()
{
    m_aNewPageUsers.clear();
    for (long user : m_model->Checked())
        m_aNewPageUsers.append(float(user));
    m_aNewPageUsers.append(-1.0f);
    m_boolCancelled = false;
    accept();
}

bool frmAddUserToDocument::AskForUsers(QWidget *parent, std::vector<CMSPAGE> &aPages_p, std::size_t lPage_p,
                                       bool boolExisted_p, const std::vector<CMSUSER> &aUsers_p)
{
    frmAddUserToDocument form(aUsers_p, parent);
    if (boolExisted_p)
        form.SetCheckedUsers(aPages_p[lPage_p].sngUsers);
    form.exec();
    if (form.Cancelled())
        return false;
    aPages_p[lPage_p].sngUsers = form.NewPageUsers();
    return true;
}
