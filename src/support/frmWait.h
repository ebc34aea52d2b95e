#pragma once

#include <QDialog>

#include <functional>

class QLabel;
class QPushButton;

// The small window that stands over the main window while a long step of
// the edit session runs: one line of text and a Cancel button. It is shown
// without a modal loop of its own, so the work that opened it goes on and
// its own waits let a press of Cancel in.
class frmWait : public QDialog
{
    Q_OBJECT

public:
    explicit frmWait(QWidget *parent = nullptr);

    void SetText(const QString &text);
    // Cancel is offered only to work that can stop half-way.
    void EnableCancel(bool enabled);
    bool CancelEnabled() const;
    void SetOnCancel(std::function<void()> onCancel) { m_onCancel = std::move(onCancel); }

    QPushButton *CancelButton() const { return cmdCancel; }

private:
    void cmdCancel_Click();

    QLabel *lblText = nullptr;
    QPushButton *cmdCancel = nullptr;
    std::function<void()> m_onCancel;
};
