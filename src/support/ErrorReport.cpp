#include "support/ErrorReport.h"

#include "config/MGlobalProjectObjects.h"
#include "support/ErrorLog.h"
#include "support/MResources.h"
#include "support/StringIds.h"
#include "support/SystemInfo.h"

#include <QStringList>
#include <QUrl>

#include <algorithm>
#include <array>

namespace {
const QString CRLF = QStringLiteral("\r\n");

QString sourceLines(const QString &position)
{
    const QStringList pieces = position.split(QLatin1Char('{'));
    QString lines = QStringLiteral("Source: ") + pieces.first() + CRLF;
    for (qsizetype i = 1; i < pieces.size(); ++i)
        lines += pieces.at(i) + CRLF;
    return lines;
}

QString errListFile()
{
    bool exists = false;
    const QString text = ErrorLog::Take(exists);
    if (!exists || text.isEmpty())
        return QStringLiteral("No errlistfile") + CRLF;
    return text;
}
} // namespace

bool ErrorReport::IsShortLook(long number)
{
    static constexpr std::array<long, 19> shortLook = {
        -26005, -26003, -26002, -25066, -25063, -25061, -25050, -20302, -20144, -20142,
        -911,   -552,   -550,   -530,   20103,  20142,  20302,  25061,  25062};
    return std::find(shortLook.begin(), shortLook.end(), number) != shortLook.end();
}

QString ErrorReport::ShortLookMessage(long number, const QString &description)
{
    if (number == 25062)
        return MResources::LoadResourceString(StringIds::FtpServerDown);
    if (number == 25061)
        return MResources::LoadResourceString(StringIds::FtpTimedOut);
    return description;
}

QString ErrorReport::Build(long number, const QString &description, const QString &position)
{
    QString report = QStringLiteral("ERRORDESCRIPTION:") + CRLF;
    report += sourceLines(position);
    report += QStringLiteral("Description: ") + description + CRLF;
    report += QStringLiteral("Errnumber: ") + QString::number(number) + CRLF;
    report += QStringLiteral("Address: ") + SiteAddress() + CRLF;
    report += CRLF;
    report += QStringLiteral("SYSTEM:") + CRLF;
    report += VersionLine() + CRLF;
    report += QStringLiteral("WINSYS:") + CRLF;
    report += SystemInfo::GetSystemInfo();
    report += CRLF;
    report += QStringLiteral("ERRLISTFILE:") + CRLF;
    report += errListFile();
    return report;
}

QString ErrorReport::VersionLine()
{
    return QStringLiteral("VindrellVer: %1.%2.%3:Build AABE")
        .arg(KELDA_VERSION_MAJOR)
        .arg(KELDA_VERSION_MINOR, 2, 10, QLatin1Char('0'))
        .arg(KELDA_VERSION_PATCH, 4, 10, QLatin1Char('0'));
}

QString ErrorReport::SiteAddress()
{
    const auto &sites = MGlobalProjectObjects::URLDATA;
    const long current = MGlobalProjectObjects::lCurrentURL;
    if (current < 0 || current >= long(sites.size()))
        return QString();
    const QString address = sites.at(std::size_t(current)).baseaddress;
    const QUrl url(address);
    if (!url.isValid() || url.userInfo().isEmpty())
        return address;
    return url.toString(QUrl::RemoveUserInfo);
}
