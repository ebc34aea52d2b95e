#include "config/frmActivateSuccess.h"

#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QVBoxLayout>

namespace {
enum Text : long { txtActivation = 14601, txtComplete = 14627 };
}

frmActivateSuccess::frmActivateSuccess(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmActivateSuccess"));
    setWindowTitle(MResources::LoadResourceString(txtActivation));
    auto *column = new QVBoxLayout(this);
    auto *text = new QLabel(MResources::LoadResourceString(txtComplete), this);
    text->setWordWrap(true);
    column->addWidget(text);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    column->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
}

void frmActivateSuccess::Tell(QWidget *parent)
{
    UserQuestions::RunDialog(QStringLiteral("frmActivateSuccess"), MResources::LoadResourceString(txtComplete), [parent] {
        frmActivateSuccess form(parent);
        return static_cast<long>(form.exec());
    });
}
