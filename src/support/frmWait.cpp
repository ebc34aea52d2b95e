#include "support/frmWait.h"

#include "support/MResources.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace {
constexpr long kCancelCaption = 13012;
}

frmWait::frmWait(QWidget *parent)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint)
{
    setObjectName(QStringLiteral("frmWait"));
    auto *row = new QHBoxLayout(this);
    lblText = new QLabel(this);
    lblText->setObjectName(QStringLiteral("lblText"));
    row->addWidget(lblText, 1);
    cmdCancel = new QPushButton(MResources::LoadResourceString(kCancelCaption), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdCancel->setAutoDefault(false);
    row->addWidget(cmdCancel);
    connect(cmdCancel, &QPushButton::clicked, this, &frmWait::cmdCancel_Click);
}

void frmWait::SetText(const QString &text)
{
    lblText->setText(text);
    setWindowTitle(text);
}

void frmWait::EnableCancel(bool enabled)
{
    cmdCancel->setEnabled(enabled);
}

bool frmWait::CancelEnabled() const
{
    return cmdCancel->isEnabled();
}

// The dialog goes away first: what the cancel runs may ask the user
// something, and that question must not stand behind this window.
void frmWait::cmdCancel_Click()
{
    hide();
    if (m_onCancel)
        m_onCancel();
}
