#pragma once

#include "cms/CMSTables.h"

#include <QAbstractTableModel>

#include <vector>

// The pages of a CMS table as a list: the address, and the users allowed
// on it by name. A number in a page's list that names no user (the user
// was deleted, and later users moved down) is shown as such rather than
// dropped, so the administrator sees it. The spare entry gets no row;
// rows are made as the view asks for them.
class CMSPageListModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    CMSPageListModel(const std::vector<CMSPAGE> &aPages_p, const std::vector<CMSUSER> &aUsers_p,
                     QObject *parent = nullptr);

    void Rebuild();

    // The numbers in a page's user list that name no user of the table.
    static QList<long> MissingUsers(const CMSPAGE &page_p, const std::vector<CMSUSER> &aUsers_p);
    // The users of a page, by name, the missing ones marked.
    static QString UserNames(const CMSPAGE &page_p, const std::vector<CMSUSER> &aUsers_p);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const std::vector<CMSPAGE> &m_aPages;
    const std::vector<CMSUSER> &m_aUsers;
};
