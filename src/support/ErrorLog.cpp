#include "support/ErrorLog.h"

#include "platform/LocalFolders.h"

#include <QDateTime>
#include <QFile>

QString ErrorLog::Path()
{
    return LocalFolders::tempFolder() + QStringLiteral("/error.log");
}

void ErrorLog::Append(long number, const QString &description, const QString &position)
{
    QFile log(Path());
    if (!log.open(QIODevice::WriteOnly | QIODevice::Append))
        return;
    // Lines end in LF: the file is read on this system; the report turns
    // them into its own CRLF lines only where it has to.
    const QString line = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))
                         + QStringLiteral(": ") + QString::number(number) + QStringLiteral(", ")
                         + description + QStringLiteral(", ") + position + QLatin1Char('\n');
    log.write(line.toUtf8());
}

QString ErrorLog::Take(bool &exists)
{
    QFile log(Path());
    exists = log.exists();
    if (!exists)
        return QString();
    QString text;
    if (log.open(QIODevice::ReadOnly))
        text = QString::fromUtf8(log.readAll());
    log.close();
    if (log.open(QIODevice::WriteOnly | QIODevice::Truncate))
        log.close();
    return text;
}
