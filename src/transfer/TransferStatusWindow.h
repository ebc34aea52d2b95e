#pragma once

#include <QString>

#include <functional>
#include <memory>

// What the transfer client needs of its status window. The client lives in
// the core library, without widgets; the GUI library installs a factory at
// start (frmTransferStatusEx::InstallFactory) that makes the real dialog.
// Without a factory, as in programs and tests without a display, a client
// simply has no window and transfers run unseen.
class TransferStatusWindow
{
public:
    using Factory = std::function<std::unique_ptr<TransferStatusWindow>()>;

    virtual ~TransferStatusWindow() = default;

    virtual void SetCaption(const QString &caption) = 0;
    virtual void SetStatusLine(const QString &line) = 0;
    virtual void SetPercentage(const QString &text) = 0;
    virtual int ProgressMaximum() const = 0;
    virtual void SetProgress(int value) = 0;
    virtual void ShowWindow() = 0;
    virtual void HideWindow() = 0;
    virtual bool IsVisible() const = 0;

    // The window remembers that its Cancel was pressed until this clears it.
    virtual bool CancelPressed() const = 0;
    virtual void ClearCancelPressed() = 0;

    // The Cancel event: called from inside the running transfer's message
    // pumping when the user presses Cancel.
    std::function<void()> onCancel;

    static void InstallFactory(Factory factory);
    // A new window, or null when no factory is installed.
    static std::unique_ptr<TransferStatusWindow> Create();
};
