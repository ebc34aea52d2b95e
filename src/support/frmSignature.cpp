#include "support/frmSignature.h"

#include "support/MResources.h"
#include "support/StringIds.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

frmSignature::frmSignature(QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(MResources::LoadResourceString(StringIds::SignatureTitle));
    auto *column = new QVBoxLayout(this);
    lblSignature = new QLabel(MResources::LoadResourceString(StringIds::SignatureExplanation), this);
    lblSignature->setWordWrap(true);
    txtSignature = new QLineEdit(this);
    cmdOk = new QPushButton(MResources::LoadResourceString(StringIds::OkButton), this);
    cmdOk->setDefault(true);
    column->addWidget(lblSignature);
    column->addWidget(txtSignature);
    column->addWidget(cmdOk, 0, Qt::AlignRight);
    connect(cmdOk, &QPushButton::clicked, this, &QDialog::accept);
}

QString frmSignature::GetSignature() const
{
    return txtSignature->text();
}
