#include "transfer/frmTransferStatusEx.h"

#include "support/MResources.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
constexpr long txtCaption = 16010;
constexpr long txtCancel = 16017;
constexpr int kProgressMaximum = 100;
} // namespace

frmTransferStatusEx::frmTransferStatusEx(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmTransferStatusEx"));
    setWindowTitle(MResources::LoadResourceString(txtCaption));
    setModal(false);
    m_lblStatus = new QLabel(this);
    m_pgrProgress = new QProgressBar(this);
    m_pgrProgress->setObjectName(QStringLiteral("pgrProgress"));
    m_pgrProgress->setRange(0, kProgressMaximum);
    m_pgrProgress->setTextVisible(false);
    m_lblPercentage = new QLabel(this);
    m_lblPercentage->setObjectName(QStringLiteral("lblPercentage"));
    m_cmdCancel = new QPushButton(MResources::LoadResourceString(txtCancel), this);
    m_cmdCancel->setObjectName(QStringLiteral("cmdCancel"));

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_lblPercentage, 1);
    buttons->addWidget(m_cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_lblStatus);
    layout->addWidget(m_pgrProgress);
    layout->addLayout(buttons);
    setMinimumWidth(360);
    connect(m_cmdCancel, &QPushButton::clicked, this, [this] { OnCancelClicked(); });
}

void frmTransferStatusEx::InstallFactory()
{
    TransferStatusWindow::InstallFactory([] { return std::make_unique<frmTransferStatusEx>(); });
}

void frmTransferStatusEx::SetCaption(const QString &caption)
{
    setWindowTitle(caption);
}

void frmTransferStatusEx::SetStatusLine(const QString &line)
{
    m_lblStatus->setText(line);
}

void frmTransferStatusEx::SetPercentage(const QString &text)
{
    m_lblPercentage->setText(text);
}

int frmTransferStatusEx::ProgressMaximum() const
{
    return m_pgrProgress->maximum();
}

void frmTransferStatusEx::SetProgress(int value)
{
    m_pgrProgress->setValue(qBound(0, value, m_pgrProgress->maximum()));
}

// The window belongs to the main window, like the dialogs, so it stays on
// top of it and goes with it.
void frmTransferStatusEx::ShowWindow()
{
    QWidget *owner = QApplication::activeWindow();
    if (owner && owner != this && owner != parentWidget())
        setParent(owner, windowFlags() | Qt::Dialog);
    show();
}

void frmTransferStatusEx::HideWindow()
{
    hide();
}

bool frmTransferStatusEx::IsVisible() const
{
    return isVisible();
}

bool frmTransferStatusEx::CancelPressed() const
{
    return m_boolCancelPressed;
}

void frmTransferStatusEx::ClearCancelPressed()
{
    m_boolCancelPressed = false;
}

void frmTransferStatusEx::OnCancelClicked()
{
    m_boolCancelPressed = true;
    if (onCancel)
        onCancel();
}

// Closing the window by its frame is the same as Cancel: the transfer is
// not left running unseen.
void frmTransferStatusEx::closeEvent(QCloseEvent *event)
{
    event->ignore();
    OnCancelClicked();
}
