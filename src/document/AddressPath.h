#pragma once

#include <QString>
#include <QStringList>

// The path of a web address as the FTP server names it, and back. Paths
// keep their case everywhere: a Linux host tells "/Products" from
// "/products", and a file name must reach the server as the author wrote it.
class AddressPath
{
public:
    // The path with every percent-escape decoded. The escaped bytes are read
    // as UTF-8 when they are valid UTF-8 (what every browser sends for a
    // name with letters beyond ASCII), else in legacyCharset, the page's own
    // (windows-1252 when none is given), as an old page may link to a file
    // named in its own code page.
    static QString Decode(const QString &escaped, const QString &legacyCharset = QString());

    // The path as it may stand in an address: letters beyond ASCII and the
    // characters an address can't hold escaped as UTF-8; "/" stays.
    static QString Encode(const QString &path);

    // The non-empty segments of a path.
    static QStringList Segments(const QString &path);

    // Whether path begins with every segment of root, whole segments only:
    // "/www2/a.htm" does not begin with "/www". An empty root or "/" begins
    // every path.
    static bool StartsWithRoot(const QString &path, const QString &root);

    // path without root at its front (whole segments, see StartsWithRoot),
    // keeping its leading "/" and its final "/"; path itself when it does
    // not begin with root.
    static QString WithoutRoot(const QString &path, const QString &root);
};
