#pragma once

#include <QByteArray>
#include <QString>

// Text in the Western Windows code page (windows-1252), the form in which
// Windows programs keep their profile files. Bytes 0x80-0x9F carry the
// typographic characters of that code page; the five bytes it leaves
// undefined map to the control characters of the same number, as Windows
// itself maps them, so every byte string survives a round trip.
class WindowsAnsiText
{
public:
    static QString decode(const QByteArray &bytes);

    // False when a character has no byte in the code page; bytes is then
    // left empty.
    static bool encode(const QString &text, QByteArray &bytes);
};
