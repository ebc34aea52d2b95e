#include "objects/FragmentAddresses.h"

#include "document/HtmlEntities.h"
#include "document/PageTokenizer.h"

#include <QRegularExpression>
#include <QSet>
#include <QStringList>
#include <QUrl>

namespace {

const QString kSlash = QStringLiteral("/");

bool IsWebScheme(const QString &scheme)
{
    return scheme == QLatin1String("http") || scheme == QLatin1String("https");
}

// "mailto:", "javascript:", "data:" and any other scheme but the web's
// name something that no folder can move.
bool HasScheme(const QString &address, QString &scheme)
{
    static const QRegularExpression pattern(QStringLiteral("^([A-Za-z][A-Za-z0-9+.-]*):"));
    const QRegularExpressionMatch m = pattern.match(address);
    if (!m.hasMatch())
        return false;
    scheme = m.captured(1).toLower();
    return true;
}

bool SameServer(const QUrl &a, const QUrl &b)
{
    const int fallback = a.scheme() == QLatin1String("https") ? 443 : 80;
    return a.scheme() == b.scheme() && a.host().compare(b.host(), Qt::CaseInsensitive) == 0
           && a.port(fallback) == b.port(fallback);
}

// A server's address without a path means its root.
QString PathOf(const QUrl &url)
{
    const QString path = url.path(QUrl::FullyEncoded);
    return path.startsWith(kSlash) ? path : kSlash + path;
}

// The path from the page's folder to the address's, with "../" for each
// folder of the page that the address does not share. Escapes stay as the
// address spelt them.
QString RelativeTo(const QUrl &page, const QUrl &address)
{
    QStringList from = PathOf(page).split(kSlash);
    from.removeFirst(); // before the leading "/"
    from.removeLast();  // the page's own file name
    QStringList to = PathOf(address).split(kSlash);
    to.removeFirst();
    qsizetype common = 0;
    while (common < from.size() && common < to.size() - 1 && from[common] == to[common])
        ++common;
    QString result = QStringLiteral("../").repeated(from.size() - common) + to.mid(common).join(kSlash);
    if (result.isEmpty())
        result = QStringLiteral("./");
    if (address.hasQuery())
        result += QLatin1Char('?') + address.query(QUrl::FullyEncoded);
    if (address.hasFragment())
        result += QLatin1Char('#') + address.fragment(QUrl::FullyEncoded);
    return result;
}

// An attribute value as it is written back between its quotes.
QString WriteValue(const QString &value, QChar quote)
{
    QString out = value;
    out.replace(QLatin1Char('&'), QLatin1String("&amp;"));
    if (quote == u'\'')
        return out.replace(QLatin1Char('\''), QLatin1String("&#39;"));
    return out.replace(QLatin1Char('"'), QLatin1String("&quot;"));
}

bool IsAddressAttribute(const QString &name)
{
    static const QSet<QString> names = {QStringLiteral("href"), QStringLiteral("src"), QStringLiteral("background")};
    return names.contains(name);
}

} // namespace

long FragmentAddresses::calculateRelativePath(const QString &strDocumentURL_p, const QString &strSourceURL_p,
                                              QString &strResult_p, const QString &strFromURL_p)
{
    strResult_p.clear();
    const QString address = strSourceURL_p.trimmed();
    const QUrl page(strDocumentURL_p);
    if (address.isEmpty() || address.startsWith(QLatin1Char('#')) || !page.isValid() || !IsWebScheme(page.scheme()))
        return 1;
    QString scheme;
    QUrl resolved;
    if (HasScheme(address, scheme)) {
        if (!IsWebScheme(scheme))
            return 1;
        resolved = QUrl(address);
    } else if (address.startsWith(QLatin1String("//"))) {
        // The server is named; only the scheme comes from around it.
        const QUrl from(strFromURL_p);
        resolved = QUrl((from.isValid() && IsWebScheme(from.scheme()) ? from.scheme() : page.scheme())
                        + QLatin1Char(':') + address);
    } else {
        const QUrl from(strFromURL_p);
        if (strFromURL_p.isEmpty() || !from.isValid() || !IsWebScheme(from.scheme()))
            return 1;
        resolved = from.resolved(QUrl(address));
    }
    if (!resolved.isValid() || resolved.host().isEmpty())
        return 1;
    // An address that names its server stays as its author wrote it unless
    // it is this page's server; a relative one from another server becomes
    // absolute, or it would point into this site.
    const bool named = !scheme.isEmpty() || address.startsWith(QLatin1String("//"));
    if (!SameServer(page, resolved) && named)
        return 1;
    const QString written = SameServer(page, resolved) ? RelativeTo(page, resolved) : resolved.toString(QUrl::FullyEncoded);
    if (written != address)
        strResult_p = written;
    return 1;
}

long FragmentAddresses::ConvertAbsoluteURL(QString &strFragment_p, const QString &strSource_p, const QString &strTarget_p)
{
    const QList<PageToken> tokens = PageTokenizer::Tokenize(strFragment_p, false);
    QString out;
    qsizetype copied = 0;
    long changed = 0;
    for (const PageToken &token : tokens) {
        if (token.kind != PageToken::StartTag)
            continue;
        const QStringView tag = QStringView(strFragment_p).mid(token.start, token.end - token.start);
        for (const PageTokenizer::Attribute &a : PageTokenizer::Attributes(tag)) {
            if (a.valueStart < 0 || !IsAddressAttribute(a.name))
                continue;
            const QString value = HtmlEntities::Decode(tag.mid(a.valueStart, a.valueEnd - a.valueStart));
            QString rewritten;
            calculateRelativePath(strTarget_p, value, rewritten, strSource_p);
            if (rewritten.isEmpty())
                continue;
            if (out.isEmpty())
                out.reserve(strFragment_p.size() + 64);
            out += QStringView(strFragment_p).mid(copied, token.start + a.valueStart - copied);
            if (a.quote.isNull())
                out += QLatin1Char('"') + WriteValue(rewritten, u'"') + QLatin1Char('"');
            else
                out += WriteValue(rewritten, a.quote);
            copied = token.start + a.valueEnd;
            ++changed;
        }
    }
    if (changed > 0) {
        out += QStringView(strFragment_p).mid(copied);
        strFragment_p = out;
    }
    return changed;
}
