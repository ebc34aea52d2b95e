#include "history/ProfileFile.h"

#include <gtest/gtest.h>

namespace {
ProfileFile parse(const char *text)
{
    return ProfileFile::fromBytes(QByteArray(text));
}
} // namespace

// Sections named by page paths: QSettings would split these at "/", a
// Windows client reads them whole and ignores case.
TEST(ProfileFile, SectionsWithSlashesAndAnyCase)
{
    const ProfileFile index = parse("[/www/Sub/Page.htm]\r\nID=123\r\nrev=2\r\n1Date=a\r\n"
                                    "[/www/index.htm]\nID=9\n");
    EXPECT_EQ(index.value(QStringLiteral("/WWW/sub/page.HTM"), QStringLiteral("id")), QStringLiteral("123"));
    EXPECT_EQ(index.value(QStringLiteral("/www/Sub/Page.htm"), QStringLiteral("1date")), QStringLiteral("a"));
    EXPECT_EQ(index.value(QStringLiteral("/www/index.htm"), QStringLiteral("ID")), QStringLiteral("9"));
    EXPECT_EQ(index.sectionNames(), QStringList({QStringLiteral("/www/Sub/Page.htm"), QStringLiteral("/www/index.htm")}));
    bool found = true;
    EXPECT_TRUE(index.value(QStringLiteral("/www/Sub"), QStringLiteral("ID"), &found).isEmpty());
    EXPECT_FALSE(found);
}

TEST(ProfileFile, ReadsLikeWindowsDoes)
{
    const ProfileFile index = parse("  [ /a]b.htm ]  \n"
                                    "  rev  =  3  \n"
                                    "q=\"quoted value\"\n"
                                    "half=\"open\n"
                                    "; comment=not a key\n"
                                    "rev=4\n"
                                    "[/a]b.htm]\nID=second section of the same name\n");
    const QString s = QStringLiteral("/a]b.htm");
    EXPECT_EQ(index.value(s, QStringLiteral("rev")), QStringLiteral("3")); // first of two wins
    EXPECT_EQ(index.value(s, QStringLiteral("q")), QStringLiteral("quoted value"));
    EXPECT_EQ(index.value(s, QStringLiteral("half")), QStringLiteral("\"open"));
    EXPECT_EQ(index.value(s, QStringLiteral("ID")), QString()); // in the second one only
}

TEST(ProfileFile, WritingKeepsOtherSectionsAndUnknownLinesByteForByte)
{
    const QByteArray original("; kept\r\n[/one.htm]\r\nID=1\r\n\r\ngarbage line\r\n[/two.htm]\r\nID=2\r\nrev=1\r\n");
    ProfileFile index = ProfileFile::fromBytes(original);
    index.setValue(QStringLiteral("/TWO.htm"), QStringLiteral("REV"), QStringLiteral("2"));
    index.setValue(QStringLiteral("/two.htm"), QStringLiteral("2date"), QStringLiteral("d2"));
    index.setValue(QStringLiteral("/one.htm"), QStringLiteral("rev"), QStringLiteral("1"));
    index.setValue(QStringLiteral("/three.htm"), QStringLiteral("ID"), QStringLiteral("3"));
    EXPECT_EQ(index.toBytes(), QByteArray("; kept\r\n[/one.htm]\r\nID=1\r\nrev=1\r\n\r\ngarbage line\r\n"
                                          "[/two.htm]\r\nID=2\r\nREV=2\r\n2date=d2\r\n"
                                          "\r\n[/three.htm]\r\nID=3\r\n"));
}

TEST(ProfileFile, LineBreaksInValuesCannotForgeSections)
{
    ProfileFile index;
    index.setValue(QStringLiteral("/p.htm"), QStringLiteral("1date"), QStringLiteral("x\r\n[/other.htm]\nID=7"));
    const ProfileFile again = ProfileFile::fromBytes(index.toBytes());
    EXPECT_FALSE(again.hasSection(QStringLiteral("/other.htm")));
    EXPECT_EQ(again.value(QStringLiteral("/p.htm"), QStringLiteral("1date")), QStringLiteral("x  [/other.htm] ID=7"));

    // A name read with a stray carriage return in it is written to as read.
    ProfileFile stray = ProfileFile::fromBytes(QByteArray("[/a\rb]\n"));
    stray.setValue(QStringLiteral("/a\rb"), QStringLiteral("rev"), QStringLiteral("1"));
    EXPECT_EQ(stray.sectionNames().size(), 1);
    EXPECT_EQ(ProfileFile::fromBytes(stray.toBytes()).value(QStringLiteral("/a\rb"), QStringLiteral("rev")),
              QStringLiteral("1"));
}

// Code-page files stay code-page files; UTF-8 ones stay UTF-8.
TEST(ProfileFile, EncodingsRoundTrip)
{
    const QByteArray ansi("[/v\xE4xter.htm]\r\n1date=\x80 5\r\n");
    ProfileFile a = ProfileFile::fromBytes(ansi);
    EXPECT_EQ(a.value(QStringLiteral("/växter.htm"), QStringLiteral("1date")), QStringLiteral("€ 5"));
    EXPECT_EQ(a.toBytes(), ansi);

    const QByteArray utf8("\xEF\xBB\xBF[/\xC3\xA5.htm]\r\nID=1\r\n");
    ProfileFile u = ProfileFile::fromBytes(utf8);
    EXPECT_EQ(u.value(QStringLiteral("/å.htm"), QStringLiteral("ID")), QStringLiteral("1"));
    EXPECT_EQ(u.toBytes(), utf8);

    // Read as a Windows client reads it, before and after an edit that
    // leaves only bytes that would also pass for UTF-8.
    ProfileFile odd = ProfileFile::fromBytes(QByteArray("[/p\xC3\xA5.htm]\r\nrev=\xC8\r\n"));
    odd.setValue(QStringLiteral("/pÃ¥.htm"), QStringLiteral("rev"), QStringLiteral("2"));
    EXPECT_EQ(ProfileFile::fromBytes(odd.toBytes()).value(QStringLiteral("/pÃ¥.htm"), QStringLiteral("rev")),
              QStringLiteral("2"));

    ProfileFile beyond = ProfileFile::fromBytes(ansi);
    beyond.setValue(QStringLiteral("/日本.htm"), QStringLiteral("ID"), QStringLiteral("1"));
    const ProfileFile back = ProfileFile::fromBytes(beyond.toBytes());
    EXPECT_EQ(back.value(QStringLiteral("/日本.htm"), QStringLiteral("ID")), QStringLiteral("1"));
    EXPECT_EQ(back.value(QStringLiteral("/VÄXTER.htm"), QStringLiteral("1date")), QStringLiteral("€ 5"));
}
