// The text work of a save: META names first, and HTML Tidy's clean-up with
// the settings' encoding and indent.

#include "config/MGlobalProjectObjects.h"
#include "document/CSaveText.h"
#include "support/ErrorLog.h"
#include "support/MError.h"

#include <gtest/gtest.h>

namespace {

using G = MGlobalProjectObjects;

QString rearranged(const QString &in)
{
    QString out;
    EXPECT_EQ(CSaveText::ReArrangeMetaNames(in, out), 1);
    return out;
}

QString tidied(const QString &in, long type, long indent, long expected = 1)
{
    G::TidyCharEncodingType = type;
    G::TidyIndentScheme = indent;
    QString out;
    EXPECT_EQ(CSaveText::TidyUpHTML(in, out), expected);
    return out;
}

const QString kPage = QStringLiteral(
    "<html><head><meta content=\"Anna\" name=\"author\"><title>Sida</title></head>"
    "<body><div><p>R\u00e4ksm\u00f6rg\u00e5s \u20ac \u0141</p></div></body></html>");

} // namespace

TEST(ReArrangeMetaNames, PutsNameFirstAndLeavesTheRest)
{
    const QString in = QStringLiteral(
        "<!DOCTYPE html>\n<html><head>"
        "<meta content=\"Anna\" name=\"author\">"
        "<meta name=\"keywords\" content=\"a\">"
        "<meta http-equiv=\"Expires\" content=\"-1\">"
        "<meta content=\"username=x\" http-equiv=\"x-user\">"
        "<META content=\"b\"\nname=\"two\">"
        "</head><body><meta content=\"c\" name=\"inbody\"></body></html>");
    const QString out = rearranged(in);
    EXPECT_TRUE(out.startsWith(QStringLiteral("<!DOCTYPE html>\n<html><head>")));
    EXPECT_TRUE(out.contains(QStringLiteral("<meta name=\"author\" content=\"Anna\">")));
    EXPECT_TRUE(out.contains(QStringLiteral("<meta name=\"keywords\" content=\"a\">")));
    EXPECT_TRUE(out.contains(QStringLiteral("<meta http-equiv=\"Expires\" content=\"-1\">")));
    EXPECT_TRUE(out.contains(QStringLiteral("<meta content=\"username=x\" http-equiv=\"x-user\">")));
    // Everything from the head on is worked on, as the engine leaves it.
    EXPECT_TRUE(out.contains(QStringLiteral("<meta name=\"inbody\" content=\"c\">")));
    // A tag broken over lines is matched only when the break follows "<META".
    EXPECT_TRUE(out.contains(QStringLiteral("<META content=\"b\"\nname=\"two\">")));
}

TEST(ReArrangeMetaNames, TextWithoutAHeadComesBackUnchanged)
{
    const QString noHead = QStringLiteral("<p><meta content=\"x\" name=\"y\"></p>");
    EXPECT_EQ(rearranged(noHead), noHead);
    const QString headFirst = QStringLiteral("<head><meta content=\"x\" name=\"y\"></head>");
    EXPECT_EQ(rearranged(headFirst), headFirst);
}

TEST(TidyUpHTML, WritesAWholeDocumentInTheChosenEncoding)
{
    const QString ascii = tidied(kPage, 0, 0);
    EXPECT_TRUE(ascii.contains(QStringLiteral("<html>")));
    EXPECT_TRUE(ascii.contains(QStringLiteral("<body>")));
    EXPECT_TRUE(ascii.contains(QStringLiteral("<meta name=\"author\" content=\"Anna\">")));
    EXPECT_FALSE(ascii.contains(QStringLiteral("generator")));
    for (const QChar c : ascii)
        ASSERT_LT(c.unicode(), 128) << ascii.toStdString();
    EXPECT_TRUE(ascii.contains(QStringLiteral("&euro;")) || ascii.contains(QStringLiteral("&#8364;")));

    const QString utf8 = tidied(kPage, 3, 0);
    EXPECT_TRUE(utf8.contains(QStringLiteral("R\u00e4ksm\u00f6rg\u00e5s \u20ac \u0141")));

    // Latin-1 keeps its own letters and refers to the others.
    const QString latin = tidied(kPage, 1, 0);
    EXPECT_TRUE(latin.contains(QStringLiteral("R\u00e4ksm\u00f6rg\u00e5s")));
    EXPECT_FALSE(latin.contains(QChar(0x0141)));

    const QString western = tidied(kPage, 6, 0);
    EXPECT_TRUE(western.contains(QStringLiteral("R\u00e4ksm\u00f6rg\u00e5s \u20ac")));
}

TEST(TidyUpHTML, IndentsByTheSettingWithTabs)
{
    const QString flat = tidied(kPage, 3, 0);
    const QString blocks = tidied(kPage, 3, 1);
    EXPECT_FALSE(flat.contains(QLatin1Char('\t')));
    EXPECT_TRUE(blocks.contains(QStringLiteral("\n\t\t<div>\n\t\t\t<p>"))) << blocks.toStdString();
    EXPECT_FALSE(blocks.contains(QStringLiteral("    ")));
    EXPECT_FALSE(blocks.contains(QStringLiteral("\n\n")));
}

TEST(TidyUpHTML, AFailingTidyGivesTheTextBackAndLogsWhy)
{
    bool existed = false;
    ErrorLog::Take(existed);
    MError::ClearError();
    const QString broken = QStringLiteral("<html><head><title>x</title></head>"
                                          "<body><wibble>bad</wibble></body></html>");
    EXPECT_EQ(tidied(broken, 3, 1, 0), broken);
    EXPECT_EQ(MError::ErrorNumber(), 0);
    const QString log = ErrorLog::Take(existed);
    EXPECT_TRUE(existed);
    EXPECT_TRUE(log.contains(QStringLiteral("CDocument.TidyUpHTML"))) << log.toStdString();
}
