#pragma once

#include <QString>

// Takes secrets out of a line of a protocol trace before anyone sees it:
// the password of an FTP log-on, and the credentials and cookies of HTTP
// headers (a proxy tunnel's CONNECT comes through the FTP trace too).
class TraceScrubber
{
public:
    // The line with the value of PASS and of the headers Authorization,
    // Proxy-Authorization, Cookie and Set-Cookie (in any case) replaced by
    // "****"; any other line as it is.
    static QString scrub(const QString &line);
};
