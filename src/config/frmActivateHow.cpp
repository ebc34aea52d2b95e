#include "config/frmActivateHow.h"

#include "config/SiteActivation.h"
#include "config/frmActivateSuccess.h"
#include "support/MError.h"
#include "support/MResources.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace {
enum Text : long {
    txtWait = 14600, txtActivation = 14601, txtAutomaticActivation = 14602, txtAutomatic = 14603,
    txtManualActivation = 14604, txtManual = 14623, txtOk = 14624, txtCancel = 14625, txtComplete = 14627
};

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

QPushButton *button(QWidget *parent, const char *name, long text)
{
    auto *b = new QPushButton(L(text), parent);
    b->setObjectName(QString::fromLatin1(name));
    return b;
}
} // namespace

frmActivateHow::frmActivateHow(long lIndex_p, QWidget *parent) : QDialog(parent), m_lIndex(lIndex_p)
{
    setObjectName(QStringLiteral("frmActivateHow"));
    setWindowTitle(L(txtActivation));
    auto *column = new QVBoxLayout(this);
    fmeAutomatic = new QGroupBox(L(txtAutomaticActivation), this);
    auto *automatic = new QVBoxLayout(fmeAutomatic);
    cmdAutoActivate = button(fmeAutomatic, "cmdAutoActivate", txtAutomatic);
    lblAutomaticActivateInfo = new QLabel(fmeAutomatic);
    lblAutomaticActivateInfo->setObjectName(QStringLiteral("lblAutomaticActivateInfo"));
    lblAutomaticActivateInfo->setWordWrap(true);
    lblWait = new QLabel(L(txtWait), fmeAutomatic);
    lblWait->setObjectName(QStringLiteral("lblWait"));
    lblWait->hide();
    automatic->addWidget(cmdAutoActivate);
    automatic->addWidget(lblWait);
    automatic->addWidget(lblAutomaticActivateInfo);
    fmeManual = new QGroupBox(L(txtManualActivation), this);
    auto *manual = new QVBoxLayout(fmeManual);
    cmdForceActivate = button(fmeManual, "cmdForceActivate", txtManual);
    lblManualActivateInfo = new QLabel(fmeManual);
    lblManualActivateInfo->setObjectName(QStringLiteral("lblManualActivateInfo"));
    lblManualActivateInfo->setWordWrap(true);
    manual->addWidget(cmdForceActivate);
    manual->addWidget(lblManualActivateInfo);
    imgOK = new QLabel(this);
    imgOK->setPixmap(style()->standardIcon(QStyle::SP_DialogApplyButton).pixmap(32));
    imgOK->hide();
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(imgOK);
    buttons->addStretch(1);
    cmdOk = button(this, "cmdOk", txtOk);
    cmdCancel = button(this, "cmdCancel", txtCancel);
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdCancel);
    column->addWidget(fmeAutomatic);
    column->addWidget(fmeManual);
    column->addLayout(buttons);
    connect(cmdAutoActivate, &QPushButton::clicked, this, &frmActivateHow::cmdAutoActivate_Click);
    connect(cmdForceActivate, &QPushButton::clicked, this, &frmActivateHow::cmdForceActivate_Click);
    connect(cmdOk, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdCancel, &QPushButton::clicked, this, &frmActivateHow::reject);
}

frmActivateHow::~frmActivateHow() = default;

long frmActivateHow::IsChange(bool &boolIsChanged_p) const
{
    boolIsChanged_p = m_boolChanged;
    return 1;
}

// While a run is under way the frame shows its steps, and Cancel stops it
// (the page being tried goes back first); the window can't be closed
// under it.
void frmActivateHow::Running(bool boolRunning_p)
{
    cmdAutoActivate->setEnabled(!boolRunning_p);
    cmdForceActivate->setEnabled(!boolRunning_p);
    cmdOk->setEnabled(!boolRunning_p);
    lblWait->setText(L(txtWait));
    lblWait->setVisible(boolRunning_p);
    if (!boolRunning_p)
        lblAutomaticActivateInfo->clear();
}

void frmActivateHow::cmdAutoActivate_Click()
{
    MError::ClearError();
    m_run = std::make_unique<SiteActivation>(m_lIndex);
    m_run->onProgress = [this](const QString &step) { lblAutomaticActivateInfo->setText(step); };
    Running(true);
    const long result = m_run->Run();
    m_boolChanged = m_boolChanged || m_run->IsChange();
    m_run.reset();
    Running(false);
    if (result == SiteActivation::Activated) {
        m_boolActivated = true;
        lblWait->setText(QStringLiteral("OK"));
        frmActivateSuccess::Tell(this);
        accept();
    } else if (result == SiteActivation::Failed) {
        MError::ShowError();
    }
}

void frmActivateHow::ShowDone(QGroupBox *frame, QLabel *label)
{
    frame->setVisible(true);
    label->setText(L(txtComplete));
    imgOK->show();
    cmdOk->show();
}

void frmActivateHow::cmdForceActivate_Click()
{
    SiteActivation::Manual(m_lIndex);
    m_boolActivated = true;
    m_boolChanged = true;
    fmeAutomatic->hide();
    cmdForceActivate->hide();
    ShowDone(fmeManual, lblManualActivateInfo);
}

void frmActivateHow::reject()
{
    if (m_run) {
        m_run->Cancel();
        return;
    }
    QDialog::reject();
}
