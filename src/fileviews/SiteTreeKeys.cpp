#include "fileviews/SiteTreeKeys.h"

QString SiteTreeKeys::RootKey(const QString &strBaseAddress_p)
{
    QString root = strBaseAddress_p;
    while (root.endsWith(QLatin1Char('/')))
        root.chop(1);
    return root;
}

QString SiteTreeKeys::Address(const QString &strKey_p, const QString &strRootKey_p)
{
    QString path = strKey_p.startsWith(strRootKey_p) ? strKey_p.mid(strRootKey_p.size()) : strKey_p;
    while (path.startsWith(QLatin1Char('/')))
        path.remove(0, 1);
    return path;
}

QString SiteTreeKeys::InFolder(const QString &strFolderKey_p, const QString &strRootKey_p, const QString &strName_p)
{
    const QString folder = Address(strFolderKey_p, strRootKey_p);
    return folder.isEmpty() ? strName_p : folder + QLatin1Char('/') + strName_p;
}

QString SiteTreeKeys::FolderAddress(const QString &strFolderKey_p, const QString &strRootKey_p)
{
    return InFolder(strFolderKey_p, strRootKey_p, QStringLiteral("dummy.htm"));
}

QString SiteTreeKeys::ParentKey(const QString &strKey_p)
{
    return strKey_p.left(strKey_p.lastIndexOf(QLatin1Char('/')));
}

SiteRecord SiteTreeKeys::CurrentSite()
{
    const auto &sites = MGlobalProjectObjects::URLDATA;
    const long current = MGlobalProjectObjects::lCurrentURL;
    return current >= 0 && current < long(sites.size()) ? sites.at(std::size_t(current)) : SiteRecord();
}
