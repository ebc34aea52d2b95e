#include "config/frmProxyExtraInfo.h"

#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
enum Text : long { txtCaption = 15016, txtClose = 15053 };
}

frmProxyExtraInfo::frmProxyExtraInfo(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmProxyExtraInfo"));
    setWindowTitle(MResources::LoadResourceString(txtCaption));
    auto *column = new QVBoxLayout(this);
    txtNetInfo = new QPlainTextEdit(this);
    txtNetInfo->setObjectName(QStringLiteral("txtNetInfo"));
    txtNetInfo->setReadOnly(true);
    column->addWidget(txtNetInfo);
    auto *cmdClose = new QPushButton(MResources::LoadResourceString(txtClose), this);
    cmdClose->setObjectName(QStringLiteral("cmdClose"));
    column->addWidget(cmdClose, 0, Qt::AlignRight);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::accept);
    resize(560, 360);
}

void frmProxyExtraInfo::SetInfoText(const QString &strInfoTxt_p)
{
    txtNetInfo->setPlainText(strInfoTxt_p);
}

void frmProxyExtraInfo::Show(QWidget *parent, const QString &strInfoTxt_p)
{
    UserQuestions::RunDialog(QStringLiteral("frmProxyExtraInfo"), strInfoTxt_p, [parent, strInfoTxt_p] {
        frmProxyExtraInfo form(parent);
        form.SetInfoText(strInfoTxt_p);
        return static_cast<long>(form.exec());
    });
}
