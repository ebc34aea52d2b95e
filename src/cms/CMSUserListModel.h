#pragma once

#include "cms/CMSTables.h"

#include <QAbstractTableModel>
#include <QSet>

#include <vector>

// The users of a CMS table as a list: name and, unless only names are
// wanted, the password in clear. Hidden users and the spare entry get no
// row. Rows are made when the view asks for them, so a table of thousands
// costs no widgets. With check boxes, the checked rows are kept by user
// index.
class CMSUserListModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    CMSUserListModel(const std::vector<CMSUSER> &aUsers_p, bool boolPasswords_p, bool boolCheckable_p,
                     QObject *parent = nullptr);

    // Reads the table again after it changed.
    void Rebuild();
    // The index in the table of a row; -1 for none.
    long UserIndex(int row) const;

    void SetChecked(const QSet<long> &users_p);
    // The checked users, in the order of the list.
    QList<long> Checked() const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const std::vector<CMSUSER> &m_aUsers;
    std::vector<long> m_rows; // table index of each row
    QSet<long> m_checked;
    bool m_boolPasswords;
    bool m_boolCheckable;
};
