#pragma once

// A page of the demo site in edit mode, right-clicked and its menus
// driven with the mouse as a user drives them.

#include "../document/SavedPage.h"
#include "MenuPick.h"
#include "PageMouse.h"
#include "objects/ContextMenuDispatcher.h"
#include "objects/frmMenu.h"
#include "platform/HtmlTextRange.h"
#include "platform/PageEvent.h"
#include "support/UserQuestions.h"

#include <QTest>


namespace object_test {

// The page in edit mode, with right clicks going to the dispatcher the
// way the edit session sends them.
struct EditedPage
{
    document_test::Screen screen;
    std::unique_ptr<CDocument> doc;
    int menuEvents = 0;
    // A click sent again while the engine was still busy with the first
    // may reach the page after it: only one menu is shown for one call of
    // rightClick, as the user clicked once.
    bool awaitingClick = false;

    void open(const QString &path, const QByteArray &body)
    {
        doc = save_test::editPage(screen, path, body);
        listen();
    }
    // A page with server script, entered as an edit session enters it.
    void enter(save_test::ScriptPage &asp, const QString &path)
    {
        asp.enter(screen, path);
        doc = std::move(asp.doc);
        listen();
    }
    void listen()
    {
        QObject::connect(&screen.browser, &WebBrowser::pageEvent, &screen.browser, [this](const PageEvent &e) {
            if (e.type != QLatin1String("contextmenu") || !awaitingClick)
                return;
            awaitingClick = false;
            ContextMenuDispatcher(*doc).Dispatch(e.x, e.y);
            ++menuEvents;
        });
    }
    HtmlDocument page() { return screen.browser.Document(); }
    HtmlElement byId(const QString &id) { return page().getElementById(id); }
    static QPoint middleOf(const HtmlElement &e)
    {
        return QPoint(e.offsetLeft() + e.offsetWidth() / 2, e.offsetTop() + e.offsetHeight() / 2);
    }

    // Right-clicks at the point until the page has reported the click and
    // the dispatcher is done with it (a loaded machine drops input before
    // the engine's first frame).
    bool rightClick(const QPoint &at)
    {
        QWidget *target = screen.browser.focusProxy();
        const int before = menuEvents;
        awaitingClick = true;
        for (int attempt = 0; attempt < 20; ++attempt) {
            sendRightClick(target, at);
            if (PageScriptCall::pumpUntil([&] { return menuEvents > before; }, 500))
                return true;
        }
        awaitingClick = false;
        return false;
    }
    bool rightClick(const QString &id) { return rightClick(middleOf(byId(id))); }

    // Keys to the page, as typed.
    void keys(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        screen.browser.activateWindow();
        screen.browser.setFocus();
        QTest::keyClick(screen.browser.focusProxy(), key, modifiers);
    }
};

} // namespace object_test
