#include "document/SiteAddressMatch.h"

#include "document/AddressPath.h"

#include <QUrl>

// A record typed without its scheme is a web address all the same.
SiteAddressMatch::Place SiteAddressMatch::PlaceOf(const QString &address, bool wwwAlias)
{
    QUrl url(address.trimmed());
    if (url.scheme().isEmpty() || url.host().isEmpty())
        url = QUrl(QStringLiteral("http://") + address.trimmed());
    Place place;
    const QString scheme = url.scheme().toLower();
    place.web = scheme == QLatin1String("http") || scheme == QLatin1String("https");
    place.secure = scheme == QLatin1String("https");
    place.host = url.host().toLower();
    if (wwwAlias && place.host.startsWith(QLatin1String("www.")))
        place.host = place.host.mid(4);
    const int standard = place.secure ? 443 : 80;
    place.port = url.port(standard) == standard ? -1 : url.port();
    place.folders = AddressPath::Segments(AddressPath::Decode(url.path(QUrl::FullyEncoded)));
    return place;
}

bool SiteAddressMatch::SameHost(const Place &base, const Place &page)
{
    // A site that moved to https answers on the port of https, whichever
    // the record names for http; under one scheme the port must agree.
    return base.web && page.web && !base.host.isEmpty() && base.host == page.host
        && (base.secure != page.secure || base.port == page.port);
}

bool SiteAddressMatch::Holds(const QString &baseaddress, const QString &address, bool wwwAlias)
{
    const Place base = PlaceOf(baseaddress, wwwAlias);
    const Place page = PlaceOf(address, wwwAlias);
    return SameHost(base, page) && page.folders.mid(0, base.folders.size()) == base.folders;
}

bool SiteAddressMatch::IsHome(const QString &baseaddress, const QString &address, bool wwwAlias)
{
    const Place base = PlaceOf(baseaddress, wwwAlias);
    const Place page = PlaceOf(address, wwwAlias);
    return SameHost(base, page) && page.folders == base.folders;
}

long SiteAddressMatch::FolderLevels(const QString &baseaddress)
{
    return long(PlaceOf(baseaddress, false).folders.size());
}
