#pragma once

#include <QString>

// Small helpers shared across the program.
class MGlobalProjectFunctions
{
public:
    // Form encoding of the error report and the comments dialog: a blank
    // becomes "+", a-z, A-Z and 0-9 stay, a character up to 255 becomes
    // "%XX", and one above 255 "%XX%XX" from the high and low byte of its
    // 16-bit code. Returns 1.
    static long URLEncode(const QString &strText_p, QString &strOut_p);
};
