// The filter on text alone: the marker format, the round trip over a corpus
// of pages, the restoring of a served and edited page, and each refusal.

#include "aspfilter/CASPFilter.h"
#include "support/MError.h"
#include "TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace {

QString readText(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

QStringList pagesIn(const QString &folder)
{
    QStringList paths;
    const QDir dir(folder);
    for (const QString &name : dir.entryList({QStringLiteral("*.asp")}, QDir::Files, QDir::Name)) {
        paths << dir.filePath(name);
    }
    return paths;
}

// What the server and page engine make of a marked block: the start wrapper's
// response.write has run and the block has printed `output`.
QString served(const QString &id, const QString &output)
{
    return QStringLiteral("<span style=\"keldasp:true\"><span style=\"DISPLAY: none\">keldaspIN#")
        + id + QStringLiteral("</span>") + output + QStringLiteral("<!--keldaspOUT#") + id
        + QStringLiteral("--></span>");
}

class ASPFilter : public testing::Test
{
protected:
    void SetUp() override { MError::ClearError(); }
    void TearDown() override { MError::ClearError(); }
};

} // namespace

TEST_F(ASPFilter, WorkedExampleIsWrappedCharacterForCharacter)
{
    CASPFilter filter;
    QString text = QStringLiteral("<P><%=now%></P>");
    EXPECT_EQ(filter.FilterOut(text, true), 0) << "nothing to restore before FilterIn";
    EXPECT_EQ(MError::ErrorNumber(), -2147418113L);
    EXPECT_EQ(MError::ErrorSource(), QStringLiteral("CASPFilter.FilterOut"));
    ASSERT_EQ(filter.FilterIn(text), 1);
    EXPECT_EQ(text, QStringLiteral("<P><SPAN style=\"keldasp:true\"><%response.write \"<SPAN "
                                   "style=\"\"DISPLAY: none\"\">keldaspIN#00000</SPAN>\"%><%=now%>"
                                   "<!--keldaspOUT#00000--></SPAN></P>"));
    EXPECT_EQ(filter.GetFilterState(), CASPFilter::StateFilteredIn);
    EXPECT_EQ(filter.FilterIn(text), 0) << "a second FilterIn changes nothing";
}

TEST_F(ASPFilter, EveryCorpusAndSitePageComesBackExactly)
{
    const QString here = QFileInfo(QStringLiteral(__FILE__)).absolutePath();
    const QString www = TestEnvironment::fixturesFolder() + QStringLiteral("/site/www");
    QStringList pages = pagesIn(here + QStringLiteral("/corpus"));
    ASSERT_GE(pages.size(), 30);
    pages << pagesIn(www) << pagesIn(www + QStringLiteral("/asp"));
    int wrapped = 0;
    for (const QString &path : pages) {
        SCOPED_TRACE(path.toStdString());
        const QString original = readText(path);
        CASPFilter filter;
        QString text = original;
        const long in = filter.FilterIn(text);
        ASSERT_NE(in, 0) << MError::ErrorDescription().toStdString();
        const long out = filter.FilterOut(text, true);
        EXPECT_EQ(out, in == 1 ? 1 : 2);
        EXPECT_EQ(text, original);
        wrapped += in == 1;
    }
    EXPECT_GE(wrapped, 30);
}

TEST_F(ASPFilter, DirectiveAndOptionExplicitLeaveAndComeBackAtTheTop)
{
    CASPFilter filter;
    QString text = QStringLiteral("<%@ LANGUAGE=VBScript %>\n<% Option Explicit %>\n<HTML><BODY><%= x %></BODY></HTML>");
    ASSERT_EQ(filter.FilterIn(text), 1);
    EXPECT_FALSE(text.contains(QStringLiteral("LANGUAGE")));
    EXPECT_FALSE(text.contains(QStringLiteral("Option Explicit")));
    EXPECT_FALSE(text.contains(QStringLiteral("<% %>"))) << "no empty block is left behind";
    EXPECT_EQ(text.count(QStringLiteral("keldaspIN#")), 1);
    ASSERT_EQ(filter.FilterOut(text, true), 1);

    QString saved = QStringLiteral("<html><body>") + served(QStringLiteral("00000"), QStringLiteral("7"))
        + QStringLiteral("</body></html>");
    ASSERT_EQ(filter.FilterOut(saved, false), 1);
    EXPECT_EQ(saved, QStringLiteral("<%@ LANGUAGE=VBScript %><% Option Explicit %><html><body><%= x %></body></html>"));
    EXPECT_EQ(filter.GetFilterState(), CASPFilter::StateFilteredOut);
}

TEST_F(ASPFilter, BlocksOutsideTheHtmlElementGoBackOutsideIt)
{
    CASPFilter filter;
    QString text = QStringLiteral("<% Dim a %>\n<HTML><BODY><P><%= a %></P></BODY></HTML>\n<% a = 2 %>");
    ASSERT_EQ(filter.FilterIn(text), 1);
    ASSERT_EQ(filter.FilterOut(text, true), 1);
    // The page engine moves the output of the outer blocks into the body.
    QString saved = QStringLiteral("<html><head></head><body>") + served(QStringLiteral("00000"), QString())
        + QStringLiteral("\n<p>") + served(QStringLiteral("00002"), QStringLiteral("1"))
        + QStringLiteral("</p>\n") + served(QStringLiteral("00004"), QString()) + QStringLiteral("</body></html>");
    filter.SetFilterState(CASPFilter::StateFilteredIn);
    ASSERT_EQ(filter.FilterOut(saved, false), 1);
    EXPECT_EQ(saved, QStringLiteral("<% Dim a %><html><head></head><body>\n<p><%= a %></p>\n</body></html><% a = 2 %>"));
}

TEST_F(ASPFilter, BlockInsideATagTakesTheWholeTag)
{
    CASPFilter filter;
    QList<long> positions;
    const QString page = QStringLiteral("<TABLE><TR><TD width=\"<%=w%>\" class=\"<%=c%>\">x</TD></TR></TABLE>");
    ASSERT_EQ(filter.GetASPPos(page, positions), 1);
    ASSERT_EQ(positions.size(), 2) << "the second block of the tag is part of the first";
    EXPECT_EQ(page.mid(positions[0], positions[1] - positions[0] + 1),
              QStringLiteral("<TD width=\"<%=w%>\" class=\"<%=c%>"));

    QString text = QStringLiteral("<HTML><BODY><P><IMG width=\"<%=w%>\"></P></BODY></HTML>");
    ASSERT_EQ(filter.FilterIn(text), 1);
    ASSERT_EQ(filter.FilterOut(text, true), 1);
    QString saved = QStringLiteral("<html><body><p>")
        + served(QStringLiteral("00000"), QStringLiteral("<img width=\"40\">")) + QStringLiteral("</p></body></html>");
    ASSERT_EQ(filter.FilterOut(saved, false), 1);
    EXPECT_EQ(saved, QStringLiteral("<html><body><p><IMG width=\"<%=w%>\"></p></body></html>"));
}

TEST_F(ASPFilter, IncludesAreBlocksNumberedInDocumentOrder)
{
    CASPFilter filter;
    QString text = QStringLiteral("<HTML><BODY><!--#include file=\"a.inc\"--><%= 1 %><!-- plain -->"
                                  "<!-- #include virtual=\"/b.inc\" --></BODY></HTML>");
    ASSERT_EQ(filter.FilterIn(text), 1);
    const qsizetype first = text.indexOf(QStringLiteral("keldaspIN#00000"));
    const qsizetype second = text.indexOf(QStringLiteral("keldaspIN#00002"));
    const qsizetype third = text.indexOf(QStringLiteral("keldaspIN#00004"));
    ASSERT_TRUE(first >= 0 && second > first && third > second);
    EXPECT_LT(second, text.indexOf(QStringLiteral("<%= 1 %>")));
    EXPECT_GT(second, text.indexOf(QStringLiteral("a.inc"))) << "the include comes first";

    CASPFilter plain;
    QString includeOnly = QStringLiteral("<HTML><!--#include file=\"a.inc\"--></HTML>");
    EXPECT_EQ(plain.FilterIn(includeOnly), -1);
    EXPECT_FALSE(includeOnly.contains(QStringLiteral("keldasp")));
    EXPECT_EQ(plain.FilterOut(includeOnly, false), 2);
}

TEST_F(ASPFilter, ScriptRightBehindATableIsRefusedInSwedish)
{
    CASPFilter filter;
    QString text = QStringLiteral("<HTML><TABLE border=1>\n  <% For i = 1 To 3 %><TR><TD>x</TD></TR><% Next %></TABLE></HTML>");
    const QString before = text;
    EXPECT_EQ(filter.FilterIn(text), 0);
    EXPECT_EQ(text, before);
    EXPECT_EQ(MError::ErrorNumber(), -26060);
    EXPECT_EQ(MError::ErrorDescription(),
              QStringLiteral("Vindrell kan inte redigera denna sidan på grund av felaktig ASP."));
    EXPECT_EQ(MError::ErrorSource(), QStringLiteral("CASPFilter.FilterIn"));
    MError::ClearError();

    // Only the script engine's own spaces count: a vertical tab joins "<" and
    // "table", a no-break space does not.
    CASPFilter vertical;
    QString tabbed = QStringLiteral("<\vtable><%= 1 %></table>");
    EXPECT_EQ(vertical.FilterIn(tabbed), 0);
    MError::ClearError();
    CASPFilter unicode;
    QString spaced = QStringLiteral("<\u00a0table><%= 1 %></table>");
    EXPECT_EQ(unicode.FilterIn(spaced), 1);
}

TEST_F(ASPFilter, UnclosedBlockMeansNoScriptAndNothingChanges)
{
    CASPFilter filter;
    QString text = QStringLiteral("<%@ Language=VBScript %><HTML><%= 1 %><% if a then</HTML>");
    const QString before = text;
    EXPECT_EQ(filter.FilterIn(text), -1);
    EXPECT_EQ(text, before);
    EXPECT_EQ(filter.FilterOut(text, true), 2);
    EXPECT_EQ(text, before);
    QList<long> positions;
    EXPECT_EQ(filter.GetASPPos(QStringLiteral("<P><!-- <% x %> --></P>"), positions), 2);
}

TEST_F(ASPFilter, ScriptInsideLinkAndImageTagsIsRefusedForEditing)
{
    CASPFilter filter;
    EXPECT_EQ(filter.IsEditable(QStringLiteral("<P><A href=\"<%=u%>\">x</A></P>")), 0);
    EXPECT_EQ(filter.IsEditable(QStringLiteral("<APPLET code=\"<%=c%>\"></APPLET>")), 0);
    EXPECT_EQ(filter.IsEditable(QStringLiteral("<P><A href=\"x.htm\"><%=u%></A></P>")), 1);
    EXPECT_EQ(filter.IsEditable(QStringLiteral("<TD width=\"<%=w%>\">")), 1);
    EXPECT_EQ(filter.IsEditable(QStringLiteral("<!-- <A href=\"<%=u%>\"> -->")), 1);

    QString text = QStringLiteral("<HTML><BODY><A href=\"<%=u%>\">x</A></BODY></HTML>");
    EXPECT_EQ(filter.FilterIn(text), 1) << "the filter takes it; only the edit is refused";
}

TEST_F(ASPFilter, OverridesAndCopiesWinOverTheStoredBlocks)
{
    CASPFilter filter;
    QString text = QStringLiteral("<HTML><BODY><P><%= a %></P><P><%= b %></P></BODY></HTML>");
    ASSERT_EQ(filter.FilterIn(text), 1);
    QString original = text;
    ASSERT_EQ(filter.FilterOut(original, true), 1);
    EXPECT_EQ(filter.GetLastASPPos(), 2);

    QString code;
    EXPECT_EQ(filter.GetASP(QStringLiteral("2"), code), 1);
    EXPECT_EQ(code, QStringLiteral("<%= b %>"));
    EXPECT_EQ(filter.GetASP(QStringLiteral("00008"), code), -1);

    EXPECT_EQ(filter.SetASP(QStringLiteral("00000"), QStringLiteral("<%= c %>")), 1);
    EXPECT_EQ(filter.SetASP(QStringLiteral("00000"), QStringLiteral("<%= d %>")), 2);
    EXPECT_EQ(filter.CopyASPObject(2, 4), 1);
    EXPECT_EQ(filter.CopyASPObject(40, 42), 0);
    EXPECT_EQ(MError::ErrorSource(), QStringLiteral("CASPFilter.PasteASPObject"));

    // The page as edited: the second block pasted once more.
    QString saved = QStringLiteral("<html><body><p>") + served(QStringLiteral("00000"), QStringLiteral("1"))
        + QStringLiteral("</p><p>") + served(QStringLiteral("00002"), QStringLiteral("2"))
        + served(QStringLiteral("00004"), QStringLiteral("2")) + QStringLiteral("</p></body></html>");
    filter.SetOriginalStream(saved);
    ASSERT_EQ(filter.FilterOut(saved, false), 1);
    EXPECT_EQ(saved, QStringLiteral("<html><body><p><%= d %></p><p><%= b %><%= b %></p></body></html>"));
}

TEST_F(ASPFilter, EngineGeneratorTagLeavesTheSavedPage)
{
    const QString body = QStringLiteral("<BODY>") + served(QStringLiteral("00000"), QStringLiteral("1"))
        + QStringLiteral("</BODY></HTML>");
    for (const bool shortTag : {true, false}) {
        CASPFilter filter;
        QString text = QStringLiteral("<HTML><BODY><%= 1 %></BODY></HTML>");
        ASSERT_EQ(filter.FilterIn(text), 1);
        ASSERT_EQ(filter.FilterOut(text, true), 1);
        const QString meta = shortTag
            ? QStringLiteral("<META content=\"MSHTML 6.00\" name=GENERATOR>")
            : QStringLiteral("<META content=\"MSHTML 6.00.2900.2180 and some more words\" name=GENERATOR>");
        QString saved = QStringLiteral("<HTML><HEAD>") + meta + QStringLiteral("</HEAD>") + body;
        ASSERT_EQ(filter.FilterOut(saved, false), 1);
        EXPECT_EQ(saved.contains(meta), !shortTag);
        EXPECT_TRUE(saved.contains(QStringLiteral("<BODY><%= 1 %></BODY>")));
    }
}
