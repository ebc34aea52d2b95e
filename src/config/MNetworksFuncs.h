#pragma once

#include "platform/SystemProxyQuery.h"

#include <QString>

// How the machine reaches the Internet, read for the proxy dialog's "Get".
class MNetworksFuncs
{
public:
    // One line a setting into strText_p (each ending in a line end), the
    // sum of the proxy flags into lFlags_p, and the manual proxy line (as
    // "http=host:port;socks=host:port") into strProxyServer_p. Returns 1.
    static long getConnectionFlags(QString &strText_p, long &lFlags_p, QString &strProxyServer_p);

    // The routes the machine's settings (a PAC script run included) give
    // for a web address and for an FTP server, and the script's address.
    // Returns 1.
    static long getAutoConfigedRoute(const QString &strHTTPAddress_p, const QString &strFTPHost_p,
                                     SystemProxyQuery::Route &httpRoute_p, SystemProxyQuery::Route &ftpRoute_p,
                                     QString &strScriptAddress_p);
};
