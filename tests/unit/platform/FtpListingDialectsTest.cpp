// Listing lines as real servers write them, LIST in its Unix and DOS forms
// and MLSD, each line alone and the whole table as one listing: a line must
// read the same whatever came before it.

#include "platform/FtpListParser.h"
#include "platform/MlsdParser.h"

#include <gtest/gtest.h>

namespace {

const QDateTime Now(QDate(2026, 3, 10), QTime(12, 0));

enum Kind { File, Folder, Link, None };

struct Row
{
    const char *line;
    Kind kind;
    const char *name = ""; // FileName as the event gives it
    qint64 size = 0;
    const char *time = ""; // "yyyy-MM-dd HH:mm", or "" not checked
};

const Row kList[] = {
    // vsftpd, numeric owner and group
    {"-rw-r--r--    1 1000     1000         1234 Mar 01 09:05 index.htm", File, "index.htm", 1234, "2026-03-01 09:05"},
    {"drwxr-xr-x    2 0        0            4096 Nov 22  2024 images", Folder, "images", 4096, "2024-11-22 00:00"},
    {"lrwxrwxrwx    1 0        0               8 Jan 05 10:00 www -> /var/www", Link, "www -> /var/www", 8},
    {"-rw-------    1 1001     1001            0 Dec 24 10:00 later.txt", File, "later.txt", 0, "2025-12-24 10:00"},
    // ls -l style with names of owner and group
    {"-rw-r--r--   1 owner    group        1234 Mar  1 09:05 my page.htm", File, "my page.htm", 1234},
    {"-rw-r--r--   1 owner    group          10 Mar  1 09:05 two  spaces.htm", File, "two  spaces.htm", 10},
    {"-rw-r--r--   1 owner    group          10 Mar  1 09:05 Mar 01 2020.txt", File, "Mar 01 2020.txt", 10},
    {"-rw-r--r--   1 owner    group          12 Oct  3  2019 .htaccess", File, ".htaccess", 12, "2019-10-03 00:00"},
    {"drwxr-xr-x   3 owner    group         512 Oct  3  2019 .well-known", Folder, ".well-known", 512},
    {"-rw-r--r--   1 owner    group          12 Oct  3  2019 ...dots", File, "...dots", 12},
    {"-rw-rw-rw-   1 user     group    5000000000 Jun 10  2025 big.iso", File, "big.iso", 5000000000LL},
    {"drwxr-x---+  2 user     group        4096 Mar 01 09:05 acl", Folder, "acl", 4096},
    {"-rw-r--r--@  1 user     staff          10 Mar 01 09:05 mac.txt", File, "mac.txt", 10},
    {"drwxrwxrwt   7 root     root         4096 Mar 01 09:05 tmp", Folder, "tmp", 4096},
    {"-rwsr-xr-x   1 root     root          100 Mar 01 09:05 prog", File, "prog", 100},
    {"drwxr-xr-x 123 user     group        4096 Feb 29  2024 many", Folder, "many", 4096, "2024-02-29 00:00"},
    {"-rw-r--r--   1 user     group          10 Mar 01 09:05 p\xc3\xa5sk.htm", File, "p\xc3\xa5sk.htm", 10},
    {"-rw-r--r--   1 user     group          10 Mar 01 09:05 \xe6\x97\xa5\xe6\x9c\xac.html", File, "\xe6\x97\xa5\xe6\x9c\xac.html", 10},
    {"lrwxrwxrwx   1 ftp      ftp             7 Jan 05 10:00 current -> archive", Link, "current -> archive", 7},
    {"lrwxrwxrwx   1 ftp      ftp            12 Jan 05 10:00 my link -> my target", Link, "my link -> my target", 12},
    {"-rw-r--r--   1 ftp      ftp             0 Jan  1  1970 empty.txt", File, "empty.txt", 0, "1970-01-01 00:00"},
    // proftpd, pure-ftpd
    {"-rw-r--r--   1 ftp      ftp          3567 Mar  1 09:05 y.html", File, "y.html", 3567},
    {"-rw-r--r--    1 1001       1001             12 Mar  1 09:05 x.htm", File, "x.htm", 12},
    {"drwxr-xr-x    4 1001       1001           4096 Mar  1 09:05 sub dir", Folder, "sub dir", 4096},
    // without a group column
    {"-rw-r--r--  1 owner  77 Feb 28 23:59 a.txt", File, "a.txt", 77, "2026-02-28 23:59"},
    {"drwxr-xr-x  2 owner  512 Feb 28  2023 b", Folder, "b", 512},
    {"-rw-r--r--+ 1 owner 77 Feb 28 23:59 c d.txt", File, "c d.txt", 77},
    {"-rwxrwxrwx   1 owner    group          156 Jan 15 12:34 web.config", File, "web.config", 156},
    // a size no number holds: kept as -1 for the reader to refuse
    {"-rw-r--r--   1 a        b    18446744073709551615 Mar 01 09:05 huge", File, "huge", -1},
    {"-rw-r--r--   1 a        b              -5 Mar 01 09:05 negative", File, "negative", -5},
    // no entries
    {"total 24", None},
    {"total 0", None},
    {"   ", None},
    {"550 No files found", None},
    {"d????????? ? ? ? ? ? ? broken", None},
    {"-rw-r--r-- 1 a b 10 Mar 01 09:05", None},

    // IIS, month first with AM/PM
    {"11-22-26  12:15AM            20480 Old Page.HTM", File, "Old Page.HTM", 20480, "2026-11-22 00:15"},
    {"01-02-98  12:30PM       <DIR>          www", Folder, "www", 0, "1998-01-02 12:30"},
    {"10-10-13  09:15PM              123 file with spaces.txt", File, "file with spaces.txt", 123, "2013-10-10 21:15"},
    {"10-10-13  09:15pm       <DIR>          .well-known", Folder, ".well-known", 0, "2013-10-10 21:15"},
    {"03-04-13  11:59AM                0 empty.htm", File, "empty.htm", 0, "2013-03-04 11:59"},
    {"03-04-13  01:00AM               12 \xc3\x85\xc3\xa4\xc3\xb6.htm", File, "\xc3\x85\xc3\xa4\xc3\xb6.htm", 12},
    {"12-31-99  11:59PM       <DIR>          old", Folder, "old", 0, "1999-12-31 23:59"},
    {"02-29-24  10:00AM          5000000000 disk.img", File, "disk.img", 5000000000LL},
    // IIS, 24 hours and four-digit years
    {"03-04-2001  17:45       <DIR>          x", Folder, "x", 0, "2001-03-04 17:45"},
    {"11/22/2026  08:00            1024 slash.htm", File, "slash.htm", 1024, "2026-11-22 08:00"},
    // IIS, year first
    {"2023-03-04  17:45       <DIR>          images", Folder, "images", 0, "2023-03-04 17:45"},
    {"2023-03-04  07:05               42 default.asp", File, "default.asp", 42, "2023-03-04 07:05"},
    {"2023-12-01  23:00            1,234 comma.txt", None},
    // day first, which only a day above 12 can tell
    {"22-11-2026  08:00              99 day.htm", File, "day.htm", 99, "2026-11-22 08:00"},
    {"31.12.2025  18:30       <DIR>          dotted", Folder, "dotted", 0, "2025-12-31 18:30"},
    {"13-13-2026  08:00              99 nonsense.htm", None},
};

const Row kMlsd[] = {
    // pyftpdlib
    {"type=file;size=1234;modify=20240301090500;perm=radfw;unix.mode=0644;unix.uid=1000;unix.gid=1000;unique=801g2a; index.htm",
     File, "index.htm", 1234, "2024-03-01 09:05"},
    {"type=dir;size=4096;modify=20241122000000;perm=flcdmpe;unix.mode=0755; images", Folder, "images", 4096},
    {"type=cdir;size=4096;modify=20241122000000;perm=flcdmpe; .", None},
    {"type=pdir;size=4096;modify=20241122000000;perm=flcdmpe; ..", None},
    {"type=file;size=10;modify=20240301090500; name with spaces.txt", File, "name with spaces.txt", 10},
    {"type=file;size=10;modify=20240301090500; .hidden", File, ".hidden", 10},
    {"type=file;size=10;modify=20240301090500; p\xc3\xa5sk.htm", File, "p\xc3\xa5sk.htm", 10},
    // proftpd, with links
    {"modify=20240301090500;perm=adfr;size=12;type=OS.unix=slink:/var/www;unique=FD00U1;UNIX.group=0;UNIX.mode=0777; www",
     Link, "www -> /var/www", 12},
    {"modify=20240301090500;perm=flcdmpe;type=dir;unique=FD00U2;UNIX.mode=0755; folder", Folder, "folder", 0},
    {"modify=20240301090500;perm=adfrw;size=77;type=file;unique=FD00U3; a;b=c.txt", File, "a;b=c.txt", 77},
    // IIS: capital facts, fractions of seconds
    {"Type=file;Size=5;Modify=20240301090500.123; Upper.txt", File, "Upper.txt", 5, "2024-03-01 09:05"},
    {"Type=dir;Modify=20240301090500.123; Site Folder", Folder, "Site Folder", 0},
    // pure-ftpd
    {"type=file;size=3;modify=20240301090500;UNIX.mode=0644;UNIX.uid=1001;UNIX.gid=1001;unique=803g1a; x.htm", File, "x.htm", 3},
    {"type=file;size=99999999999999999999;modify=20240301090500; huge", File, "huge", -1},
    {"no facts here", None},
    {"type=file;size=1;", None},
};

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

void expectRow(const Row &row, bool parsed, const FtpListEntry &entry)
{
    const std::string line = row.line;
    ASSERT_EQ(parsed, row.kind != None) << line;
    if (!parsed)
        return;
    EXPECT_EQ(entry.fileName, text(row.name)) << line;
    EXPECT_EQ(entry.isDir, row.kind == Folder) << line;
    EXPECT_EQ(entry.size, row.size) << line;
    if (*row.time) {
        EXPECT_EQ(entry.time.toString(QStringLiteral("yyyy-MM-dd HH:mm")), text(row.time)) << line;
    }
}

bool parseList(const QString &line, FtpListEntry &entry)
{
    return FtpListParser::parseLine(line, entry, Now);
}

// The table as one reply, decoded and split the way the control does it.
template <size_t N>
void expectTogether(const Row (&rows)[N], bool (*parse)(const QString &, FtpListEntry &))
{
    QByteArray reply;
    for (const Row &row : rows)
        reply += QByteArray(row.line) + "\r\n";
    const QList<QByteArray> lines = reply.split('\n');
    ASSERT_EQ(lines.size(), qsizetype(N) + 1);
    for (size_t i = 0; i < N; ++i) {
        FtpListEntry entry;
        const bool parsed = parse(FtpListParser::decodeLine(lines[qsizetype(i)]), entry);
        expectRow(rows[i], parsed, entry);
    }
}

} // namespace

TEST(FtpListingDialects, ListLinesEachAlone)
{
    static_assert(std::size(kList) + std::size(kMlsd) >= 60);
    for (const Row &row : kList) {
        FtpListEntry entry;
        expectRow(row, parseList(text(row.line), entry), entry);
    }
}

TEST(FtpListingDialects, MlsdLinesEachAlone)
{
    for (const Row &row : kMlsd) {
        FtpListEntry entry;
        expectRow(row, MlsdParser::parseLine(text(row.line), entry), entry);
    }
}

TEST(FtpListingDialects, AllLinesTogether)
{
    expectTogether(kList, &parseList);
    expectTogether(kMlsd, &MlsdParser::parseLine);
}

// Older Windows servers send names in their code page, not UTF-8.
TEST(FtpListingDialects, NamesInTheServersCodePage)
{
    FtpListEntry entry;
    const QByteArray latin = "03-04-13  01:00AM               12 p\xe5sk \x80.htm";
    ASSERT_TRUE(parseList(FtpListParser::decodeLine(latin), entry));
    EXPECT_EQ(entry.fileName, QString::fromUtf8("p\xc3\xa5sk \xe2\x82\xac.htm"));
}
