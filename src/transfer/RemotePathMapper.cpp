#include "transfer/RemotePathMapper.h"

#include "document/AddressPath.h"

#include <QStringList>

namespace {
const QChar kSlash = QLatin1Char('/');

// Where the run of segments `part` stands in `whole`, comparing whole
// segments only; -1 when it doesn't.
qsizetype segmentRun(const QStringList &whole, const QStringList &part, Qt::CaseSensitivity cs)
{
    for (qsizetype at = 0; !part.isEmpty() && at + part.size() <= whole.size(); ++at) {
        bool same = true;
        for (qsizetype k = 0; k < part.size() && same; ++k)
            same = whole.at(at + k).compare(part.at(k), cs) == 0;
        if (same)
            return at;
    }
    return -1;
}
} // namespace

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
        // Already in the folder, in whatever letters the user typed it, it
        // is not put in front a second time.
        if (segmentRun(AddressPath::Segments(folder), AddressPath::Segments(remote), Qt::CaseInsensitive) < 0)
            folder = remote + kSlash + TrimSlashes(folder);
    }
    strRemoteFolder_p = folder;
}

// The page's folder below the web root, seen from the folder the session
// stands in: a page path may begin with the web root's path, and a session
// that already stands inside that path must not walk into it again. Both
// are matched by whole segments at the front: with the root "/www" the page
// folder "/www2" is a folder of its own, and a folder of the site that
// happens to share the root's name is left alone.
QString RemotePathMapper::MapUnderFtpRoot(const QString &ftproot, const QString &strCurrentFolder_p,
                                          const QString &strPagePath_p)
{
    const QString root = TrimSlashes(ftproot);
    QStringList page = AddressPath::Segments(strPagePath_p);
    const QStringList rootSegments = AddressPath::Segments(root);
    if (segmentRun(page, rootSegments, Qt::CaseSensitive) == 0)
        page = page.mid(rootSegments.size());
    QStringList folder = rootSegments + page;
    const QString whole = root + kSlash + page.join(kSlash);

    const QStringList current = AddressPath::Segments(strCurrentFolder_p);
    if (current.isEmpty() || segmentRun(folder, current, Qt::CaseSensitive) != 0)
        return whole;
    folder = folder.mid(current.size());
    return folder.isEmpty() ? strCurrentFolder_p : folder.join(kSlash);
}
