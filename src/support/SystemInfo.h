#pragma once

#include <QString>

// What the error report tells about the machine, CRLF after every line:
// the distribution, the kernel, the processor architecture, the desktop,
// the Qt version and the locale. Nothing that names the user or the
// machine (no user name, host name or addresses) goes in.
class SystemInfo
{
public:
    static QString GetSystemInfo();
};
