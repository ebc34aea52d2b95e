// The listing buffer without a server: what the DirList event takes and
// refuses, the two sort orders, the local paths of a download, and the
// address functions of the cache manager.

#include "platform/FtpListParser.h"
#include "support/ErrorLog.h"
#include "transfer/CCacheManager.h"
#include "transfer/CFTPS.h"
#include "transfer/DirListing.h"
#include "transfer/DirSort.h"
#include "transfer/FileBatch.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

DIRENTRY named(const QString &name, long type = 0)
{
    DIRENTRY entry;
    entry.strName = name;
    entry.strEntry = name;
    entry.lType = type;
    return entry;
}

QStringList names(const DIRDATA &data)
{
    QStringList out;
    for (const DIRENTRY &entry : data.Entries)
        out << entry.strName;
    return out;
}

const QDateTime When(QDate(2026, 3, 1), QTime(9, 5));

} // namespace

TEST(DirSort, IndexSearchOrderPutsIndexDefaultMainFirst)
{
    DIRDATA data;
    for (const char *name : {"aaa.htm", "main.htm", "zzz.txt", "default.asp", "reindexed.htm", "Index.htm"})
        data.Entries << named(QString::fromLatin1(name));
    data.Entries.insert(2, DIRENTRY()); // an entry without content
    ASSERT_EQ(CFTPS::SortDIR(data), 1);
    EXPECT_EQ(names(data), QStringList({"Index.htm", "reindexed.htm", "default.asp", "main.htm", "aaa.htm", "zzz.txt"}));
    EXPECT_EQ(data.lCount, 6);
}

TEST(DirSort, DisplayOrderKeepsTheListingsOrderWithinEachClass)
{
    DIRDATA data;
    data.Entries << named(QStringLiteral("b.htm")) << named(QStringLiteral("x.htm"), 1)
                 << named(QStringLiteral("a.gif")) << named(QStringLiteral("c.HTM"))
                 << named(QStringLiteral("d.html")) << named(QStringLiteral("img"), 1)
                 << named(QStringLiteral("default.asp"));
    ASSERT_EQ(CFTPS::SortDIR2(data), 1);
    EXPECT_EQ(names(data), QStringList({"x.htm", "img", "a.gif", "c.HTM", "default.asp", "b.htm", "d.html"}));
}

TEST(DirListingEvent, TakesEntriesAndRefusesWhatCouldLeadAnywhereElse)
{
    bool exists = false;
    ErrorLog::Take(exists);
    CFTPS client;
    DirListing listing(client);
    listing.DirList(QStringLiteral("-rw-r--r-- 1 a b 10 Mar 01 09:05 Page.HTML"), QStringLiteral("Page.HTML"), false, 10, When);
    listing.DirList(QStringLiteral("lrwxrwxrwx 1 a b 8 Mar 01 09:05 www -> /var/www"), QStringLiteral("www -> /var/www"), false, 8, When);
    listing.DirList(QStringLiteral("-rw-r--r-- 1 a b 10 Mar 01 09:05 a->b.htm"), QStringLiteral("a->b.htm"), false, 10, When);
    listing.DirList(QStringLiteral("drwxr-xr-x 2 a b 4096 Mar 01 09:05 .well-known"), QStringLiteral(".well-known"), true, 4096, When);
    for (const char *dots : {".", ".."})
        listing.DirList(QString::fromLatin1(dots), QString::fromLatin1(dots), true, 0, When);
    const QString refused[] = {QStringLiteral("..\\evil.htm"), QStringLiteral("a/b"), QString::fromLatin1("nul\0x", 5),
                               QStringLiteral("line\rbreak"), QStringLiteral("line\nbreak")};
    for (const QString &name : refused)
        listing.DirList(name, name, false, 1, When);
    listing.DirList(QStringLiteral("negative"), QStringLiteral("negative"), false, -1, When);
    listing.DirList(QStringLiteral("huge"), QStringLiteral("huge"), false, DirListing::kLargestSize + 1, When);
    listing.DirList(QString(FtpListParser::kLongestLine + 1, QLatin1Char('x')), QString(), false, 0, When);

    const DIRDATA &data = listing.Buffer();
    ASSERT_EQ(names(data), QStringList({"Page.HTML", "www", "a->b.htm", ".well-known"}));
    EXPECT_TRUE(data.Entries[0].bPage);
    EXPECT_EQ(data.Entries[0].strTime, QStringLiteral("2026-03-01 09:05"));
    EXPECT_TRUE(data.Entries[1].bLink);
    EXPECT_EQ(data.Entries[1].lType, 1);
    EXPECT_FALSE(data.Entries[2].bLink); // no link line: the arrow is part of a name
    EXPECT_EQ(data.Entries[3].lType, 1);
    const QString log = ErrorLog::Take(exists);
    EXPECT_EQ(log.count(QStringLiteral("Listing entry refused")), 8) << log.toStdString();
    EXPECT_FALSE(log.contains(QChar(0)));
}

TEST(FileBatchPaths, NothingLeadsOutOfTheLocalFolder)
{
    QTemporaryDir folder;
    QDir(folder.path()).mkpath(QStringLiteral("inside"));
    QFile::link(QDir::tempPath(), folder.filePath(QStringLiteral("outside")));
    EXPECT_EQ(FileBatch::LocalPathInside(folder.path(), QStringLiteral("inside/a.htm")),
              folder.filePath(QStringLiteral("inside/a.htm")));
    for (const char *relative : {"../a.htm", "inside/../../a.htm", "/etc/passwd", "outside/a.htm", "outside",
                                 "a\\..\\..\\b", "", "inside//a.htm"})
        EXPECT_TRUE(FileBatch::LocalPathInside(folder.path(), QString::fromLatin1(relative)).isEmpty()) << relative;
}

TEST(CCacheManager, AddressesCanonicalEncodedAndDecoded)
{
    CCacheManager cache;
    QString out;
    cache.CanonicalizeUrl(QStringLiteral("HTTP://Example.COM/a/./b/../bilder/%E5ke.jpg"), out);
    EXPECT_EQ(out, QStringLiteral("http://example.com/a/bilder/%C3%A5ke.jpg"));
    cache.CanonicalizeUrl(QStringLiteral("http://example.com/%e4 %F6\\x.htm?q=a b"), out);
    EXPECT_EQ(out, QStringLiteral("http://example.com/%C3%A4%20%C3%B6/x.htm?q=a%20b"));
    cache.CanonicalizeUrl(QString::fromUtf8("http://example.com/\xc3\xa5.htm"), out);
    EXPECT_EQ(out, QStringLiteral("http://example.com/%C3%A5.htm"));

    cache.EncodeUrl(QStringLiteral("http://example.com/100% sure.htm?a=b c"), out);
    EXPECT_EQ(out, QStringLiteral("http://example.com/100%25%20sure.htm?a=b c"));
    cache.EncodeUrl(QString(), out);
    EXPECT_TRUE(out.isEmpty());

    QString utf8 = QStringLiteral("/bilder/%C3%A5ke%20och.jpg"), latin = QStringLiteral("/bilder/%E4.jpg");
    cache.DecodeUrl(utf8);
    cache.DecodeUrl(latin);
    EXPECT_EQ(utf8, QString::fromUtf8("/bilder/\xc3\xa5ke och.jpg"));
    EXPECT_EQ(latin, QString::fromUtf8("/bilder/\xc3\xa4.jpg"));
}

TEST(CCacheManager, CacheFilesLieUnderTheUsersCacheFolder)
{
    QTemporaryDir home;
    qputenv("XDG_CACHE_HOME", home.path().toUtf8());
    CCacheManager cache;
    QString path, same;
    cache.GetCachePathFromURL(QStringLiteral("http://example.com/a/../pic.JPG"), path);
    cache.GetCachePathFromURL(QStringLiteral("HTTP://EXAMPLE.com/pic.JPG"), same);
    EXPECT_TRUE(path.startsWith(home.path() + QStringLiteral("/keldacms/pages/"))) << path.toStdString();
    EXPECT_TRUE(path.endsWith(QStringLiteral(".JPG")));
    EXPECT_EQ(path, same);

    qint64 size = -1;
    cache.GetFileSize(QStringLiteral("http://example.com/pic.JPG"), size);
    EXPECT_EQ(size, 0);
    QDir().mkpath(CCacheManager::CacheFolder());
    for (const auto &[bytes, kb] : {std::pair{500, 1}, std::pair{1499, 1}, std::pair{1500, 2}}) {
        QFile file(path);
        file.open(QIODevice::WriteOnly);
        file.write(QByteArray(bytes, 'x'));
        file.close();
        cache.GetFileSize(QStringLiteral("http://example.com/pic.JPG"), size);
        EXPECT_EQ(size, kb) << bytes;
    }

    QString local;
    cache.GetCachePathFromURL(QStringLiteral("/home/anna/bilder/%C3%A5ke.jpg"), local);
    EXPECT_EQ(local, QString::fromUtf8("/home/anna/bilder/\xc3\xa5ke.jpg"));
    qunsetenv("XDG_CACHE_HOME");
}
