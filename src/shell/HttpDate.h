#pragma once

#include <QDateTime>
#include <QString>

// The date form of HTTP headers, "Sun, 06 Nov 1994 08:49:37 GMT": English
// day and month names whatever the user's language, always in UTC.
class HttpDate
{
public:
    static QString Format(const QDateTime &when);
};
