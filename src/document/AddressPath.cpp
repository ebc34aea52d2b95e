#include "document/AddressPath.h"

#include "document/CPageEncoding.h"

#include <QStringDecoder>
#include <QUrl>

namespace {
const QChar kSlash = QLatin1Char('/');
}

QString AddressPath::Decode(const QString &escaped, const QString &legacyCharset)
{
    if (!escaped.contains(QLatin1Char('%')))
        return escaped;
    const QByteArray bytes = QByteArray::fromPercentEncoding(escaped.toUtf8());
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = utf8(bytes);
    if (!utf8.hasError())
        return text;
    // The unescaped characters of the path were ASCII, which every legacy
    // code page reads alike.
    return CPageEncoding::DecodeAs(bytes, legacyCharset);
}

QString AddressPath::Encode(const QString &path)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(path, "/!$&'()*+,;=:@~"));
}

QStringList AddressPath::Segments(const QString &path)
{
    return path.split(kSlash, Qt::SkipEmptyParts);
}

bool AddressPath::StartsWithRoot(const QString &path, const QString &root)
{
    const QStringList rootSegments = Segments(root);
    const QStringList pathSegments = Segments(path);
    return pathSegments.size() >= rootSegments.size()
        && pathSegments.mid(0, rootSegments.size()) == rootSegments;
}

QString AddressPath::WithoutRoot(const QString &path, const QString &root)
{
    const QStringList rootSegments = Segments(root);
    if (rootSegments.isEmpty() || !StartsWithRoot(path, root))
        return path;
    // Step over the root's segments in the path as written, so that its
    // slashes (leading, doubled, final) stay as they were.
    qsizetype at = 0;
    for (const QString &segment : rootSegments) {
        while (at < path.size() && path.at(at) == kSlash)
            ++at;
        at += segment.size();
    }
    QString rest = path.mid(at);
    if (path.startsWith(kSlash) && !rest.startsWith(kSlash))
        rest.prepend(kSlash);
    return rest;
}
