#pragma once

#include <QPointer>
#include <QString>

#include <functional>

class QWidget;
class frmWait;

// The wait dialog of the long steps: one at a time, placed over the window
// it waits for. A press of its Cancel sets g_boolWaitCancelled and runs the
// given action, which the running work sees at its next check.
class MWait
{
public:
    static constexpr int DialogWidth = 300;
    static constexpr int DialogHeight = 70;

    // Cancel is enabled only when strExtraInfo is empty (the save passes a
    // text, as a half-done save cannot be taken back).
    static void Wait_Start(const QString &strText, QWidget *parent, const std::function<void()> &onCancel,
                           const QString &strExtraInfo);
    static void Wait_End();

    // The dialog now shown, or null.
    static frmWait *Current();

    static bool g_boolWaitCancelled;

private:
    static QPointer<frmWait> s_dialog;
};
