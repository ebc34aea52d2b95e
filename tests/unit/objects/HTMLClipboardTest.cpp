// The clipboard's HTML block (header, offsets, source address), the forms
// in which other programs leave HTML on the desktop's clipboard, and the
// rules by which a fragment's addresses move from one page to another.

#include "objects/FragmentAddresses.h"
#include "objects/HTMLClipboardFormat.h"

#include <QMimeData>
#include <QStringEncoder>

#include <gtest/gtest.h>

#include <memory>

namespace {

using F = HTMLClipboardFormat;

qsizetype field(const QByteArray &block, const char *name)
{
    const qsizetype at = block.indexOf(name) + qstrlen(name);
    return block.mid(at, 10).toLongLong();
}

QByteArray utf16le(const QString &text)
{
    auto encode = QStringEncoder(QStringEncoder::Utf16LE);
    return encode(text);
}

} // namespace

TEST(HTMLClipboardBlock, OffsetsPointAtTheFragmentInBytes)
{
    const QString fragment = QStringLiteral("<p>Räksmörgås <b>€</b></p>");
    const QByteArray block = F::Build(fragment, QStringLiteral("<html><body>"), QStringLiteral("</body></html>"),
                                      QStringLiteral("http://h/a/b.htm"));
    EXPECT_TRUE(block.startsWith("Version:1.0\r\nStartHTML:0000000105\r\nEndHTML:"));
    // Ten digits whatever the value: the header is as long as its template.
    const qsizetype startHTML = field(block, "StartHTML:");
    EXPECT_EQ(startHTML, block.indexOf("SourceURL:"));
    EXPECT_EQ(field(block, "EndHTML:"), block.size());
    const qsizetype start = field(block, "StartFragment:"), end = field(block, "EndFragment:");
    EXPECT_EQ(block.mid(start, end - start), fragment.toUtf8());
    EXPECT_TRUE(block.left(start).endsWith("<html><body><!--StartFragment -->"));
    EXPECT_TRUE(block.mid(end).startsWith("<!--EndFragment --></body></html>"));

    QString read, source;
    ASSERT_EQ(F::Parse(block, read, source), 1);
    EXPECT_EQ(read, fragment);
    EXPECT_EQ(source, QStringLiteral("http://h/a/b.htm"));

    // An empty fragment is still a fragment; an unknown source stays empty.
    ASSERT_EQ(F::Parse(F::Build(QString(), QString(), QString(), QString()), read, source), 1);
    EXPECT_TRUE(read.isEmpty());
    EXPECT_TRUE(source.isEmpty());
}

TEST(HTMLClipboardBlock, BrokenOffsetsGiveTheMarkedFragmentOrNone)
{
    QByteArray block = F::Build(QStringLiteral("<i>x</i>"), QString(), QString(), QStringLiteral("http://h/p.htm"));
    QString read, source;

    QByteArray beyond = block;
    beyond.replace(beyond.indexOf("EndFragment:") + 12, 10, "9999999999");
    ASSERT_EQ(F::Parse(beyond, read, source), 1);
    EXPECT_EQ(read, QStringLiteral("<i>x</i>"));

    QByteArray reversed = block;
    reversed.replace(reversed.indexOf("EndFragment:") + 12, 10, "0000000001");
    ASSERT_EQ(F::Parse(reversed, read, source), 1);
    EXPECT_EQ(read, QStringLiteral("<i>x</i>"));

    QByteArray unmarked = beyond;
    unmarked.replace("<!--StartFragment -->", "");
    EXPECT_EQ(F::Parse(unmarked, read, source), 0);
    EXPECT_TRUE(read.isEmpty());

    QByteArray missing = block;
    missing.replace("StartFragment:", "StartFragmend:");
    EXPECT_EQ(F::Parse(missing, read, source), 0);

    QByteArray letters = block;
    letters.replace(letters.indexOf("StartFragment:") + 14, 10, "abcdefghij");
    EXPECT_EQ(F::Parse(letters, read, source), 0);
    EXPECT_EQ(F::Parse(QByteArray(), read, source), 0);
    EXPECT_EQ(F::Parse("no header at all", read, source), 0);
}

TEST(HTMLClipboardBlock, TwentyMegabytesGoThroughWhole)
{
    QString fragment;
    const QString row = QStringLiteral("<p><a href=\"http://h/x/page.htm\">link</a> <img src=\"../img/a.gif\"></p>\n");
    fragment.reserve(20 * 1024 * 1024 + row.size());
    while (fragment.size() < 20 * 1024 * 1024)
        fragment += row;
    const QByteArray block = F::Build(fragment, QString(), QString(), QStringLiteral("http://h/x/y/z.htm"));
    QString read, source;
    ASSERT_EQ(F::Parse(block, read, source), 1);
    EXPECT_EQ(read.size(), fragment.size());

    const long rows = fragment.size() / row.size();
    EXPECT_EQ(FragmentAddresses::ConvertAbsoluteURL(read, source, QStringLiteral("http://h/x/new.htm")), 2 * rows);
    EXPECT_TRUE(read.startsWith(QStringLiteral("<p><a href=\"page.htm\">link</a> <img src=\"img/a.gif\"></p>")));
}

TEST(HTMLClipboardMime, WhatBrowsersWriteIsRead)
{
    QString read, source;
    // Chromium: UTF-8 with a META charset in front, no markers, no source.
    QMimeData chromium;
    chromium.setData(QStringLiteral("text/html"), "<meta charset='utf-8'><p style=\"color: red;\">Grön <b>äng</b></p>");
    ASSERT_EQ(F::Parse(F::FromMimeData(chromium, QString()), read, source), 1);
    EXPECT_EQ(read, QStringLiteral("<p style=\"color: red;\">Grön <b>äng</b></p>"));
    EXPECT_TRUE(source.isEmpty());

    // Firefox: the fragment between markers, the page's address beside it
    // in UTF-16, and from older versions the HTML in UTF-16 with a byte
    // order mark and a closing NUL.
    QMimeData firefox;
    firefox.setData(QStringLiteral("text/html"),
                    "\xFF\xFE" + utf16le(QStringLiteral("<html><body>\n<!--StartFragment--><a href=\"b.htm\">Blå</a>"
                                                        "<!--EndFragment-->\n</body>\n</html>"))
                        + QByteArray(2, '\0'));
    firefox.setData(QStringLiteral("text/x-moz-url-priv"), utf16le(QStringLiteral("http://h/x/a.htm")));
    ASSERT_EQ(F::Parse(F::FromMimeData(firefox, QStringLiteral("http://stale/")), read, source), 1);
    EXPECT_EQ(read, QStringLiteral("<a href=\"b.htm\">Blå</a>"));
    EXPECT_EQ(source, QStringLiteral("http://h/x/a.htm"));

    // UTF-16 without a mark; a trailing NUL; a whole page with a body.
    QMimeData bare;
    bare.setData(QStringLiteral("text/html"), utf16le(QStringLiteral("<html><body bgcolor=red><p>x</p></body></html>")));
    ASSERT_EQ(F::Parse(F::FromMimeData(bare, QStringLiteral("http://h/k.htm")), read, source), 1);
    EXPECT_EQ(read, QStringLiteral("<p>x</p>"));
    EXPECT_EQ(source, QStringLiteral("http://h/k.htm"));

    // A writer that declares a western charset.
    QMimeData western;
    western.setData(QStringLiteral("text/html"),
                    "<meta http-equiv=\"Content-Type\" content=\"text/html; charset=windows-1252\"><p>\xE5\x80</p>");
    western.setData(QStringLiteral("text/plain"), "ignored");
    ASSERT_EQ(F::Parse(F::FromMimeData(western, QString()), read, source), 1);
    EXPECT_EQ(read, QStringLiteral("<p>å€</p>"));

    QMimeData plain;
    plain.setText(QStringLiteral("only text"));
    EXPECT_TRUE(F::FromMimeData(plain, QString()).isEmpty());
}

TEST(HTMLClipboardMime, WhatWeWriteComesBackTheSame)
{
    const QString fragment = QStringLiteral("<p>a <img src=\"x.gif\"> ö</p>");
    std::unique_ptr<QMimeData> data(
        F::ToMimeData(F::Build(fragment, QStringLiteral("<HTML><BODY>"), QStringLiteral("</BODY></HTML>"),
                               QStringLiteral("http://h/a/p.htm"))));
    ASSERT_TRUE(data);
    const QByteArray html = data->data(QStringLiteral("text/html"));
    EXPECT_TRUE(html.startsWith("<meta charset=\"utf-8\"><HTML><BODY>")) << html.toStdString();
    EXPECT_FALSE(html.contains("SourceURL"));
    EXPECT_EQ(data->data(QStringLiteral("text/x-moz-url-priv")), "http://h/a/p.htm");
    QString read, source;
    ASSERT_EQ(F::Parse(F::FromMimeData(*data, QString()), read, source), 1);
    EXPECT_EQ(read, fragment);
    EXPECT_EQ(source, QStringLiteral("http://h/a/p.htm"));
}

TEST(FragmentAddressRules, ResolveThenRelativeOnTheSameServer)
{
    struct Case { const char *page, *from, *address, *expected; };
    // An empty expectation: the address stays as it was written.
    const Case cases[] = {
        {"http://h/a/p.htm", "http://h/a/q.htm", "pic.gif", ""},
        {"http://h/a/p.htm", "", "http://h/a/pic.gif", "pic.gif"},
        {"http://h/about/b.htm", "http://h/products/new/a.htm", "img/x.gif", "../products/new/img/x.gif"},
        {"http://h/about/b.htm", "http://h/products/a.htm", "../img/x.gif", ""},
        {"http://h/b.htm", "http://h/products/a.htm", "../img/x.gif", "img/x.gif"},
        {"http://h/a/b/c.htm", "", "http://H/x.htm?q=1&r=2#part", "../../x.htm?q=1&r=2#part"},
        {"http://h/a/p.htm", "", "http://h/a/", "./"},
        {"http://h/a/p.htm", "", "http://h/My%20File.htm", "../My%20File.htm"},
        {"http://h/a/p.htm", "http://h/a/q.htm", "//h/img/x.gif", "../img/x.gif"},
        // Another server, port or scheme: an absolute address stays.
        {"http://h/a/p.htm", "", "http://h:8080/a/x.gif", ""},
        {"http://h/a/p.htm", "", "https://h/a/x.gif", ""},
        {"http://h/a/p.htm", "", "//other/x.gif", ""},
        // A relative address from another server becomes absolute there.
        {"http://h/a/p.htm", "http://other/site/page.htm", "img/x.gif", "http://other/site/img/x.gif"},
        // No source: never guessed.
        {"http://h/a/p.htm", "", "img/x.gif", ""},
        {"http://h/a/p.htm", "", "../img/x.gif", ""},
        {"http://h/a/p.htm", "http://h/b/q.htm", "#top", ""},
        {"http://h/a/p.htm", "http://h/b/q.htm", "mailto:anna@h", ""},
        {"http://h/a/p.htm", "http://h/b/q.htm", "javascript:go('x.htm')", ""},
        {"http://h/a/p.htm", "http://h/b/q.htm", "data:image/gif;base64,R0lG", ""},
        {"about:blank", "http://h/b/q.htm", "x.htm", ""},
    };
    for (const Case &c : cases) {
        QString out = QStringLiteral("stale");
        EXPECT_EQ(FragmentAddresses::calculateRelativePath(QString::fromLatin1(c.page), QString::fromLatin1(c.address),
                                                           out, QString::fromLatin1(c.from)),
                  1);
        EXPECT_EQ(out, QString::fromLatin1(c.expected)) << c.page << " " << c.from << " " << c.address;
    }
}

TEST(FragmentAddressRules, OnlyTheAddressesOfTagsChange)
{
    QString fragment = QStringLiteral(
        "<P><A HREF='http://h/a/x.htm?a=1&amp;b=2'>x</A><img src=http://h/img/y.gif alt=\"src=http://h/no\">"
        "<!-- <img src=\"http://h/img/z.gif\"> --><script>var s = '<img src=\"http://h/img/s.gif\">';</script>"
        "<td background=\"http://h/bg.gif\"><a href=\"http://other/q.htm\">o</a><a name=top href=\"#top\">t</a></P>");
    EXPECT_EQ(FragmentAddresses::ConvertAbsoluteURL(fragment, QString(), QStringLiteral("http://h/a/page.htm")), 3);
    EXPECT_EQ(fragment,
              QStringLiteral(
                  "<P><A HREF='x.htm?a=1&amp;b=2'>x</A><img src=\"../img/y.gif\" alt=\"src=http://h/no\">"
                  "<!-- <img src=\"http://h/img/z.gif\"> --><script>var s = '<img src=\"http://h/img/s.gif\">';</script>"
                  "<td background=\"../bg.gif\"><a href=\"http://other/q.htm\">o</a><a name=top href=\"#top\">t</a></P>"));
}
