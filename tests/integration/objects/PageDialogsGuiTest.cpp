// The dialogs behind the text menu's link, bookmark and script commands,
// the list dialog of a drop-down field and the color picker, driven as a
// user drives them in the real page engine, and what a save of the page
// leaves on the server.

#include "../fileviews/SiteTreeDriver.h"
#include "ObjectPage.h"
#include "objects/LinkCommand.h"
#include "objects/ScriptBlockCommand.h"
#include "objects/frmColorDropper.h"
#include "objects/frmEditScriptBlock.h"

#include <QComboBox>
#include <QMouseEvent>
#include <QTextCursor>
#include <QPlainTextEdit>
#include <QRadioButton>

#include <gtest/gtest.h>

namespace {

using object_test::EditedPage;
using fileviews_test::click;
using fileviews_test::onModal;
using fileviews_test::type;

template <typename T>
T *child(QWidget *dialog, const QString &name)
{
    T *widget = dialog->findChild<T *>(name);
    EXPECT_TRUE(widget) << name.toStdString();
    return widget;
}

void check(QWidget *dialog, const QString &name)
{
    QTest::mouseClick(child<QRadioButton>(dialog, name), Qt::LeftButton, {}, QPoint(5, 5));
}

void choose(QWidget *dialog, const char *box, const QString &text)
{
    auto *combo = child<QComboBox>(dialog, QString::fromLatin1(box));
    combo->setCurrentIndex(combo->findText(text));
}

class PageDialogs : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        save_test::setSaveDate();
        UserQuestions::Script({});
    }
    void TearDown() override { UserQuestions::EndScript(); }
    QStringList shown() const
    {
        QStringList texts;
        for (const UserQuestions::Shown &s : UserQuestions::ShownSoFar())
            texts << s.text;
        return texts;
    }
    QByteArray saved(const QString &path)
    {
        page.doc->SetDirty();
        EXPECT_EQ(page.doc->Save(), 1) << MError::ErrorDescription().toStdString();
        return save_test::serverFile(path);
    }
    void select(const QString &id) { HtmlTextRange::aroundElement(page.byId(id)).select(); }

    EditedPage page;
};

TEST_F(PageDialogs, ALinkToAPageOfTheSiteIsMadeThroughTheDialogAndSaved)
{
    const QString path = QStringLiteral("dialogs/links.htm");
    page.open(path, "<html><head><title>Links</title></head><body>\n"
                    "<p>See our <span id=\"word\">products</span> today.</p>\n<p id=\"other\">Other</p>\n"
                    "<table><tr><td id=\"c1\">one</td><td id=\"c2\">two</td></tr></table>\n</body></html>");
    select(QStringLiteral("word"));
    onModal(QStringLiteral("frmLinkDialog"), [](QWidget *dialog) {
        EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Create new link"));
        EXPECT_TRUE(child<QRadioButton>(dialog, QStringLiteral("optLinkMode1"))->isChecked());
        EXPECT_FALSE(child<QRadioButton>(dialog, QStringLiteral("optLinkMode3"))->isEnabled()); // no frames
        click(dialog, "cmdShowAdvanced");
        // The void address goes to the address box, never to an event.
        check(dialog, QStringLiteral("OptExtraProp4"));
        choose(dialog, "cboScriptFuncs", QStringLiteral("javascript:void(0);"));
        click(dialog, "cmdCopyScript");
        EXPECT_EQ(child<QLineEdit>(dialog, QStringLiteral("txtURL"))->text(), QStringLiteral("javascript:void(0);"));
        EXPECT_TRUE(child<QLineEdit>(dialog, QStringLiteral("txtExtraProperty4"))->text().isEmpty());
        choose(dialog, "cboScriptFuncs", QStringLiteral("MM_swapImgRestore();"));
        click(dialog, "cmdCopyScript");
        click(dialog, "cmdCopyScript");
        EXPECT_EQ(child<QLineEdit>(dialog, QStringLiteral("txtExtraProperty4"))->text(),
                  QStringLiteral("MM_swapImgRestore();MM_swapImgRestore();"));
        type(dialog, "txtExtraProperty4", QStringLiteral("MM_swapImgRestore();"));

        onModal(QStringLiteral("frmSiteTree2"), [](QWidget *tree) {
            fileviews_test::TreeHands hands{tree->findChild<SiteTreeWidget *>(QStringLiteral("tvwSiteTree"))};
            hands.key(QStringLiteral("products"), Qt::Key_Right);
            ASSERT_TRUE(fileviews_test::waitFor([&] { return hands.node(QStringLiteral("products/index.htm")); }));
            QTest::mouseClick(hands.tree->viewport(), Qt::LeftButton, {}, hands.at(QStringLiteral("products/index.htm")));
            click(tree, "cmdOk");
        });
        click(dialog, "cmdOpenSajtDialog");
        EXPECT_EQ(child<QLineEdit>(dialog, QStringLiteral("txtURL"))->text(), QStringLiteral("../products/index.htm"));
        check(dialog, QStringLiteral("optLinkMode0"));
        type(dialog, "txtAlt", QStringLiteral("All we sell"));
        click(dialog, "cmdOK");
    });
    ASSERT_EQ(LinkCommand::CreateLink(*page.doc), 1) << MError::ErrorDescription().toStdString();
    const HtmlElement link = LinkCommand::GetHREF(page.byId(QStringLiteral("word")).children().value(0));
    ASSERT_FALSE(link.isNull());
    EXPECT_EQ(link.innerText(), QStringLiteral("products"));

    // Cancel changes nothing; a selection over two cells is refused first.
    select(QStringLiteral("other"));
    onModal(QStringLiteral("frmLinkDialog"), [](QWidget *dialog) {
        type(dialog, "txtURL", QStringLiteral("x.htm"));
        click(dialog, "cmdCancel");
    });
    EXPECT_EQ(LinkCommand::CreateLink(*page.doc), -1);
    PageScriptCall::run(page.screen.browser.page(),
                        QStringLiteral("(function () { var r = document.createRange();"
                                       "r.setStartBefore(document.getElementById('c1'));"
                                       "r.setEndAfter(document.getElementById('c2')); getSelection().removeAllRanges();"
                                       "getSelection().addRange(r); return true; })()"),
                        QString());
    EXPECT_EQ(LinkCommand::CreateLink(*page.doc), -1);
    EXPECT_EQ(shown().value(0), QStringLiteral("It is not possible to create a link that spans multiple cells in\n"
                                               "a table. Highlight the content of only a single cell."));
    EXPECT_EQ(page.page().getElementsByTagName(QStringLiteral("A")).size(), 1);

    const QByteArray file = saved(path);
    const qsizetype at = file.indexOf("<a ");
    ASSERT_GE(at, 0) << file.toStdString();
    const QByteArray tag = file.mid(at, file.indexOf('>', at) - at);
    for (const char *part : {"href=\"../products/index.htm\"", "target=\"_new\"", "title=\"All we sell\"",
                             "onclick=\"MM_swapImgRestore();\""})
        EXPECT_TRUE(tag.contains(part)) << part << " in " << tag.toStdString();
    EXPECT_TRUE(file.contains(">products</a></span> today.</p>")) << file.toStdString();
    EXPECT_TRUE(file.contains("<p id=\"other\">Other</p>"));
}

TEST_F(PageDialogs, ABookmarkAScriptBlockAListAndAColorAreSaved)
{
    const QString path = QStringLiteral("dialogs/more.htm");
    page.open(path, "<html><head><title>More</title><script src=\"lib.js\"></script></head><body>\n"
                    "<p id=\"intro\">Start here</p>\n"
                    "<form><select id=\"list\" name=\"l\"><option value=\"1\">One</option>"
                    "<option value=\"2\">Two</option><option>Three</option></select></form>\n"
                    "<table><tr><td id=\"cell\">cell</td></tr></table>\n</body></html>");

    // A bookmark: OK without a name is refused and the dialog stays.
    select(QStringLiteral("intro"));
    onModal(QStringLiteral("frmBookMarkSettings"), [](QWidget *dialog) {
        click(dialog, "OKButton");
        EXPECT_TRUE(dialog->isVisible());
        type(dialog, "txtBookMarkName", QStringLiteral("top"));
        click(dialog, "OKButton");
    });
    ASSERT_EQ(LinkCommand::InsertBookmark(*page.doc), 1) << MError::ErrorDescription().toStdString();
    EXPECT_EQ(shown(), (QStringList{QStringLiteral("The bookmark must have a name."),
                                    QStringLiteral("The name of the bookmark will be top and be referred to for "
                                                   "example mypage.htm#top")}));

    // The script block: the head's script from a file is not the page's
    // own, so one is made; what is typed into it never runs while editing.
    onModal(QStringLiteral("frmEditScriptBlock"), [](QWidget *dialog) {
        auto *text = child<QPlainTextEdit>(dialog, QStringLiteral("txtScriptText"));
        EXPECT_EQ(text->toPlainText(), QStringLiteral("<!-- \n\n//-->"));
        choose(dialog, "cboAddJavaScript", QStringLiteral("showLayers(strArrayLayerIDs)"));
        click(dialog, "cmdAddScriptToTextbox");
        text->moveCursor(QTextCursor::Start);
        text->moveCursor(QTextCursor::Down);
        QTest::keyClicks(text, QStringLiteral("document.title = 'ran';"));
        click(dialog, "cmdSave");
    });
    ASSERT_EQ(ScriptBlockCommand::EditScriptBlock(*page.doc), 1) << MError::ErrorDescription().toStdString();
    HtmlElement block = ScriptBlockCommand::FindScriptBlock(page.page());
    ASSERT_FALSE(block.isNull());
    EXPECT_TRUE(block.id().startsWith(QStringLiteral("VindrellJava")));
    EXPECT_EQ(page.page().title(), QStringLiteral("More"));
    // The second command finds the same block; Cancel keeps it.
    onModal(QStringLiteral("frmEditScriptBlock"), [](QWidget *dialog) {
        EXPECT_TRUE(child<QPlainTextEdit>(dialog, QStringLiteral("txtScriptText"))->toPlainText().contains(
            QStringLiteral("function showLayers(strArrayLayerIDs)")));
        click(dialog, "cmdCancel");
    });
    EXPECT_EQ(ScriptBlockCommand::EditScriptBlock(*page.doc), -1);
    EXPECT_EQ(page.page().getElementsByTagName(QStringLiteral("SCRIPT")).size(), 2);

    // The list: a right click on it opens its dialog.
    onModal(QStringLiteral("frmEditCombo"), [](QWidget *dialog) {
        auto *texts = child<QComboBox>(dialog, QStringLiteral("cmbText"));
        auto *value = child<QLineEdit>(dialog, QStringLiteral("txtValue"));
        EXPECT_EQ(texts->count(), 3);
        EXPECT_EQ(value->text(), QStringLiteral("1"));
        texts->setCurrentIndex(2);
        EXPECT_EQ(value->text(), QStringLiteral("Three"));
        texts->setCurrentIndex(1);
        click(dialog, "fpBtn2"); // Two goes
        click(dialog, "cmdAdd");
        EXPECT_EQ(texts->currentText(), QStringLiteral("NewText"));
        QTest::keyClicks(texts->lineEdit(), QStringLiteral("Four & more"));
        type(dialog, "txtValue", QStringLiteral("4"));
        texts->setCurrentIndex(0);
        texts->lineEdit()->selectAll();
        QTest::keyClicks(texts->lineEdit(), QStringLiteral("Uno"));
        click(dialog, "fpBtn1");
    });
    ASSERT_TRUE(page.rightClick(QStringLiteral("list")));
    EXPECT_EQ(page.byId(QStringLiteral("list")).innerHTML(),
              QStringLiteral("<option value=\"1\">Uno</option><option value=\"Three\">Three</option>"
                             "<option value=\"4\">Four &amp; more</option>"));

    // The color: picked from a patch on the screen, set on the cell.
    QWidget patch;
    patch.setAutoFillBackground(true);
    QPalette colored;
    colored.setColor(QPalette::Window, QColor(0x12, 0x34, 0x56));
    patch.setPalette(colored);
    patch.setGeometry(850, 100, 60, 60);
    patch.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&patch));
    onModal(QStringLiteral("frmColorDropper"), [&patch](QWidget *dialog) {
        QWidget *button = child<QWidget>(dialog, QStringLiteral("Picture2"));
        QTest::mousePress(button, Qt::LeftButton, {}, QPoint(5, 5));
        const QPoint over = button->mapFromGlobal(patch.mapToGlobal(QPoint(30, 30)));
        QMouseEvent move(QEvent::MouseMove, over, patch.mapToGlobal(QPoint(30, 30)), Qt::NoButton, Qt::LeftButton, {});
        QCoreApplication::sendEvent(button, &move);
        QTest::mouseRelease(button, Qt::LeftButton, {}, over);
        EXPECT_EQ(child<QLineEdit>(dialog, QStringLiteral("txtHex"))->text(), QStringLiteral("123456"));
        click(dialog, "cmdSetColor");
    });
    frmColorDropper dropper;
    dropper.Init(QStringLiteral("bgColor"), page.byId(QStringLiteral("cell")));
    ASSERT_EQ(dropper.Show(), 1);
    EXPECT_EQ(page.byId(QStringLiteral("cell")).getAttribute(QStringLiteral("bgColor")).toString(), QStringLiteral("#123456"));

    const QByteArray file = saved(path);
    EXPECT_TRUE(file.contains("<p id=\"intro\"><a name=\"top\">Start here</a></p>")) << file.toStdString();
    EXPECT_TRUE(file.contains("<script src=\"lib.js\"></script><script id=\"VindrellJava")) << file.toStdString();
    EXPECT_TRUE(file.contains("language=\"JavaScript\"><!-- \ndocument.title = 'ran';\nfunction showLayers("))
        << file.toStdString();
    EXPECT_TRUE(file.contains("}\n//--></script>")) << file.toStdString();
    EXPECT_TRUE(file.contains("<option value=\"1\">Uno</option><option value=\"Three\">Three</option>"
                              "<option value=\"4\">Four &amp; more</option></select>"))
        << file.toStdString();
    EXPECT_TRUE(file.contains("<td id=\"cell\" bgcolor=\"#123456\">cell</td>")) << file.toStdString();
}

} // namespace
