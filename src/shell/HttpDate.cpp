#include "shell/HttpDate.h"

#include <QTimeZone>

QString HttpDate::Format(const QDateTime &when)
{
    static const char *const kDays[] = {"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"};
    static const char *const kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                          "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const QDateTime utc = when.toUTC();
    const QDate date = utc.date();
    return QStringLiteral("%1, %2 %3 %4 %5 GMT")
        .arg(QLatin1String(kDays[date.dayOfWeek() - 1]))
        .arg(date.day(), 2, 10, QLatin1Char('0'))
        .arg(QLatin1String(kMonths[date.month() - 1]))
        .arg(date.year(), 4, 10, QLatin1Char('0'))
        .arg(utc.time().toString(QStringLiteral("HH:mm:ss")));
}
