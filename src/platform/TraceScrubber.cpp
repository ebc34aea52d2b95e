#include "platform/TraceScrubber.h"

#include <QRegularExpression>

QString TraceScrubber::scrub(const QString &line)
{
    // The command word (or header name) with what stands before its value,
    // kept so that the trace still shows what was sent.
    static const QRegularExpression secret(
        QStringLiteral("^(\\s*(?:PASS(?:\\s|$)|(?:Proxy-Authorization|Authorization|Cookie|Set-Cookie)"
                       "\\s*:))"),
        QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch m = secret.match(line);
    if (!m.hasMatch())
        return line;
    return m.captured(1).trimmed() + QStringLiteral(" ****");
}
