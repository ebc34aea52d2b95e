// The events of a page under edit on the main window: the Font pane
// following the caret through a page of mixed styles and changing the
// selection, the keys whose engine defaults the editor replaces, paste and
// drop of HTML, and Undo and Redo. Each change is checked in the file saved
// on the fixture's server.

#include "SessionWindow.h"
#include "document/CDocument.h"
#include "document/CPageEncoding.h"
#include "shell/CGUI.h"
#include "shell/StylePane.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QTest>
#include <QToolButton>

using namespace session_test;

namespace {

// The page of the window, reached by its elements' ids.
struct Page
{
    Window &w;

    QWidget *keys() const { return w.form.browser()->focusProxy(); }
    QVariant js(const QString &script) const
    {
        return PageScriptCall::run(w.form.browser()->page(), script, QStringLiteral("DocumentEventsGuiTest"));
    }
    QString html(const QString &id) const { return w.page().getElementById(id).property(QStringLiteral("innerHTML")).toString(); }
    QString text(const QString &id) const { return w.page().getElementById(id).innerText(); }
    QPoint centre(const QString &id) const
    {
        const QVariantList at = js(QStringLiteral("(function(){var r=document.getElementById('%1').getBoundingClientRect();"
                                                  "return [Math.round(r.left+r.width/2),Math.round(r.top+r.height/2)];})()")
                                       .arg(id))
                                    .toList();
        return QPoint(at.value(0).toInt(), at.value(1).toInt());
    }
    void focus() const
    {
        w.form.activateWindow();
        w.form.browser()->setFocus();
        js(QStringLiteral("window.focus(); true"));
        PageScriptCall::pumpUntil([this] { return js(QStringLiteral("document.hasFocus()")).toBool(); }, 3000);
    }
    // A click of the left button into the element, as the user's mouse
    // gives it: the caret goes there and the page reports the press.
    void clickInto(const QString &id) const
    {
        focus();
        QTest::mouseClick(keys(), Qt::LeftButton, {}, centre(id));
    }
    // The caret at the start or the end of the element's content.
    void caretAt(const QString &id, bool atEnd) const
    {
        focus();
        js(QStringLiteral("(function(){var r=document.createRange();r.selectNodeContents(document.getElementById('%1'));"
                          "r.collapse(%2);var s=getSelection();s.removeAllRanges();s.addRange(r);return true;})()")
               .arg(id, atEnd ? QStringLiteral("false") : QStringLiteral("true")));
    }
    void select(const QString &id) const
    {
        focus();
        HtmlTextRange::aroundElement(w.page().getElementById(id)).select();
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::keyClick(keys(), key, modifiers);
        // The key's events come back from the page after the key itself.
        PageScriptCall::pumpUntil([] { return false; }, 150);
    }
    int count(const QString &selector) const
    {
        return js(QStringLiteral("document.querySelectorAll('%1').length").arg(selector)).toInt();
    }
};

QString saved(const QString &path)
{
    return CPageEncoding::Decode(servers().readWebFile(path));
}

template <class T> T *control(Window &w, const char *name)
{
    return w.form.findChild<T *>(QString::fromLatin1(name));
}

// A choice in one of the pane's lists, as the user makes it.
void choose(QComboBox *box, const QString &item)
{
    const int at = box->findText(item);
    ASSERT_GE(at, 0) << item.toStdString();
    box->setCurrentIndex(at);
    emit box->activated(at);
}

class DocumentEvents : public SessionTest
{
};

TEST_F(DocumentEvents, TheFontPaneFollowsTheCaretAndItsControlsChangeTheSelection)
{
    servers().writeWebFile(QStringLiteral("events/styles.htm"),
                           "<HTML><HEAD><TITLE>Styles</TITLE><STYLE>.note { color: #008000 } .wide { letter-spacing: 2px }"
                           "</STYLE></HEAD><BODY>\n"
                           "<P id=\"big\" style=\"font-family: Georgia; font-size: 18pt; color: #ff0000; text-align: center\">"
                           "Big red centred</P>\n"
                           "<P id=\"bi\"><B><I id=\"bitext\">Bold and italic</I></B> then plain</P>\n"
                           "<P class=\"note\" id=\"under\"><U id=\"utext\">Underlined note</U></P>\n"
                           "<P id=\"target\">Change me here</P>\n"
                           "<P id=\"classless\">Give me a class</P>\n"
                           "<P id=\"heading\">Make me a heading</P>\n"
                           "</BODY></HTML>");
    UserQuestions::Script({OK, OK});
    Window w;
    Page page{w};
    ASSERT_TRUE(w.edit(QStringLiteral("events/styles.htm")));
    control<QPushButton>(w, "cmdPane2")->click();
    auto *font = control<QComboBox>(w, "cboFont");
    auto *size = control<QLineEdit>(w, "txtFontSize");
    auto *bold = control<QCheckBox>(w, "chkBoldSel");
    auto *italic = control<QCheckBox>(w, "chkItalicSel");
    auto *underline = control<QCheckBox>(w, "chkUnderlineSel");
    auto *classes = control<QComboBox>(w, "cboClasses");
    auto *block = control<QComboBox>(w, "cboBlockFormat");

    page.clickInto(QStringLiteral("big"));
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return size->text() == QStringLiteral("18 pt"); }, 5000)) << size->text().toStdString();
    EXPECT_EQ(font->currentText(), QStringLiteral("Georgia"));
    EXPECT_TRUE(control<QLabel>(w, "lblColor")->text().endsWith(QStringLiteral("#ff0000")));
    EXPECT_EQ(control<QComboBox>(w, "cboJustify")->currentIndex(), 1);
    EXPECT_FALSE(bold->isChecked());
    EXPECT_EQ(block->currentIndex(), 1);

    page.clickInto(QStringLiteral("bitext"));
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return bold->isChecked(); }, 5000));
    EXPECT_TRUE(italic->isChecked());
    EXPECT_FALSE(underline->isChecked());
    EXPECT_EQ(size->text(), QStringLiteral("12 pt"));

    page.clickInto(QStringLiteral("utext"));
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return underline->isChecked(); }, 5000));
    EXPECT_FALSE(bold->isChecked());
    EXPECT_EQ(classes->currentText(), QStringLiteral("note"));
    EXPECT_TRUE(control<QLabel>(w, "lblColor")->text().endsWith(QStringLiteral("#008000")));

    // The controls act on the selection, and the pane shows the result.
    page.select(QStringLiteral("target"));
    bold->click();
    EXPECT_TRUE(bold->isChecked());
    EXPECT_TRUE(page.html(QStringLiteral("target")).contains(QStringLiteral("<b>Change me here</b>")))
        << page.html(QStringLiteral("target")).toStdString();
    control<QToolButton>(w, "updFontSizeUp")->click();
    EXPECT_EQ(size->text().toStdString(), "13 pt") << page.html(QStringLiteral("target")).toStdString();
    choose(control<QComboBox>(w, "cboJustify"), QStringLiteral("Right"));
    choose(font, QStringLiteral("Verdana"));
    EXPECT_EQ(font->currentText().toStdString(), "Verdana") << page.html(QStringLiteral("target")).toStdString();
    page.caretAt(QStringLiteral("classless"), false);
    choose(classes, QStringLiteral("wide"));
    page.caretAt(QStringLiteral("heading"), false);
    choose(block, QStringLiteral("Heading 1").replace(QLatin1Char('1'), QLatin1Char('2')));
    EXPECT_EQ(page.count(QStringLiteral("h2")), 1);

    w.pressSave();
    ASSERT_FALSE(w.editing());
    EXPECT_EQ(errorDialogs(), 0) << firstError();
    const QString file = saved(QStringLiteral("events/styles.htm"));
    for (const char *part : {"<b>", "13pt", "right", "Verdana", "class=\"wide\"", "<h2"})
        EXPECT_TRUE(file.contains(QString::fromLatin1(part))) << part << "\n" << file.toStdString();
    // What was not touched keeps its bytes.
    for (const char *part : {"<P id=\"bi\"><B><I id=\"bitext\">Bold and italic</I></B> then plain</P>",
                             "<P class=\"note\" id=\"under\"><U id=\"utext\">Underlined note</U></P>"})
        EXPECT_TRUE(file.contains(QString::fromLatin1(part))) << part << "\n" << file.toStdString();
}

TEST_F(DocumentEvents, LineKeysLayerKeyAndTheScriptsNeighboursAreTheEditors)
{
    servers().writeWebFile(QStringLiteral("events/keys.htm"),
                           "<HTML><HEAD><TITLE>Keys</TITLE></HEAD><BODY>\n"
                           "<OL id=\"list\"><LI id=\"first\">one</LI></OL>\n"
                           "<P id=\"br\">Line one</P>\n<P id=\"para\">Para two</P>\n<P id=\"span\">Span here</P>\n"
                           "</BODY></HTML>");
    servers().writeWebFile(QStringLiteral("events/layout.asp"), servers().readWebFile(QStringLiteral("asp/layout.asp")));
    UserQuestions::Script({OK, OK, OK});
    Window w;
    Page page{w};
    ASSERT_TRUE(w.edit(QStringLiteral("events/keys.htm")));
    // Any key counts as a change, an arrow too.
    page.caretAt(QStringLiteral("br"), false);
    page.key(Qt::Key_Right);
    bool dirty = false;
    w.form.Session().Documents().front()->GetDirty(dirty);
    EXPECT_TRUE(dirty);

    // Enter in a numbered list's item makes the next item of that list.
    page.caretAt(QStringLiteral("first"), true);
    page.key(Qt::Key_Return);
    page.key(Qt::Key_T);
    EXPECT_EQ(page.count(QStringLiteral("#list > li")), 2) << page.html(QStringLiteral("list")).toStdString();
    // Enter in a paragraph is a line break; Shift+Enter a new paragraph;
    // Ctrl+Enter an empty span.
    page.caretAt(QStringLiteral("br"), true);
    page.key(Qt::Key_Return);
    EXPECT_GE(page.count(QStringLiteral("#br br")), 1) << page.html(QStringLiteral("br")).toStdString();
    EXPECT_EQ(page.text(QStringLiteral("br")).trimmed(), QStringLiteral("Line one"));
    const int paragraphs = page.count(QStringLiteral("p"));
    page.caretAt(QStringLiteral("para"), true);
    page.key(Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(page.count(QStringLiteral("p")), paragraphs + 1);
    page.caretAt(QStringLiteral("span"), true);
    page.key(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(page.count(QStringLiteral("#span span")), 1) << page.html(QStringLiteral("span")).toStdString();
    // Ctrl+D puts a positioned layer where the pointer is; with Shift a
    // hidden one.
    QTest::mouseMove(page.keys(), page.centre(QStringLiteral("para")));
    page.caretAt(QStringLiteral("span"), false);
    page.key(Qt::Key_D, Qt::ControlModifier);
    page.caretAt(QStringLiteral("br"), false);
    page.key(Qt::Key_D, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(page.js(QStringLiteral("Array.from(document.querySelectorAll('div')).map(d => d.textContent + '/' + "
                                     "d.style.position + '/' + d.style.visibility).sort().join('|')"))
                  .toString()
                  .toStdString(),
              "DIV Tag - hidden/absolute/hidden|DIV Tag/absolute/visible");
    // Ctrl+F and Ctrl+R are not the engine's: the page stays and nothing
    // else opens.
    page.key(Qt::Key_R, Qt::ControlModifier);
    page.key(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(w.editing());
    // F6 shows the glyphs at the tags, and hides them again.
    const QString glyphs = QStringLiteral("!!document.getElementById('__kelda_glyphs')");
    page.key(Qt::Key_F6);
    EXPECT_TRUE(PageScriptCall::pumpUntil([&] { return page.js(glyphs).toBool(); }, 3000));
    page.key(Qt::Key_F6);
    EXPECT_TRUE(PageScriptCall::pumpUntil([&] { return !page.js(glyphs).toBool(); }, 3000));
    w.pressSave();
    ASSERT_FALSE(w.editing());
    EXPECT_EQ(errorDialogs(), 0) << firstError();
    const QString file = saved(QStringLiteral("events/keys.htm"));
    for (const char *part : {"<li>t</li>", "Line one<br>", "DIV Tag - hidden", "position: absolute"})
        EXPECT_TRUE(file.contains(QString::fromLatin1(part))) << part << "\n" << file.toStdString();

    // Backspace right behind the output of server script, and Delete right
    // before it, leave it whole.
    ASSERT_TRUE(w.edit(QStringLiteral("events/layout.asp")));
    const QString heading = page.text(QStringLiteral("head"));
    page.caretAt(QStringLiteral("head"), true);
    page.key(Qt::Key_Backspace);
    page.focus();
    page.js(QStringLiteral("(function(){var t=document.getElementById('head').firstChild,r=document.createRange();"
                           "r.setStart(t,t.length);r.collapse(true);var s=getSelection();s.removeAllRanges();s.addRange(r);return true;})()"));
    page.key(Qt::Key_Delete);
    EXPECT_EQ(page.text(QStringLiteral("head")).toStdString(), heading.toStdString());
    // Typed beside it, a letter goes in as usual.
    page.key(Qt::Key_Z);
    EXPECT_TRUE(page.text(QStringLiteral("head")).contains(QStringLiteral("z"))) << page.text(QStringLiteral("head")).toStdString();
    // A block copied in this program, pasted: the block again, not its mark
    // as text.
    const QString mark = page.js(QStringLiteral("Array.from(document.getElementById('head').childNodes)"
                                                ".filter(n => n.nodeType === 8)[0].data")).toString();
    ASSERT_TRUE(mark.startsWith(QStringLiteral("keldaspIN#"))) << mark.toStdString();
    QGuiApplication::clipboard()->setText(mark);
    page.caretAt(QStringLiteral("text"), true);
    page.key(Qt::Key_V, Qt::ControlModifier);
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return page.text(QStringLiteral("text")).endsWith(QStringLiteral("layout")); }, 5000))
        << page.html(QStringLiteral("text")).toStdString();
    EXPECT_FALSE(page.text(QStringLiteral("text")).contains(QStringLiteral("keldasp")));
    w.pressSave();
    ASSERT_FALSE(w.editing()) << shownTexts().join(QStringLiteral("\n")).toStdString();
    EXPECT_EQ(errorDialogs(), 0) << firstError();
    const QByteArray script = servers().readWebFile(QStringLiteral("events/layout.asp"));
    EXPECT_EQ(script.count("<%= \"layout\" %>"), 2) << script.toStdString();
}

TEST_F(DocumentEvents, PasteAndDropOfHTMLAndUndoRedoAfterTyping)
{
    servers().writeWebFile(QStringLiteral("events/paste.htm"),
                           "<HTML><HEAD><TITLE>Paste</TITLE></HEAD><BODY>\n<P id=\"text\">Type here</P>\n"
                           "<P id=\"paste\">Paste here</P>\n<P id=\"drop\">Drop here</P>\n</BODY></HTML>");
    UserQuestions::Script({OK, OK});
    Window w;
    Page page{w};
    QPushButton *undo = control<QPushButton>(w, "cmdUndo");
    QPushButton *redo = control<QPushButton>(w, "cmdRedo");
    ASSERT_TRUE(w.editAndType(QStringLiteral("events/paste.htm"), QStringLiteral("text"), QStringLiteral("abc")));
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return undo->isEnabled(); }, 5000));
    EXPECT_FALSE(redo->isEnabled());
    // The typing is one step, as the engine counts it.
    undo->click();
    EXPECT_EQ(page.text(QStringLiteral("text")), QStringLiteral("Type here"));
    EXPECT_TRUE(redo->isEnabled());
    redo->click();
    EXPECT_EQ(page.text(QStringLiteral("text")), QStringLiteral("abc"));
    EXPECT_FALSE(redo->isEnabled());

    // HTML from the clipboard goes in with its markup.
    auto *data = new QMimeData;
    data->setHtml(QStringLiteral("<i>pasted italic</i>"));
    data->setText(QStringLiteral("pasted italic"));
    QGuiApplication::clipboard()->setMimeData(data);
    page.select(QStringLiteral("paste"));
    page.key(Qt::Key_V, Qt::ControlModifier);
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return page.html(QStringLiteral("paste")).contains(QStringLiteral("<i>pasted italic</i>")); }, 5000))
        << page.html(QStringLiteral("paste")).toStdString();

    // HTML dragged in from another program goes in where it falls.
    QMimeData dragged;
    dragged.setHtml(QStringLiteral("<u>dropped under</u>"));
    dragged.setText(QStringLiteral("dropped under"));
    const QPoint at = page.centre(QStringLiteral("drop"));
    QDragEnterEvent enter(at, Qt::CopyAction, &dragged, Qt::LeftButton, {});
    QCoreApplication::sendEvent(page.keys(), &enter);
    QDragMoveEvent move(at, Qt::CopyAction, &dragged, Qt::LeftButton, {});
    QCoreApplication::sendEvent(page.keys(), &move);
    QDropEvent drop(at, Qt::CopyAction, &dragged, Qt::LeftButton, {});
    QCoreApplication::sendEvent(page.keys(), &drop);
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return page.html(QStringLiteral("drop")).contains(QStringLiteral("dropped under")); }, 5000))
        << page.html(QStringLiteral("drop")).toStdString();

    w.pressSave();
    ASSERT_FALSE(w.editing());
    EXPECT_EQ(errorDialogs(), 0) << firstError();
    const QString file = saved(QStringLiteral("events/paste.htm"));
    for (const char *part : {"<P id=\"text\">abc</P>", "<i>pasted italic</i>", "dropped under</u>"})
        EXPECT_TRUE(file.contains(QString::fromLatin1(part))) << part << "\n" << file.toStdString();
}

} // namespace
