#pragma once

#include <QString>

// The Western Windows code page (1252), by which the cipher and the settings
// files turn characters into bytes and back. A character outside the code
// page becomes '?', as the system's own conversion does.
class AnsiCodePage
{
public:
    static unsigned char Asc(QChar c);
    static QChar Chr(unsigned char b);
};
