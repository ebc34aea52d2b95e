#include "fileviews/frmAddPageWizard.h"

#include "fileviews/FileNameRules.h"
#include "fileviews/FolderFileNames.h"
#include "fileviews/frmCopyRename.h"
#include "fileviews/SiteTreeKeys.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace {
constexpr long txtCaption0 = 20000, txtTitle = 20006, txtFolderIs = 20007, txtNextForTitle = 20008,
               txtEnterTitle = 20009, txtTitleTip = 20010, txtNextForName = 20011, txtEnterName = 20012,
               txtTipSpaces = 20013, txtTipRed = 20014, txtNextContinue = 20015, txtCreated = 20016,
               txtLinkHint = 20017, txtExists = 20018, txtPrevious = 20028, txtNext = 20029, txtFinish = 20030,
               txtCancel = 14625;

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

QLabel *Text(long id)
{
    auto *label = new QLabel(L(id));
    label->setWordWrap(true);
    return label;
}
} // namespace

frmAddPageWizard::frmAddPageWizard(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmAddPageWizard"));
    setWindowTitle(L(txtTitle));
    setModal(true);
    lblDocPath = new QLabel;
    txtDocTitle = new QLineEdit;
    txtDocTitle->setObjectName(QStringLiteral("txtDocTitle"));
    txtDocTitle->setToolTip(L(txtTitleTip));
    txtFileName = new QLineEdit;
    txtFileName->setObjectName(QStringLiteral("txtFileName"));
    lblDocAbsolutePath = new QLabel;
    lblDocAbsolutePath->setObjectName(QStringLiteral("lblDocAbsolutePath"));
    Frame1 = new QStackedWidget(this);
    Frame1->addWidget(BuildStep(0, {Text(txtFolderIs), lblDocPath, Text(txtNextForTitle)}));
    Frame1->addWidget(BuildStep(1, {Text(txtEnterTitle), txtDocTitle, Text(txtNextForName)}));
    Frame1->addWidget(BuildStep(2, {Text(txtEnterName), txtFileName, Text(txtTipSpaces), Text(txtTipRed),
                                    Text(txtNextContinue)}));
    Frame1->addWidget(BuildStep(3, {Text(txtCreated), lblDocAbsolutePath, Text(txtLinkHint)}));
    m_lblCaption = new QLabel(this);
    QFont bold = m_lblCaption->font();
    bold.setBold(true);
    m_lblCaption->setFont(bold);
    cmdPrevius = new QPushButton(L(txtPrevious), this);
    cmdNext = new QPushButton(L(txtNext), this);
    cmdCancel = new QPushButton(L(txtCancel), this);
    cmdOk = new QPushButton(L(txtFinish), this);
    for (auto [button, name] : {std::pair{cmdPrevius, "cmdPrevius"}, {cmdNext, "cmdNext"}, {cmdCancel, "cmdCancel"},
                                {cmdOk, "cmdOk"}})
        button->setObjectName(QString::fromLatin1(name));
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    for (QPushButton *button : {cmdPrevius, cmdNext, cmdCancel, cmdOk})
        buttons->addWidget(button);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_lblCaption);
    layout->addWidget(Frame1);
    layout->addLayout(buttons);
    connect(cmdNext, &QPushButton::clicked, this, &frmAddPageWizard::cmdNext_Click);
    connect(cmdPrevius, &QPushButton::clicked, this, &frmAddPageWizard::cmdPrevius_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(cmdOk, &QPushButton::clicked, this, [this] {
        m_boolCancelled = false;
        accept();
    });
    connect(txtFileName, &QLineEdit::textChanged, this, &frmAddPageWizard::txtFileName_Change);
    ShowStep(0);
}

QWidget *frmAddPageWizard::BuildStep(int caption, const QList<QWidget *> &content)
{
    auto *frame = new QWidget;
    frame->setProperty("caption", L(txtCaption0 + caption));
    auto *layout = new QVBoxLayout(frame);
    for (QWidget *widget : content)
        layout->addWidget(widget);
    layout->addStretch();
    return frame;
}

long frmAddPageWizard::init(const QString &strCurrentFolder_p)
{
    lblDocPath->setText(strCurrentFolder_p);
    m_astrFiles = FolderFileNames::getFilesInThisFolder(
        SiteTreeKeys::FolderAddress(strCurrentFolder_p, SiteTreeKeys::CurrentRootKey()),
        QStringLiteral("frmAddPageWizard.init"));
    return 1;
}

QString frmAddPageWizard::GetTitle() const
{
    return txtDocTitle->text();
}

QString frmAddPageWizard::GetFileName() const
{
    return txtFileName->text();
}

void frmAddPageWizard::ShowStep(int step)
{
    m_nStep = step;
    Frame1->setCurrentIndex(step);
    m_lblCaption->setText(Frame1->currentWidget()->property("caption").toString());
    cmdPrevius->setEnabled(step > 0);
    cmdOk->setEnabled(step == 3);
    if (step == 1)
        txtDocTitle->setFocus();
    if (step == 2) {
        txtFileName->setFocus();
        txtFileName_Change();
    }
}

bool frmAddPageWizard::CheckFileNameFinal()
{
    txtFileName->setText(FileNameRules::MendPageName(txtFileName->text()));
    return m_astrFiles.contains(txtFileName->text());
}

void frmAddPageWizard::cmdNext_Click()
{
    if (m_nStep < 2) {
        ShowStep(m_nStep + 1);
        return;
    }
    if (m_nStep != 2)
        return;
    if (CheckFileNameFinal()
        && UserQuestions::MsgBox(L(txtExists), UserQuestions::vbOKCancel, L(txtTitle)) != UserQuestions::vbOK)
        return;
    ShowStep(3);
    cmdNext->setEnabled(false);
    lblDocAbsolutePath->setText(lblDocPath->text() + QLatin1Char('/') + txtFileName->text());
    QGuiApplication::clipboard()->setText(lblDocAbsolutePath->text());
}

void frmAddPageWizard::cmdPrevius_Click()
{
    if (m_nStep == 0)
        return;
    ShowStep(m_nStep - 1);
    cmdNext->setEnabled(true);
}

void frmAddPageWizard::txtFileName_Change()
{
    const bool valid = FileNameRules::CheckFileName(txtFileName->text(), FileNameRules::Dialog::AddPageWizard);
    frmCopyRename::MarkName(txtFileName, valid);
    if (m_nStep == 2)
        cmdNext->setEnabled(valid);
}
