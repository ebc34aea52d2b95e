#pragma once

#include "transfer/TransferStatusWindow.h"

#include <QDialog>

class QLabel;
class QProgressBar;
class QPushButton;

// The transfer status window: a caption, a line of how much has gone, a
// progress bar, the percentage and Cancel. It shows itself without taking
// the input away from the transfer, whose blocking call keeps the events
// flowing, so Cancel is pressed while the data still move.
class frmTransferStatusEx : public QDialog, public TransferStatusWindow
{
    Q_OBJECT

public:
    explicit frmTransferStatusEx(QWidget *parent = nullptr);

    // Makes every CFTPS from now on get a window of this kind; called once
    // by the program at start.
    static void InstallFactory();

    void SetCaption(const QString &caption) override;
    void SetStatusLine(const QString &line) override;
    void SetPercentage(const QString &text) override;
    int ProgressMaximum() const override;
    void SetProgress(int value) override;
    void ShowWindow() override;
    void HideWindow() override;
    bool IsVisible() const override;
    bool CancelPressed() const override;
    void ClearCancelPressed() override;

    QPushButton *CancelButton() const { return m_cmdCancel; }

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void OnCancelClicked();

    QLabel *m_lblStatus = nullptr;
    QProgressBar *m_pgrProgress = nullptr;
    QLabel *m_lblPercentage = nullptr;
    QPushButton *m_cmdCancel = nullptr;
    bool m_boolCancelPressed = false;
};
