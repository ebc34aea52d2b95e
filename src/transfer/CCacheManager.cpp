#include "transfer/CCacheManager.h"

#include "document/AddressPath.h"
#include "platform/LocalFolders.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>

namespace {
bool IsWebAddress(const QString &url)
{
    return url.contains(QLatin1String("http://"), Qt::CaseInsensitive)
        || url.contains(QLatin1String("https://"), Qt::CaseInsensitive);
}

// What an address may hold unescaped, "%" aside.
bool Safe(char16_t c)
{
    if (c <= 0x20 || c >= 0x7F)
        return false;
    return !QStringView(u"\"<>\\^`{|}").contains(QChar(c));
}

// Drops "." and ".." segments of a path, as a browser does.
QString WithoutDotSegments(const QString &path)
{
    QStringList out;
    const QStringList segments = path.split(QLatin1Char('/'));
    for (qsizetype i = 0; i < segments.size(); ++i) {
        const QString &segment = segments.at(i);
        const bool last = i == segments.size() - 1;
        if (segment == QLatin1String(".")) {
            if (last)
                out.append(QString());
        } else if (segment == QLatin1String("..")) {
            if (out.size() > 1)
                out.removeLast();
            if (last)
                out.append(QString());
        } else {
            out.append(segment);
        }
    }
    return out.join(QLatin1Char('/'));
}
} // namespace

QString CCacheManager::CacheFolder()
{
    return LocalFolders::xdgFolder("XDG_CACHE_HOME", QStringLiteral("/.cache")) + QStringLiteral("/keldacms/pages");
}

QString CCacheManager::Escaped(const QString &text, bool escapePercent)
{
    QString out;
    for (const QChar ch : text) {
        const char16_t c = ch.unicode();
        if (Safe(c) && (c != u'%' || !escapePercent)) {
            out += ch;
            continue;
        }
        for (const char byte : QString(ch).toUtf8())
            out += QStringLiteral("%%1").arg(uint(uchar(byte)), 2, 16, QLatin1Char('0')).toUpper();
    }
    return out;
}

long CCacheManager::CanonicalizeUrl(const QString &strURL_p, QString &strReturn_P)
{
    QString url = strURL_p.trimmed();
    const qsizetype scheme = url.indexOf(QLatin1String("://"));
    const qsizetype query = url.indexOf(QRegularExpression(QStringLiteral("[?#]")));
    QString front = query < 0 ? url : url.left(query);
    const QString rest = query < 0 ? QString() : url.mid(query);
    if (scheme > 0) {
        front.replace(QLatin1Char('\\'), QLatin1Char('/'));
        const qsizetype pathStart = front.indexOf(QLatin1Char('/'), scheme + 3);
        const QString authority = (pathStart < 0 ? front : front.left(pathStart)).toLower();
        const QString path = pathStart < 0 ? QString() : WithoutDotSegments(front.mid(pathStart));
        front = authority + path;
    }
    strReturn_P = Escaped(front, false) + Escaped(rest, false);
    strReturn_P.replace(QLatin1String("%E5"), QLatin1String("%C3%A5"), Qt::CaseInsensitive)
        .replace(QLatin1String("%E4"), QLatin1String("%C3%A4"), Qt::CaseInsensitive)
        .replace(QLatin1String("%F6"), QLatin1String("%C3%B6"), Qt::CaseInsensitive);
    return 1;
}

long CCacheManager::EncodeUrl(const QString &strURL_p, QString &strReturn_P)
{
    const qsizetype query = strURL_p.indexOf(QRegularExpression(QStringLiteral("[?#]")));
    strReturn_P = query < 0 ? Escaped(strURL_p, true) : Escaped(strURL_p.left(query), true) + strURL_p.mid(query);
    return 1;
}

long CCacheManager::DecodeUrl(QString &strURL_p)
{
    strURL_p = AddressPath::Decode(strURL_p);
    return 1;
}

long CCacheManager::GetCachePathFromURL(const QString &strURL_p, QString &strPath_p)
{
    if (!IsWebAddress(strURL_p)) {
        QString path = strURL_p;
        DecodeUrl(path);
        strPath_p = path.startsWith(QLatin1String("file:"), Qt::CaseInsensitive) ? QUrl(path).toLocalFile() : path;
        return 1;
    }
    QString canonical;
    CanonicalizeUrl(strURL_p, canonical);
    // The name keeps the extension, so that a picture reads as one.
    const QString name = canonical.section(QRegularExpression(QStringLiteral("[?#]")), 0, 0).section(QLatin1Char('/'), -1);
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    const QString extension = dot < 0 ? QString() : name.mid(dot).left(8);
    const QByteArray digest = QCryptographicHash::hash(canonical.toUtf8(), QCryptographicHash::Sha1).toHex();
    strPath_p = CacheFolder() + QLatin1Char('/') + QString::fromLatin1(digest) + extension;
    return 1;
}

long CCacheManager::GetFileSize(const QString &strURL_p, qint64 &lSize_p)
{
    QString path;
    GetCachePathFromURL(strURL_p, path);
    const QFileInfo info(path);
    const qint64 bytes = info.isFile() ? info.size() : 0;
    lSize_p = bytes >= 1000 ? qRound64(double(bytes) / 1000.0) : (bytes > 0 ? 1 : 0);
    return 1;
}
