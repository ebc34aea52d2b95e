#include "FtpListParser.h"

#include <QRegularExpression>

bool FtpListParser::parseLine(const QString &rawLine, FtpListEntry &out, const QDateTime &now)
{
    QString line = rawLine;
    while (line.endsWith(QLatin1Char('\r')) || line.endsWith(QLatin1Char('\n')))
        line.chop(1);
    out = FtpListEntry();
    out.entry = line;
    if (line.trimmed().isEmpty())
        return false;
    return parseUnix(line, out, now) || parseDos(line, out);
}

bool FtpListParser::parseUnix(const QString &line, FtpListEntry &out, const QDateTime &now)
{
    // type+mode, links, owner, group, size, month, day, year-or-time, name.
    // The group is missing on some servers, hence the optional field; the
    // name keeps its inner and trailing spaces, only one separator goes.
    static const QRegularExpression unix(QStringLiteral(
        "^([-dlbcps])[-rwxsStTl+.@]{9}\\S*\\s+\\d+\\s+\\S+\\s+(?:\\S+\\s+)?(\\d+)\\s+"
        "([A-Za-z]{3})\\s+(\\d{1,2})\\s+(\\d{1,2}:\\d{2}|\\d{4})\\s(.+)$"));
    const QRegularExpressionMatch m = unix.match(line);
    if (!m.hasMatch())
        return false;
    QString name = m.captured(6);
    // Some servers pad the year column with a second space.
    if (name.startsWith(QLatin1Char(' ')) && m.captured(5).size() == 4)
        name.remove(0, 1);
    out.fileName = name;
    out.isDir = m.captured(1) == QLatin1String("d");
    out.size = m.captured(2).toLongLong();
    out.time = unixTime(m.captured(3), m.captured(4), m.captured(5), now);
    return true;
}

bool FtpListParser::parseDos(const QString &line, FtpListEntry &out)
{
    static const QRegularExpression dos(QStringLiteral(
        "^(\\d{2})-(\\d{2})-(\\d{2,4})\\s+(\\d{1,2}):(\\d{2})\\s*([AaPp][Mm])?\\s+"
        "(<DIR>|\\d+)\\s+(.+)$"));
    const QRegularExpressionMatch m = dos.match(line);
    if (!m.hasMatch())
        return false;
    int year = m.captured(3).toInt();
    if (m.captured(3).size() == 2)
        year += year < 70 ? 2000 : 1900; // two-digit years: 70-99 last century
    int hour = m.captured(4).toInt();
    const QString half = m.captured(6).toUpper();
    if (half == QLatin1String("PM") && hour < 12)
        hour += 12;
    if (half == QLatin1String("AM") && hour == 12)
        hour = 0;
    out.time = QDateTime(QDate(year, m.captured(1).toInt(), m.captured(2).toInt()),
                         QTime(hour, m.captured(5).toInt()));
    out.isDir = m.captured(7) == QLatin1String("<DIR>");
    out.size = out.isDir ? 0 : m.captured(7).toLongLong();
    out.fileName = m.captured(8);
    return true;
}

QDateTime FtpListParser::unixTime(const QString &month, const QString &day,
                                  const QString &yearOrTime, const QDateTime &now)
{
    static const QStringList months = {
        QStringLiteral("jan"), QStringLiteral("feb"), QStringLiteral("mar"), QStringLiteral("apr"),
        QStringLiteral("may"), QStringLiteral("jun"), QStringLiteral("jul"), QStringLiteral("aug"),
        QStringLiteral("sep"), QStringLiteral("oct"), QStringLiteral("nov"), QStringLiteral("dec")};
    const int monthNumber = int(months.indexOf(month.toLower())) + 1;
    if (monthNumber == 0)
        return QDateTime();
    if (!yearOrTime.contains(QLatin1Char(':')))
        return QDateTime(QDate(yearOrTime.toInt(), monthNumber, day.toInt()), QTime(0, 0));
    // A time of day means "within the last six months": the current year,
    // unless that would put the entry in the future.
    const QTime time = QTime::fromString(yearOrTime, QStringLiteral("H:mm"));
    QDateTime stamp(QDate(now.date().year(), monthNumber, day.toInt()), time);
    if (stamp > now.addDays(1))
        stamp = stamp.addYears(-1);
    return stamp;
}
