#include "FtpListParser.h"

#include "config/AnsiCodePage.h"

#include <QRegularExpression>
#include <QStringDecoder>


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

// Splits the line by hand rather than with a pattern: a folder of ten
// thousand files is read line by line, and this is the costly part of it.
// Fields: type+mode, links, owner, group (missing on some servers), size,
// month, day, year-or-time, then the name with its inner spaces kept.
bool FtpListParser::parseUnix(const QString &line, FtpListEntry &out, const QDateTime &now)
{
    static const QString types = QStringLiteral("-dlbcps");
    if (line.size() < 10 || !types.contains(line.at(0)))
        return false;
    QList<QStringView> fields;
    QList<qsizetype> ends;
    const QStringView view(line);
    qsizetype i = 0;
    while (fields.size() < 9 && i < view.size()) {
        while (i < view.size() && view.at(i) == QLatin1Char(' '))
            ++i;
        const qsizetype begin = i;
        while (i < view.size() && view.at(i) != QLatin1Char(' '))
            ++i;
        if (i > begin) {
            fields.append(view.mid(begin, i - begin));
            ends.append(i);
        }
    }
    // With a group the date starts at field 5, without one at field 4.
    for (qsizetype month = 5; month >= 4; --month) {
        if (fields.size() < month + 3)
            continue;
        const int monthNumber = FtpListParser::monthNumber(fields.at(month));
        if (monthNumber == 0)
            continue;
        bool sizeOk = false;
        const qint64 size = sizeField(fields.at(month - 1), sizeOk);
        const QStringView stamp = fields.at(month + 2);
        if (!sizeOk || !fields.at(month + 1).toInt() || (stamp.size() != 4 && !stamp.contains(QLatin1Char(':'))))
            continue;
        const qsizetype nameStart = ends.at(month + 2) + 1;
        if (nameStart >= line.size())
            return false;
        out.fileName = line.mid(nameStart);
        // Some servers pad the year column with a second space.
        if (stamp.size() == 4 && out.fileName.startsWith(QLatin1Char(' ')))
            out.fileName.remove(0, 1);
        out.isDir = line.at(0) == QLatin1Char('d');
        out.size = size;
        out.time = unixTime(monthNumber, fields.at(month + 1).toInt(), stamp, now);
        return true;
    }
    return false;
}

int FtpListParser::monthNumber(QStringView field)
{
    static const char *const months[] = {"jan", "feb", "mar", "apr", "may", "jun",
                                         "jul", "aug", "sep", "oct", "nov", "dec"};
    if (field.size() != 3)
        return 0;
    for (int i = 0; i < 12; ++i)
        if (field.compare(QLatin1String(months[i]), Qt::CaseInsensitive) == 0)
            return i + 1;
    return 0;
}

// IIS writes the date in the order of the server's settings: month first
// ("11-22-26", "11/22/2026"), or year first ("2026-11-22"); a first field
// above 12 can only be a day ("22-11-2026"). The time has AM/PM or 24 hours.
bool FtpListParser::parseDos(const QString &line, FtpListEntry &out)
{
    static const QRegularExpression dos(QStringLiteral(
        "^(\\d{1,4})[-/.](\\d{1,2})[-/.](\\d{2,4})\\s+(\\d{1,2}):(\\d{2})(?::\\d{2})?\\s*([AaPp][Mm])?\\s+"
        "(<DIR>|-?\\d+)\\s+(.+)$"));
    const QRegularExpressionMatch m = dos.match(line);
    if (!m.hasMatch())
        return false;
    int first = m.captured(1).toInt(), second = m.captured(2).toInt(), third = m.captured(3).toInt();
    int year = third, month = first, day = second;
    if (m.captured(1).size() == 4) {
        year = first;
        month = second;
        day = third;
    } else if (first > 12) {
        month = second;
        day = first;
    }
    if (year < 100)
        year += year < 70 ? 2000 : 1900; // two-digit years: 70-99 last century
    int hour = m.captured(4).toInt();
    const QString half = m.captured(6).toUpper();
    if (half == QLatin1String("PM") && hour < 12)
        hour += 12;
    if (half == QLatin1String("AM") && hour == 12)
        hour = 0;
    const QDate date(year, month, day);
    if (!date.isValid())
        return false;
    out.time = QDateTime(date, QTime(hour, m.captured(5).toInt()), Qt::UTC);
    out.isDir = m.captured(7) == QLatin1String("<DIR>");
    bool sizeOk = true;
    out.size = out.isDir ? 0 : sizeField(m.captured(7), sizeOk);
    out.fileName = m.captured(8);
    return true;
}

qint64 FtpListParser::sizeField(QStringView field, bool &ok)
{
    const qint64 size = field.toLongLong(&ok);
    if (ok || field.isEmpty())
        return size;
    for (const QChar c : field)
        if (!c.isDigit())
            return 0;
    ok = true; // digits, but more than a number holds
    return -1;
}

QString FtpListParser::decodeLine(const QByteArray &line)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = utf8(line);
    if (!utf8.hasError())
        return text;
    QString western;
    western.reserve(line.size());
    for (const char byte : line)
        western.append(AnsiCodePage::Chr(static_cast<unsigned char>(byte)));
    return western;
}

QDateTime FtpListParser::unixTime(int month, int day, QStringView yearOrTime, const QDateTime &now)
{
    // Listing times are the server's wall clock: kept as times without a
    // zone, which also spares a zone lookup per entry of a large folder.
    const qsizetype colon = yearOrTime.indexOf(QLatin1Char(':'));
    if (colon < 0)
        return QDateTime(QDate(yearOrTime.toInt(), month, day), QTime(0, 0), Qt::UTC);
    // A time of day means "within the last six months": the current year,
    // unless that would put the entry in the future.
    const QTime time(yearOrTime.left(colon).toInt(), yearOrTime.mid(colon + 1).toInt());
    QDate date(now.date().year(), month, day);
    if (date > now.date().addDays(1))
        date = date.addYears(-1);
    return QDateTime(date, time, Qt::UTC);
}
