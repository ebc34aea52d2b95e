#include "support/MGlobalProjectFunctions.h"

namespace {
QString percentByte(unsigned value)
{
    return QStringLiteral("%") + QStringLiteral("%1").arg(value, 2, 16, QLatin1Char('0')).toUpper();
}

bool keptAsIs(char16_t c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9');
}
} // namespace

long MGlobalProjectFunctions::URLEncode(const QString &strText_p, QString &strOut_p)
{
    QString out;
    out.reserve(strText_p.size() * 3);
    for (const QChar ch : strText_p) {
        const char16_t c = ch.unicode();
        if (c == u' ')
            out += QLatin1Char('+');
        else if (keptAsIs(c))
            out += ch;
        else if (c <= 0xFF)
            out += percentByte(c);
        else
            out += percentByte(c >> 8) + percentByte(c & 0xFF);
    }
    strOut_p = out;
    return 1;
}
