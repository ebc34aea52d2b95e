#pragma once

// A page of the demo site in edit mode, right-clicked and its menus
// driven with the mouse as a user drives them.

#include "../document/SavedPage.h"
#include "PageMouse.h"
#include "objects/ContextMenuDispatcher.h"
#include "objects/frmMenu.h"
#include "platform/HtmlTextRange.h"
#include "platform/PageEvent.h"
#include "support/UserQuestions.h"

#include <QAction>
#include <QMenu>
#include <QTest>
#include <QTimer>

#include <functional>

namespace object_test {

// The page in edit mode, with right clicks going to the dispatcher the
// way the edit session sends them.
struct EditedPage
{
    document_test::Screen screen;
    std::unique_ptr<CDocument> doc;
    int menuEvents = 0;

    void open(const QString &path, const QByteArray &body)
    {
        doc = save_test::editPage(screen, path, body);
        QObject::connect(&screen.browser, &WebBrowser::pageEvent, &screen.browser, [this](const PageEvent &e) {
            if (e.type != QLatin1String("contextmenu"))
                return;
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
        for (int attempt = 0; attempt < 20; ++attempt) {
            sendRightClick(target, at);
            if (PageScriptCall::pumpUntil([&] { return menuEvents > before; }, 500))
                return true;
        }
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

// What the next menu showed and what was picked in it. The menu runs its
// own loop, so the pick is made from a timer that watches for it.
struct MenuPick
{
    bool shown = false;
    QStringList enabled;   // names of the enabled, visible items
    QStringList checked;
    QStringList hidden;

    // Picks the item when the menu shows; an empty name closes the menu.
    explicit MenuPick(const QString &item)
    {
        auto *poll = new QTimer;
        poll->setInterval(10);
        QObject::connect(poll, &QTimer::timeout, poll, [this, poll, item] {
            QMenu *menu = frmMenu::Shown();
            if (!menu || !menu->isVisible())
                return;
            poll->stop();
            poll->deleteLater();
            read(menu);
            QAction *action = menu->findChild<QAction *>(item);
            if (action && action->isEnabled() && action->isVisible() && menu->actions().contains(action))
                QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
            else
                menu->close();
        });
        poll->start();
        m_poll = poll;
    }
    ~MenuPick() { delete m_poll.data(); }

private:
    void read(QMenu *menu)
    {
        shown = true;
        for (QAction *a : menu->findChildren<QAction *>()) {
            if (a->objectName().isEmpty())
                continue;
            if (!a->isVisible())
                hidden.append(a->objectName());
            else if (a->isEnabled())
                enabled.append(a->objectName());
            if (a->isChecked())
                checked.append(a->objectName());
        }
    }
    QPointer<QTimer> m_poll;
};

} // namespace object_test
