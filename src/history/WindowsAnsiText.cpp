#include "history/WindowsAnsiText.h"

namespace {
// Unicode of the bytes 0x80-0x9F.
const char16_t kHighControls[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

int byteOf(char16_t c)
{
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF))
        return c;
    for (int i = 0; i < 32; ++i) {
        if (kHighControls[i] == c)
            return 0x80 + i;
    }
    return -1;
}
} // namespace

QString WindowsAnsiText::decode(const QByteArray &bytes)
{
    QString text;
    text.reserve(bytes.size());
    for (const char b : bytes) {
        const auto u = static_cast<unsigned char>(b);
        text.append(QChar(u >= 0x80 && u < 0xA0 ? kHighControls[u - 0x80] : char16_t(u)));
    }
    return text;
}

bool WindowsAnsiText::encode(const QString &text, QByteArray &bytes)
{
    bytes.clear();
    bytes.reserve(text.size());
    for (const QChar c : text) {
        const int b = byteOf(c.unicode());
        if (b < 0) {
            bytes.clear();
            return false;
        }
        bytes.append(static_cast<char>(b));
    }
    return true;
}
