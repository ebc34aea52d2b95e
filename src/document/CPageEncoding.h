#pragma once

#include <QByteArray>
#include <QString>

// The bytes of a page file and its Unicode text. A page is read once by
// the charset it declares (a byte order mark, then the META charset, else
// windows-1252) and written back in that same charset, so a page keeps the
// encoding its author chose.
class CPageEncoding
{
public:
    // The charset of page bytes, lower case ("utf-8", "windows-1252"...).
    static QString DeclaredCharset(const QByteArray &bytes);
    // The charset a page text declares in its META tag; "" when none.
    static QString DeclaredCharset(const QString &text);

    // A byte order mark stays at the start of the text as U+FEFF.
    static QString Decode(const QByteArray &bytes);

    // The text for upload: UTF-8 behind a byte order mark, else the charset
    // its META tag declares (what the save just settled), else windows-1252. Characters the charset
    // lacks become character references, so none is lost.
    static QByteArray Encode(const QString &text);

    // The same two ways with a charset given by name, as DeclaredCharset
    // gives it.
    static QString DecodeAs(const QByteArray &bytes, const QString &charset);
    static QByteArray EncodeAs(const QString &text, const QString &charset);

private:
    static QString CharsetInMeta(const QString &head);
    static QString Normalised(const QString &charset);
    static QByteArray EncodeWithReferences(const QString &text, const QString &charset);
};
