#include "objects/frmBookMarkSettings.h"

#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

enum Text : long {
    txtOK = 13011, txtCancel = 13012, txtName = 17833, txtTitle = 18814, txtInsert = 18815, txtNeedsName = 18816,
    txtHelp = 18827
};

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

} // namespace

frmBookMarkSettings::frmBookMarkSettings(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmBookMarkSettings"));
    setWindowTitle(L(txtTitle));
    auto *column = new QVBoxLayout(this);
    column->addWidget(new QLabel(L(txtInsert), this));
    auto *row = new QHBoxLayout;
    row->addWidget(new QLabel(L(txtName), this));
    txtBookMarkName = new QLineEdit(this);
    txtBookMarkName->setObjectName(QStringLiteral("txtBookMarkName"));
    row->addWidget(txtBookMarkName, 1);
    column->addLayout(row);
    auto *help = new QLabel(L(txtHelp), this);
    help->setObjectName(QStringLiteral("lblHelp"));
    help->setWordWrap(true);
    column->addWidget(help);
    auto *buttons = new QHBoxLayout;
    auto *ok = new QPushButton(L(txtOK), this);
    ok->setObjectName(QStringLiteral("OKButton"));
    ok->setDefault(true);
    auto *cancel = new QPushButton(L(txtCancel), this);
    cancel->setObjectName(QStringLiteral("CancelButton"));
    buttons->addStretch(1);
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    column->addLayout(buttons);
    connect(ok, &QPushButton::clicked, this, &frmBookMarkSettings::OKButton_Click);
    connect(cancel, &QPushButton::clicked, this, &frmBookMarkSettings::CancelButton_Click);
}

QString frmBookMarkSettings::BookMarkName() const
{
    return txtBookMarkName->text().trimmed();
}

void frmBookMarkSettings::SetBookMarkName(const QString &strName_p)
{
    txtBookMarkName->setText(strName_p);
}

long frmBookMarkSettings::Show()
{
    if (exec() != QDialog::Accepted)
        txtBookMarkName->clear();
    return BookMarkName().isEmpty() ? -1 : 1;
}

void frmBookMarkSettings::OKButton_Click()
{
    if (BookMarkName().isEmpty()) {
        UserQuestions::MsgBox(L(txtNeedsName), UserQuestions::vbExclamation, L(txtTitle));
        return;
    }
    accept();
}

void frmBookMarkSettings::CancelButton_Click()
{
    txtBookMarkName->clear();
    reject();
}
