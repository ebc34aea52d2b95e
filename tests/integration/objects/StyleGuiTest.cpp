// The style engine in the real page engine: the attributes read at the
// caret and under the mouse, and the font size over a selection, down to
// what Save writes to the server.

#include "ObjectPage.h"

#include <gtest/gtest.h>

namespace {

using object_test::EditedPage;

const QByteArray kStyled =
    "<!DOCTYPE html>\n<html><head><title>Styles</title><style>.note{color:#800000} #lead{font-weight:bold}"
    " div em{color:#008000}</style></head><body>\n"
    "<p id=\"inline\" style=\"font-weight:401;font-style:italic;font-size:18pt;text-align:center\">inline</p>\n"
    "<p id=\"plain\" style=\"font-weight:400\">plain</p>\n"
    "<p><font id=\"font\" face=\"Georgia\" color=\"#0000ff\">font tag</font> <u><b id=\"under\">under</b></u></p>\n"
    "<p id=\"lead\" class=\"note\" align=\"right\">class and id rules</p>\n"
    "<div><em id=\"nested\">nested rule</em></div><h3 id=\"head\">heading</h3>\n"
    "</body></html>";

class Style : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        UserQuestions::Script({});
    }
    void TearDown() override { UserQuestions::EndScript(); }
    CStyle &style() { return page.doc->Style(); }
    // Puts the selection over the text of the elements from one offset to
    // another, as a drag of the mouse would.
    void select(const QString &fromId, int from, const QString &toId, int to)
    {
        PageScriptCall::run(page.screen.browser.page(),
                            QStringLiteral("(function(){var d=document,s=getSelection(),r=d.createRange();"
                                           "function at(id,n){var w=d.createTreeWalker(d.getElementById(id),4),t;"
                                           "while((t=w.nextNode())){if(n<=t.length)return [t,n];n-=t.length;}}"
                                           "var a=at('%1',%2),b=at('%3',%4);r.setStart(a[0],a[1]);r.setEnd(b[0],b[1]);"
                                           "s.removeAllRanges();s.addRange(r);return true;})()")
                                .arg(fromId).arg(from).arg(toId).arg(to),
                            QString());
    }
    void caretIn(const QString &id) { select(id, 1, id, 1); }
    EditedPage page;
};

TEST_F(Style, CaretAttributesOfStyledTexts)
{
    page.open(QStringLiteral("objects/styles.htm"), kStyled);
    bool bold = false, italic = false, underline = false;
    QString family, color, justify, tag;
    float size = 0;

    caretIn(QStringLiteral("inline"));
    ASSERT_EQ(style().GetCaretAttr(bold, italic, underline), 1);
    EXPECT_TRUE(bold); // 401 is bold
    EXPECT_TRUE(italic);
    style().GetCaretFontFamily(family, size);
    EXPECT_FLOAT_EQ(size, 18);
    style().GetCaretJustify(justify);
    EXPECT_EQ(justify, QStringLiteral("center"));

    caretIn(QStringLiteral("plain"));
    style().GetCaretAttr(bold, italic, underline);
    EXPECT_FALSE(bold); // 400 is not

    caretIn(QStringLiteral("font"));
    style().GetCaretFontFamily(family, size);
    EXPECT_EQ(family, QStringLiteral("Georgia"));
    style().GetCaretColor(color);
    EXPECT_EQ(color, QStringLiteral("#0000ff"));
    style().GetBlockTag(tag);
    EXPECT_EQ(tag, QStringLiteral("FONT"));

    caretIn(QStringLiteral("under"));
    style().GetCaretAttr(bold, italic, underline);
    EXPECT_TRUE(bold);
    EXPECT_TRUE(underline);

    caretIn(QStringLiteral("lead"));
    style().GetCaretAttr(bold, italic, underline);
    EXPECT_TRUE(bold);
    style().GetCaretColor(color);
    EXPECT_EQ(color, QStringLiteral("#800000"));
    style().GetCaretJustify(justify);
    EXPECT_EQ(justify, QStringLiteral("right"));
}

TEST_F(Style, StylePaneNamesWhatIsUnderTheMouse)
{
    page.open(QStringLiteral("objects/styles.htm"), kStyled);
    auto kindAt = [&](const QString &id) {
        CStyle::HooverStyle found;
        EXPECT_EQ(style().GetHooverStyle(EditedPage::middleOf(page.byId(id)), found), 1);
        return found;
    };
    EXPECT_EQ(kindAt(QStringLiteral("inline")).kind, 3);
    EXPECT_EQ(kindAt(QStringLiteral("inline")).strName, QStringLiteral("-none"));
    EXPECT_EQ(kindAt(QStringLiteral("head")).strName, QStringLiteral("-none3"));
    EXPECT_EQ(kindAt(QStringLiteral("font")).kind, 1);
    EXPECT_EQ(kindAt(QStringLiteral("nested")).strName, QStringLiteral("div em"));
    const CStyle::HooverStyle lead = kindAt(QStringLiteral("lead"));
    EXPECT_EQ(lead.kind, 5);
    EXPECT_EQ(lead.strName, QStringLiteral("#lead"));
    QStringList changed;
    for (const CStyle::StyleDiff &diff : lead.diffs)
        changed.append(diff.name);
    EXPECT_TRUE(changed.contains(QStringLiteral("fontWeight")));

    QStringList classes;
    EXPECT_EQ(style().GetStyleClasses(classes), 1);
    EXPECT_EQ(classes, QStringList{QStringLiteral("note")});
}

const QByteArray kSizing =
    "<!DOCTYPE html>\n<html><head><title>Sizes</title></head><body>\n"
    "<p id=\"first\">Before <b id=\"bold\">strong words</b> after.</p>\n"
    "<p id=\"second\">Next paragraph text.</p>\n"
    "<table><tr><td id=\"a\">cell one</td><td id=\"b\">cell two</td></tr></table>\n"
    "</body></html>";

// From the middle of a bold run into the next paragraph: the bold run is
// cut in two and only its inner half sized, the paragraphs stay whole and
// their bare text in the selection is wrapped; nothing outside changes,
// on screen or in the saved file.
TEST_F(Style, FontSizeOverSelectionSplitsWrapsAndSavesOnlyThatStretch)
{
    save_test::setSaveDate();
    page.open(QStringLiteral("objects/sizes.htm"), kSizing);
    select(QStringLiteral("bold"), 7, QStringLiteral("second"), 4);
    ASSERT_EQ(style().SetCaretFontSize(14), 1) << MError::ErrorDescription().toStdString();
    const QString sized = QStringLiteral(
        "<p id=\"first\">Before <b id=\"bold\">strong </b><b style=\"font-size: 14pt;\">words</b>"
        "<span style=\"font-size: 14pt;\"> after.</span></p>\n"
        "<p id=\"second\"><span style=\"font-size: 14pt;\">Next</span> paragraph text.</p>");
    EXPECT_TRUE(page.page().body().innerHTML().contains(sized)) << page.page().body().innerHTML().toStdString();

    page.doc->SetDirty();
    ASSERT_EQ(page.doc->Save(), 1) << MError::ErrorDescription().toStdString();
    const QString saved = QString::fromLatin1(save_test::serverFile(QStringLiteral("objects/sizes.htm")));
    QString expected = QString::fromLatin1(kSizing);
    expected.replace(QStringLiteral("<p id=\"first\">Before <b id=\"bold\">strong words</b> after.</p>\n"
                                    "<p id=\"second\">Next paragraph text.</p>"),
                     sized);
    const auto body = [](const QString &html) { return html.mid(html.indexOf(QStringLiteral("<body>"))); };
    EXPECT_EQ(body(saved), body(expected));
}

TEST_F(Style, FontSizeLeavesBareCaretAndRefusesAcrossCells)
{
    page.open(QStringLiteral("objects/sizes.htm"), kSizing);
    const QString before = page.page().body().innerHTML();
    caretIn(QStringLiteral("first"));
    EXPECT_EQ(style().SetCaretFontSize(20), 1);
    select(QStringLiteral("a"), 2, QStringLiteral("b"), 3);
    EXPECT_EQ(style().SetCaretFontSize(20), -1);
    EXPECT_EQ(page.page().body().innerHTML(), before);
    ASSERT_EQ(UserQuestions::ShownSoFar().size(), 1);
    EXPECT_TRUE(UserQuestions::ShownSoFar().first().text.startsWith(QStringLiteral("The size can't be changed over a selection")));

    // Inside one cell it goes: one run, one span.
    select(QStringLiteral("a"), 0, QStringLiteral("a"), 4);
    EXPECT_EQ(style().SetCaretFontSize(20), 1);
    EXPECT_EQ(page.byId(QStringLiteral("a")).innerHTML(), QStringLiteral("<span style=\"font-size: 20pt;\">cell</span> one"));
}

} // namespace
