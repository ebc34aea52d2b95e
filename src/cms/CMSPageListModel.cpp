#include "cms/CMSPageListModel.h"

#include "support/MResources.h"

#include <algorithm>

#include <QBrush>
#include <QColor>

namespace {
enum : long { txtCompleteURL = 20402, txtUsers = 20457, txtNoUser = 20458 };

// The list keeps a spare last element that names no user.
QList<float> Listed(const CMSPAGE &page)
{
    return page.sngUsers.first(std::max<qsizetype>(page.sngUsers.size() - 1, 0));
}

bool Names(float user, const std::vector<CMSUSER> &users)
{
    return user >= 0 && user + 1 < float(users.size()) && float(long(user)) == user;
}
} // namespace

CMSPageListModel::CMSPageListModel(const std::vector<CMSPAGE> &aPages_p, const std::vector<CMSUSER> &aUsers_p,
                                   QObject *parent)
    : QAbstractTableModel(parent), m_aPages(aPages_p), m_aUsers(aUsers_p)
{
}

void CMSPageListModel::Rebuild()
{
    beginResetModel();
    endResetModel();
}

QList<long> CMSPageListModel::MissingUsers(const CMSPAGE &page_p, const std::vector<CMSUSER> &aUsers_p)
{
    QList<long> missing;
    for (float user : Listed(page_p))
        if (!Names(user, aUsers_p))
            missing.append(long(user));
    return missing;
}

QString CMSPageListModel::UserNames(const CMSPAGE &page_p, const std::vector<CMSUSER> &aUsers_p)
{
    QStringList names;
    for (float user : Listed(page_p))
        names.append(Names(user, aUsers_p) ? aUsers_p[std::size_t(user)].strName
                                           : MResources::LoadResourceString(txtNoUser).arg(long(user)));
    return names.join(QStringLiteral(", "));
}

int CMSPageListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() || m_aPages.empty() ? 0 : int(m_aPages.size()) - 1;
}

int CMSPageListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : 2;
}

QVariant CMSPageListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const CMSPAGE &page = m_aPages[std::size_t(index.row())];
    if (role == Qt::DisplayRole)
        return index.column() == 0 ? page.strPath : UserNames(page, m_aUsers);
    if (role == Qt::ForegroundRole && index.column() == 1 && !MissingUsers(page, m_aUsers).isEmpty())
        return QBrush(QColor(Qt::darkRed));
    return {};
}

QVariant CMSPageListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return MResources::LoadResourceString(section == 0 ? txtCompleteURL : txtUsers);
}
