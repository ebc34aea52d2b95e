// The keys of the main window around an edited page, and the command
// channel to the engine.

#include "TestServers.h"
#include "platform/CICustomDoc.h"
#include "platform/GlyphTable.h"
#include "platform/HtmlDocument.h"
#include "platform/PageScriptCall.h"
#include "shell/EditKeyGuard.h"
#include "support/MError.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QTreeView>

#include <gtest/gtest.h>

namespace {

// Stands in for the site's tree: notes the keys that reach it.
class TreeStandIn : public QTreeView
{
public:
    QList<int> keys;

protected:
    void keyPressEvent(QKeyEvent *event) override { keys.append(event->key()); }
};

void send(QObject *target, QEvent &&event)
{
    QCoreApplication::sendEvent(target, &event);
}

void sendKey(QWidget *target, int key)
{
    send(target, QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier));
    send(target, QKeyEvent(QEvent::KeyRelease, key, Qt::NoModifier));
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
                                           "<html><body><p id=\"p\">as served</p><a href=\"x.htm\">link</a></body></html>");
        browser->Navigate2(TestServers::shared().httpBase() + QStringLiteral("/keys.htm"),
                           WebBrowser::NavNoReadFromCache);
        PageScriptCall::pumpUntil([&] { return browser->ReadyState() != WebBrowser::ReadyStateComplete; }, 2000);
        ASSERT_TRUE(browser->waitUntilComplete());
        QObject::connect(browser, &QWebEngineView::loadStarted, [this] { ++loads; });
    }
    HtmlElement paragraph() { return browser->Document().getElementById(QStringLiteral("p")); }

    QWidget window;
    WebBrowser *browser = new WebBrowser(&window);
    TreeStandIn *tree = new TreeStandIn;
    EditKeyGuard guard{browser};
    int loads = 0;
};

TEST_F(EditKeys, F5InThePageReloadsOnlyOutsideEditing)
{
    paragraph().setInnerText(QStringLiteral("typed"));
    guard.setEditing(true);
    sendKey(browser->focusProxy(), Qt::Key_F5);
    PageScriptCall::pumpUntil([] { return false; }, 500);
    EXPECT_EQ(loads, 0);
    EXPECT_EQ(paragraph().innerText(), QStringLiteral("typed"));

    guard.setEditing(false);
    sendKey(browser->focusProxy(), Qt::Key_F5);
    EXPECT_TRUE(PageScriptCall::pumpUntil([&] { return loads > 0; }, 15000));
    ASSERT_TRUE(browser->waitUntilComplete());
    EXPECT_TRUE(PageScriptCall::pumpUntil([&] { return paragraph().innerText() == QStringLiteral("as served"); }, 15000));
}

TEST_F(EditKeys, WhileEditingF5ReachesOnlyAFocusedTreeAndF11Nothing)
{
    guard.setEditing(true);
    sendKey(tree, Qt::Key_F5);
    send(tree, QFocusEvent(QEvent::FocusIn));
    sendKey(tree, Qt::Key_F5);
    sendKey(tree, Qt::Key_F11);
    send(tree, QFocusEvent(QEvent::FocusOut));
    sendKey(tree, Qt::Key_F5);
    EXPECT_EQ(tree->keys, QList<int>{Qt::Key_F5});
    guard.setEditing(false);
    sendKey(tree, Qt::Key_F11);
    EXPECT_EQ(tree->keys, (QList<int>{Qt::Key_F5, Qt::Key_F11}));
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
    QVariant out;
    EXPECT_EQ(host.Exec(HtmlDocument::AddToGlyphTable, 0, GlyphTable::rowsText({true, true, true, true, true}), &out), 1)
        << MError::ErrorDescription().toStdString();
    EXPECT_TRUE(out.toBool());
    // The engine keeps the glyphs as a style sheet of its own in the page.
    const QString glyphs = QStringLiteral("__kelda_glyphs");
    EXPECT_FALSE(browser->Document().getElementById(glyphs).isNull());
    EXPECT_EQ(host.Exec(HtmlDocument::EmptyGlyphTable), 1);
    EXPECT_TRUE(browser->Document().getElementById(glyphs).isNull());

    EXPECT_EQ(host.Exec(9999), 0);
    EXPECT_EQ(MError::ErrorSource(), QStringLiteral("CICustomDoc.Exec"));
    MError::ClearError();
}

} // namespace
