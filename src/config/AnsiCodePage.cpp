#include "config/AnsiCodePage.h"

namespace {
// 0x80..0x9F of the code page. The five unassigned codes map to the C1
// control of the same number, which is how the system converts them.
constexpr char16_t kHigh[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
} // namespace

unsigned char AnsiCodePage::Asc(QChar c)
{
    const char16_t u = c.unicode();
    if (u < 0x80 || (u >= 0xA0 && u <= 0xFF))
        return static_cast<unsigned char>(u);
    for (int i = 0; i < 32; ++i)
        if (kHigh[i] == u)
            return static_cast<unsigned char>(0x80 + i);
    return '?';
}

QChar AnsiCodePage::Chr(unsigned char b)
{
    if (b >= 0x80 && b < 0xA0)
        return QChar(kHigh[b - 0x80]);
    return QChar(b);
}
