#include "transfer/RemotePathMapper.h"

namespace {
const QChar kSlash = QLatin1Char('/');
}

QString RemotePathMapper::TrimSlashes(const QString &s)
{
    if (s.isEmpty() || s == QStringLiteral("/"))
        return QString();
    QString result = s;
    if (result.endsWith(kSlash))
        result.chop(1);
    if (result.startsWith(kSlash))
        result.remove(0, 1);
    return result;
}

QString RemotePathMapper::RemoveTildePart(const QString &strPath)
{
    qsizetype tilde = strPath.indexOf(QStringLiteral("/~"));
    if (tilde < 0)
        tilde = strPath.indexOf(QLatin1Char('~'));
    if (tilde < 0)
        return strPath;
    const qsizetype slash = strPath.indexOf(kSlash, tilde + 1);
    return slash < 0 ? QString() : strPath.mid(slash);
}

QString RemotePathMapper::RemoveFTPPath(const QString &strPath, long lStart)
{
    return strPath.mid(qMax(0L, lStart - 1));
}

QString RemotePathMapper::RemoveLocalPath(const QString &strPath, long lLength)
{
    return strPath.mid(qMax(0L, lLength));
}

void RemotePathMapper::BuildRemoteFolder(const Site &site, const QString &strCurrentFolder_p,
                                         const QString &strDocumentURL_p,
                                         QString &strRemoteFolder_p, QString &strRemoteFile_p)
{
    const qsizetype lastSlash = strDocumentURL_p.lastIndexOf(kSlash);
    strRemoteFile_p = strDocumentURL_p.mid(lastSlash + 1);
    const QString pagePath =
        RemoveTildePart(TrimSlashes(lastSlash < 0 ? QString() : strDocumentURL_p.left(lastSlash + 1)));

    QString folder;
    if (site.ftproot.isEmpty() || site.ftproot == QStringLiteral("/"))
        folder = kSlash + TrimSlashes(pagePath);
    else
        folder = MapUnderFtpRoot(site.ftproot, strCurrentFolder_p, pagePath);

    if (!site.remotefolder.isEmpty() && site.useremotef == QStringLiteral("1")) {
        const QString remote = TrimSlashes(site.remotefolder);
        if (!folder.contains(remote, Qt::CaseInsensitive))
            folder = remote + kSlash + TrimSlashes(folder);
    }
    strRemoteFolder_p = folder;
}

// The page's folder below the web root, seen from the folder the session
// stands in: a page address may repeat the web root's path, and a session
// that already stands inside that path must not walk into it again.
QString RemotePathMapper::MapUnderFtpRoot(const QString &ftproot, const QString &strCurrentFolder_p,
                                          const QString &strPagePath_p)
{
    const QString root = TrimSlashes(ftproot);
    QString page = strPagePath_p;
    const qsizetype found = page.lastIndexOf(root);
    if (found >= 0 && !root.isEmpty())
        page = page.mid(found + root.size());
    QString folder = root + kSlash + TrimSlashes(page);

    if (strCurrentFolder_p.isEmpty() || strCurrentFolder_p == QStringLiteral("/"))
        return folder;
    const QString current = strCurrentFolder_p.startsWith(kSlash) ? strCurrentFolder_p.mid(1)
                                                                  : strCurrentFolder_p;
    const qsizetype inside = folder.indexOf(current);
    if (inside >= 0) {
        folder = folder.mid(inside + current.size() + 1);
        if (folder.isEmpty())
            folder = strCurrentFolder_p;
    }
    return folder;
}
