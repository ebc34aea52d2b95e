#pragma once

#include <QDateTime>
#include <QString>

// One entry of a long folder listing, as the DirList event gives it.
struct FtpListEntry
{
    QString entry;    // the listing line as received, without its line end
    QString fileName; // for a symbolic link "name -> target"
    bool isDir = false;
    qint64 size = 0;
    QDateTime time;
};

// Reads the lines of a LIST reply. Servers answer in one of two dialects:
// Unix ("drwxr-xr-x 2 owner group 4096 Nov 22 10:00 name") and DOS
// ("11-22-26  10:00AM  <DIR>  name"); anything else ("total 12", blank lines)
// is not an entry.
//
// A size that is written as a number but does not fit one (a broken server's
// "18446744073709551615") is given as -1 rather than dropped, so that the
// reader of the listing can refuse the entry and say so.
class FtpListParser
{
public:
    // The longest listing line taken as a line; a longer one is cut there
    // and refused by the reader (no file system has names that long).
    static constexpr qsizetype kLongestLine = 64 * 1024;

    // The text of a listing line: UTF-8 when the bytes are valid UTF-8 (what
    // servers send after "OPTS UTF8 ON" and most send anyway), else the
    // Western code page, in which older Windows servers name their files.
    static QString decodeLine(const QByteArray &line);

    // Fills `out` and gives true when `line` is an entry of either dialect.
    // `now` decides the year of Unix entries that show a time of day instead.
    static bool parseLine(const QString &line, FtpListEntry &out,
                          const QDateTime &now = QDateTime::currentDateTime());

private:
    static bool parseUnix(const QString &line, FtpListEntry &out, const QDateTime &now);
    static int monthNumber(QStringView field); // 1-12, 0 for no month
    static bool parseDos(const QString &line, FtpListEntry &out);
    static qint64 sizeField(QStringView field, bool &ok);
    static QDateTime unixTime(int month, int day, QStringView yearOrTime, const QDateTime &now);
};
