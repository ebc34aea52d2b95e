// Hover button applets in the real page engine: what the engine reads of
// applets written every way a page writes them comes back whole from the
// writer, and a button edited through its menu and dialog is saved on the
// fixture's FTP server with the rest of the page's bytes as they were.

#include "../fileviews/SiteTreeDriver.h"
#include "ObjectPage.h"
#include "objects/FPHooverApplet.h"
#include "objects/frmFPHoover.h"

#include <QComboBox>
#include <QRadioButton>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace {

using object_test::EditedPage;
using P = FPHooverApplet;

// Quoted, unquoted and odd-case attributes, every valuetype, a value with
// entities, a parameter of a name the dialog doesn't know and one without a
// value, and a style.
const QByteArray kApplets =
    "<html><head><title>Buttons</title></head><body>\n"
    "<p>Before <applet code=\"fphover.class\" width=\"120\" height=\"24\" id=\"quoted\">\n"
    "<param name=\"text\" value=\"Quoted\" valuetype=\"data\">\n"
    "<param name=\"bgColor\" value=\"#0000FF\"><param name=\"effect\" value=\"glow\" valuetype=ref>\n"
    "<param name=\"URL\" value=\"a b.htm?x=1&amp;y=&quot;2&quot;\" valuetype=\"object\">\n"
    "<param name=\"FontSize\" value=\"\"></applet></p>\n"
    "<p><APPLET CODE=fphover.class WIDTH=90 HEIGHT=20 ALIGN=middle MAYSCRIPT>\n"
    "<PARAM NAME=Text VALUE=Bare><PARAM NAME=TEXTCOLOR VALUE=#FF0000 VALUETYPE=DATA>"
    "<PARAM NAME=Target VALUE=_top><PARAM NAME=Speed VALUE=7></APPLET></p>\n"
    "<p><ApPlEt CoDe='fphover.class' wIdTh='60' HeIgHt='18' Title='Odd &amp; case' style=\"position: absolute; left: 10px\">"
    "<PaRaM nAmE='fOnT' vAlUe='Arial' VaLuEtYpE='data'><param name='hoversound' value='s.au' valuetype='ref'>"
    "</ApPlEt></p>\n<div id=\"scratch\"></div>\n</body></html>";

P read(const HtmlElement &applet)
{
    P data;
    EXPECT_EQ(frmFPHoover::ReadApplet(applet, data), 1) << MError::ErrorDescription().toStdString();
    return data;
}

class HoverButton : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        save_test::setSaveDate();
        UserQuestions::Script({});
    }
    void TearDown() override { UserQuestions::EndScript(); }

    EditedPage page;
};

// Each applet is read, written, put in the page as the engine parses the
// text, and read again: the same parameters with the same valuetypes and
// the same attributes, and the same text once more.
TEST_F(HoverButton, ReaderAndWriterAreCounterparts)
{
    page.open(QStringLiteral("hover/applets.htm"), kApplets);
    const QList<HtmlElement> applets = page.page().getElementsByTagName(QStringLiteral("APPLET"));
    ASSERT_EQ(applets.size(), 3);
    QStringList texts;
    for (const HtmlElement &applet : applets) {
        const P first = read(applet);
        texts << first.Text();
        HtmlElement scratch = page.byId(QStringLiteral("scratch"));
        scratch.setInnerHTML(first.Text());
        const P again = read(scratch.children().value(0));
        SCOPED_TRACE(first.Text().toStdString());
        for (int i = 0; i < P::ParamCount; ++i)
            EXPECT_EQ(again.param(P::Param(i)), first.param(P::Param(i))) << P::ParamNames()[i].toStdString();
        EXPECT_EQ(again.Others(), first.Others());
        EXPECT_EQ(again.Attributes(), first.Attributes());
        EXPECT_EQ(again.Text(), first.Text());
    }
    EXPECT_EQ(read(applets[0]).OldId(), QStringLiteral("quoted"));
    EXPECT_EQ(read(applets[0]).param(P::URL), (P::Value{QStringLiteral("a b.htm?x=1&y=\"2\""), QStringLiteral("object")}));
    EXPECT_EQ(texts[1], QStringLiteral("<APPLET id=\"new_a\" code=\"fphover.class\" width=\"90\" height=\"20\" "
                                       "align=\"middle\" mayscript><PARAM name=\"Target\" value=\"_top\">"
                                       "<PARAM name=\"text\" value=\"Bare\"><PARAM name=\"textColor\" value=\"#FF0000\" "
                                       "valuetype=DATA><PARAM name=\"Speed\" value=\"7\"></APPLET>"));
    EXPECT_EQ(texts[2], QStringLiteral("<APPLET id=\"new_a\" code=\"fphover.class\" width=\"60\" height=\"18\" "
                                       "title=\"Odd &amp; case\" style=\"position: absolute; left: 10px\">"
                                       "<PARAM name=\"Font\" value=\"Arial\" valuetype=data>"
                                       "<PARAM name=\"hoversound\" value=\"s.au\" valuetype=ref></APPLET>"));
}

const QByteArray kShop = "<html><head><title>Shop</title></head>\n<body>\n<p>Welcome to   the shop.</p>\n"
                         "<p><applet code=\"fphover.class\" width=\"120\" height=\"24\" id=\"buy\">"
                         "<param name=\"text\" value=\"Buy now\" valuetype=\"data\"><param name=\"effect\" value=\"fill\">"
                         "<param name=\"URL\" value=\"buy.htm\"><param name=\"hoverimage\" value=\"img/buy-h.gif\" valuetype=ref>"
                         "</applet></p>\n<P CLASS=x>Odd   old markup &copy; kept</P>\n</body></html>";

// The body of a page from its first applet on, and from after its last.
QByteArray before(const QByteArray &page)
{
    const int body = page.indexOf("<body>");
    return page.mid(body, page.toLower().indexOf("<applet") - body);
}
QByteArray after(const QByteArray &page)
{
    return page.mid(page.toLower().lastIndexOf("</applet>") + 9);
}

TEST_F(HoverButton, EditedThroughItsDialogAndSaved)
{
    const QString path = QStringLiteral("hover/shop.htm");
    page.open(path, kShop);
    HtmlElement applet = page.byId(QStringLiteral("buy"));
    // The engine runs no applet: a box of its size stands for it.
    EXPECT_EQ(applet.offsetWidth(), 120);
    EXPECT_EQ(applet.offsetHeight(), 24);

    // OK without a change leaves the element as it was.
    fileviews_test::onModal(QStringLiteral("frmFPHoover"), [](QWidget *dialog) {
        EXPECT_EQ(dialog->findChild<QLineEdit *>(QStringLiteral("txtBtnText"))->text(), QStringLiteral("Buy now"));
        fileviews_test::click(dialog, "cmdOk");
    });
    {
        MenuPick pick(QStringLiteral("mnuFPHProp"));
        ASSERT_TRUE(page.rightClick(QStringLiteral("buy")));
        for (const char *item : {"mnuFPHCut", "mnuFPHCopy", "mnuFPHDel", "mnuFPHAbsPos", "mnuFPHProp"})
            EXPECT_TRUE(pick.enabled.contains(QLatin1String(item))) << item;
        EXPECT_TRUE(pick.checked.isEmpty());
    }
    EXPECT_TRUE(applet.isConnected());

    fileviews_test::onModal(QStringLiteral("frmFPHoover"), [](QWidget *dialog) {
        fileviews_test::type(dialog, "txtBtnText", QStringLiteral("Buy today"));
        dialog->findChild<QComboBox *>(QStringLiteral("cmbEffect"))->setCurrentIndex(2);
        QTest::mouseClick(dialog->findChild<QRadioButton *>(QStringLiteral("optLinkMode1")), Qt::LeftButton, {},
                          QPoint(5, 5));
        fileviews_test::click(dialog, "cmdOk");
    });
    {
        MenuPick pick(QStringLiteral("mnuFPHProp"));
        ASSERT_TRUE(page.rightClick(QStringLiteral("buy")));
    }
    EXPECT_FALSE(applet.isConnected());
    EXPECT_TRUE(page.byId(QStringLiteral("new_a")).isNull());
    const HtmlElement edited = page.byId(QStringLiteral("buy"));
    ASSERT_FALSE(edited.isNull());
    EXPECT_EQ(edited.getAttribute(QStringLiteral("keldalabel")).toString(), QStringLiteral("Buy today"));

    page.doc->SetDirty();
    ASSERT_EQ(page.doc->Save(), 1) << MError::ErrorDescription().toStdString();
    const QByteArray saved = save_test::serverFile(path);
    SCOPED_TRACE(saved.toStdString());
    EXPECT_EQ(before(saved), before(kShop));
    EXPECT_EQ(after(saved), after(kShop));
    const auto has = [&saved](const char *pattern) {
        return QRegularExpression(QString::fromLatin1(pattern), QRegularExpression::CaseInsensitiveOption)
            .match(QString::fromLatin1(saved))
            .hasMatch();
    };
    EXPECT_TRUE(has("<applet [^>]*id=\"buy\""));
    EXPECT_TRUE(has("<param name=\"text\" value=\"Buy today\" valuetype=\"?data"));
    EXPECT_TRUE(has("<param name=\"effect\" value=\"glow\">"));
    EXPECT_TRUE(has("<param name=\"Target\" value=\"_top\">"));
    EXPECT_TRUE(has("<param name=\"hoverimage\" value=\"img/buy-h.gif\" valuetype=\"?ref"));
    EXPECT_TRUE(has("<param name=\"URL\" value=\"buy.htm\">"));
    for (const char *mark : {"new_a", "keldalabel", "__kelda"})
        EXPECT_FALSE(saved.contains(mark)) << mark;
}

} // namespace
