// The source editor run for real: the colours of each kind of token, the
// lines scrolled to coloured too, find and replace over a large page with
// the user's answers, and what comes back from OK.

#include "ModalDriver.h"
#include "objects/HtmlSourceHighlighter.h"
#include "objects/frmDocumentInnerHTML.h"
#include "support/UserQuestions.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>

#include <gtest/gtest.h>

namespace {

using Q = UserQuestions;

QPlainTextEdit *box(QWidget *form)
{
    return form->findChild<QPlainTextEdit *>(QStringLiteral("rtfInnerHTML"));
}

// The colour the line shows at the column; none for text left plain.
QColor colourAt(const QPlainTextEdit *edit, int line, int column)
{
    const QTextBlock block = edit->document()->findBlockByNumber(line);
    for (const QTextLayout::FormatRange &range : block.layout()->formats()) {
        if (column >= range.start && column < range.start + range.length)
            return range.format.foreground().color();
    }
    return QColor();
}

void press(QWidget *form, const char *button)
{
    form->findChild<QPushButton *>(QLatin1String(button))->click();
}

void search(QWidget *form, const QString &word, const QString &replaceWith = QString())
{
    form->findChild<QLineEdit *>(QStringLiteral("txtWordToFind"))->setText(word);
    form->findChild<QLineEdit *>(QStringLiteral("txtReplace"))->setText(replaceWith);
}

void tick(QWidget *form, const char *option, bool on)
{
    form->findChild<QCheckBox *>(QLatin1String(option))->setChecked(on);
}

QString lastText()
{
    return Q::ShownSoFar().isEmpty() ? QString() : Q::ShownSoFar().last().text;
}

class SourceEditor : public testing::Test
{
protected:
    void TearDown() override
    {
        Q::EndScript();
        frmDocumentInnerHTML::RunUnderScript(false);
    }
};

} // namespace

TEST_F(SourceEditor, EachKindOfTokenHasItsColour)
{
    using H = HtmlSourceHighlighter;
    frmDocumentInnerHTML form;
    form.Init(QStringLiteral("<TD>cell</TD>\n"                      // 0
                             "<TDX class=a><Font COLOR=red face=x>\n" // 1
                             "<% Response.Write \"Document\" %>\n"    // 2
                             "<!-- set\naside --><p>\n"               // 3, 4
                             "<%\nDim total\n%>\n"                    // 5, 6, 7
                             "<a href=\"<%= Request(1) %>\" id=\"x\">hidden= text</a>\n"), // 8
              true, QString());
    form.show();
    const QPlainTextEdit *edit = box(&form);

    EXPECT_EQ(colourAt(edit, 0, 0), H::Bracket);
    EXPECT_EQ(colourAt(edit, 0, 1), H::TagName);
    EXPECT_EQ(colourAt(edit, 0, 3), H::Bracket);
    EXPECT_FALSE(colourAt(edit, 0, 4).isValid()) << "the cell's text";
    EXPECT_EQ(colourAt(edit, 0, 8), H::Bracket);
    EXPECT_EQ(colourAt(edit, 0, 9), H::Bracket) << "the slash of </TD>";
    EXPECT_EQ(colourAt(edit, 0, 10), H::TagName);
    EXPECT_EQ(colourAt(edit, 0, 12), H::Bracket);

    EXPECT_FALSE(colourAt(edit, 1, 0).isValid()) << "TDX is no TD";
    EXPECT_EQ(colourAt(edit, 1, 5), H::Attribute) << "an attribute of an unknown tag";
    EXPECT_FALSE(colourAt(edit, 1, 12).isValid()) << "its '>' stays plain";
    EXPECT_EQ(colourAt(edit, 1, 14), H::TagName) << "names in any case";
    EXPECT_EQ(colourAt(edit, 1, 19), H::Attribute);
    EXPECT_FALSE(colourAt(edit, 1, 25).isValid()) << "a value";

    EXPECT_EQ(colourAt(edit, 2, 0), H::Script);
    EXPECT_EQ(colourAt(edit, 2, 3), H::Keyword) << "Response";
    EXPECT_EQ(colourAt(edit, 2, 12), H::Keyword) << "Write";
    EXPECT_EQ(colourAt(edit, 2, 19), H::Script) << "no Do in Document";
    EXPECT_EQ(colourAt(edit, 2, 30), H::Script) << "the closing %>";

    EXPECT_EQ(colourAt(edit, 3, 0), H::Comment);
    EXPECT_EQ(colourAt(edit, 4, 0), H::Comment) << "a comment goes on over lines";
    EXPECT_EQ(colourAt(edit, 4, 9), H::Bracket) << "and ends at -->";

    EXPECT_EQ(colourAt(edit, 6, 0), H::Keyword) << "a script block goes on over lines";
    EXPECT_EQ(colourAt(edit, 6, 4), H::Script);

    EXPECT_EQ(colourAt(edit, 8, 3), H::Attribute) << "href=";
    EXPECT_EQ(colourAt(edit, 8, 9), H::Script) << "script inside the tag";
    EXPECT_EQ(colourAt(edit, 8, 13), H::Keyword);
    EXPECT_EQ(colourAt(edit, 8, 28), H::Attribute) << "the tag goes on behind the script";
    EXPECT_FALSE(colourAt(edit, 8, 35).isValid()) << "an attribute's name in the page's words";
}

// Only the lines on screen are coloured at first; a line scrolled to gets
// its colours, and one typed into keeps them coming.
TEST_F(SourceEditor, LinesScrolledToAreColouredAndTypingColoursAtOnce)
{
    QString page;
    for (int i = 0; i < 20000; ++i)
        page += QStringLiteral("<TR><TD class=c>%1</TD></TR>\n").arg(i);
    frmDocumentInnerHTML form;
    form.Init(page, false, QString());
    form.show();
    QPlainTextEdit *edit = box(&form);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&form));
    const QTextBlock last = edit->document()->lastBlock().previous();
    EXPECT_FALSE(HtmlSourceHighlighter::IsPainted(last));

    edit->verticalScrollBar()->setValue(edit->verticalScrollBar()->maximum());
    EXPECT_TRUE(QTest::qWaitFor([&] { return HtmlSourceHighlighter::IsPainted(last); }, 5000));
    EXPECT_EQ(colourAt(edit, last.blockNumber(), 1), HtmlSourceHighlighter::TagName);

    edit->moveCursor(QTextCursor::End);
    QTest::keyClicks(edit, QStringLiteral("<B"));
    EXPECT_EQ(colourAt(edit, edit->document()->blockCount() - 1, 1), HtmlSourceHighlighter::TagName);
}

// A page of 500 KB with the word in it 40 times among near misses.
TEST_F(SourceEditor, FindAndReplaceOverALargePageFollowTheAnswers)
{
    QString page;
    for (int i = 0; page.size() < 500 * 1024; ++i) {
        page += QStringLiteral("<P class=line>Line %1 of the garden</P>\r\n").arg(i);
        if (i % 300 == 150 && page.count(QStringLiteral("Roses and")) < 40)
            page += QStringLiteral("<P>Roses and rosestones, roses.</P>\r\n");
    }
    ASSERT_EQ(page.count(QStringLiteral("Roses and")), 40);
    frmDocumentInnerHTML form;
    form.Init(page, false, QString());
    form.show();
    search(&form, QStringLiteral("roses"), QStringLiteral("tulips"));
    tick(&form, "chkWholeWord", true);

    // Yes goes on to the next hit; the third answer ends the walk.
    Q::Script({Q::vbYes, Q::vbYes, Q::vbNo, Q::vbOK});
    press(&form, "cmdFindWord");
    EXPECT_EQ(lastText(), QStringLiteral("3 hits were found."));
    EXPECT_EQ(box(&form)->textCursor().selectedText(), QStringLiteral("Roses")) << "the hit asked about is selected";

    // Ctrl+G to a line; the status line follows the caret.
    form.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    Q::Script({Q::vbOK});
    Q::ScriptTexts({QStringLiteral("7")});
    QTest::keyClick(box(&form), Qt::Key_G, Qt::ControlModifier);
    EXPECT_EQ(box(&form)->textCursor().blockNumber(), 6);
    QTest::keyClick(box(&form), Qt::Key_End);
    EXPECT_EQ(form.findChild<QLabel *>(QStringLiteral("lblStatus"))->text(), QStringLiteral("Line 7 Position 38"));

    // Yes, No, Yes, then Cancel: the two replacements stay.
    Q::Script({Q::vbYes, Q::vbNo, Q::vbYes, Q::vbCancel, Q::vbOK});
    press(&form, "cmdReplace");
    EXPECT_EQ(lastText(), QStringLiteral("4 hits were found."));
    const QString afterWalk = box(&form)->toPlainText();
    EXPECT_EQ(afterWalk.count(QStringLiteral("tulips")), 2);
    EXPECT_TRUE(afterWalk.startsWith(QStringLiteral("<P class=line>Line 0")));
    EXPECT_EQ(afterWalk.count(QStringLiteral("rosestones")), 40) << "not whole words";

    // Match case: only the capital ones; all at once, as one step of Undo.
    tick(&form, "chkMatchCase", true);
    search(&form, QStringLiteral("Roses"), QStringLiteral("Tulips"));
    Q::Script({Q::vbOK});
    press(&form, "cmdReplaceAll");
    EXPECT_EQ(lastText(), QStringLiteral("38 hits were found."));
    EXPECT_EQ(box(&form)->toPlainText().count(QStringLiteral("Tulips and")), 38);
    box(&form)->undo();
    EXPECT_EQ(box(&form)->toPlainText(), afterWalk);

    // A regular expression with a group, and one that doesn't parse.
    tick(&form, "chkWholeWord", false);
    tick(&form, "chkRegularExpression", true);
    search(&form, QStringLiteral("rose(stone)s"), QStringLiteral("$1 piles"));
    Q::Script({Q::vbOK, Q::vbOK});
    press(&form, "cmdReplaceAll");
    search(&form, QStringLiteral("(roses"));
    press(&form, "cmdFindWord");
    EXPECT_TRUE(Q::ShownSoFar().at(1).text.startsWith(QStringLiteral("The search text is no valid regular expression")));

    Q::Script({});
    press(&form, "cmdOK");
    EXPECT_FALSE(form.Cancelled());
    const QString result = form.Text();
    EXPECT_EQ(result.count(QStringLiteral("stone piles")), 40);
    EXPECT_EQ(result.count(QStringLiteral("\r\n")), page.count(QStringLiteral("\r\n"))) << "line ends as they were";
    EXPECT_EQ(result.size(), page.size() + 2 + 40) << "two tulips and forty piles one longer each";
}

// OK hands back what the box holds; a page that opens with a style sheet
// gets the hidden paragraph in front, an ASP source does not. The close box
// asks about changed text; Cancel keeps the editor open.
TEST_F(SourceEditor, OkCloseBoxAndCancel)
{
    frmDocumentInnerHTML::RunUnderScript(true);
    frmDocumentInnerHTML form;
    for (const bool asp : {false, true}) {
        form.Init(QStringLiteral("<%\r\nx = 1\r\n%>\r\n"), asp, QStringLiteral("/page.asp"));
        EXPECT_EQ(form.windowTitle(), QStringLiteral("/page.asp"));
        ModalDriver typing(form.objectName(), [](QWidget *dialog) {
            box(dialog)->moveCursor(QTextCursor::Start);
            QTest::keyClicks(box(dialog), QStringLiteral("<STYLE>\t"));
            press(dialog, "cmdOK");
        });
        Q::Script({});
        EXPECT_EQ(form.Show(), 1);
        EXPECT_FALSE(form.Cancelled());
        const QString typed = QStringLiteral("<STYLE>\t<%\r\nx = 1\r\n%>\r\n");
        EXPECT_EQ(form.Text(), asp ? typed : QStringLiteral("<P style=\"DISPLAY: none; LEFT: -100px; POSITION: "
                                                             "relative; TOP: -100px\">_</P>") + typed);
    }

    // Close box on a changed text: Cancel stays, No closes without it.
    form.Init(QStringLiteral("<p>x</p>"), false, QString());
    ModalDriver closing(form.objectName(), [](QWidget *dialog) {
        QTest::keyClicks(box(dialog), QStringLiteral("y"));
        dialog->close();
        EXPECT_TRUE(dialog->isVisible());
        dialog->close();
    });
    Q::Script({Q::vbCancel, Q::vbNo});
    EXPECT_EQ(form.Show(), -1);
    EXPECT_TRUE(form.Cancelled());
    ASSERT_EQ(Q::ShownSoFar().size(), 2);
    EXPECT_EQ(Q::ShownSoFar().at(0).text, QStringLiteral("Do you want to save your changes?"));
    EXPECT_EQ(Q::ShownSoFar().at(0).title, QStringLiteral("HTML editor"));
}
