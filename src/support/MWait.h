#pragma once

#include <QPointer>
#include <QString>

#include <functional>

class QWidget;
class frmWait;

// The wait dialog of the long steps: one at a time, placed over the window
// it waits for. A press of its Cancel sets g_boolWaitCancelled and runs the
// given action, which ends the network call under way and leaves a flag
// that the running work sees at its next check.
class MWait
{
public:
    static constexpr int DialogWidth = 300;
    static constexpr int DialogHeight = 70;

    // Cancel is enabled only when strExtraInfo is empty.
    static void Wait_Start(const QString &strText, QWidget *parent, const std::function<void()> &onCancel,
                           const QString &strExtraInfo);
    // The step was cancelled, and what is left of it puts the server back
    // in order: the dialog (a new one over parent when none is shown) stays
    // up with this text until Wait_End, and offers no Cancel, as cutting
    // that part short could leave the site broken.
    static void Wait_Stopping(const QString &strText, QWidget *parent);
    // Offers or withdraws the Cancel of the dialog now shown, if any.
    static void EnableCancel(bool enabled);
    static bool CancelEnabled();
    static void Wait_End();

    // The dialog now shown, or null.
    static frmWait *Current();

    static bool g_boolWaitCancelled;

private:
    static QPointer<frmWait> s_dialog;
};
