#include "platform/PageKeyFilter.h"

#include <QKeyEvent>

bool PageKeyFilter::swallows(int keyCode) const
{
    if (!m_editing)
        return false;
    if (keyCode == KeyF11)
        return true;
    return keyCode == KeyF5 && !m_siteTreeFocus && !m_localTreeFocus;
}

bool PageKeyFilter::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease
        || event->type() == QEvent::ShortcutOverride) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        const int code = key == Qt::Key_F5 ? KeyF5 : key == Qt::Key_F11 ? KeyF11 : 0;
        if (code && swallows(code))
            return true;
    }
    return QObject::eventFilter(watched, event);
}
