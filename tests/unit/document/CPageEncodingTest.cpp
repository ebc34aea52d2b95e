// A page's bytes read and written back by the charset it declares.

#include "TestEnvironment.h"
#include "document/CPageEncoding.h"

#include <QFile>

#include <gtest/gtest.h>

namespace {

QByteArray sampleFile(const QString &name)
{
    QFile file(TestEnvironment::fixturesFolder() + QStringLiteral("/site/www/") + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return file.readAll();
}

} // namespace

TEST(PageEncoding, SamplePagesComeBackByteForByte)
{
    const QByteArray utf8 = sampleFile(QStringLiteral("utf8.htm"));
    EXPECT_EQ(CPageEncoding::DeclaredCharset(utf8), QStringLiteral("utf-8"));
    const QString utf8Text = CPageEncoding::Decode(utf8);
    EXPECT_TRUE(utf8Text.contains(QStringLiteral("R\u00e4ksm\u00f6rg\u00e5s och bl\u00e5b\u00e4r \u2013")));
    EXPECT_EQ(CPageEncoding::Encode(utf8Text), utf8);

    const QByteArray latin = sampleFile(QStringLiteral("latin.htm"));
    EXPECT_EQ(CPageEncoding::DeclaredCharset(latin), QStringLiteral("windows-1252"));
    const QString latinText = CPageEncoding::Decode(latin);
    EXPECT_TRUE(latinText.contains(QStringLiteral("R\u00e4ksm\u00f6rg\u00e5s f\u00f6r 25 \u20ac.")));
    EXPECT_EQ(CPageEncoding::Encode(latinText), latin);
}

TEST(PageEncoding, ByteOrderMarkWinsAndCharactersAreNeverLost)
{
    const QByteArray bom = QByteArray("\xEF\xBB\xBF") + QStringLiteral("<p>\u00e5</p>").toUtf8();
    EXPECT_EQ(CPageEncoding::DeclaredCharset(bom), QStringLiteral("utf-8"));
    EXPECT_EQ(CPageEncoding::Decode(bom), QStringLiteral("\uFEFF<p>\u00e5</p>"));
    EXPECT_EQ(CPageEncoding::Encode(CPageEncoding::Decode(bom)), bom);

    // No declaration: windows-1252; what it lacks goes out as a reference.
    EXPECT_EQ(CPageEncoding::Encode(QStringLiteral("<p>\u00e5\u20ac\u0141</p>")),
              QByteArray("<p>\xE5\x80&#321;</p>"));
    EXPECT_EQ(CPageEncoding::Encode(QStringLiteral(
                  "<head><meta http-equiv=\"content-type\" content=\"text/html; charset=us-ascii\"></head>\u00e5")),
              QByteArray("<head><meta http-equiv=\"content-type\" content=\"text/html; charset=us-ascii\"></head>&#229;"));
    EXPECT_EQ(CPageEncoding::Encode(QStringLiteral("<head><meta charset=\"UTF-8\"></head>\u0141")),
              QByteArray("<head><meta charset=\"UTF-8\"></head>\xC5\x81"));
}
