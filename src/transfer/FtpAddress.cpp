#include "transfer/FtpAddress.h"

#include "platform/FtpControl.h"

namespace {
struct Scheme
{
    const char *prefix;
    FtpAddress::Security security;
};
constexpr Scheme kSchemes[] = {{"ftp://", FtpAddress::Plain},
                               {"ftpes://", FtpAddress::ExplicitTls},
                               {"ftps://", FtpAddress::ImplicitTls},
                               {"sftp://", FtpAddress::Sftp}};
} // namespace

FtpAddress FtpAddress::Parse(const QString &address, bool anyCase)
{
    FtpAddress parsed;
    parsed.host = address;
    const Qt::CaseSensitivity cs = anyCase ? Qt::CaseInsensitive : Qt::CaseSensitive;
    for (const Scheme &scheme : kSchemes) {
        const QLatin1String prefix(scheme.prefix);
        if (!address.startsWith(prefix, cs))
            continue;
        parsed.security = scheme.security;
        parsed.host = address.mid(prefix.size());
        if (parsed.host.endsWith(QLatin1Char('/')))
            parsed.host.chop(1);
        break;
    }
    return parsed;
}

QString FtpAddress::AccountHost() const
{
    static const char *const tags[] = {"", "ftpes://", "ftps://", "sftp://"};
    return QLatin1String(tags[security]) + host;
}

void FtpAddress::ApplyTo(FtpControl &control) const
{
    control.UseTls = security == ExplicitTls;
    control.ImplicitTls = security == ImplicitTls;
    control.Sftp = security == Sftp;
    const qsizetype colon = host.lastIndexOf(QLatin1Char(':'));
    bool numeric = false;
    const int port = colon > 0 ? host.mid(colon + 1).toInt(&numeric) : 0;
    control.RemoteHost = numeric ? host.left(colon) : host;
    static const int defaultPorts[] = {21, 21, 990, 22};
    control.RemotePort = numeric ? port : defaultPorts[security];
}
