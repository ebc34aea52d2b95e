#include "config/CSettingsFileDropTarget.h"

#include "config/CSettingsFileDrop.h"
#include "support/MError.h"
#include "support/UserQuestions.h"

#include <QApplication>
#include <QDropEvent>
#include <QWidget>

CSettingsFileDropTarget::CSettingsFileDropTarget(QWidget *window, std::function<void(const QString &)> navigate)
    : QObject(window)
    , m_window(window)
    , m_navigate(std::move(navigate))
{
    m_window->setAcceptDrops(true);
    // The page's own widgets take drops before the window sees them, so the
    // filter sits on the application and picks out the window's share.
    qApp->installEventFilter(this);
}

bool CSettingsFileDropTarget::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop)
        return false;
    auto *widget = qobject_cast<QWidget *>(watched);
    if (!widget || (widget != m_window && !m_window->isAncestorOf(widget)))
        return false;
    auto *drop = static_cast<QDropEvent *>(event);
    const bool taken = widget == m_window ? CSettingsFileDrop::Acceptable(drop->mimeData())
                                          : CSettingsFileDrop::CarriesSettingsFile(drop->mimeData());
    if (!taken)
        return false;
    drop->acceptProposedAction();
    if (type == QEvent::Drop)
        Drop(drop);
    return true;
}

void CSettingsFileDropTarget::Drop(QDropEvent *event)
{
    QString address;
    if (!CSettingsFileDrop::ApplyMime(event->mimeData(), address)) {
        // Until the error dialog exists, the failure is told in a message box.
        UserQuestions::MsgBox(MError::ErrorDescription(), UserQuestions::vbCritical, m_window->windowTitle());
        MError::ClearError();
    } else if (!address.isEmpty() && m_navigate) {
        m_navigate(address);
    }
}
