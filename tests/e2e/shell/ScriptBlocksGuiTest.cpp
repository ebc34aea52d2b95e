// Server script blocks in a page under edit, driven on the main window with
// the mouse and the keys: a block is one sealed object, a copy pasted
// elsewhere is a block of its own, a picture in its output is none of the
// page's, and a right click edits its source.
// Each result is read from the file saved on the fixture's server.

#include "ModalDriver.h"
#include "PageMouse.h"
#include "SessionWindow.h"
#include "aspfilter/CASPFilter.h"
#include "document/CDocument.h"
#include "platform/PageEvent.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>

using namespace session_test;

namespace {

const QByteArray kPage = "<HTML><HEAD><TITLE>Blocks</TITLE></HEAD><BODY>\r\n"
                         "<P id=\"price\">Price <%= \"twelve\" %> EUR</P>\r\n"
                         "<P id=\"text\">Paste here</P>\r\n"
                         "</BODY></HTML>\r\n";

struct Page
{
    Window &w;

    QWidget *keys() const { return w.form.browser()->focusProxy(); }
    QVariant js(const QString &script) const
    {
        return PageScriptCall::run(w.form.browser()->page(), script, QStringLiteral("ScriptBlocksGuiTest"));
    }
    QString text(const QString &id) const { return w.page().getElementById(id).innerText(); }
    void focus() const
    {
        w.form.activateWindow();
        w.form.browser()->setFocus();
        js(QStringLiteral("window.focus(); true"));
        PageScriptCall::pumpUntil([this] { return js(QStringLiteral("document.hasFocus()")).toBool(); }, 3000);
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::keyClick(keys(), key, modifiers);
        // The key's events come back from the page after the key itself.
        PageScriptCall::pumpUntil([] { return false; }, 150);
    }
    void caretAtEnd(const QString &id) const
    {
        js(QStringLiteral("(function(){var r=document.createRange();r.selectNodeContents(document.getElementById('%1'));"
                          "r.collapse(false);var s=getSelection();s.removeAllRanges();s.addRange(r);return true;})()")
               .arg(id));
    }
    // The box of the script's output in the element: left, top, width, height.
    QRect block(const QString &id) const
    {
        const QVariantList r = js(QStringLiteral("(function(){var b=document.querySelector('#%1 [data-keldasp]')"
                                                 ".getBoundingClientRect();return [b.left,b.top,b.width,b.height].map(Math.round);})()")
                                      .arg(id))
                                   .toList();
        return QRect(r.value(0).toInt(), r.value(1).toInt(), r.value(2).toInt(), r.value(3).toInt());
    }
    QString marks(const QString &id) const
    {
        return js(QStringLiteral("Array.from(document.getElementById('%1').childNodes).filter(n => n.nodeType === 8)"
                                 ".map(n => n.data).join(' ')")
                      .arg(id))
            .toString();
    }
    void rightClickUntil(const QPoint &at, const std::function<bool()> &done) const
    {
        for (int attempt = 0; attempt < 20 && !done(); ++attempt) {
            sendRightClick(keys(), at);
            PageScriptCall::pumpUntil(done, 500);
        }
    }
};

// The share of the pixels along the top line of a box that are red: the
// inverse of cyan.
double redShare(const QImage &shot, const QRect &box)
{
    int red = 0;
    for (int x = box.left() + 1; x < box.right(); ++x) {
        const QColor c = shot.pixelColor(x, box.top() + 1);
        red += c.red() > 200 && c.green() < 60 && c.blue() < 60 ? 1 : 0;
    }
    return box.width() > 2 ? double(red) / (box.width() - 2) : 0;
}

class ScriptBlocks : public SessionTest
{
};

TEST_F(ScriptBlocks, ABlockIsPickedWholeKeepsOffTheKeysAndPastesAsABlockOfItsOwn)
{
    servers().writeWebFile(QStringLiteral("blocks/copy.asp"), kPage);
    UserQuestions::Script({OK, OK, OK});
    Window w;
    Page page{w};
    ASSERT_TRUE(w.edit(QStringLiteral("blocks/copy.asp")));
    const QRect box = page.block(QStringLiteral("price"));
    ASSERT_GT(box.width(), 10);
    EXPECT_GT(redShare(w.form.browser()->grab().toImage(), box), 0.8);

    // A click picks the block whole, never a caret in it; a key typed and
    // Delete then change nothing.
    page.focus();
    QTest::mouseClick(page.keys(), Qt::LeftButton, {}, box.center());
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return page.js(QStringLiteral("getSelection().toString()")).toString() == QLatin1String("twelve"); }, 3000));
    page.key(Qt::Key_X);
    page.key(Qt::Key_Delete);
    EXPECT_EQ(page.text(QStringLiteral("price")), QStringLiteral("Price twelve EUR"));

    // Copied, it reaches the clipboard as its mark; pasted, it is a block
    // of its own under the next free even number, sealed as well.
    QGuiApplication::clipboard()->clear();
    page.key(Qt::Key_C, Qt::ControlModifier);
    ASSERT_TRUE(PageScriptCall::pumpUntil([] { return QGuiApplication::clipboard()->text() == QLatin1String("keldaspIN#00000"); }, 3000))
        << QGuiApplication::clipboard()->text().toStdString();
    page.caretAtEnd(QStringLiteral("text"));
    page.key(Qt::Key_V, Qt::ControlModifier);
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return page.text(QStringLiteral("text")) == QLatin1String("Paste heretwelve"); }, 5000))
        << page.text(QStringLiteral("text")).toStdString();
    EXPECT_EQ(page.marks(QStringLiteral("text")), QStringLiteral("keldaspIN#00002 keldaspOUT#00002"));
    page.key(Qt::Key_Backspace);
    EXPECT_EQ(page.text(QStringLiteral("text")), QStringLiteral("Paste heretwelve"));
    // A stretch of text with a block in it brings the block along as a
    // block, not its output frozen as text.
    page.js(QStringLiteral("getSelection().selectAllChildren(document.getElementById('price')), true"));
    QGuiApplication::clipboard()->clear();
    page.key(Qt::Key_C, Qt::ControlModifier);
    ASSERT_TRUE(PageScriptCall::pumpUntil([] { return QGuiApplication::clipboard()->text() == QLatin1String("Price twelve EUR"); }, 3000));
    page.caretAtEnd(QStringLiteral("text"));
    page.key(Qt::Key_V, Qt::ControlModifier);
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return page.text(QStringLiteral("text")).endsWith(QLatin1String("EUR")); }, 5000))
        << page.text(QStringLiteral("text")).toStdString();
    EXPECT_EQ(page.marks(QStringLiteral("text")), QStringLiteral("keldaspIN#00002 keldaspOUT#00002 keldaspIN#00004 keldaspOUT#00004"));

    w.pressSave();
    ASSERT_FALSE(w.editing());
    EXPECT_EQ(errorDialogs(), 0) << firstError();
    QByteArray expected = kPage;
    expected.replace("Paste here", "Paste here<%= \"twelve\" %>Price <%= \"twelve\" %> EUR");
    EXPECT_EQ(servers().readWebFile(QStringLiteral("blocks/copy.asp")).toStdString(), expected.toStdString());
}

TEST_F(ScriptBlocks, ARightClickEditsTheBlocksSourceOnlyWhenAllowedAndOnlyOnSave)
{
    const QByteArray withLogo = QByteArray(kPage).replace(
        "</BODY>", "<P id=\"logo\"><%= \"<IMG src='none.gif' width='60' height='40'>\" %></P>\r\n</BODY>");
    servers().writeWebFile(QStringLiteral("blocks/edit.asp"), withLogo);
    UserQuestions::Script({OK, OK, OK, OK, OK});
    Window w;
    Page page{w};
    ASSERT_TRUE(w.edit(QStringLiteral("blocks/edit.asp")));
    CDocument *document = w.form.Session().Documents().front().get();
    CASPFilter *filter = document->ASPFilter();
    ASSERT_NE(filter, nullptr);
    const QPoint at = page.block(QStringLiteral("price")).center();
    page.focus();

    // A picture the script wrote is no picture of the page's: pressed and
    // dragged by its corner it is neither picked nor resized, and the page
    // isn't marked to be saved.
    bool released = false;
    const QMetaObject::Connection watch = QObject::connect(w.form.browser(), &WebBrowser::pageEvent, [&](const PageEvent &e) {
        released = released || e.type == QLatin1String("mouseup");
    });
    const QRect logo = page.block(QStringLiteral("logo"));
    sendLeftDrag(page.keys(), logo.bottomRight() - QPoint(1, 1), logo.bottomRight() + QPoint(30, 20));
    const bool seen = PageScriptCall::pumpUntil([&] { return released; }, 5000);
    QObject::disconnect(watch);
    ASSERT_TRUE(seen);
    EXPECT_EQ(page.block(QStringLiteral("logo")).size(), logo.size());
    bool changed = true;
    document->GetDirty(changed);
    EXPECT_FALSE(changed);

    // Not allowed in the settings: the words that say where to allow it.
    MGlobalProjectObjects::AdvancedUserSettings = 0;
    const qsizetype shown = UserQuestions::ShownSoFar().size();
    page.rightClickUntil(at, [&] { return UserQuestions::ShownSoFar().size() > shown; });
    ASSERT_GT(UserQuestions::ShownSoFar().size(), shown);
    EXPECT_EQ(UserQuestions::ShownSoFar().last().text.toStdString(),
              "This object contains code written in ASP. To edit this object you must enable 'ASP editing' in "
              "'Advanced settings'.\rIf you do not know how to edit ASP we advise you not to do that.");

    // Allowed: the block's source in its dialog. Emptied, it can't be
    // saved; Cancel leaves the source as it was.
    MGlobalProjectObjects::AdvancedUserSettings = advEditASP;
    QString title, source;
    bool emptySavable = true;
    ModalDriver cancel(QStringLiteral("frmASPDialog"), [&](QWidget *dialog) {
        auto *box = dialog->findChild<QTextEdit *>(QStringLiteral("rtfASP"));
        title = dialog->windowTitle();
        source = box->toPlainText();
        box->selectAll();
        QTest::keyClick(box, Qt::Key_Delete);
        emptySavable = dialog->findChild<QPushButton *>(QStringLiteral("cmdOk"))->isEnabled();
        QTest::keyClicks(box, QStringLiteral("<% x %>"));
        dialog->findChild<QPushButton *>(QStringLiteral("cmdAbort"))->click();
    });
    page.rightClickUntil(at, [&] { return cancel.seen > 0; });
    ASSERT_EQ(cancel.seen, 1);
    EXPECT_EQ(title, QStringLiteral("Edit ASP script"));
    EXPECT_EQ(source, QStringLiteral("<%= \"twelve\" %>"));
    EXPECT_FALSE(emptySavable);
    QString kept;
    ASSERT_EQ(filter->GetASP(QStringLiteral("00000"), kept), 1);
    EXPECT_EQ(kept, QStringLiteral("<%= \"twelve\" %>"));

    // Saved in the dialog (Tab types a tab there), the new source goes to
    // the server at Save in place of the block, the rest of the file
    // keeping its bytes.
    ModalDriver edit(QStringLiteral("frmASPDialog"), [&](QWidget *dialog) {
        auto *box = dialog->findChild<QTextEdit *>(QStringLiteral("rtfASP"));
        box->selectAll();
        QTest::keyClicks(box, QStringLiteral("<%= \"thirteen\""));
        QTest::keyClick(box, Qt::Key_Tab);
        QTest::keyClicks(box, QStringLiteral("%>"));
        dialog->findChild<QPushButton *>(QStringLiteral("cmdOk"))->click();
    });
    page.rightClickUntil(at, [&] { return edit.seen > 0; });
    ASSERT_EQ(edit.seen, 1);
    EXPECT_EQ(UserQuestions::ShownSoFar().last().text,
              QStringLiteral("Please observe that changes you have made will not appear until you press the 'Save' button."));
    EXPECT_EQ(page.text(QStringLiteral("price")), QStringLiteral("Price twelve EUR"));
    w.pressSave();
    ASSERT_FALSE(w.editing());
    EXPECT_EQ(errorDialogs(), 0) << firstError();
    QByteArray expected = withLogo;
    expected.replace("<%= \"twelve\" %>", "<%= \"thirteen\"\t%>");
    EXPECT_EQ(servers().readWebFile(QStringLiteral("blocks/edit.asp")).toStdString(), expected.toStdString());
}

} // namespace
