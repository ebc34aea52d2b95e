// The faithful save on text alone: the engine's view is written here as the
// engine writes it (lower-case tags, quoted attributes, implied tags, LF),
// so each case shows what the save makes of a real difference between a
// page's source and what the engine holds.

#include "aspfilter/ScriptGuard.h"
#include "aspfilter/ScriptRegions.h"
#include "document/FaithfulSave.h"
#include "document/PageTokenizer.h"

#include <gtest/gtest.h>

namespace {

QByteArray spliced(const QByteArray &source, const QString &atEdit, const QString &atSave)
{
    FaithfulSave save;
    QString reason;
    EXPECT_EQ(save.Prepare(source, atEdit, reason), 1) << reason.toStdString();
    QByteArray out;
    EXPECT_EQ(save.Splice(atSave, out, reason), 1) << reason.toStdString();
    return out;
}

QList<ScriptRegion> regionsOf(const QString &source)
{
    return ScriptRegions::Find(source, PageTokenizer::Tokenize(source, true));
}

QString regionText(const QString &source, const ScriptRegion &r)
{
    return source.mid(r.start, r.end - r.start);
}

} // namespace

// The author's spelling survives everywhere but at the change.
TEST(FaithfulSave, OnlyTheChangedWordIsWritten)
{
    const QByteArray source = "<HTML>\r\n<HEAD><TITLE>T</TITLE></HEAD>\r\n<BODY BGCOLOR=white>\r\n"
                              "<P ALIGN='left'>Caf&eacute; &amp; Edit me\r\n<P>Two<BR/>"
                              "<TABLE><TR><TD>cell</TABLE>";
    const QString atEdit = QStringLiteral("<html><head><title>T</title></head>\n<body bgcolor=\"white\">\n"
                                          "<p align=\"left\">Café &amp; Edit me\n</p><p>Two<br>"
                                          "<table><tbody><tr><td>cell</td></tr></tbody></table></p></body></html>");
    QString atSave = atEdit;
    atSave.replace(QStringLiteral("Edit me"), QStringLiteral("Typed"));
    QByteArray expected = source;
    expected.replace("Edit me", "Typed");
    EXPECT_EQ(spliced(source, atEdit, atSave), expected);
}

// New characters go out in the page's charset; what it lacks as numbers.
TEST(FaithfulSave, NewTextTakesThePageCharset)
{
    const QByteArray source = "<html><head><meta charset=windows-1252></head><body><p>R\xE4ksm\xF6rg\xE5s x</p></body></html>";
    const QString atEdit = QStringLiteral("<html><head><meta charset=\"windows-1252\"></head><body><p>Räksmörgås x</p></body></html>");
    const QString atSave = QStringLiteral("<html><head><meta charset=\"windows-1252\"></head><body><p>Räksmörgås ö€中</p></body></html>");
    EXPECT_EQ(spliced(source, atEdit, atSave),
              QByteArray("<html><head><meta charset=windows-1252></head><body><p>R\xE4ksm\xF6rg\xE5s \xF6\x80&#20013;</p></body></html>"));
}

// A changed attribute keeps its tag's spelling; a new one is added, a
// removed one goes with the space before it.
TEST(FaithfulSave, AttributeChangesKeepTheTag)
{
    const QByteArray source = "<BODY><IMG SRC=a.gif WIDTH='10' ALT=\"x\"></BODY>";
    const QString atEdit = QStringLiteral("<html><head></head><body><img src=\"a.gif\" width=\"10\" alt=\"x\"></body></html>");
    const QString atSave = QStringLiteral("<html><head></head><body><img src=\"b&amp;c.gif\" width=\"10\" title=\"t\"></body></html>");
    EXPECT_EQ(spliced(source, atEdit, atSave), QByteArray("<BODY><IMG SRC=\"b&amp;c.gif\" WIDTH='10' title=\"t\"></BODY>"));
}

// Script is copied from the source around the edit; its output in the
// engine is never written, also where the engine moved it.
TEST(FaithfulSave, ScriptStaysAsWrittenAroundAnEdit)
{
    const QByteArray source = "<%@ Language=VBScript %>\r\n<HTML><BODY>\r\n<P id=a>Price <%= p %> EUR</P>\r\n"
                              "<TABLE><TR><TD>h</TD></TR><% While Not rs.EOF %><TR><TD><%= rs(0) %></TD></TR>"
                              "<% rs.MoveNext : Wend %></TABLE>\r\n<P id=k>Edit me</P></BODY></HTML>\r\n<% Response.Write \"x\" %>";
    const QString marked = QString::fromLatin1(FaithfulSave::Marked(source));
    EXPECT_TRUE(marked.startsWith(QStringLiteral("<%@ Language=VBScript %>"))) << "a directive stays first";
    const QList<ScriptRegion> regions = regionsOf(QString::fromLatin1(source));
    ASSERT_EQ(regions.size(), 4);
    EXPECT_TRUE(regionText(QString::fromLatin1(source), regions[2]).startsWith(QStringLiteral("<% While")));
    EXPECT_TRUE(regionText(QString::fromLatin1(source), regions[2]).endsWith(QStringLiteral("Wend %>")));
    const QString atEdit = QStringLiteral(
        "<html><head></head><body>\n<p id=\"a\">Price <!--keldaspIN#00002-->12<!--keldaspOUT#00002--> EUR</p>\n"
        "<table><tbody><tr><td>h</td></tr><!--keldaspIN#00004--><tr><td>1</td></tr><tr><td>2</td></tr>"
        "<!--keldaspOUT#00004--></tbody></table>\n<p id=\"k\">Edit me</p>\n"
        "<!--keldaspIN#00006-->x<!--keldaspOUT#00006--></body></html>");
    QString atSave = atEdit;
    atSave.replace(QStringLiteral("Edit me"), QStringLiteral("Typed"));
    QByteArray expected = source;
    expected.replace("Edit me", "Typed");
    EXPECT_EQ(spliced(source, atEdit, atSave), expected);
}

// A region whose marks did not come back whole refuses the page at Edit.
TEST(FaithfulSave, LostMarksRefuseThePageAtEdit)
{
    const QByteArray source = "<HTML><BODY><P><%= a %></P><P><%= b %></P></BODY></HTML>";
    FaithfulSave save;
    QString reason;
    EXPECT_EQ(save.Prepare(source, QStringLiteral("<html><body><p><!--keldaspIN#00000-->1</p></body></html>"), reason), 0);
    EXPECT_FALSE(reason.isEmpty());
    EXPECT_EQ(save.Prepare(source,
                           QStringLiteral("<html><body><p><!--keldaspIN#00002-->2<!--keldaspOUT#00002--></p>"
                                          "<p><!--keldaspIN#00000-->1<!--keldaspOUT#00000--></p></body></html>"),
                           reason),
              0) << "regions out of order";
    QByteArray out;
    EXPECT_EQ(save.Splice(QStringLiteral("<html></html>"), out, reason), 0) << "nothing to save from";
}

// If, loops, Select and procedures across blocks are one region with the
// HTML inside; single-line Ifs, strings and comments don't open anything.
TEST(FaithfulSave, NestingAcrossBlocks)
{
    EXPECT_EQ(ScriptRegions::NestingChange(u"<% If x Then %>", false), 1);
    EXPECT_EQ(ScriptRegions::NestingChange(u"<% If x Then y = 1 %>", false), 0);
    EXPECT_EQ(ScriptRegions::NestingChange(u"<% ElseIf y Then %>", false), 0);
    EXPECT_EQ(ScriptRegions::NestingChange(u"<% s = \"If a Then\" ' For each %>", false), 0);
    EXPECT_EQ(ScriptRegions::NestingChange(u"<% Private Sub Head() %>", false), 1);
    EXPECT_EQ(ScriptRegions::NestingChange(u"<% Next : Loop\r\nEnd Select %>", false), -3);
    EXPECT_EQ(ScriptRegions::NestingChange(u"<% do while x _\r\n and y %>", false), 1);
    EXPECT_EQ(ScriptRegions::NestingChange(u"<% if (a) { s = '}'; %>", true), 1);
    const QString page = QStringLiteral("<select><% Select Case t %><% Case 1 %><option>a<% End Select %></select>"
                                        "<a href=\"<%=u%>\">x</a><!-- <%=c%> --><title><%=t%></title>");
    const QList<ScriptRegion> regions = regionsOf(page);
    ASSERT_EQ(regions.size(), 4);
    EXPECT_EQ(regionText(page, regions[0]), QStringLiteral("<% Select Case t %><% Case 1 %><option>a<% End Select %>"));
    EXPECT_EQ(regionText(page, regions[1]), QStringLiteral("<a href=\"<%=u%>\">"));
    EXPECT_EQ(regionText(page, regions[2]), QStringLiteral("<!-- <%=c%> -->"));
    EXPECT_EQ(regionText(page, regions[3]), QStringLiteral("<title><%=t%></title>"));
}

// The guard reads script on its own and refuses any difference.
TEST(FaithfulSave, GuardRefusesATamperedText)
{
    const QString original = QStringLiteral("<%@ x %><p><%= a %></p><!--#include file=\"f.inc\"-->"
                                            "<script runat=server>Sub S()\nEnd Sub</script>");
    QString difference;
    EXPECT_TRUE(ScriptGuard::Keeps(original, original + QStringLiteral("<p>new</p>"), difference));
    QString tampered = original;
    EXPECT_FALSE(ScriptGuard::Keeps(original, tampered.replace(QStringLiteral("<%= a %>"), QStringLiteral("<%=a %>")), difference));
    EXPECT_TRUE(difference.startsWith(QStringLiteral("script changed"))) << difference.toStdString();
    EXPECT_FALSE(ScriptGuard::Keeps(original, QString(original).remove(QStringLiteral("<!--#include file=\"f.inc\"-->")), difference));
    EXPECT_FALSE(ScriptGuard::Keeps(original, original + QStringLiteral("<%= a %>"), difference));
    // A block the user pasted may stand twice, and only that one; the
    // original's script must still all be there, in its order.
    const QStringList pasted{QStringLiteral("<%= a %>")};
    EXPECT_TRUE(ScriptGuard::Keeps(original, QStringLiteral("<%= a %>") + original, difference, pasted));
    EXPECT_FALSE(ScriptGuard::Keeps(original, original + QStringLiteral("<%@ x %>"), difference, pasted));
    EXPECT_FALSE(ScriptGuard::Keeps(original, QString(original).remove(QStringLiteral("<%@ x %>")), difference, pasted));
    EXPECT_EQ(ScriptGuard::Pieces(original).size(), 4);
}

// A save whose change copies script into new text (a block pasted twice)
// is refused before anything is sent, unless the copy is one the user
// pasted.
TEST(FaithfulSave, DuplicatedScriptIsRefusedAtSave)
{
    const QByteArray source = "<HTML><BODY><P id=a><%= a %></P><P id=k>Edit me</P></BODY></HTML>";
    const QString atEdit = QStringLiteral("<html><head></head><body><p id=\"a\"><!--keldaspIN#00000-->1<!--keldaspOUT#00000--></p>"
                                          "<p id=\"k\">Edit me</p></body></html>");
    QString atSave = atEdit;
    atSave.replace(QStringLiteral("Edit me"), QStringLiteral("<!--keldaspIN#00000-->1<!--keldaspOUT#00000-->"));
    FaithfulSave save;
    QString reason;
    ASSERT_EQ(save.Prepare(source, atEdit, reason), 1) << reason.toStdString();
    QByteArray out;
    EXPECT_EQ(save.Splice(atSave, out, reason), 0);
    EXPECT_TRUE(out.isEmpty());
    EXPECT_TRUE(reason.contains(QStringLiteral("script"))) << reason.toStdString();
    // Unless the user pasted that block: then its source goes in twice.
    save.AllowCopyOf(0);
    ASSERT_EQ(save.Splice(atSave, out, reason), 1) << reason.toStdString();
    EXPECT_EQ(out, "<HTML><BODY><P id=a><%= a %></P><P id=k><%= a %></P></BODY></HTML>");
}

// The user's deliberate changes of blocks in one save: a block's source
// edited by hand, a copy pasted as a block of its own, and a block
// deleted. The guard expects exactly these; a deleted block's script may
// go only once.
TEST(FaithfulSave, EditedCopiedAndDeletedBlocksAreWrittenAsTheUserLeftThem)
{
    const QByteArray source = "<HTML><BODY><P id=a><%= a %></P><P id=b><%= b %></P><P id=k>Edit me</P></BODY></HTML>";
    const QString atEdit = QStringLiteral("<html><head></head><body><p id=\"a\"><!--keldaspIN#00000-->1<!--keldaspOUT#00000--></p>"
                                          "<p id=\"b\"><!--keldaspIN#00002-->2<!--keldaspOUT#00002--></p>"
                                          "<p id=\"k\">Edit me</p></body></html>");
    QString atSave = atEdit;
    atSave.replace(QStringLiteral("<!--keldaspIN#00002-->2<!--keldaspOUT#00002-->"), QString());
    atSave.replace(QStringLiteral("Edit me"), QStringLiteral("Edit <!--keldaspIN#00004-->1<!--keldaspOUT#00004-->me"));
    FaithfulSave save;
    QString reason;
    ASSERT_EQ(save.Prepare(source, atEdit, reason), 1) << reason.toStdString();
    EXPECT_EQ(save.RegionSources(), QStringList({QStringLiteral("<%= a %>"), QStringLiteral("<%= b %>")}));
    QByteArray out;
    // A block the save wasn't told of is refused: its source is unknown.
    EXPECT_EQ(save.Splice(atSave, out, reason), 0);
    const QString edited = QStringLiteral("<%= a & \"!\" %>");
    save.SetRegionText(0, edited);
    save.SetRegionText(2, edited);
    ASSERT_EQ(save.Splice(atSave, out, reason), 1) << reason.toStdString();
    EXPECT_EQ(out, "<HTML><BODY><P id=a><%= a & \"!\" %></P><P id=b></P><P id=k>Edit <%= a & \"!\" %>me</P></BODY></HTML>");

    QString difference;
    const QString original = QStringLiteral("<%= b %><p>x</p><%= b %>");
    EXPECT_TRUE(ScriptGuard::Keeps(original, QStringLiteral("<p>x</p><%= b %>"), difference, {}, {QStringLiteral("<%= b %>")}));
    EXPECT_FALSE(ScriptGuard::Keeps(original, QStringLiteral("<p>x</p>"), difference, {}, {QStringLiteral("<%= b %>")}));
}

// A table written by hand, after one session of the table dialog: new
// attributes on the table (two at once), a merge in the first row and
// that row's height. The tables are as the engine serialised them. The
// new attributes go in as the engine ordered them, and the changed tags
// keep the author's spelling of what did not change.
TEST(FaithfulSave, TableDialogChangesKeepTheAuthorsTags)
{
    const QByteArray source = "<html><body>\n<TABLE id=t BORDER=1 WIDTH=80%>\n<!-- r1 -->\n<TR>\n <TD id=a>a&nbsp;</TD>\n"
                              " <TD id=b>b</TD>\n</TR>\n<TR><TD id=c>c<TD id=d>d</TR>\n</TABLE>\n</body></html>\n";
    const QString atEdit = QStringLiteral("<html><head></head><body>\n<table id=\"t\" border=\"1\" width=\"80%\">\n<!-- r1 -->\n"
                                          "<tbody><tr>\n <td id=\"a\">a&nbsp;</td>\n <td id=\"b\">b</td>\n</tr>\n"
                                          "<tr><td id=\"c\">c</td><td id=\"d\">d</td></tr>\n</tbody></table>\n\n</body></html>");
    const QString atSave = QStringLiteral("<html><head></head><body>\n<table id=\"t\" border=\"3\" width=\"80%\" align=\"left\" "
                                          "cellpadding=\"1\">\n<!-- r1 -->\n<tbody><tr height=\"40\">\n <td id=\"a\" colspan=\"2\" "
                                          "bgcolor=\"#336699\" background=\"../img/c.png\">a&nbsp;b</td>\n \n</tr>\n"
                                          "<tr><td id=\"c\">c</td><td id=\"d\">d</td></tr>\n</tbody></table>\n\n</body></html>");
    EXPECT_EQ(spliced(source, atEdit, atSave).toStdString(),
              "<html><body>\n<TABLE id=t BORDER=\"3\" WIDTH=80% align=\"left\" cellpadding=\"1\">\n<!-- r1 -->\n"
              "<TR height=\"40\">\n <TD id=a colspan=\"2\" bgcolor=\"#336699\" background=\"../img/c.png\">a&nbsp;b</TD>\n \n</TR>\n"
              "<TR><TD id=c>c<TD id=d>d</TR>\n</TABLE>\n</body></html>\n");

    // A width cleared and typed again stands last in the engine's tag; its
    // place in the author's tag stays.
    EXPECT_EQ(spliced("<TABLE WIDTH=80% BORDER=1><TR><TD>x</TABLE>",
                      QStringLiteral("<html><head></head><body><table width=\"80%\" border=\"1\"><tbody><tr><td>x</td></tr>"
                                     "</tbody></table></body></html>"),
                      QStringLiteral("<html><head></head><body><table border=\"1\" width=\"90%\"><tbody><tr><td>x</td></tr>"
                                     "</tbody></table></body></html>"))
                  .toStdString(),
              "<TABLE WIDTH=\"90%\" BORDER=1><TR><TD>x</TABLE>");
}

// A row put in above the first goes in whole before the author's row, and
// a column's new cells each before the author's cell they stand before.
TEST(FaithfulSave, InsertedRowsAndCellsGoInWhole)
{
    const QByteArray source = "<TABLE BORDER=1>\n<!-- r1 -->\n<TR>\n <TD>a</TD>\n</TR>\n</TABLE>";
    const QString atEdit = QStringLiteral("<html><head></head><body><table border=\"1\">\n<!-- r1 -->\n<tbody><tr>\n"
                                          " <td>a</td>\n</tr>\n</tbody></table></body></html>");
    const QString atSave = QStringLiteral("<html><head></head><body><table border=\"1\">\n<!-- r1 -->\n<tbody>"
                                          "<tr><td>&nbsp;</td><td>&nbsp;</td></tr><tr>\n <td>&nbsp;</td><td>a</td>\n</tr>\n"
                                          "</tbody></table></body></html>");
    EXPECT_EQ(spliced(source, atEdit, atSave).toStdString(),
              "<TABLE BORDER=1>\n<!-- r1 -->\n<tr><td>&nbsp;</td><td>&nbsp;</td></tr><TR>\n <td>&nbsp;</td><TD>a</TD>\n</TR>\n</TABLE>");

    // The same above a row whose first cell got a colour, with nothing
    // between the tags to tell the rows apart.
    EXPECT_EQ(spliced("<TABLE BORDER=1><TR><TD>a</TD></TR></TABLE>",
                      QStringLiteral("<html><head></head><body><table border=\"1\"><tbody><tr><td>a</td></tr></tbody></table>"
                                     "</body></html>"),
                      QStringLiteral("<html><head></head><body><table border=\"1\"><tbody><tr><td>&nbsp;</td></tr>"
                                     "<tr><td bgcolor=\"red\">a</td></tr></tbody></table></body></html>"))
                  .toStdString(),
              "<TABLE BORDER=1><tr><td>&nbsp;</td></tr><TR><TD bgcolor=\"red\">a</TD></TR></TABLE>");
}

// Rows and cells the table commands put in come marked, and never take the
// author's tags: not where the new row looks more like his row than his
// changed row does (a merge), nor where the two look alike (a cell's text
// typed over). The marks stay out of the file.
TEST(FaithfulSave, AddedRowsAndCellsNeverTakeTheAuthorsTags)
{
    const auto page = [](const QString &rows) {
        return QStringLiteral("<html><head></head><body><table border=\"1\"><tbody>") + rows
               + QStringLiteral("</tbody></table></body></html>");
    };
    const QString newRow = QStringLiteral("<tr data-keldaadded=\"\"><td data-keldaadded=\"\">&nbsp;</td>"
                                          "<td data-keldaadded=\"\">&nbsp;</td></tr>");
    EXPECT_EQ(spliced("<TABLE BORDER=1><TR><TD>a</TD><TD>b</TD></TR></TABLE>",
                      page(QStringLiteral("<tr><td>a</td><td>b</td></tr>")),
                      page(newRow + QStringLiteral("<tr><td colspan=\"2\">ab</td></tr>")))
                  .toStdString(),
              "<TABLE BORDER=1><tr><td>&nbsp;</td><td>&nbsp;</td></tr><TR><TD colspan=\"2\">ab</TD></TR></TABLE>");

    const QByteArray oneCell = "<TABLE BORDER=1><TR><TD>a</TD></TR></TABLE>";
    const QString atEdit = page(QStringLiteral("<tr><td>a</td></tr>"));
    EXPECT_EQ(spliced(oneCell, atEdit,
                      page(QStringLiteral("<tr data-keldaadded=\"\"><td data-keldaadded=\"\">&nbsp;</td></tr>"
                                          "<tr><td>typed</td></tr>")))
                  .toStdString(),
              "<TABLE BORDER=1><tr><td>&nbsp;</td></tr><TR><TD>typed</TD></TR></TABLE>");
    EXPECT_EQ(spliced(oneCell, atEdit,
                      page(QStringLiteral("<tr><td data-keldaadded=\"\">&nbsp;</td><td>typed</td></tr>")))
                  .toStdString(),
              "<TABLE BORDER=1><TR><td>&nbsp;</td><TD>typed</TD></TR></TABLE>");
}
