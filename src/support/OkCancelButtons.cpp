#include "support/OkCancelButtons.h"

#include <QBoxLayout>
#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>

QDialogButtonBox *OkCancelButtons::Add(QDialog *dialog, QBoxLayout *layout, const std::function<void()> &onOk)
{
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, dialog);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdOk"));
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdAbort"));
    if (onOk)
        QObject::connect(buttons, &QDialogButtonBox::accepted, dialog, onOk);
    else
        QObject::connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    layout->addWidget(buttons);
    return buttons;
}
