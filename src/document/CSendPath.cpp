#include "document/CSendPath.h"

#include "document/AddressPath.h"
#include "document/DocumentAddress.h"

long CSendPath::GetPreparedSendPath(const SiteRecord &site, const QString &strURL,
                                    const QString &strPathname, QString &strCorrectedPath,
                                    const QString &charset)
{
    QString path = strURL;
    if (path.isEmpty()) {
        path = AddressPath::Decode(strPathname, charset);
        const long levels = DocumentAddress::SubDomainLevel(site.baseaddress);
        if (levels >= 1)
            DocumentAddress::ShortenDocumentPath(path, levels);
    }
    path = RemoveTildePart(path);
    strCorrectedPath = JoinRoot(site.ftproot, path);
    return 1;
}

QString CSendPath::RemoveTildePart(const QString &strPath)
{
    const qsizetype tilde = strPath.indexOf(QLatin1String("/~"));
    if (tilde < 0)
        return strPath;
    const qsizetype next = strPath.indexOf(QLatin1Char('/'), tilde + 2);
    if (next < 0)
        return strPath;
    return strPath.left(tilde) + strPath.mid(next);
}

QString CSendPath::JoinRoot(const QString &root, const QString &strPath)
{
    if (root.isEmpty() || AddressPath::StartsWithRoot(strPath, root))
        return strPath;
    const bool rootSlash = root.endsWith(QLatin1Char('/'));
    const bool pathSlash = strPath.startsWith(QLatin1Char('/'));
    if (rootSlash && pathSlash)
        return root + strPath.mid(1);
    if (rootSlash || pathSlash)
        return root + strPath;
    return root + QLatin1Char('/') + strPath;
}
