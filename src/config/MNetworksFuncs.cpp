#include "config/MNetworksFuncs.h"

#include "support/MResources.h"

namespace {

enum Text : long {
    txtUserSet = 15017, txtAlwaysDetect = 15018, txtDetectionRun = 15019, txtMigrated = 15020,
    txtDontCache = 15021, txtCacheInitRun = 15022, txtDetectionSuspect = 15023, txtDirect = 15024,
    txtProxy = 15025, txtAutoProxyUrl = 15026, txtAutoDetect = 15027
};

void AddValueLine(QString &text, const char *flag, const QString &value)
{
    if (!value.isEmpty())
        text += QStringLiteral("Flag %1 Value = %2 \n").arg(QLatin1String(flag), value);
}

} // namespace

long MNetworksFuncs::getConnectionFlags(QString &strText_p, long &lFlags_p, QString &strProxyServer_p)
{
    strText_p.clear();
    lFlags_p = 0;
    strProxyServer_p.clear();
    AddValueLine(strText_p, "INTERNET_PER_CONN_AUTOCONFIG_URL",
                 SystemProxyQuery::OptionValue(SystemProxyQuery::AutoConfigUrl));

    const long discovery = SystemProxyQuery::OptionValue(SystemProxyQuery::AutoDiscoveryFlags).toLong();
    const std::pair<long, long> discoveryLines[] = {{0x101, txtUserSet},  {0x102, txtAlwaysDetect},
                                                    {0x104, txtDetectionRun}, {0x108, txtMigrated},
                                                    {0x110, txtDontCache}, {0x120, txtCacheInitRun},
                                                    {0x140, txtDetectionSuspect}};
    for (const auto &[mask, line] : discoveryLines) {
        if (!(discovery & mask))
            continue;
        strText_p += MResources::LoadResourceString(line) + QLatin1Char('\n');
        if (mask == 0x101)
            lFlags_p = 257;
        else if (mask == 0x104)
            lFlags_p += 260;
    }

    const long flags = SystemProxyQuery::OptionValue(SystemProxyQuery::Flags).toLong();
    const std::pair<long, long> flagLines[] = {{1, txtDirect}, {2, txtProxy}, {4, txtAutoProxyUrl}, {8, txtAutoDetect}};
    for (const auto &[mask, line] : flagLines) {
        if (!(flags & mask))
            continue;
        strText_p += MResources::LoadResourceString(line) + QLatin1Char('\n');
        if (mask != 1)
            lFlags_p += mask;
    }

    AddValueLine(strText_p, "INTERNET_PER_CONN_PROXY_BYPASS", SystemProxyQuery::OptionValue(SystemProxyQuery::ProxyBypass));
    strProxyServer_p = SystemProxyQuery::OptionValue(SystemProxyQuery::ProxyServer);
    AddValueLine(strText_p, "INTERNET_PER_CONN_PROXY_SERVER", strProxyServer_p);
    return 1;
}

long MNetworksFuncs::getAutoConfigedRoute(const QString &strHTTPAddress_p, const QString &strFTPHost_p,
                                          SystemProxyQuery::Route &httpRoute_p, SystemProxyQuery::Route &ftpRoute_p,
                                          QString &strScriptAddress_p)
{
    httpRoute_p = SystemProxyQuery::RouteFor(strHTTPAddress_p);
    ftpRoute_p = SystemProxyQuery::RouteFor(QStringLiteral("ftp://%1/index.htm").arg(strFTPHost_p));
    strScriptAddress_p = SystemProxyQuery::OptionValue(SystemProxyQuery::AutoConfigUrl);
    return 1;
}
