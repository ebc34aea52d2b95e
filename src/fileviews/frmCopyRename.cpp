#include "fileviews/frmCopyRename.h"

#include "fileviews/FileNameRules.h"
#include "fileviews/FolderFileNames.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
constexpr long txtTitle = 20019, txtLabel = 20020, txtSyntaxCheck = 20004, txtSyntaxTip = 20005,
               txtExistsContinue = 20021, txtWarning = 20022, txtOk = 14624, txtCancel = 14625;

QString L(long id)
{
    return MResources::LoadResourceString(id);
}
} // namespace

frmCopyRename::frmCopyRename(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmCopyRename"));
    setWindowTitle(L(txtTitle));
    setModal(true);
    lblNewFileName = new QLabel(L(txtLabel), this);
    lblNewFileName->setWordWrap(true);
    txtNewFileName = new QLineEdit(this);
    txtNewFileName->setObjectName(QStringLiteral("txtNewFileName"));
    ChkNoSpellcontrol = new QCheckBox(L(txtSyntaxCheck), this);
    ChkNoSpellcontrol->setObjectName(QStringLiteral("ChkNoSpellcontrol"));
    ChkNoSpellcontrol->setToolTip(L(txtSyntaxTip));
    // On at the start: a name every server takes is the safe default, and
    // the user can still switch it off for a name he knows his server takes.
    ChkNoSpellcontrol->setChecked(true);
    cmdOk = new QPushButton(L(txtOk), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdOk->setDefault(true);
    cmdCancel = new QPushButton(L(txtCancel), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(ChkNoSpellcontrol);
    buttons->addStretch();
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lblNewFileName);
    layout->addWidget(txtNewFileName);
    layout->addLayout(buttons);
    connect(txtNewFileName, &QLineEdit::textChanged, this, &frmCopyRename::txtNewFileName_Change);
    connect(ChkNoSpellcontrol, &QCheckBox::toggled, this, &frmCopyRename::txtNewFileName_Change);
    connect(cmdOk, &QPushButton::clicked, this, &frmCopyRename::cmdOk_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmCopyRename::cmdCancel_Click);
    txtNewFileName_Change();
}

long frmCopyRename::init(const QString &strCurrentFolder_p, const QString &strAction_p)
{
    m_strAction = strAction_p;
    m_astrFiles = FolderFileNames::getFilesInThisFolder(strCurrentFolder_p, QStringLiteral("frmCopyRename.init"));
    return 1;
}

void frmCopyRename::SetLabel(const QString &strLabel_p)
{
    lblNewFileName->setText(strLabel_p);
}

void frmCopyRename::SetText(const QString &strText_p)
{
    txtNewFileName->setText(strText_p);
    txtNewFileName->selectAll();
}

QString frmCopyRename::GetText() const
{
    return txtNewFileName->text();
}

bool frmCopyRename::CheckFileNameFinal(const QString &strName_p) const
{
    return m_astrFiles.contains(strName_p);
}

void frmCopyRename::txtNewFileName_Change()
{
    const bool valid = !ChkNoSpellcontrol->isChecked()
                       || FileNameRules::CheckFileName(txtNewFileName->text(), FileNameRules::Dialog::CopyRename);
    MarkName(txtNewFileName, valid);
    cmdOk->setEnabled(valid);
}

void frmCopyRename::MarkName(QLineEdit *box_p, bool boolValid_p)
{
    QPalette palette = box_p->palette();
    palette.setColor(QPalette::Text, boolValid_p ? QColor(0, 0, 0) : QColor(255, 0, 0));
    box_p->setPalette(palette);
}

void frmCopyRename::cmdOk_Click()
{
    if (m_strAction != QLatin1String("copy2") && CheckFileNameFinal(GetText())
        && UserQuestions::MsgBox(L(txtExistsContinue), UserQuestions::vbYesNo, L(txtWarning)) != UserQuestions::vbYes)
        return;
    m_boolCancelled = false;
    accept();
}

void frmCopyRename::cmdCancel_Click()
{
    m_boolCancelled = true;
    reject();
}
