#include "FirewallFailure.h"

#include <curl/curl.h>

QString FirewallFailure::ActiveModeRefused()
{
    return QStringLiteral("Active mode can't be used through a proxy: the FTP server would have to open the "
                          "data connection back to this computer, which the proxy does not let through. "
                          "Choose passive mode for this site.");
}

QString FirewallFailure::Describe(const Seen &seen)
{
    if (seen.firewallType == 1)
        return Tunnel(seen);
    if (seen.firewallType == 2 || seen.firewallType == 3)
        return Socks(seen);
    return QString();
}

QString FirewallFailure::Tunnel(const Seen &seen)
{
    if (seen.connectCode < 300)
        return QString();
    const QString proxy = QStringLiteral("%1:%2").arg(seen.host).arg(seen.port);
    // 407 is the rule; some proxies (tinyproxy) answer 401.
    if (seen.connectCode == 407 || seen.connectCode == 401)
        return QStringLiteral("The proxy %1 refused the user name or password (%2). Check them in the proxy "
                              "settings.").arg(proxy, seen.connectReply);
    const int targetPort = seen.connectTarget.section(QLatin1Char(':'), -1).toInt();
    if (seen.loggedOn || (targetPort != 0 && targetPort != seen.serverPort))
        return QStringLiteral("The proxy %1 let the connection to the FTP server through, but refused the "
                              "tunnel to its data port %2 (%3). Many proxies open tunnels only to port 443; "
                              "ask your network administrator to allow tunnels to the FTP server's passive "
                              "ports, or use a SOCKS proxy.")
            .arg(proxy, QString::number(targetPort), seen.connectReply);
    return QStringLiteral("The proxy %1 refused to open a tunnel to the FTP server (%2). A web proxy that "
                          "won't tunnel turns FTP into web downloads (HTTP GET): nothing can be uploaded, "
                          "renamed or deleted that way, so it can't be used for FTP. Use a SOCKS proxy, or ask "
                          "your network administrator to allow tunnels (CONNECT) to the FTP server's ports.")
        .arg(proxy, seen.connectReply);
}

QString FirewallFailure::Socks(const Seen &seen)
{
    if (seen.socksError == CURLPX_OK)
        return QString();
    const QString proxy = QStringLiteral("%1:%2").arg(seen.host).arg(seen.port);
    switch (seen.socksError) {
    case CURLPX_USER_REJECTED:
    case CURLPX_NO_AUTH:
        return QStringLiteral("The SOCKS proxy %1 refused the user name or password. Check them in the proxy "
                              "settings (a SOCKS4 proxy takes none).").arg(proxy);
    case CURLPX_BAD_VERSION:
    case CURLPX_RECV_CONNECT:
    case CURLPX_CLOSED:
        return QStringLiteral("%1 did not answer as a SOCKS%2 proxy. Check the server type and the port in the "
                              "proxy settings.").arg(proxy, seen.firewallType == 2 ? QStringLiteral("4")
                                                                                    : QStringLiteral("5"));
    case CURLPX_REPLY_NOT_ALLOWED:
    case CURLPX_REQUEST_FAILED:
        return QStringLiteral("The SOCKS proxy %1 refused the connection to the FTP server%2.")
            .arg(proxy, seen.loggedOn ? QStringLiteral("'s data port") : QString());
    default:
        return QStringLiteral("The SOCKS proxy %1 could not reach the FTP server%2 (%3).")
            .arg(proxy, seen.loggedOn ? QStringLiteral("'s data port") : QString(),
                 QString::fromLatin1(curl_easy_strerror(CURLE_PROXY)));
    }
}
