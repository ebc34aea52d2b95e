// The text menu of a page being edited, right-clicked and driven as a user
// drives it in the real page engine: what it offers for a caret in text, in
// a link and in a table cell; its commands, each once, in the page saved to
// the fixture server with the pictures and clips it uploads; and the inserts
// it refuses in words without leaving anything half in the page, also in
// text that the server's script wrote.

#include "../fileviews/SiteTreeDriver.h"
#include "ObjectPage.h"
#include "config/MGlobalProjectObjects.h"
#include "fileviews/SiteFileDialogs.h"

#include <QApplication>
#include <QClipboard>
#include <QColorDialog>
#include <QImage>
#include <QPlainTextEdit>
#include <QTemporaryDir>

#include <tuple>

#include <gtest/gtest.h>

namespace {

using object_test::EditedPage;
using fileviews_test::click;
using fileviews_test::onModal;
using fileviews_test::type;

class TextMenu : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        save_test::setSaveDate();
        UserQuestions::Script({});
    }
    void TearDown() override
    {
        SiteFileDialogs::EndScript();
        UserQuestions::EndScript();
    }

    // Selects the element's text when asked (a right click in a selection
    // keeps it; elsewhere it puts the caret where it falls), right-clicks
    // the element's middle and picks the item (an empty name closes the
    // menu). The menu as it was shown.
    std::unique_ptr<MenuPick> pick(const QString &id, const QString &item, bool selectAll = false)
    {
        if (selectAll)
            run(QStringLiteral("getSelection().selectAllChildren(document.getElementById('%1')), true").arg(id));
        auto menu = std::make_unique<MenuPick>(item);
        EXPECT_TRUE(page.rightClick(id)) << id.toStdString();
        EXPECT_TRUE(menu->shown) << id.toStdString();
        return menu;
    }
    QVariant run(const QString &script) { return PageScriptCall::run(page.screen.browser.page(), script, QString()); }
    QStringList shown() const
    {
        QStringList texts;
        for (const UserQuestions::Shown &s : UserQuestions::ShownSoFar())
            texts << s.kind + QLatin1Char(':') + s.text;
        return texts;
    }
    QByteArray saved(const QString &path)
    {
        EXPECT_EQ(page.doc->Save(), 1) << MError::ErrorDescription().toStdString();
        return save_test::serverFile(path);
    }
    static void chooseImgFolder()
    {
        onModal(QStringLiteral("frmSiteTree"), [](QWidget *dialog) {
            fileviews_test::TreeHands hands{dialog->findChild<SiteTreeWidget *>(QStringLiteral("tvwSiteTree"))};
            QTest::mouseClick(hands.tree->viewport(), Qt::LeftButton, {}, hands.at(QStringLiteral("img")));
            click(dialog, "cmdOk");
        });
    }
    QString picture(const QString &name, QRgb color)
    {
        QImage image(40, 20, QImage::Format_RGB32);
        image.fill(color);
        const QString path = home.filePath(name);
        EXPECT_TRUE(image.save(path));
        return path;
    }

    QTemporaryDir home;
    EditedPage page;
};

TEST_F(TextMenu, TheMenuOffersWhatTheCaretInTextALinkOrACellAllows)
{
    page.open(QStringLiteral("textmenu/states.htm"),
              "<html><head><title>States</title></head><body background=\"img/bg.gif\">\n"
              "<p id=\"plain\">Plain words here</p>\n<p>A <a id=\"link\" href=\"a.htm\">linked text</a> here</p>\n"
              "<table><tr><td id=\"cell\">cell text</td></tr></table>\n<p><b id=\"bold\">bold words</b></p>\n</body></html>");

    const auto plain = pick(QStringLiteral("plain"), {});
    for (const char *on : {"mnuPaste", "mnuSelectAll", "mnuInsertImage", "mnuInsertBookMark", "mnuInsertRule",
                           "mnuRemBkndImg", "mnuEditScriptBlock", "mnuInsertTable", "mnuInsertSoundClip", "mnuInsertFlash",
                           "mnuInsertVideo"})
        EXPECT_TRUE(plain->enabled.contains(QLatin1String(on))) << on;
    for (const char *off : {"mnuCut", "mnuCopy", "mnuDelete", "mnuCreateLink", "mnuZOrder"})
        EXPECT_FALSE(plain->enabled.contains(QLatin1String(off))) << off;
    EXPECT_TRUE(plain->hidden.contains(QStringLiteral("mnuEditLink")));
    EXPECT_FALSE(plain->hidden.contains(QStringLiteral("mnuCreateLink")));
    EXPECT_FALSE(plain->checked.contains(QStringLiteral("mnuBold")));

    const auto link = pick(QStringLiteral("link"), {});
    EXPECT_TRUE(link->enabled.contains(QStringLiteral("mnuEditLink")));
    EXPECT_TRUE(link->enabled.contains(QStringLiteral("mnuRemoveLink")));
    EXPECT_TRUE(link->hidden.contains(QStringLiteral("mnuCreateLink")));

    const auto cell = pick(QStringLiteral("cell"), {});
    EXPECT_TRUE(cell->enabled.contains(QStringLiteral("mnuPaste")));
    EXPECT_TRUE(cell->enabled.contains(QStringLiteral("mnuInsertTable"))); // a table in a cell is a nested table
    EXPECT_FALSE(cell->enabled.contains(QStringLiteral("mnuCopy")));
    EXPECT_TRUE(cell->hidden.contains(QStringLiteral("mnuRemoveLink")));

    // Selected bold text: what acts on a selection comes on, Bold is checked.
    const auto bold = pick(QStringLiteral("bold"), {}, true);
    for (const char *on : {"mnuCut", "mnuCopy", "mnuDelete", "mnuCreateLink"})
        EXPECT_TRUE(bold->enabled.contains(QLatin1String(on))) << on;
    EXPECT_TRUE(bold->checked.contains(QStringLiteral("mnuBold")));
}

TEST_F(TextMenu, EachCommandGroupGoesIntoThePageSavedOnTheServerWithItsPictures)
{
    const QString path = QStringLiteral("textmenu/commands.htm");
    fileviews_test::put(fileviews_test::web(QStringLiteral("css/textmenu.css")), "p { color: navy }\n");
    page.open(path, "<html><head><title>Commands</title></head><body>\n"
                    "<p id=\"fmt\">make this bold</p>\n<p id=\"lnk\">our shop</p>\n<p id=\"pic\">Picture: here</p>\n"
                    "<p id=\"mark\">Top</p>\n<p id=\"rule\">Above the rule</p>\n<p id=\"field\">Name</p>\n"
                    "<p id=\"float\">floating</p>\n</body></html>");
    const QString photo = picture(QStringLiteral("textmenu_photo.png"), qRgb(200, 30, 30));
    const QString background = picture(QStringLiteral("textmenu_bg.png"), qRgb(30, 30, 200));

    pick(QStringLiteral("fmt"), QStringLiteral("mnuBold"), true);
    onModal(QStringLiteral("frmLinkDialog"), [](QWidget *dialog) {
        type(dialog, "txtURL", QStringLiteral("shop.htm"));
        click(dialog, "cmdOK");
    });
    pick(QStringLiteral("lnk"), QStringLiteral("mnuCreateLink"), true);

    SiteFileDialogs::Script({photo});
    chooseImgFolder();
    pick(QStringLiteral("pic"), QStringLiteral("mnuInsertImage"));
    ASSERT_EQ(page.page().getElementsByTagName(QStringLiteral("IMG")).size(), 1) << shown().join('|').toStdString();

    UserQuestions::Script({UserQuestions::vbOK});
    onModal(QStringLiteral("frmBookMarkSettings"), [](QWidget *dialog) {
        type(dialog, "txtBookMarkName", QStringLiteral("top"));
        click(dialog, "OKButton");
    });
    pick(QStringLiteral("mark"), QStringLiteral("mnuInsertBookMark"));
    pick(QStringLiteral("rule"), QStringLiteral("mnuInsertRule"));
    pick(QStringLiteral("field"), QStringLiteral("mnuInsertTextBox"));
    pick(QStringLiteral("float"), QStringLiteral("mnuAbsolutePosition"), true);

    onModal(QStringLiteral("frmEditScriptBlock"), [](QWidget *dialog) {
        auto *text = dialog->findChild<QPlainTextEdit *>(QStringLiteral("txtScriptText"));
        text->moveCursor(QTextCursor::Start);
        text->moveCursor(QTextCursor::Down);
        QTest::keyClicks(text, QStringLiteral("var visits = 1;"));
        click(dialog, "cmdSave");
    });
    pick(QStringLiteral("fmt"), QStringLiteral("mnuEditScriptBlock"));

    QApplication::clipboard()->setText(TestServers::shared().httpBase() + QStringLiteral("/css/textmenu.css"));
    UserQuestions::Script({UserQuestions::vbOK});
    pick(QStringLiteral("fmt"), QStringLiteral("mnuInsertStyleSheet"));
    EXPECT_TRUE(shown().value(0).startsWith(QStringLiteral("MsgBox:The selected style sheet will be pasted in.")))
        << shown().join('|').toStdString();

    onModal(QStringLiteral("dlgChooseColor"), [](QWidget *dialog) {
        static_cast<QColorDialog *>(dialog)->setCurrentColor(QColor(0x33, 0x66, 0x99));
        static_cast<QColorDialog *>(dialog)->accept();
    });
    pick(QStringLiteral("fmt"), QStringLiteral("mnuBkgndColor"));
    SiteFileDialogs::Script({background});
    chooseImgFolder();
    pick(QStringLiteral("fmt"), QStringLiteral("mnuSetBkndImg"));
    UserQuestions::Script({UserQuestions::vbOK});
    UserQuestions::ScriptTexts({QStringLiteral("Our commands")});
    pick(QStringLiteral("fmt"), QStringLiteral("mnuDocumentTitle"));

    const QByteArray file = saved(path);
    const QByteArray sheet = "href=\"" + TestServers::shared().httpBase().toUtf8() + "/css/textmenu.css\"";
    for (const QByteArray &part : std::initializer_list<QByteArray>{
             "<title>Our commands</title>",
             "<link id=\"Vindrell",
             "language=\"JavaScript\"><!-- \nvar visits = 1;\n//--></script>",
             "bgcolor=\"#336699\"",
             "background=\"../img/textmenu_bg.png\"",
             "<p id=\"fmt\"><b>make this bold</b></p>",
             "<p id=\"lnk\"><a href=\"shop.htm\" target=\"_top\">our shop</a></p>",
             "<p id=\"pic\">Picture: here<img src=\"../img/textmenu_photo.png\"></p>",
             "<p id=\"mark\">Top<a name=\"top\"></a></p>",
             "<p id=\"rule\">Above the rule</p><hr>",
             "<p id=\"field\">Name<input type=\"text\" name=\"field1\"></p>",
             "<p id=\"float\"><div style=\"display: inline; position: absolute;\">floating</div></p>",
             sheet})
        EXPECT_TRUE(file.contains(part)) << part.toStdString() << " in " << file.toStdString();
    EXPECT_FALSE(file.contains("kelda")) << file.toStdString();
    for (const QString &name : {QStringLiteral("textmenu_photo.png"), QStringLiteral("textmenu_bg.png")}) {
        EXPECT_EQ(fileviews_test::bytesOf(fileviews_test::web(QStringLiteral("img/") + name)),
                  fileviews_test::bytesOf(home.filePath(name))) << name.toStdString();
        QFile::remove(fileviews_test::web(QStringLiteral("img/") + name));
    }
}

TEST_F(TextMenu, BadInputIsRefusedInWordsAndNothingGoesInHalf)
{
    page.open(QStringLiteral("textmenu/refused.htm"),
              "<html><head><title>Refused</title></head><body style=\"margin:0\">"
              "<p id=\"text\" style=\"margin:0\">Words</p></body></html>");
    const QString notes = home.filePath(QStringLiteral("notes.png"));
    fileviews_test::put(notes, "not a picture at all");

    // A file that is no picture is named with the reason.
    SiteFileDialogs::Script({notes});
    pick(QStringLiteral("text"), QStringLiteral("mnuInsertImage"));
    EXPECT_TRUE(shown().value(0).contains(QStringLiteral("notes.png is not a picture"))) << shown().join('|').toStdString();
    SiteFileDialogs::Script({notes});
    pick(QStringLiteral("text"), QStringLiteral("mnuSetBkndImg"));
    EXPECT_TRUE(shown().value(1).contains(QStringLiteral("notes.png is not a picture"))) << shown().join('|').toStdString();

    // A style sheet of another host, and one the server doesn't have.
    QApplication::clipboard()->setText(QStringLiteral("http://elsewhere.example/site.css"));
    pick(QStringLiteral("text"), QStringLiteral("mnuInsertStyleSheet"));
    EXPECT_TRUE(shown().value(2).endsWith(QStringLiteral("right clicking and selecting \"Copy path\". You can then select this command again.")))
        << shown().join('|').toStdString();
    const QString missing = TestServers::shared().httpBase() + QStringLiteral("/css/missing.css");
    QApplication::clipboard()->setText(missing);
    pick(QStringLiteral("text"), QStringLiteral("mnuInsertStyleSheet"));
    EXPECT_TRUE(shown().value(3).startsWith(QStringLiteral("MsgBox:The style sheet ") + missing + QStringLiteral(" could not be read from the server (")))
        << shown().join('|').toStdString();
    EXPECT_TRUE(shown().value(3).contains(QStringLiteral("404"))) << shown().join('|').toStdString();

    EXPECT_TRUE(page.page().getElementsByTagName(QStringLiteral("IMG")).isEmpty());
    EXPECT_TRUE(page.page().getElementsByTagName(QStringLiteral("LINK")).isEmpty());
    EXPECT_TRUE(page.page().body().getAttribute(QStringLiteral("background")).isNull());
}

// Clips the engine can't play go in as their tags, each shown as a box of
// its size; at Save each file goes up beside the pictures and the tags
// name them there, with nothing of the editor's look in the file. A file
// of another kind is refused in words. The clips the page held before show
// as the same boxes, at the size their author gave, and keep their bytes.
TEST_F(TextMenu, SoundFlashAndVideoGoInAsTheirTagsShownAsBoxesAndUploadedAtSave)
{
    const QString path = QStringLiteral("textmenu/media.htm");
    const QByteArray had = "<p id=had><audio src='old.mp3'></audio><video src=old.webm width=200 height=120 controls></video>"
                           "<EMBED src=\"old.swf\" width=\"90\" height=\"60\"><object classid=\"clsid:D27CDB6E-AE6D-11cf-"
                           "96B8-444553540000\" width=\"100\" height=\"80\"><param name=\"movie\" value=\"old.swf\">"
                           "<embed src=\"old.swf\" width=\"100\" height=\"80\"></object></p>\n";
    page.open(path, "<html><head><title>Media</title></head><body>\n<p id=\"sound\">Listen:</p>\n"
                    "<p id=\"flash\">Play:</p>\n<p id=\"video\">Watch:</p>\n" + had + "</body></html>");
    EXPECT_EQ(run(QStringLiteral("Array.from(document.getElementById('had').children).map(e => [e.offsetWidth,"
                                 " e.offsetHeight, getComputedStyle(e).borderTopStyle].join(' ')).join(', ')"))
                  .toString(),
              QStringLiteral("300 40 dashed, 200 120 dashed, 90 60 dashed, 100 80 dashed"));
    EXPECT_EQ(run(QStringLiteral("document.querySelector('#had object embed').offsetWidth")).toInt(), 0);
    const std::tuple<const char *, const char *, const char *, int, int> clips[] = {
        {"sound", "mnuInsertSoundClip", "media_song.mp3", 300, 40},
        {"flash", "mnuInsertFlash", "media_film.swf", 400, 300},
        {"video", "mnuInsertVideo", "media_clip.mp4", 320, 240}};
    for (const auto &[id, item, name, width, height] : clips) {
        const QString file = home.filePath(QString::fromLatin1(name));
        fileviews_test::put(file, QByteArray("clip bytes of ") + name);
        SiteFileDialogs::Script({file});
        chooseImgFolder();
        pick(QString::fromLatin1(id), QString::fromLatin1(item));
        const HtmlElement clip = page.byId(QString::fromLatin1(id)).children().value(0);
        EXPECT_EQ(clip.offsetWidth(), width) << name;
        EXPECT_EQ(clip.offsetHeight(), height) << name;
    }
    const QString notes = home.filePath(QStringLiteral("notes.txt"));
    fileviews_test::put(notes, "not a clip");
    SiteFileDialogs::Script({notes});
    pick(QStringLiteral("video"), QStringLiteral("mnuInsertVideo"));
    EXPECT_EQ(shown(), QStringList{QStringLiteral("MsgBox:The file notes.txt is not a video clip of a kind web pages use "
                                                  "(mp4, webm, ogv, mov, avi, mpg, mpeg, wmv, flv), or it can't be read. "
                                                  "Nothing was inserted: choose another file.")});
    EXPECT_EQ(page.byId(QStringLiteral("video")).children().size(), 1);

    const QByteArray file = saved(path);
    for (const QByteArray &part : std::initializer_list<QByteArray>{
             "<p id=\"sound\">Listen:<audio controls=\"\" src=\"../img/media_song.mp3\"></audio></p>",
             "<p id=\"flash\">Play:<embed type=\"application/x-shockwave-flash\" src=\"../img/media_film.swf\" "
             "width=\"400\" height=\"300\"></p>",
             "<p id=\"video\">Watch:<video controls=\"\" src=\"../img/media_clip.mp4\" width=\"320\" height=\"240\"></video></p>"})
        EXPECT_TRUE(file.contains(part)) << part.toStdString() << " in " << file.toStdString();
    EXPECT_FALSE(file.contains("kelda")) << file.toStdString();
    EXPECT_TRUE(file.contains(had)) << file.toStdString();
    for (const auto &[id, item, name, width, height] : clips) {
        const QString uploaded = fileviews_test::web(QStringLiteral("img/") + QString::fromLatin1(name));
        EXPECT_EQ(fileviews_test::bytesOf(uploaded), QByteArray("clip bytes of ") + name);
        QFile::remove(uploaded);
    }
}

// Text the server's script wrote into an editable heading is the block's
// own object: a right click on it gives no text menu but the block's (with
// ASP editing off, the words that say how to allow it). A selection
// reaching into it is refused in words, a key typed there does nothing,
// and the heading keeps its bytes.
TEST_F(TextMenu, InsertsInTextTheServersScriptWroteAreRefused)
{
    const QString path = QStringLiteral("asp/textmenu.asp");
    const QByteArray source = "<%@ Language=VBScript %>\r\n<HTML>\r\n<HEAD>\r\n<TITLE>Sealed</TITLE>\r\n</HEAD>\r\n<BODY>\r\n"
                              "<H1 id=\"head\">Garden <%= \"layout\" %></H1>\r\n<P id=\"text\">Edit this text.</P>\r\n"
                              "</BODY>\r\n</HTML>\r\n";
    TestServers::shared().writeWebFile(path, source);
    save_test::ScriptPage asp;
    page.enter(asp, path);
    const HtmlElement head = page.byId(QStringLiteral("head"));
    const QString before = head.innerHTML();
    // The middle of the script's text, found as a user sees it.
    const QVariantList at = run(QStringLiteral("(function(){const h = document.getElementById('head'),"
                                               " w = document.createTreeWalker(h, NodeFilter.SHOW_TEXT);"
                                               " let t = w.nextNode(); while (t && t.data !== 'layout') t = w.nextNode();"
                                               " const r = document.createRange(); r.selectNodeContents(t);"
                                               " const b = r.getBoundingClientRect(); return [t.data, b.left + b.width / 2,"
                                               " b.top + b.height / 2];})()"))
                                .toList();
    ASSERT_EQ(at.value(0).toString(), QStringLiteral("layout"));
    const long settings = MGlobalProjectObjects::AdvancedUserSettings;
    MGlobalProjectObjects::AdvancedUserSettings = 0;
    {
        MenuPick rule(QStringLiteral("mnuInsertRule"));
        ASSERT_TRUE(page.rightClick(QPoint(at.value(1).toInt(), at.value(2).toInt())));
        EXPECT_FALSE(rule.shown);
    }
    MGlobalProjectObjects::AdvancedUserSettings = settings;
    // A key typed there is refused by the page's runtime.
    page.keys(Qt::Key_X);
    // Garden and the script's word selected together.
    pick(QStringLiteral("head"), QStringLiteral("mnuInsertTextBox"), true);
    // The page's own text takes a key: the one before was handled first.
    run(QStringLiteral("getSelection().collapse(document.getElementById('text').firstChild, 4), true"));
    page.keys(Qt::Key_Y);
    EXPECT_TRUE(PageScriptCall::pumpUntil([&] { return page.byId(QStringLiteral("text")).innerHTML().contains('y'); }, 10000));

    const QString sealed = QStringLiteral("MsgBox:The caret stands in a part of the page that the server's script writes, "
                                          "which can't be changed here. Nothing was inserted: click in the text where it "
                                          "is to go and choose the command again.");
    const QString block = QStringLiteral("MsgBox:This object contains code written in ASP. To edit this object you must "
                                         "enable 'ASP editing' in 'Advanced settings'.\rIf you do not know how to edit "
                                         "ASP we advise you not to do that.");
    EXPECT_EQ(shown(), (QStringList{block, sealed}));
    EXPECT_EQ(head.innerHTML().toStdString(), before.toStdString());
    EXPECT_TRUE(page.page().getElementsByTagName(QStringLiteral("HR")).isEmpty());
    EXPECT_TRUE(page.page().getElementsByTagName(QStringLiteral("INPUT")).isEmpty());
}

} // namespace
