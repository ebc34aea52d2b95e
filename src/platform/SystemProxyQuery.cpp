#include "SystemProxyQuery.h"

#include <QProcess>
#include <QUrl>

namespace {

// The address libproxy is asked about when the dialog has no site of its
// own to ask for: only a question put to the settings; nothing is fetched.
const QString kProbeAddress = QStringLiteral("http://www.debian.org/index.htm");

bool IsScript(const QString &value)
{
    return value.startsWith(QLatin1String("pac+")) || value.startsWith(QLatin1String("wpad:"));
}

// "host:port" of a proxy address, the scheme's port when none is given.
QString HostPort(const QUrl &url)
{
    const int fallback = url.scheme().startsWith(QLatin1String("socks")) ? 1080 : 8080;
    return url.host() + QLatin1Char(':') + QString::number(url.port(fallback));
}

int SocksVersionOf(const QString &scheme)
{
    if (scheme.startsWith(QLatin1String("socks4")))
        return 4;
    if (scheme == QLatin1String("socks5") || scheme == QLatin1String("socks5h"))
        return 5;
    return 0;
}

QString Hidden(const QString &value)
{
    QUrl url(value);
    if (url.password().isEmpty())
        return value;
    url.setPassword(QStringLiteral("****"));
    return url.toString();
}

} // namespace

QString SystemProxyQuery::Variable(const char *name)
{
    // Both spellings are in use; the lower case one is the usual.
    QString value = qEnvironmentVariable(name);
    if (value.isEmpty())
        value = qEnvironmentVariable(QByteArray(name).toUpper().constData());
    return value.trimmed();
}

QString SystemProxyQuery::ManualPart(const char *key, const QString &value)
{
    if (value.isEmpty() || IsScript(value))
        return QString();
    // A bare "host:port" is a web proxy too.
    const QUrl url(value.contains(QLatin1String("://")) ? value : QStringLiteral("http://") + value);
    if (url.host().isEmpty())
        return QString();
    return QLatin1String(key) + QLatin1Char('=') + HostPort(url);
}

// The PAC script or discovery the environment names, if any.
QString SystemProxyQuery::Script()
{
    for (const char *name : {"http_proxy", "https_proxy", "ftp_proxy", "all_proxy"}) {
        const QString value = Variable(name);
        if (IsScript(value))
            return value;
    }
    return QString();
}

// libproxy finds a proxy where the environment names none: the desktop's
// settings (or a system file) say so.
bool SystemProxyQuery::DesktopSaysProxy()
{
    return !RouteFor(kProbeAddress).text.startsWith(QLatin1String("DIRECT"));
}

QString SystemProxyQuery::OptionValue(int option)
{
    const QString script = Script();
    switch (option) {
    case AutoConfigUrl:
        return script.startsWith(QLatin1String("pac+")) ? script.mid(4) : QString();
    case AutoDiscoveryFlags:
        return QString();
    case ProxyBypass:
        return Variable("no_proxy");
    case ProxyServer: {
        QStringList parts;
        const QString all = Variable("all_proxy");
        const bool allIsSocks = all.startsWith(QLatin1String("socks"));
        const QString http = Variable("http_proxy");
        for (const QString &part : {ManualPart("http", http.isEmpty() && !allIsSocks ? all : http),
                                    ManualPart("https", Variable("https_proxy")),
                                    ManualPart("ftp", Variable("ftp_proxy")),
                                    allIsSocks ? ManualPart("socks", all) : QString()})
            if (!part.isEmpty())
                parts << part;
        return parts.join(QLatin1Char(';'));
    }
    case Flags: {
        long flags = Direct;
        if (!OptionValue(ProxyServer).isEmpty())
            flags |= ManualProxy;
        if (script.startsWith(QLatin1String("pac+")))
            flags |= AutoProxyUrl;
        else if (script.startsWith(QLatin1String("wpad:")))
            flags |= AutoDetect;
        else if (!(flags & ManualProxy) && DesktopSaysProxy())
            flags |= AutoDetect;
        return QString::number(flags);
    }
    default:
        return QString();
    }
}

// libproxy runs in a process of its own, through its command-line tool: a
// PAC script runs in a JavaScript engine that libproxy loads, and that
// engine takes over signals the page engine's process needs, which crashes
// a program that has both.
QStringList SystemProxyQuery::Proxies(const QString &url)
{
    QProcess tool;
    tool.start(QStringLiteral("proxy"), {url});
    if (!tool.waitForFinished(20000)) {
        tool.kill();
        tool.waitForFinished(1000);
        return {};
    }
    return QString::fromUtf8(tool.readAllStandardOutput()).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

SystemProxyQuery::Route SystemProxyQuery::RouteFor(const QString &url)
{
    Route route;
    QStringList entries;
    for (const QString &found : Proxies(url)) {
        const QUrl proxy(found.trimmed());
        const QString scheme = proxy.scheme();
        if (scheme == QLatin1String("direct")) {
            entries << QStringLiteral("DIRECT");
            continue;
        }
        const bool socks = scheme.startsWith(QLatin1String("socks"));
        entries << (socks ? QStringLiteral("SOCKS ") : QStringLiteral("PROXY ")) + HostPort(proxy);
        if (entries.size() == 1) {
            route.socksVersion = socks ? SocksVersionOf(scheme) : 0;
            route.user = proxy.userName();
            route.password = proxy.password();
        }
    }
    route.text = entries.isEmpty() ? QStringLiteral("DIRECT") : entries.join(QStringLiteral("; "));
    return route;
}

QStringList SystemProxyQuery::Origin()
{
    QStringList lines;
    for (const char *name : {"http_proxy", "https_proxy", "ftp_proxy", "all_proxy", "no_proxy"}) {
        const QString value = Variable(name);
        if (!value.isEmpty())
            lines << QStringLiteral("The environment: %1=%2").arg(QLatin1String(name), Hidden(value));
    }
    const QString script = Script();
    if (script.startsWith(QLatin1String("pac+")))
        lines << QStringLiteral("A PAC script: %1").arg(script.mid(4));
    else if (script.startsWith(QLatin1String("wpad:")))
        lines << QStringLiteral("Discovery of a PAC script on the network (WPAD)");
    else if (lines.isEmpty())
        lines << (DesktopSaysProxy() ? QStringLiteral("The desktop's proxy settings (%1)")
                                           .arg(qEnvironmentVariable("XDG_CURRENT_DESKTOP", QStringLiteral("system")))
                                     : QStringLiteral("No proxy is set on this computer"));
    return lines;
}

int SystemProxyQuery::SocksVersion()
{
    const QString all = Variable("all_proxy");
    return all.startsWith(QLatin1String("socks")) ? SocksVersionOf(QUrl(all).scheme()) : 0;
}

void SystemProxyQuery::HttpCredentials(QString &user, QString &password)
{
    QString value = Variable("http_proxy");
    if (value.isEmpty() || IsScript(value))
        value = Variable("all_proxy");
    const QUrl url(value);
    user = url.userName();
    password = url.password();
}

void SystemProxyQuery::SocksCredentials(QString &user, QString &password)
{
    const QUrl url(Variable("all_proxy"));
    user = url.userName();
    password = url.password();
}
