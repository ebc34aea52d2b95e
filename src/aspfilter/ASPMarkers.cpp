#include "aspfilter/ASPMarkers.h"

namespace ASPMarkers {

QString FormatID(long id)
{
    return QStringLiteral("%1").arg(id, 5, 10, QLatin1Char('0'));
}

QString StartWrapper(const QString &id)
{
    return QStringLiteral("<SPAN style=\"keldasp:true\"><%response.write \"<SPAN style=\"\"DISPLAY: "
                          "none\"\">keldaspIN#")
        + id + QStringLiteral("</SPAN>\"%>");
}

QString EndWrapper(const QString &id)
{
    return QStringLiteral("<!--keldaspOUT#") + id + QStringLiteral("--></SPAN>");
}

} // namespace ASPMarkers
