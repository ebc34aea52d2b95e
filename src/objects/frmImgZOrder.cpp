#include "objects/frmImgZOrder.h"

#include "support/OkCancelButtons.h"
#include "support/MResources.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace {
enum Text : long { txtZIndex = 17834, txtZIndexLabel = 17816, txtHelp = 17817, txtNotSelected = 17818 };
// Far beyond what a page stacks, and inside what every browser takes.
constexpr int kLimit = 99999;
} // namespace

frmImgZOrder::frmImgZOrder(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmImgZOrder"));
    setWindowTitle(MResources::LoadResourceString(txtZIndex));
    auto *layout = new QVBoxLayout(this);
    auto *help = new QLabel(MResources::LoadResourceString(txtHelp), this);
    help->setWordWrap(true);
    layout->addWidget(help);
    layout->addWidget(new QLabel(MResources::LoadResourceString(txtZIndexLabel), this));
    txtZOrder = new QSpinBox(this);
    txtZOrder->setObjectName(QStringLiteral("txtZOrder"));
    txtZOrder->setRange(-kLimit - 1, kLimit);
    txtZOrder->setSpecialValueText(MResources::LoadResourceString(txtNotSelected));
    layout->addWidget(txtZOrder);
    OkCancelButtons::Add(this, layout);
}

void frmImgZOrder::LetImgZOrder(const QString &strValue_p)
{
    bool number = false;
    const int value = strValue_p.trimmed().toInt(&number);
    txtZOrder->setValue(number ? value : txtZOrder->minimum());
}

QString frmImgZOrder::GetImgZOrder() const
{
    return txtZOrder->value() == txtZOrder->minimum() ? QString() : QString::number(txtZOrder->value());
}

long frmImgZOrder::Show()
{
    return exec() == QDialog::Accepted ? 1 : -1;
}
