#include "document/CPageEncoding.h"

#include <QRegularExpression>
#include <QStringDecoder>
#include <QStringEncoder>

namespace {

// windows-1252's characters for the bytes 0x80-0x9F; 0 where it has none
// (those bytes read as the same-numbered control characters, as browsers do).
constexpr char16_t kCp1252High[32] = {
    0x20AC, 0, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0, 0x017D, 0,
    0, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0, 0x017E, 0x0178};

QString DecodeCp1252(const QByteArray &bytes)
{
    QString text(bytes.size(), Qt::Uninitialized);
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const uchar b = uchar(bytes.at(i));
        const char16_t high = (b >= 0x80 && b < 0xA0) ? kCp1252High[b - 0x80] : 0;
        text[i] = QChar(high ? high : char16_t(b));
    }
    return text;
}

// The byte of a character in windows-1252, or -1 when it has none.
int Cp1252Byte(char32_t c)
{
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF))
        return int(c);
    for (int i = 0; i < 32; ++i) {
        if (kCp1252High[i] == c || (kCp1252High[i] == 0 && c == char32_t(0x80 + i)))
            return 0x80 + i;
    }
    return -1;
}

bool IsUtf8Name(const QString &charset)
{
    return charset == QLatin1String("utf-8") || charset == QLatin1String("utf8");
}

// iso-8859-1 and us-ascii pages are read the way every browser reads them:
// as windows-1252, a superset of both.
bool IsWesternName(const QString &charset)
{
    return charset.isEmpty() || charset == QLatin1String("windows-1252")
           || charset == QLatin1String("iso-8859-1") || charset == QLatin1String("us-ascii");
}

} // namespace

QString CPageEncoding::DeclaredCharset(const QByteArray &bytes)
{
    if (bytes.startsWith("\xEF\xBB\xBF"))
        return QStringLiteral("utf-8");
    if (bytes.startsWith("\xFF\xFE"))
        return QStringLiteral("utf-16le");
    if (bytes.startsWith("\xFE\xFF"))
        return QStringLiteral("utf-16be");
    // The META tag is ASCII in every charset a page may declare here.
    const QString meta = CharsetInMeta(QString::fromLatin1(bytes.left(4096)));
    return meta.isEmpty() ? QStringLiteral("windows-1252") : meta;
}

QString CPageEncoding::DeclaredCharset(const QString &text)
{
    return CharsetInMeta(text);
}

QString CPageEncoding::Decode(const QByteArray &bytes)
{
    return DecodeAs(bytes, DeclaredCharset(bytes));
}

QString CPageEncoding::DecodeAs(const QByteArray &bytes, const QString &charset)
{
    if (IsWesternName(charset))
        return DecodeCp1252(bytes);
    // A byte order mark is kept as U+FEFF, so the text is written back with
    // it and an unchanged file comes back byte for byte.
    QStringDecoder decoder(IsUtf8Name(charset) ? "UTF-8" : charset.toLatin1().constData(),
                           QStringConverter::Flag::ConvertInitialBom);
    return decoder.isValid() ? decoder(bytes) : DecodeCp1252(bytes);
}

QByteArray CPageEncoding::Encode(const QString &text)
{
    // A text that starts with a byte order mark goes out as UTF-8 with it
    // (a UTF-16 page too: every browser reads the mark before any META).
    if (text.startsWith(QChar(0xFEFF)))
        return text.toUtf8();
    return EncodeAs(text, CharsetInMeta(text));
}

// Characters the charset lacks go out as character references.
QByteArray CPageEncoding::EncodeAs(const QString &text, const QString &charset)
{
    if (IsUtf8Name(charset))
        return text.toUtf8();
    if (IsWesternName(charset))
        return EncodeWithReferences(text, charset);
    QStringEncoder encoder(charset.toLatin1().constData(), QStringConverter::Flag::Stateless);
    if (!encoder.isValid())
        return EncodeWithReferences(text, QString());
    QByteArray out;
    for (const char32_t c : text.toUcs4()) {
        const QString one = QString::fromUcs4(&c, 1);
        const QByteArray bytes = encoder.encode(one);
        if (encoder.hasError() || (bytes == "?" && c != U'?')) {
            encoder.resetState();
            out.append("&#" + QByteArray::number(uint(c)) + ';');
        } else {
            out.append(bytes);
        }
    }
    return out;
}

QString CPageEncoding::CharsetInMeta(const QString &head)
{
    static const QRegularExpression meta(
        QStringLiteral("<meta\\b[^>]*?charset\\s*=\\s*[\"']?\\s*([A-Za-z0-9_.:-]+)"),
        QRegularExpression::CaseInsensitiveOption);
    const qsizetype headEnd = head.indexOf(QLatin1String("</head"), 0, Qt::CaseInsensitive);
    const QRegularExpressionMatch m = meta.match(headEnd < 0 ? head : head.left(headEnd));
    return m.hasMatch() ? Normalised(m.captured(1)) : QString();
}

QString CPageEncoding::Normalised(const QString &charset)
{
    const QString lower = charset.toLower();
    if (lower == QLatin1String("latin1") || lower == QLatin1String("iso8859-1"))
        return QStringLiteral("iso-8859-1");
    if (lower == QLatin1String("ascii"))
        return QStringLiteral("us-ascii");
    if (lower == QLatin1String("cp1252"))
        return QStringLiteral("windows-1252");
    return lower;
}

// us-ascii keeps bytes below 0x80; the western charsets are written as
// windows-1252. What is left over goes out as "&#n;".
QByteArray CPageEncoding::EncodeWithReferences(const QString &text, const QString &charset)
{
    const bool asciiOnly = charset == QLatin1String("us-ascii");
    QByteArray out;
    out.reserve(text.size());
    for (const char32_t c : text.toUcs4()) {
        const int b = asciiOnly ? (c < 0x80 ? int(c) : -1) : Cp1252Byte(c);
        if (b >= 0)
            out.append(char(b));
        else
            out.append("&#" + QByteArray::number(uint(c)) + ';');
    }
    return out;
}
