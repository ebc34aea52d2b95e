#include "cms/CMSUserListModel.h"

#include "support/MResources.h"

namespace {
enum : long { txtUsername = 20400, txtUserPassword = 20401 };
}

CMSUserListModel::CMSUserListModel(const std::vector<CMSUSER> &aUsers_p, bool boolPasswords_p, bool boolCheckable_p,
                                   QObject *parent)
    : QAbstractTableModel(parent), m_aUsers(aUsers_p), m_boolPasswords(boolPasswords_p),
      m_boolCheckable(boolCheckable_p)
{
    Rebuild();
}

void CMSUserListModel::Rebuild()
{
    beginResetModel();
    m_rows.clear();
    for (std::size_t i = 0; i + 1 < m_aUsers.size(); ++i)
        if (m_aUsers[i].intHidden == 0)
            m_rows.push_back(long(i));
    endResetModel();
}

long CMSUserListModel::UserIndex(int row) const
{
    return row >= 0 && row < int(m_rows.size()) ? m_rows[std::size_t(row)] : -1;
}

void CMSUserListModel::SetChecked(const QSet<long> &users_p)
{
    m_checked = users_p;
    if (!m_rows.empty())
        emit dataChanged(index(0, 0), index(rowCount() - 1, 0), {Qt::CheckStateRole});
}

QList<long> CMSUserListModel::Checked() const
{
    QList<long> out;
    for (long user : m_rows)
        if (m_checked.contains(user))
            out.append(user);
    return out;
}

int CMSUserListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int CMSUserListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : (m_boolPasswords ? 2 : 1);
}

QVariant CMSUserListModel::data(const QModelIndex &index, int role) const
{
    const long user = UserIndex(index.row());
    if (user < 0)
        return {};
    if (role == Qt::DisplayRole)
        return index.column() == 0 ? m_aUsers[std::size_t(user)].strName : m_aUsers[std::size_t(user)].strPassword;
    if (role == Qt::CheckStateRole && m_boolCheckable && index.column() == 0)
        return m_checked.contains(user) ? Qt::Checked : Qt::Unchecked;
    return {};
}

bool CMSUserListModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const long user = UserIndex(index.row());
    if (!m_boolCheckable || role != Qt::CheckStateRole || user < 0)
        return false;
    if (value.toInt() == Qt::Checked)
        m_checked.insert(user);
    else
        m_checked.remove(user);
    emit dataChanged(index, index, {Qt::CheckStateRole});
    return true;
}

Qt::ItemFlags CMSUserListModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags f = QAbstractTableModel::flags(index);
    if (m_boolCheckable && index.column() == 0)
        f |= Qt::ItemIsUserCheckable;
    return f;
}

QVariant CMSUserListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return MResources::LoadResourceString(section == 0 ? txtUsername : txtUserPassword);
}
