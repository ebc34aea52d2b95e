#include "document/ASPMarkerAudit.h"

#include "aspfilter/ASPMarkers.h"

#include <QStringList>

namespace {

const QString kIn = QStringLiteral("keldaspIN#");
const QString kOut = QStringLiteral("keldaspOUT#");
constexpr qsizetype kDigits = 5;

QStringList Occurrences(const QString &html, const QString &marker)
{
    QStringList found;
    for (qsizetype at = html.indexOf(marker); at >= 0; at = html.indexOf(marker, at + marker.size()))
        found.append(html.mid(at, marker.size() + kDigits));
    return found;
}

} // namespace

bool ASPMarkerAudit::MarkersIntact(const QString &html)
{
    QStringList opening = Occurrences(html, kIn);
    QStringList closing = Occurrences(html, kOut);
    for (long id = 0; !opening.isEmpty() && !closing.isEmpty(); id += 2) {
        const QString number = ASPMarkers::FormatID(id);
        if (!opening.removeOne(kIn + number))
            break;
        closing.removeOne(kOut + number);
    }
    return opening.isEmpty() && closing.isEmpty();
}
