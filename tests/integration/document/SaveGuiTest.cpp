// Save of a page edited in the real page engine, to the real fixture
// servers: what reaches the server, what is kept as a revision, and what is
// left alone.

#include "SavedPage.h"
#include "objects/CIHTMLObject.h"
#include "platform/CReg.h"
#include "support/ErrorLog.h"
#include "support/UserQuestions.h"

#include <QJsonArray>
#include <QTemporaryDir>

#include <functional>

#include <gtest/gtest.h>

namespace {

using G = MGlobalProjectObjects;
using Q = UserQuestions;
using namespace save_test;

class Save : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        G::UseTidy = false;
        G::TidyCharEncodingType = 1;
        G::TidyIndentScheme = 0;
        setSaveDate();
        TestServers::shared().clearFtpFaults();
    }
    void TearDown() override
    {
        Q::EndScript();
        G::UseTidy = false;
        CReg::SaveSetting(QStringLiteral("Advanced"), QStringLiteral("UseTidy"), QStringLiteral("False"));
    }
    // Opens the page for editing, lets edit change it, saves it as changed
    // and gives the file the server holds afterwards.
    QByteArray saveChanged(const QString &path, const QByteArray &body,
                           const std::function<void(HtmlDocument &)> &edit = {})
    {
        auto doc = editPage(screen, path, body);
        HtmlDocument page = screen.browser.Document();
        if (edit)
            edit(page);
        doc->SetDirty();
        EXPECT_EQ(doc->Save(), 1) << MError::ErrorDescription().toStdString();
        return serverFile(path);
    }
    document_test::Screen screen;
};

// A page object that reports what the test tells it to.
class ReportingObject : public CIHTMLObject
{
public:
    explicit ReportingObject(long result) : m_result(result) {}
    HtmlElement Element() const override { return {}; }
    long IsDirty(bool &dirty) const override { dirty = m_result == 1; return 1; }
    long Save(HtmlDocument &) override
    {
        if (m_result == 0)
            MError::SetErrorIfClear(5, QStringLiteral("upload refused"), QStringLiteral("Test.Save"));
        return m_result;
    }
    long OnContextMenu() override { return 1; }
    long LetKeldaKey(long) override { return 1; }
    long GetKeldaKey(long &key) const override { key = 0; return 1; }
    long Init(CDocEventHandler *, CDocument *) override { return 1; }

private:
    long m_result;
};

const QByteArray kMarkedPage =
    "<!DOCTYPE html>\n<html><head><meta http-equiv=\"Content-Type\" content=\"text/html; charset=iso-8859-1\">"
    "<title>Garden</title></head><body>"
    "<div id=\"free\" keldaedit=\"1\">Open text</div><div id=\"locked\" keldaedit=\"0\">Locked text</div>"
    "<div id=\"layer\" style=\"position:absolute\">Layer</div>"
    "<p id=\"text\">Old words.</p><img src=\"img/a.gif\"><img src=\"img/b.gif\"></body></html>";

} // namespace

TEST_F(Save, EditedPageGoesUpWithoutTheMarksOfEditing)
{
    Q::Script({});
    screen.open(QStringLiteral("save/garden.htm"), kMarkedPage);
    auto doc = std::make_unique<CDocument>();
    ASSERT_EQ(doc->Init(&screen.window), 1);
    doc->setDocumentControledByCMS(true);
    ASSERT_EQ(doc->EditOn(true), 1);
    HtmlDocument page = screen.browser.Document();
    // The layer pane hid the layer; the user changed a paragraph.
    page.getElementById(QStringLiteral("layer")).setStyleValue(QStringLiteral("visibility"), QStringLiteral("hidden"));
    page.getElementById(QStringLiteral("text")).setInnerText(QStringLiteral("New words."));
    doc->SetDirty();

    ASSERT_EQ(doc->Save(), 1) << MError::ErrorDescription().toStdString();
    const QString saved = QString::fromLatin1(serverFile(QStringLiteral("save/garden.htm")));
    SCOPED_TRACE(saved.toStdString());
    EXPECT_TRUE(saved.startsWith(QStringLiteral("<!DOCTYPE html>")));
    EXPECT_TRUE(saved.contains(QStringLiteral("New words.")));
    EXPECT_TRUE(saved.contains(QStringLiteral("<meta http-equiv=\"Expires\" content=\"-1\">")));
    EXPECT_TRUE(saved.contains(QStringLiteral("<meta http-equiv=\"Pragma\" content=\"no-cache\">")));
    EXPECT_TRUE(saved.contains(QStringLiteral("<meta http-equiv=\"Last-Modified\" content=\"") + SaveDate + "\">"));
    for (const char *mark : {"keldakey", "vismark", "contenteditable", "dashed", "solid", "__kelda"})
        EXPECT_FALSE(saved.contains(QLatin1String(mark), Qt::CaseInsensitive)) << mark;
    EXPECT_TRUE(saved.contains(QStringLiteral("<div id=\"free\" keldaedit=\"1\">Open text</div>")));
    EXPECT_TRUE(saved.contains(QStringLiteral("<div id=\"layer\" style=\"position:absolute\">Layer</div>")));
    EXPECT_TRUE(hasRevisionWith(kMarkedPage));
    // A page declared iso-8859-1 goes without a question.
    EXPECT_TRUE(Q::ShownSoFar().isEmpty());
}

// A frameset gets back its own border and the resizing of each frame.
TEST_F(Save, FramesetGetsItsBordersBack)
{
    const QString saved = QString::fromLatin1(saveChanged(QStringLiteral("save/frames.htm"),
        "<html><head><title>F</title></head><frameset cols=\"50%,50%\" frameborder=\"0\">"
        "<frame src=\"a.htm\" noresize><frame src=\"b.htm\"></frameset></html>"));
    SCOPED_TRACE(saved.toStdString());
    EXPECT_TRUE(saved.contains(QStringLiteral("<frameset cols=\"50%,50%\" frameborder=\"no\">")));
    EXPECT_TRUE(saved.contains(QStringLiteral("<frame src=\"a.htm\" noresize=")));
    EXPECT_TRUE(saved.contains(QStringLiteral("<frame src=\"b.htm\"></frameset>")));
}

TEST_F(Save, UnchangedPageIsNotSentAndObjectsDecide)
{
    auto doc = editPage(screen, QStringLiteral("save/quiet.htm"), kMarkedPage);
    const QStringList revisions = revisionFiles();
    TestServers::shared().clearFtpLog();
    EXPECT_EQ(doc->Save(), -2);
    EXPECT_EQ(TestServers::shared().ftpCommands(QStringLiteral("STOR")), 0);
    EXPECT_EQ(revisionFiles(), revisions);

    // An object that failed its upload fails the save, and nothing is sent.
    doc->AddObject(std::make_unique<ReportingObject>(0));
    EXPECT_EQ(doc->Save(), 0);
    EXPECT_EQ(MError::ErrorDescription(), QStringLiteral("upload refused"));
    EXPECT_EQ(TestServers::shared().ftpCommands(QStringLiteral("STOR")), 0);
    MError::ClearError();

    // An object that wrote a change makes the page count as changed.
    auto again = editPage(screen, QStringLiteral("save/quiet.htm"), kMarkedPage);
    again->AddObject(std::make_unique<ReportingObject>(-1));
    EXPECT_EQ(again->Save(), -2);
    again->AddObject(std::make_unique<ReportingObject>(1));
    EXPECT_EQ(again->Save(), 1) << MError::ErrorDescription().toStdString();
    EXPECT_TRUE(serverFile(QStringLiteral("save/quiet.htm")).contains("Last-Modified"));
}

// A write-protected revision folder keeps no revision, but the page is
// saved all the same: the user is told once, and nothing is left pending.
TEST_F(Save, NoRevisionStillSavesThePage)
{
    auto doc = editPage(screen, QStringLiteral("save/kept.htm"), kMarkedPage);
    doc->SetDirty();
    Q::Script({});
    TestServers::shared().setFtpFaults({{QStringLiteral("readonly"), QJsonArray{QStringLiteral("www/_resetp")}}});
    EXPECT_EQ(doc->Save(), 1);
    TestServers::shared().clearFtpFaults();
    const QByteArray saved = serverFile(QStringLiteral("save/kept.htm"));
    EXPECT_NE(saved, kMarkedPage);
    EXPECT_TRUE(saved.contains("Last-Modified")) << saved.toStdString();
    EXPECT_EQ(MError::ErrorNumber(), 0);
    EXPECT_EQ(Q::ShownSoFar().size(), 1);
}

// Every block of script comes back exactly as the author wrote it.
TEST_F(Save, ScriptPageKeepsEveryBlock)
{
    ScriptPage asp;
    asp.enter(screen, QStringLiteral("asp/layout.asp"));
    const QStringList blocks = asp.blocks();
    ASSERT_GE(blocks.size(), 5);
    screen.browser.Document().getElementById(QStringLiteral("text")).setInnerText(QStringLiteral("Roses and tulips."));
    asp.doc->SetDirty();
    ASSERT_EQ(asp.doc->Save(), 1) << MError::ErrorDescription().toStdString();
    const QString saved = QString::fromLatin1(serverFile(QStringLiteral("asp/layout.asp")));
    SCOPED_TRACE(saved.toStdString());
    EXPECT_TRUE(saved.contains(QStringLiteral("Roses and tulips.")));
    EXPECT_FALSE(saved.contains(QStringLiteral("keldasp")));
    qsizetype from = 0;
    for (const QString &block : blocks) {
        const qsizetype at = saved.indexOf(block, from);
        EXPECT_GE(at, 0) << block.toStdString();
        from = at < 0 ? from : at + block.size();
    }
    EXPECT_TRUE(hasRevisionWith(asp.original));
}

// A UTF-8 page stays UTF-8 through Tidy; a windows-1252 page, whose
// question is answered No, keeps its bytes for its characters.
TEST_F(Save, PagesKeepTheirCharacters)
{
    G::UseTidy = true;
    G::TidyCharEncodingType = 3;
    G::TidyIndentScheme = 1;
    const QByteArray unicode = saveChanged(QStringLiteral("utf8.htm"), serverFile(QStringLiteral("utf8.htm")), [](HtmlDocument &page) {
        page.getElementById(QStringLiteral("euro")).setInnerText(QStringLiteral("Pris: 30 €"));
    });
    EXPECT_TRUE(unicode.contains("R\xC3\xA4ksm\xC3\xB6rg\xC3\xA5s")) << unicode.toStdString();
    EXPECT_TRUE(unicode.contains("Pris: 30 \xE2\x82\xAC"));
    EXPECT_TRUE(unicode.contains("charset=utf-8"));
    EXPECT_TRUE(unicode.contains("\n\t")) << "Tidy indents by tabs";

    G::UseTidy = false;
    Q::Script({Q::vbNo});
    const QByteArray western = saveChanged(QStringLiteral("latin.htm"), serverFile(QStringLiteral("latin.htm")));
    EXPECT_EQ(Q::ShownSoFar().size(), 1);
    EXPECT_TRUE(western.contains("R\xE4ksm\xF6rg\xE5s f\xF6r 25 \x80.")) << western.toStdString();
    EXPECT_TRUE(western.contains("charset=windows-1252"));
}

TEST_F(Save, FailingTidyLeavesTheTextUntidiedAndLogs)
{
    bool existed = false;
    ErrorLog::Take(existed);
    G::UseTidy = true;
    G::TidyCharEncodingType = 1;
    const QByteArray saved = saveChanged(QStringLiteral("save/odd.htm"),
        "<html><head><title>Odd</title></head><body><wibble>odd tag</wibble>\n\n<p>x</p></body></html>");
    EXPECT_TRUE(saved.contains("<wibble>odd tag</wibble>\n\n<p>")) << saved.toStdString();
    EXPECT_TRUE(saved.contains("charset=iso-8859-1"));
    EXPECT_TRUE(saved.contains("Last-Modified"));
    EXPECT_TRUE(ErrorLog::Take(existed).contains(QStringLiteral("CDocument.TidyUpHTML")));
}

TEST_F(Save, EscapedBlankInTheAddressIsABlankOnTheServer)
{
    EXPECT_TRUE(saveChanged(QStringLiteral("save/my page.htm"), "<html><head><title>B</title></head><body><p>x</p></body></html>")
                    .contains("Last-Modified"));
    EXPECT_FALSE(QFile::exists(TestServers::shared().webRoot() + QStringLiteral("/save/my%20page.htm")));
}

// Pictures chosen from the disk go up with the page, which then names
// them where they landed.
TEST_F(Save, BackgroundPicturesGoUpWithThePage)
{
    QTemporaryDir disk;
    const QByteArray gif = "GIF89a\x01\x00\x01\x00";
    for (const char *name : {"/body.gif", "/cell.gif"}) {
        QFile file(disk.path() + QLatin1String(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(gif);
    }
    const QString local = disk.path();
    const QString saved = QString::fromLatin1(saveChanged(QStringLiteral("save/bg.htm"),
        "<html><head><title>Bg</title></head><body><table><tr><td id=\"cell\">x</td></tr></table></body></html>",
        [&](HtmlDocument &page) {
            HtmlElement body = page.body();
            body.setAttribute(QStringLiteral("background"), local + QStringLiteral("/body.gif"));
            body.setAttribute(QStringLiteral("BkndImgSrcPath"), local + QStringLiteral("/body.gif"));
            body.setAttribute(QStringLiteral("BkndImgUploadPath"), QStringLiteral("/www/img"));
            HtmlElement cell = page.getElementById(QStringLiteral("cell"));
            cell.setAttribute(QStringLiteral("background"), local + QStringLiteral("/cell.gif"));
            cell.setAttribute(QStringLiteral("bgchange"), QStringLiteral("true"));
            cell.setAttribute(QStringLiteral("relativepath"), QStringLiteral("../img"));
            cell.setAttribute(QStringLiteral("uploadpath"), QStringLiteral("/www/img"));
        }));
    EXPECT_EQ(serverFile(QStringLiteral("img/body.gif")), gif);
    EXPECT_EQ(serverFile(QStringLiteral("img/cell.gif")), gif);
    SCOPED_TRACE(saved.toStdString());
    EXPECT_TRUE(saved.contains(QStringLiteral("background=\"../img/body.gif\"")));
    EXPECT_TRUE(saved.contains(QStringLiteral("background-image: url(&quot;../img/body.gif&quot;)")));
    EXPECT_TRUE(saved.contains(QStringLiteral("<td id=\"cell\" background=\"../img/cell.gif\">")));
    for (const char *mark : {"BkndImg", "bgchange", "relativepath", "uploadpath"})
        EXPECT_FALSE(saved.contains(QLatin1String(mark), Qt::CaseInsensitive)) << mark;
}
