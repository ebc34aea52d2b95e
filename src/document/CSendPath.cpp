#include "document/CSendPath.h"

long CSendPath::GetPreparedSendPath(const SiteRecord &site, const QString &strURL,
                                    const QString &strPathname, QString &strCorrectedPath)
{
    QString path = strURL;
    if (path.isEmpty()) {
        path = strPathname;
        path.replace(QLatin1String("%20"), QLatin1String(" "));
        path.replace(QLatin1String("%26"), QLatin1String("&"));
        const long levels = CalculateNumberSubDomainLevel(site.baseaddress);
        if (levels >= 1)
            path = ShortenDocumentPath(path, levels);
    }
    path = RemoveTildePart(path);
    strCorrectedPath = JoinRoot(site.ftproot, path);
    return 1;
}

long CSendPath::CalculateNumberSubDomainLevel(const QString &baseaddress)
{
    QString rest = baseaddress;
    if (rest.endsWith(QLatin1Char('/')))
        rest.chop(1);
    return rest.mid(7).count(QLatin1Char('/'));
}

QString CSendPath::ShortenDocumentPath(const QString &strPath, long n)
{
    QString path = strPath;
    for (long i = 0; i < n; ++i) {
        const qsizetype start = path.startsWith(QLatin1Char('/')) ? 1 : 0;
        const qsizetype next = path.indexOf(QLatin1Char('/'), start);
        if (next < 0)
            break; // the file name itself is never cut
        path = path.mid(next);
    }
    return path;
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
    if (root.isEmpty() || strPath.startsWith(root))
        return strPath;
    const bool rootSlash = root.endsWith(QLatin1Char('/'));
    const bool pathSlash = strPath.startsWith(QLatin1Char('/'));
    if (rootSlash && pathSlash)
        return root + strPath.mid(1);
    if (rootSlash || pathSlash)
        return root + strPath;
    return root + QLatin1Char('/') + strPath;
}
