// The keys of the main window around an edited page, and the command
// channel to the engine.

#include "TestServers.h"
#include "platform/CICustomDoc.h"
#include "platform/GlyphTable.h"
#include "platform/HtmlDocument.h"
#include "platform/PageScriptCall.h"
#include "platform/WebBrowser.h"
#include "shell/EditKeyGuard.h"
#include "support/MError.h"

#include <QApplication>
#include <QEventLoop>
#include <QFocusEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QTimer>
#include <QTreeView>

#include <gtest/gtest.h>

namespace {

// Stands in for the site's tree: counts the F5 that reach it.
class TreeStandIn : public QTreeView
{
public:
    int refreshes = 0;

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->key() == Qt::Key_F5)
            ++refreshes;
        QTreeView::keyPressEvent(event);
    }
};

void pump(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

void sendKey(QWidget *target, int key)
{
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &press);
    QCoreApplication::sendEvent(target, &release);
}

void focus(QWidget *widget, QEvent::Type type)
{
    QFocusEvent event(type, Qt::OtherFocusReason);
    QCoreApplication::sendEvent(widget, &event);
}

class EditKeys : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        auto *row = new QHBoxLayout(&window);
        row->addWidget(browser);
        row->addWidget(tree);
        window.resize(900, 600);
        window.show();
        guard.registerTree(tree, EditKeyGuard::SiteTree);
        TestServers::shared().writeWebFile(QStringLiteral("keys.htm"),
                                           "<html><body><p id=\"p\">as served</p><div>box</div><a href=\"x.htm\">link</a>"
                                           "</body></html>");
        browser->Navigate2(TestServers::shared().httpBase() + QStringLiteral("/keys.htm"),
                           WebBrowser::NavNoReadFromCache);
        PageScriptCall::pumpUntil([&] { return browser->ReadyState() != WebBrowser::ReadyStateComplete; }, 2000);
        ASSERT_TRUE(browser->waitUntilComplete());
        QObject::connect(browser, &QWebEngineView::loadStarted, [this] { ++loads; });
    }

    // The user's edit in the page; a reload from the server loses it.
    void edit() { browser->Document().getElementById(QStringLiteral("p")).setInnerText(QStringLiteral("typed")); }
    QString text() { return browser->Document().getElementById(QStringLiteral("p")).innerText(); }
    QWidget *page() { return browser->focusProxy() ? browser->focusProxy() : browser; }

    QWidget window;
    WebBrowser *browser = new WebBrowser(&window);
    TreeStandIn *tree = new TreeStandIn;
    EditKeyGuard guard{browser};
    int loads = 0;
};

TEST_F(EditKeys, F5InThePageReloadsOnlyOutsideEditing)
{
    edit();
    guard.setEditing(true);
    sendKey(page(), Qt::Key_F5);
    pump(500);
    EXPECT_EQ(loads, 0);
    EXPECT_EQ(text(), QStringLiteral("typed"));

    guard.setEditing(false);
    sendKey(page(), Qt::Key_F5);
    EXPECT_TRUE(PageScriptCall::pumpUntil([&] { return loads > 0; }, 15000));
    ASSERT_TRUE(browser->waitUntilComplete());
    EXPECT_TRUE(PageScriptCall::pumpUntil([&] { return text() == QStringLiteral("as served"); }, 15000));
}

TEST_F(EditKeys, WhileEditingF5ReachesAFocusedTreeAndF11NothingAtAll)
{
    guard.setEditing(true);
    sendKey(tree, Qt::Key_F5);
    EXPECT_EQ(tree->refreshes, 0);
    focus(tree, QEvent::FocusIn);
    sendKey(tree, Qt::Key_F5);
    EXPECT_EQ(tree->refreshes, 1);
    // F11 is taken away whatever has the focus.
    int f11 = 0;
    struct Counter : QObject
    {
        int *count;
        explicit Counter(int *c) : count(c) {}
        bool eventFilter(QObject *, QEvent *event) override
        {
            if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(event)->key() == Qt::Key_F11)
                ++*count;
            return false;
        }
    } counter(&f11);
    tree->installEventFilter(&counter);
    sendKey(tree, Qt::Key_F11);
    EXPECT_EQ(f11, 0);
    focus(tree, QEvent::FocusOut);
    sendKey(tree, Qt::Key_F5);
    EXPECT_EQ(tree->refreshes, 1);
    // Outside editing every key passes.
    guard.setEditing(false);
    sendKey(tree, Qt::Key_F11);
    EXPECT_EQ(f11, 1);
}

TEST_F(EditKeys, ExecReachesTheEngineAndRecordsItsFailures)
{
    CICustomDoc empty;
    EXPECT_EQ(empty.Init(nullptr), 1);
    EXPECT_FALSE(empty.IsBound());
    EXPECT_EQ(MError::ErrorNumber(), 0);
    EXPECT_EQ(empty.Exec(HtmlDocument::EmptyGlyphTable), 0);
    EXPECT_EQ(MError::ErrorSource(), QStringLiteral("CICustomDoc.Exec"));
    MError::ClearError();

    CICustomDoc host;
    host.Init(browser);
    browser->Document().setDesignMode(QStringLiteral("On"));
    const GlyphTable::Switches all{true, true, true, true, true};
    QVariant out;
    EXPECT_EQ(host.Exec(HtmlDocument::AddToGlyphTable, 0, GlyphTable::rowsText(all), &out), 1)
        << MError::ErrorDescription().toStdString();
    EXPECT_TRUE(out.toBool());
    // The engine keeps the glyphs as a style sheet of its own in the page.
    const QString glyphs = QStringLiteral("__kelda_glyphs");
    EXPECT_FALSE(browser->Document().getElementById(glyphs).isNull());
    EXPECT_EQ(host.Exec(HtmlDocument::EmptyGlyphTable), 1);
    EXPECT_TRUE(browser->Document().getElementById(glyphs).isNull());
    EXPECT_EQ(host.Exec(HtmlDocument::ShowZeroBorderAtDesignTime, 0, 0), 1);

    EXPECT_EQ(host.Exec(9999), 0);
    EXPECT_EQ(MError::ErrorSource(), QStringLiteral("CICustomDoc.Exec"));
    EXPECT_NE(MError::ErrorNumber(), 0);
    MError::ClearError();
    host.Init(nullptr);
    EXPECT_FALSE(host.IsBound());
}

} // namespace
