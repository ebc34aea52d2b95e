#include "support/MWait.h"

#include "support/frmWait.h"

#include <QWidget>

bool MWait::g_boolWaitCancelled = false;
QPointer<frmWait> MWait::s_dialog;

// The dialog's top-left corner lies a quarter of the parent's width and
// height inside it. The main window is not dimmed behind it: the dialog
// alone says that work is under way, and a translucent cover would hide the
// page the user is waiting for.
void MWait::Wait_Start(const QString &strText, QWidget *parent, const std::function<void()> &onCancel,
                       const QString &strExtraInfo)
{
    Wait_End();
    auto *dialog = new frmWait(parent);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->SetText(strText);
    dialog->EnableCancel(strExtraInfo.isEmpty());
    dialog->SetOnCancel([onCancel] {
        g_boolWaitCancelled = true;
        if (onCancel)
            onCancel();
    });
    if (parent) {
        const QRect frame = parent->geometry();
        dialog->setGeometry(frame.left() + frame.width() / 4, frame.top() + frame.height() / 4, DialogWidth,
                            DialogHeight);
    } else {
        dialog->resize(DialogWidth, DialogHeight);
    }
    dialog->show();
    s_dialog = dialog;
}

void MWait::Wait_Stopping(const QString &strText, QWidget *parent)
{
    if (!s_dialog) {
        Wait_Start(strText, parent, {}, QStringLiteral("stopping"));
        return;
    }
    s_dialog->SetText(strText);
    s_dialog->EnableCancel(false);
    s_dialog->show();
}

void MWait::EnableCancel(bool enabled)
{
    if (s_dialog)
        s_dialog->EnableCancel(enabled);
}

bool MWait::CancelEnabled()
{
    return s_dialog && s_dialog->CancelEnabled();
}

void MWait::Wait_End()
{
    if (s_dialog)
        s_dialog->close();
    s_dialog = nullptr;
}

frmWait *MWait::Current()
{
    return s_dialog;
}
