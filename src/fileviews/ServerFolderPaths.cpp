#include "fileviews/ServerFolderPaths.h"

#include <QStringList>

namespace {

QStringList Parts(const QString &path)
{
    return path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
}

} // namespace

QString ServerFolderPaths::RelativePath(const QString &strPathname_p, const QString &strChosenKey_p)
{
    QString folder = strPathname_p;
    if (folder.endsWith(QLatin1Char('/')))
        folder.chop(1);
    const qsizetype slash = folder.lastIndexOf(QLatin1Char('/'));
    if (folder.mid(slash + 1).contains(QLatin1Char('.')))
        folder = folder.left(qMax<qsizetype>(slash, 0));
    const QStringList page = Parts(folder);
    const QStringList chosen = Parts(strChosenKey_p == QLatin1String("ROOT") ? QString() : strChosenKey_p);
    qsizetype same = 0;
    while (same < page.size() && same < chosen.size() && page.at(same) == chosen.at(same))
        ++same;
    QString result;
    for (qsizetype i = same; i < page.size(); ++i)
        result += QStringLiteral("../");
    return result + chosen.mid(same).join(QLatin1Char('/'));
}

QString ServerFolderPaths::UpLoadPath(const QString &strChosenKey_p, const SiteRecord &site_p)
{
    const bool root = strChosenKey_p == QLatin1String("ROOT");
    if (site_p.ftproot.isEmpty() || site_p.ftproot == QLatin1String("/"))
        return root ? QStringLiteral("/") : strChosenKey_p;
    QString path = site_p.ftproot + (root ? QString() : strChosenKey_p);
    if (site_p.useremotef == QLatin1String("1"))
        path = site_p.remotefolder + path;
    return path.replace(QStringLiteral("//"), QStringLiteral("/"));
}
