#include "shell/EditKeyGuard.h"

#include "platform/WebBrowser.h"

#include <QApplication>
#include <QKeyEvent>

EditKeyGuard::EditKeyGuard(WebBrowser *browser, QObject *parent) : QObject(parent), m_browser(browser)
{
    qApp->installEventFilter(this);
}

EditKeyGuard::~EditKeyGuard()
{
    qApp->removeEventFilter(this);
}

void EditKeyGuard::registerTree(QWidget *tree, TreeKind kind)
{
    (kind == SiteTree ? m_siteTree : m_localTree) = tree;
    tree->installEventFilter(this);
    if (tree->hasFocus())
        TreeFocus(tree, true);
}

void EditKeyGuard::TreeFocus(QObject *watched, bool on)
{
    if (watched == m_siteTree)
        m_filter.setSiteTreeFocus(on);
    else if (watched == m_localTree)
        m_filter.setLocalTreeFocus(on);
}

// The key goes first to the widget that has the keyboard: the engine's
// widget inside the browser when the page has it.
bool EditKeyGuard::InBrowser(QObject *target) const
{
    auto *widget = qobject_cast<QWidget *>(target);
    return m_browser && widget && (widget == m_browser || m_browser->isAncestorOf(widget));
}

bool EditKeyGuard::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::FocusIn:
    case QEvent::FocusOut:
        TreeFocus(watched, event->type() == QEvent::FocusIn);
        break;
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
    case QEvent::KeyRelease: {
        const int key = static_cast<QKeyEvent *>(event)->key();
        const int code = key == Qt::Key_F5 ? PageKeyFilter::KeyF5 : key == Qt::Key_F11 ? PageKeyFilter::KeyF11 : 0;
        if (code && m_filter.swallows(code))
            return true;
        // The engine has no reload key of its own; the browser's F5 is ours.
        if (code == PageKeyFilter::KeyF5 && event->type() == QEvent::KeyPress && !editing() && InBrowser(watched)) {
            m_browser->Refresh();
            return true;
        }
        break;
    }
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}
