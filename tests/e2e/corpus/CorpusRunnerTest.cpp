// The script runner of the test web server is lenient with the corpus and
// with nothing else: the corpus test counts on each piece of markup coming
// out once (or three times, in a counted loop) and on unknown script
// leaving a mark only where a page prints an expression.

#include "CurlClient.h"
#include "TestServers.h"

#include <gtest/gtest.h>

namespace {

const QByteArray kPage =
    "<% Option Explicit %>\n"
    "<script language=\"VBScript\" runat=\"server\">Function F()\nF = 1\nEnd Function</script>"
    "<OBJECT RUNAT=Server ID=conn PROGID=\"ADODB.Connection\"></OBJECT>"
    "<% Set rs = conn.Execute(\"SELECT 1\") %>"
    "<% If rs.EOF Then %>[if]<% ElseIf x Then %>[elseif]<% Else %>[else]<% End If %>"
    "<% Select Case x\n Case 1 %>[one]<% Case Else %>[other]<% End Select %>"
    "<% While Not rs.EOF %>[row <%= rs(\"a\") %>]<% rs.MoveNext : Wend %>"
    "<% For Each c In list %>[each]<% Next %>"
    "<% Sub Row() %>[sub]<% End Sub %>"
    "<% For i = 1 To 3 %>[<%= i %>]<% Next %>"
    "<% Response.Write rs(\"b\") %><% Response.Write \"|known\" %>"
    "<!--#include file=\"part.inc\"-->";

} // namespace

TEST(CorpusRunner, ScriptItCannotRunIsLenientOnlyInTheCorpus)
{
    TestServers &servers = TestServers::shared();
    servers.writeWebFile(QStringLiteral("corpus/runner/page.asp"), kPage);
    servers.writeWebFile(QStringLiteral("corpus/runner/part.inc"), "<% Response.Write \"|part\" %>");
    const CurlClient::Result lenient = CurlClient::httpGet(servers.httpBase() + QStringLiteral("/corpus/runner/page.asp"));
    EXPECT_EQ(lenient.status, 200);
    EXPECT_EQ(lenient.body.toStdString(),
              "\n[if][elseif][else][one][other][row w0rd][each][sub][1][2][3]|known|part");

    servers.writeWebFile(QStringLiteral("runner/page.asp"), kPage);
    servers.writeWebFile(QStringLiteral("runner/part.inc"), "");
    const CurlClient::Result strict = CurlClient::httpGet(servers.httpBase() + QStringLiteral("/runner/page.asp"));
    EXPECT_EQ(strict.status, 500);
}
