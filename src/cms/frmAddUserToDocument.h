#pragma once

#include "cms/CMSTables.h"

#include <QDialog>

#include <vector>

class CMSUserListModel;

// Picks the users allowed to edit a page, from a list with check boxes.
// The panel passes its own copy of the users, so that users added there
// and not yet saved can be chosen too; the page menus pass the session's.
class frmAddUserToDocument : public QDialog
{
    Q_OBJECT

public:
    explicit frmAddUserToDocument(const std::vector<CMSUSER> &aUsers_p, QWidget *parent = nullptr);

    // Ticks the users of a page's list (its last element is unused).
    void SetCheckedUsers(const QList<float> &sngUsers_p);
    // After OK: the ticked users' indexes and one unused -1 at the end, the
    // form every walk over such a list expects.
    QList<float> NewPageUsers() const { return m_aNewPageUsers; }
    bool Cancelled() const { return m_boolCancelled; }

    // The common step of the page commands and the panel: the dialog on the
    // page's entry, its list replaced on OK. An entry that existed before
    // starts with its users ticked. True when confirmed.
    static bool AskForUsers(QWidget *parent, std::vector<CMSPAGE> &aPages_p, std::size_t lPage_p, bool boolExisted_p,
                            const std::vector<CMSUSER> &aUsers_p);

private:
    void cmdOK_Click();

    CMSUserListModel *m_model = nullptr;
    QList<float> m_aNewPageUsers;
    bool m_boolCancelled = true;
};
