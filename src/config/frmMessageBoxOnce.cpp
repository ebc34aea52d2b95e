#include "config/frmMessageBoxOnce.h"

#include "platform/CReg.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
const QString kSection = QStringLiteral("environment");
}

frmMessageBoxOnce::frmMessageBoxOnce(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmMessageBoxOnce"));
    auto *column = new QVBoxLayout(this);
    m_lblMessage = new QLabel(this);
    m_lblMessage->setWordWrap(true);
    column->addWidget(m_lblMessage);
    m_chkShowOnlyOnce = new QCheckBox(MResources::LoadResourceString(13000), this);
    m_chkShowOnlyOnce->setObjectName(QStringLiteral("ChkShowOnlyOnce"));
    column->addWidget(m_chkShowOnlyOnce);
    m_buttons = new QHBoxLayout;
    m_buttons->addStretch(1);
    column->addLayout(m_buttons);
    connect(m_chkShowOnlyOnce, &QCheckBox::clicked, this, &frmMessageBoxOnce::ChkShowOnlyOnce_Click);
}

void frmMessageBoxOnce::init(const QString &strMessage_p, const QString &strMessageBoxTitle_p,
                             const QString &strMessageBoxName_p, bool &boolDontShow)
{
    m_lblMessage->setText(strMessage_p);
    setWindowTitle(strMessageBoxTitle_p);
    m_strName = strMessageBoxName_p;
    boolDontShow = !CReg::GetSetting(kSection, m_strName).isEmpty();
    m_chkShowOnlyOnce->setChecked(boolDontShow);
}

void frmMessageBoxOnce::ChkShowOnlyOnce_Click()
{
    CReg::SaveSetting(kSection, m_strName,
                      m_chkShowOnlyOnce->isChecked() ? QStringLiteral("1") : QString());
}

void frmMessageBoxOnce::AddAnswerButton(const QString &caption, long answer)
{
    auto *button = new QPushButton(caption, this);
    m_buttons->addWidget(button);
    connect(button, &QPushButton::clicked, this, [this, answer] {
        m_lAnswer = answer;
        accept();
    });
}

long frmMessageBoxOnce::ShowDialog(frmMessageBoxOnce &form, const QString &strMessage_p,
                                   const QString &strMessageBoxTitle_p, const QString &strMessageBoxName_p,
                                   long lClosedAnswer_p)
{
    bool dontShow = false;
    form.init(strMessage_p, strMessageBoxTitle_p, strMessageBoxName_p, dontShow);
    if (dontShow)
        return 0;
    return UserQuestions::RunDialog(form.objectName(), strMessage_p, [&form, lClosedAnswer_p] {
        form.exec();
        return form.Answer() != 0 ? form.Answer() : lClosedAnswer_p;
    });
}

long frmMessageBoxOnce::Show(const QString &strMessage_p, const QString &strMessageBoxTitle_p,
                             const QString &strMessageBoxName_p, QWidget *parent)
{
    frmMessageBoxOnce form(parent);
    form.AddAnswerButton(MResources::LoadResourceString(13011), UserQuestions::vbOK);
    // Closing the window by its frame counts as OK, as for any message.
    return ShowDialog(form, strMessage_p, strMessageBoxTitle_p, strMessageBoxName_p, UserQuestions::vbOK);
}
