#include "objects/HTMLClipboardFormat.h"

#include "document/CPageEncoding.h"

#include <QMimeData>
#include <QRegularExpression>
#include <QStringDecoder>

#include <algorithm>
#include <cctype>

namespace {

const QByteArray kCRLF = QByteArrayLiteral("\r\n");
const QByteArray kStartMark = QByteArrayLiteral("<!--StartFragment -->");
const QByteArray kEndMark = QByteArrayLiteral("<!--EndFragment -->");
const QByteArray kHeader = QByteArrayLiteral("Version:1.0\r\n"
                                             "StartHTML:aaaaaaaaaa\r\n"
                                             "EndHTML:bbbbbbbbbb\r\n"
                                             "StartFragment:cccccccccc\r\n"
                                             "EndFragment:dddddddddd\r\n");
const QByteArray kSourceField = QByteArrayLiteral("SourceURL:");
// A header is a few hundred bytes; the fields are looked for only there, so
// that a fragment that happens to hold their names is never read as one.
constexpr qsizetype kHeaderReach = 4096;

void PutOffset(QByteArray &block, const char *placeholder, qsizetype value)
{
    const qsizetype at = block.indexOf(placeholder);
    block.replace(at, 10, QByteArray::number(value).rightJustified(10, '0'));
}

// The header ends where the page text begins: at the first "<".
QByteArray HeaderOf(const QByteArray &block)
{
    const qsizetype lt = block.indexOf('<');
    return block.left(std::min(lt < 0 ? block.size() : lt, kHeaderReach));
}

// The number behind a field of the header, -1 when the field is missing
// or its value is no number.
qsizetype Offset(const QByteArray &header, const QByteArray &field)
{
    const qsizetype at = header.indexOf(field);
    if (at < 0)
        return -1;
    qsizetype end = at + field.size();
    while (end < header.size() && end - at - field.size() < 10 && std::isdigit(uchar(header.at(end))))
        ++end;
    bool ok = false;
    const qsizetype value = header.mid(at + field.size(), end - at - field.size()).toLongLong(&ok);
    return ok ? value : -1;
}

// Offsets written by a careless writer: the marker comments of the fragment
// say where it is all the same. -1 when they aren't there.
bool FragmentByMarks(const QByteArray &block, qsizetype &start, qsizetype &end)
{
    static const QRegularExpression open(QStringLiteral("<!--\\s*StartFragment\\s*-->"),
                                         QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression close(QStringLiteral("<!--\\s*EndFragment\\s*-->"),
                                          QRegularExpression::CaseInsensitiveOption);
    const qsizetype a = block.indexOf("<!--");
    if (a < 0)
        return false;
    // Offsets into the bytes: the text is read one character per byte.
    const QString text = QString::fromLatin1(block);
    const QRegularExpressionMatch first = open.match(text, a);
    if (!first.hasMatch())
        return false;
    const QRegularExpressionMatch last = close.match(text, first.capturedEnd());
    if (!last.hasMatch())
        return false;
    start = first.capturedEnd();
    end = last.capturedStart();
    return true;
}

// Firefox writes this entry in UTF-16, others in UTF-8; the address is
// its first line.
QString SourceEntry(const QMimeData &data)
{
    const QByteArray bytes = data.data(QString::fromLatin1(HTMLClipboardFormat::kSourceMime));
    if (bytes.isEmpty())
        return {};
    return HTMLClipboardFormat::DecodeHtml(bytes).section(QLatin1Char('\n'), 0, 0).trimmed();
}

bool LooksLikeUtf16(const QByteArray &bytes, bool &bigEndian)
{
    if (bytes.size() < 2)
        return false;
    if (bytes.at(0) != 0 && bytes.at(1) == 0) {
        bigEndian = false;
        return true;
    }
    if (bytes.at(0) == 0 && bytes.at(1) != 0) {
        bigEndian = true;
        return true;
    }
    return false;
}

} // namespace

QByteArray HTMLClipboardFormat::Build(const QString &fragment, const QString &prefix, const QString &suffix,
                                      const QString &sourceURL)
{
    const QByteArray prefixBlock = kSourceField + sourceURL.toUtf8() + kCRLF + prefix.toUtf8() + kStartMark;
    const QByteArray body = fragment.toUtf8();
    const QByteArray suffixBlock = kEndMark + suffix.toUtf8();
    QByteArray block = kHeader + prefixBlock + body + suffixBlock;
    PutOffset(block, "aaaaaaaaaa", kHeader.size());
    PutOffset(block, "bbbbbbbbbb", block.size());
    PutOffset(block, "cccccccccc", kHeader.size() + prefixBlock.size());
    PutOffset(block, "dddddddddd", kHeader.size() + prefixBlock.size() + body.size());
    return block;
}

long HTMLClipboardFormat::Parse(const QByteArray &block, QString &fragment, QString &sourceURL)
{
    fragment.clear();
    sourceURL.clear();
    const QByteArray header = HeaderOf(block);
    qsizetype start = Offset(header, "StartFragment:");
    qsizetype end = Offset(header, "EndFragment:");
    const bool valid = start > 0 && end >= start && end <= block.size();
    if (!valid && !(start > 0 && end > 0 && FragmentByMarks(block, start, end)))
        return 0;
    fragment = QString::fromUtf8(block.mid(start, end - start));
    // The source line stands at the start of the page text, before any
    // document type.
    const qsizetype field = block.indexOf(kSourceField);
    const qsizetype doctype = block.indexOf("<!DOCTYPE HTML PUBLIC");
    if (field >= 0 && field < kHeaderReach && (doctype < 0 || field < doctype)) {
        const qsizetype from = field + kSourceField.size();
        const qsizetype eol = block.indexOf(kCRLF, from);
        if (eol >= 0 && (doctype < 0 || eol < doctype))
            sourceURL = QString::fromUtf8(block.mid(from, eol - from)).trimmed();
    }
    return 1;
}

QByteArray HTMLClipboardFormat::FromMimeData(const QMimeData &data, const QString &knownSource)
{
    const QByteArray html = data.data(QStringLiteral("text/html"));
    if (html.isEmpty())
        return {};
    QString source = SourceEntry(data);
    if (source.isEmpty())
        source = knownSource;
    return Build(FragmentOf(DecodeHtml(html)), QStringLiteral("<html><body>"), QStringLiteral("</body></html>"), source);
}

QMimeData *HTMLClipboardFormat::ToMimeData(const QByteArray &block)
{
    QString fragment, source;
    if (Parse(block, fragment, source) != 1)
        return nullptr;
    const QByteArray header = HeaderOf(block);
    const qsizetype startHTML = std::max<qsizetype>(Offset(header, "StartHTML:"), 0);
    qsizetype endHTML = Offset(header, "EndHTML:");
    if (endHTML < startHTML || endHTML > block.size())
        endHTML = block.size();
    QByteArray html = block.mid(startHTML, endHTML - startHTML);
    if (html.startsWith(kSourceField))
        html.remove(0, html.indexOf(kCRLF) + kCRLF.size());
    auto *data = new QMimeData;
    data->setData(QStringLiteral("text/html"), QByteArrayLiteral("<meta charset=\"utf-8\">") + html);
    if (!source.isEmpty())
        data->setData(QString::fromLatin1(kSourceMime), source.toUtf8());
    return data;
}

QString HTMLClipboardFormat::DecodeHtml(const QByteArray &bytes)
{
    QString text;
    bool bigEndian = false;
    if (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF")) {
        text = CPageEncoding::DecodeAs(bytes, CPageEncoding::DeclaredCharset(bytes));
    } else if (LooksLikeUtf16(bytes, bigEndian)) {
        auto decode = QStringDecoder(bigEndian ? QStringDecoder::Utf16BE : QStringDecoder::Utf16LE);
        text = decode(bytes);
    } else {
        const QString meta = CPageEncoding::DeclaredCharset(QString::fromLatin1(bytes.left(2048)));
        text = meta.isEmpty() ? QString::fromUtf8(bytes) : CPageEncoding::DecodeAs(bytes, meta);
    }
    if (text.startsWith(QChar(0xFEFF)))
        text.remove(0, 1);
    qsizetype end = text.size();
    while (end > 0 && text.at(end - 1).isNull())
        --end;
    text.truncate(end);
    return text;
}

QString HTMLClipboardFormat::FragmentOf(const QString &html)
{
    static const QRegularExpression open(QStringLiteral("<!--\\s*StartFragment\\s*-->"),
                                         QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression close(QStringLiteral("<!--\\s*EndFragment\\s*-->"),
                                          QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch first = open.match(html);
    if (first.hasMatch()) {
        const QRegularExpressionMatch last = close.match(html, first.capturedEnd());
        if (last.hasMatch())
            return html.mid(first.capturedEnd(), last.capturedStart() - first.capturedEnd());
    }
    static const QRegularExpression body(QStringLiteral("<body[^>]*>"), QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch bodyTag = body.match(html);
    if (bodyTag.hasMatch()) {
        const qsizetype close = html.lastIndexOf(QLatin1String("</body"), -1, Qt::CaseInsensitive);
        const qsizetype end = close > bodyTag.capturedEnd() ? close : html.size();
        return html.mid(bodyTag.capturedEnd(), end - bodyTag.capturedEnd());
    }
    static const QRegularExpression meta(QStringLiteral("^\\s*<meta\\b[^>]*>"), QRegularExpression::CaseInsensitiveOption);
    QString rest = html;
    rest.remove(meta);
    return rest;
}
