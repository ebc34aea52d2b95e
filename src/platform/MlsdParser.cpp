#include "MlsdParser.h"

#include <QStringList>

bool MlsdParser::parseLine(const QString &rawLine, FtpListEntry &out)
{
    QString line = rawLine;
    while (line.endsWith(QLatin1Char('\r')) || line.endsWith(QLatin1Char('\n')))
        line.chop(1);
    out = FtpListEntry();
    out.entry = line;
    // The facts end at the first space; everything behind it, spaces
    // included, is the name.
    const qsizetype space = line.indexOf(QLatin1Char(' '));
    if (space <= 0 || !line.left(space).contains(QLatin1Char('=')))
        return false;
    const QString name = line.mid(space + 1);
    if (name.isEmpty())
        return false;
    QString type;
    QString linkTarget;
    bool sized = false;
    for (const QString &fact : line.left(space).split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const qsizetype equals = fact.indexOf(QLatin1Char('='));
        if (equals <= 0)
            continue;
        const QString key = fact.left(equals).toLower();
        const QString value = fact.mid(equals + 1);
        if (key == QLatin1String("type")) {
            type = value.toLower();
            // "OS.unix=slink:/target" (and "OS.unix=symlink") name a link.
            const qsizetype colon = value.indexOf(QLatin1Char(':'));
            if (type.startsWith(QLatin1String("os.unix=s")) && colon > 0)
                linkTarget = value.mid(colon + 1);
        } else if (key == QLatin1String("size") || key == QLatin1String("sizd")) {
            // A size that is no number (or too big for one) is kept as -1,
            // so that the reader of the listing can refuse the entry.
            out.size = value.toLongLong(&sized);
            if (!sized)
                out.size = -1;
        } else if (key == QLatin1String("modify")) {
            out.time = modifyTime(value);
        }
    }
    if (type == QLatin1String("cdir") || type == QLatin1String("pdir") || type.isEmpty())
        return false;
    out.isDir = type == QLatin1String("dir");
    out.fileName = name;
    if (type.startsWith(QLatin1String("os.unix=s")))
        out.fileName = name + QStringLiteral(" -> ") + linkTarget;
    if (out.isDir && !sized)
        out.size = 0;
    return true;
}

QDateTime MlsdParser::modifyTime(const QString &value)
{
    const QString whole = value.section(QLatin1Char('.'), 0, 0);
    if (whole.size() != 14)
        return QDateTime();
    const QDateTime local = QDateTime::fromString(whole, QStringLiteral("yyyyMMddHHmmss"));
    return local.isValid() ? QDateTime(local.date(), local.time(), Qt::UTC) : QDateTime();
}
