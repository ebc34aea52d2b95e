// Listing lines as two server families write them, including the awkward
// ones: names with spaces, links, old entries with a year, 12 AM/PM.

#include "platform/FtpListParser.h"

#include <gtest/gtest.h>

namespace {

const QDateTime Now(QDate(2026, 3, 10), QTime(12, 0));

FtpListEntry parsed(const QString &line)
{
    FtpListEntry entry;
    EXPECT_TRUE(FtpListParser::parseLine(line, entry, Now)) << line.toStdString();
    return entry;
}

} // namespace

TEST(FtpListParser, UnixFilesFoldersAndLinks)
{
    const FtpListEntry file =
        parsed(QStringLiteral("-rw-r--r--   1 owner    group        1234 Mar 01 09:05 my page.htm\r"));
    EXPECT_EQ(file.fileName, QStringLiteral("my page.htm"));
    EXPECT_FALSE(file.isDir);
    EXPECT_EQ(file.size, 1234);
    EXPECT_EQ(file.time, QDateTime(QDate(2026, 3, 1), QTime(9, 5), Qt::UTC));
    EXPECT_EQ(file.entry, QStringLiteral("-rw-r--r--   1 owner    group        1234 Mar 01 09:05 my page.htm"));

    const FtpListEntry folder = parsed(QStringLiteral("drwxr-xr-x 2 0 0 4096 Nov 22  2024 images"));
    EXPECT_TRUE(folder.isDir);
    EXPECT_EQ(folder.fileName, QStringLiteral("images"));
    EXPECT_EQ(folder.time, QDateTime(QDate(2024, 11, 22), QTime(0, 0), Qt::UTC));

    const FtpListEntry link =
        parsed(QStringLiteral("lrwxrwxrwx   1 ftp ftp 7 Jan 05 10:00 current -> archive"));
    EXPECT_EQ(link.fileName, QStringLiteral("current -> archive"));
    EXPECT_FALSE(link.isDir);
}

TEST(FtpListParser, UnixTimeOfDayInTheFutureBelongsToLastYear)
{
    // "Dec 24 10:00" seen in March is last December's.
    EXPECT_EQ(parsed(QStringLiteral("-rw-r--r-- 1 a b 1 Dec 24 10:00 x")).time.date(),
              QDate(2025, 12, 24));
}

TEST(FtpListParser, UnixWithoutGroupAndWithAclMark)
{
    const FtpListEntry entry = parsed(QStringLiteral("-rw-r--r--+ 1 owner 77 Feb 28 23:59 a.txt"));
    EXPECT_EQ(entry.fileName, QStringLiteral("a.txt"));
    EXPECT_EQ(entry.size, 77);
}

TEST(FtpListParser, DosFilesAndFolders)
{
    const FtpListEntry file = parsed(QStringLiteral("11-22-26  12:15AM            20480 Old Page.HTM"));
    EXPECT_EQ(file.fileName, QStringLiteral("Old Page.HTM"));
    EXPECT_EQ(file.size, 20480);
    EXPECT_EQ(file.time, QDateTime(QDate(2026, 11, 22), QTime(0, 15), Qt::UTC));

    const FtpListEntry folder = parsed(QStringLiteral("01-02-98  12:30PM       <DIR>          www"));
    EXPECT_TRUE(folder.isDir);
    EXPECT_EQ(folder.fileName, QStringLiteral("www"));
    EXPECT_EQ(folder.time, QDateTime(QDate(1998, 1, 2), QTime(12, 30), Qt::UTC));

    EXPECT_EQ(parsed(QStringLiteral("03-04-2001  17:45  <DIR>  x")).time,
              QDateTime(QDate(2001, 3, 4), QTime(17, 45), Qt::UTC));
}

TEST(FtpListParser, LinesThatAreNoEntries)
{
    FtpListEntry entry;
    for (const char *line : {"total 24", "", "   ", "550 No files found", "d????????? ? ? ? ? ? ? broken"})
        EXPECT_FALSE(FtpListParser::parseLine(QString::fromLatin1(line), entry, Now)) << line;
}
