#pragma once

#include <QString>
#include <QStringList>

// How this machine is set up to reach the Internet, asked the way the proxy
// dialog asks it: numbered options of the connection and a route for an
// address. What a Linux desktop states is read from two places: the
// environment (http_proxy, https_proxy, ftp_proxy, all_proxy, no_proxy;
// a value "pac+<address>" names a PAC script, "wpad://" asks for
// discovery), and libproxy, which also reads the desktop's own settings
// (GNOME's where its plugin is installed) and runs PAC scripts (where its
// PAC plugin is installed). Routes come from libproxy itself, not from
// Qt's wrapper of it, which drops SOCKS4 and the entries' order.
class SystemProxyQuery
{
public:
    // The option numbers the dialog asks for.
    enum Option { Flags = 1, ProxyServer = 2, ProxyBypass = 3, AutoConfigUrl = 4, AutoDiscoveryFlags = 5 };
    // Bits of the Flags option.
    enum FlagBit { Direct = 1, ManualProxy = 2, AutoProxyUrl = 4, AutoDetect = 8 };

    // An option's value as text, empty when nothing is set. Flags: the sum
    // of the FlagBits. ProxyServer: "http=host:port;https=...;ftp=...;
    // socks=host:port" from the environment, without user names.
    static QString OptionValue(int option);

    struct Route
    {
        QString text;          // "PROXY host:port; SOCKS host:port; DIRECT"
        int socksVersion = 0;  // of the first SOCKS entry: 4, 5, or 0 when unsaid
        QString user;          // of the first entry, when the setting names one
        QString password;
    };
    // The route for an address, as the machine's settings (a PAC script
    // run for it included) give it.
    static Route RouteFor(const QString &url);

    // Where the settings came from, one line each, passwords hidden.
    static QStringList Origin();

    // The SOCKS version of all_proxy (4 or 5), 0 when it names none.
    static int SocksVersion();
    // User and password written into http_proxy, or all_proxy.
    static void HttpCredentials(QString &user, QString &password);
    static void SocksCredentials(QString &user, QString &password);

private:
    static QStringList Proxies(const QString &url);
    static QString Variable(const char *name);
    static QString ManualPart(const char *key, const QString &value);
    static QString Script();
    static bool DesktopSaysProxy();
};
