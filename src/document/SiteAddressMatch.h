#pragma once

#include <QString>
#include <QStringList>

// Whether an address on screen belongs to a site whose HTTP address is
// baseaddress. A host that moved to https still shows the same site, so
// the scheme (http or https) does not count; the host's case never counts
// (names are case-blind), and a leading "www." only when the record says
// that both names are the site. The path counts by whole segments, with
// its escapes decoded and its case kept: "/shop" holds "/shop/a.htm" but
// neither "/shopping/" nor "/Shop/".
class SiteAddressMatch
{
public:
    static bool Holds(const QString &baseaddress, const QString &address, bool wwwAlias);

    // The address is the site's home: the same place as baseaddress, a
    // final "/" aside.
    static bool IsHome(const QString &baseaddress, const QString &address, bool wwwAlias);

    // How many folders the site lies below its host: "http://host/a/b" 2.
    static long FolderLevels(const QString &baseaddress);

private:
    struct Place
    {
        bool web = false; // http or https
        bool secure = false; // https
        QString host;
        int port = -1;
        QStringList folders;
    };
    static Place PlaceOf(const QString &address, bool wwwAlias);
    static bool SameHost(const Place &base, const Place &page);
};
