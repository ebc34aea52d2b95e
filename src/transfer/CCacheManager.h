#pragma once

#include <QString>

// The local copies of addresses that the image dialogs show, and the address
// functions they use. The page engine keeps no file per address, so the
// program has a cache of its own: one file per canonical address under
// $XDG_CACHE_HOME/keldacms/pages (~/.cache when unset).
class CCacheManager
{
public:
    // The local file that holds the address (which need not exist yet); an
    // address that is no web address is taken for a local path. Result 1.
    long GetCachePathFromURL(const QString &strURL_p, QString &strPath_p);
    // The size of that file in kilobytes of 1000 bytes, for display; 0 when
    // there is none. A file under 1000 bytes that holds anything counts as 1,
    // so that no file with content is shown as "0 kb".
    long GetFileSize(const QString &strURL_p, qint64 &lSize_p);
    // Dot segments resolved, scheme and host in lower case, unsafe
    // characters escaped (letters beyond ASCII as UTF-8); the Latin-1
    // escapes of the Swedish letters an older page holds (%E5, %E4, %F6)
    // become their UTF-8 escapes.
    long CanonicalizeUrl(const QString &strURL_p, QString &strReturn_P);
    // Unsafe characters and "%" escaped in front of the query; the query
    // and fragment are left alone. An empty address stays empty.
    long EncodeUrl(const QString &strURL_p, QString &strReturn_P);
    // Escapes removed: UTF-8 when the bytes are UTF-8, else Windows-1252.
    long DecodeUrl(QString &strURL_p);

    static QString CacheFolder();

private:
    static QString Escaped(const QString &text, bool escapePercent);
};
