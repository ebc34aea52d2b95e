#include "fileviews/MTreeViewTypes.h"

#include "document/DocumentAddress.h"
#include "support/MResources.h"

#include <QStringList>

namespace {
constexpr long txtByte = 19805, txtKB = 19806, txtMB = 19807;

// The host and the folders and file of an address, with or without its
// scheme; a doubled "/" counts as one.
QStringList Segments(const QString &address)
{
    const qsizetype scheme = address.indexOf(QLatin1String("://"));
    const QString rest = scheme >= 0 ? address.mid(scheme + 3) : address;
    return rest.split(QLatin1Char('/'), Qt::SkipEmptyParts);
}
} // namespace

QString MTreeViewTypes::FormatSizeString(double dblSize_p)
{
    if (dblSize_p < 1001)
        return QString::number(qint64(dblSize_p)) + MResources::LoadResourceString(txtByte);
    if (dblSize_p < 1000001)
        return QString::number(dblSize_p / 1000, 'f', 2) + MResources::LoadResourceString(txtKB);
    return QString::number(dblSize_p / 1000000, 'f', 2) + MResources::LoadResourceString(txtMB);
}

// The path climbs from the folder that holds the page, whose own name is no
// folder level: a link from a/b/p.htm to a/x.htm is "../x.htm". A link into
// the page's folder or below starts with "./", except on a site that lies in
// folders below its host, whose pages are given without it.
long MTreeViewTypes::GetRelativePath(const QString &strTarget_p, const QString &strBase_p, QString &strResult_p)
{
    strResult_p.clear();
    if (strTarget_p.isEmpty() || strBase_p.isEmpty())
        return -1;
    if (strTarget_p == strBase_p) {
        const qsizetype slash = strTarget_p.lastIndexOf(QLatin1Char('/'));
        if (slash < 0)
            return -1;
        strResult_p = strTarget_p.mid(slash + 1);
        return 1;
    }
    QStringList from = Segments(strBase_p);
    const QStringList to = Segments(strTarget_p);
    if (!strBase_p.endsWith(QLatin1Char('/')) && !from.isEmpty())
        from.removeLast();
    if (from.isEmpty() || to.isEmpty() || from.first().compare(to.first(), Qt::CaseInsensitive) != 0) {
        strResult_p = strTarget_p;
        return 1;
    }
    qsizetype common = 1;
    while (common < from.size() && common < to.size() - 1 && from.at(common) == to.at(common))
        ++common;
    const qsizetype climb = from.size() - common;
    QString path = QStringLiteral("../").repeated(climb) + to.mid(common).join(QLatin1Char('/'));
    if (strTarget_p.endsWith(QLatin1Char('/')) && !path.isEmpty() && !path.endsWith(QLatin1Char('/')))
        path += QLatin1Char('/');
    if (climb == 0 && DocumentAddress::CalculateNumberSubDomainLevel() == 0)
        path.prepend(QStringLiteral("./"));
    strResult_p = path;
    return 1;
}
