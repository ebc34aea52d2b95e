#include "objects/frmLinkDialog.h"

#include "document/CDocEventHandler.h"
#include "fileviews/frmSiteTree2.h"
#include "objects/FragmentAddresses.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

enum Text : long {
    txtOK = 13011, txtCancel = 13012, txtAddress = 18800, txtNewWindow = 18801, txtFrameName = 18805,
    txtAltText = 18806, txtShowAdvanced = 18807, txtHideAdvanced = 18808, txtCreateNew = 18809,
    txtCreateEdit = 18810, txtHelpJava = 18811, txtHelpPic = 18812, txtHelpLayers = 18813, txtBrowse = 18821,
    txtCopyScript = 18831, txtHelp = 18832, txtScripts = 18833, txtHelpMM = 18834, txtHelpChangePic = 18835,
    txtHelpShowHide = 18836
};

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

const QString kVoid = QStringLiteral("javascript:void(0);");

const QStringList &ScriptLines()
{
    static const QStringList lines = {kVoid,
                                      QStringLiteral("MM_swapImgRestore();"),
                                      QStringLiteral("MM_preloadImages();"),
                                      QStringLiteral("MM_swapImage();"),
                                      QStringLiteral("MM_openBrWindow(theURL,winName,features);"),
                                      QStringLiteral("showLayers();"),
                                      QStringLiteral("hideLayers();"),
                                      QStringLiteral("changePic();")};
    return lines;
}

const QStringList &Targets()
{
    static const QStringList targets = {QStringLiteral("_new"), QStringLiteral("_top"), QStringLiteral("_self")};
    return targets;
}

} // namespace

const QStringList &frmLinkDialog::ExtraProperties()
{
    static const QStringList names = {QStringLiteral("onmouseover"), QStringLiteral("onmousedown"),
                                      QStringLiteral("onmouseout"),  QStringLiteral("onmousemove"),
                                      QStringLiteral("onclick"),     QStringLiteral("Name")};
    return names;
}

frmLinkDialog::frmLinkDialog(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmLinkDialog"));
    setWindowTitle(L(txtCreateNew));
    auto *column = new QVBoxLayout(this);
    BuildAddress(column);
    BuildTarget(column);
    BuildAdvanced(column);
    auto *buttons = new QHBoxLayout;
    cmdShowAdvanced = new QPushButton(L(txtShowAdvanced), this);
    cmdShowAdvanced->setObjectName(QStringLiteral("cmdShowAdvanced"));
    auto *ok = new QPushButton(L(txtOK), this);
    ok->setObjectName(QStringLiteral("cmdOK"));
    ok->setDefault(true);
    auto *cancel = new QPushButton(L(txtCancel), this);
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    buttons->addWidget(cmdShowAdvanced);
    buttons->addStretch(1);
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    column->addLayout(buttons);
    connect(cmdShowAdvanced, &QPushButton::clicked, this, &frmLinkDialog::cmdShowAdvanced_Click);
    connect(ok, &QPushButton::clicked, this, &frmLinkDialog::cmdOK_Click);
    connect(cancel, &QPushButton::clicked, this, &frmLinkDialog::cmdCancel_Click);
}

void frmLinkDialog::BuildAddress(QVBoxLayout *column)
{
    column->addWidget(new QLabel(L(txtAddress) + QStringLiteral(" (http://www.example.com/page.htm)"), this));
    auto *row = new QHBoxLayout;
    txtURL = new QLineEdit(this);
    txtURL->setObjectName(QStringLiteral("txtURL"));
    auto *browse = new QPushButton(L(txtBrowse), this);
    browse->setObjectName(QStringLiteral("cmdOpenSajtDialog"));
    row->addWidget(txtURL, 1);
    row->addWidget(browse);
    column->addLayout(row);
    connect(browse, &QPushButton::clicked, this, &frmLinkDialog::cmdOpenSajtDialog_Click);
}

void frmLinkDialog::BuildTarget(QVBoxLayout *column)
{
    for (int i = 0; i < 4; ++i) {
        auto *option = new QRadioButton(L(txtNewWindow + i), this);
        option->setObjectName(QStringLiteral("optLinkMode%1").arg(i));
        optLinkMode.append(option);
        column->addWidget(option);
        connect(option, &QRadioButton::toggled, this, &frmLinkDialog::optLinkMode_Click);
    }
    auto *row = new QHBoxLayout;
    row->addWidget(new QLabel(L(txtFrameName), this));
    cmbFrameName = new QComboBox(this);
    cmbFrameName->setObjectName(QStringLiteral("cmbFrameName"));
    cmbFrameName->setEditable(true);
    cmbFrameName->setEnabled(false);
    row->addWidget(cmbFrameName, 1);
    column->addLayout(row);
    column->addWidget(new QLabel(L(txtAltText), this));
    txtAlt = new QLineEdit(this);
    txtAlt->setObjectName(QStringLiteral("txtAlt"));
    column->addWidget(txtAlt);
    connect(txtAlt, &QLineEdit::textChanged, txtAlt, [this](const QString &text) { txtAlt->setToolTip(text); });
    optLinkMode[1]->setChecked(true);
}

void frmLinkDialog::BuildAdvanced(QVBoxLayout *column)
{
    fraAdvanced = new QGroupBox(this);
    fraAdvanced->setObjectName(QStringLiteral("fraAdvanced"));
    auto *grid = new QGridLayout(fraAdvanced);
    for (int i = 0; i < ExtraProperties().size(); ++i) {
        auto *option = new QRadioButton(ExtraProperties()[i], fraAdvanced);
        option->setObjectName(QStringLiteral("OptExtraProp%1").arg(i));
        auto *box = new QLineEdit(fraAdvanced);
        box->setObjectName(QStringLiteral("txtExtraProperty%1").arg(i));
        OptExtraProp.append(option);
        txtExtraProperty.append(box);
        grid->addWidget(option, i, 0);
        grid->addWidget(box, i, 1);
    }
    OptExtraProp.first()->setChecked(true);
    const int last = int(ExtraProperties().size());
    grid->addWidget(new QLabel(L(txtScripts), fraAdvanced), last, 0);
    cboScriptFuncs = new QComboBox(fraAdvanced);
    cboScriptFuncs->setObjectName(QStringLiteral("cboScriptFuncs"));
    cboScriptFuncs->addItems(ScriptLines());
    grid->addWidget(cboScriptFuncs, last, 1);
    auto *row = new QHBoxLayout;
    auto *copy = new QPushButton(L(txtCopyScript), fraAdvanced);
    copy->setObjectName(QStringLiteral("cmdCopyScript"));
    auto *help = new QPushButton(L(txtHelp), fraAdvanced);
    help->setObjectName(QStringLiteral("cmdHelpSelFunc"));
    row->addStretch(1);
    row->addWidget(copy);
    row->addWidget(help);
    grid->addLayout(row, last + 1, 0, 1, 2);
    column->addWidget(fraAdvanced);
    fraAdvanced->setVisible(false);
    connect(copy, &QPushButton::clicked, this, &frmLinkDialog::cmdCopyScript_Click);
    connect(help, &QPushButton::clicked, this, &frmLinkDialog::cmdHelpSelFunc_Click);
}

long frmLinkDialog::Init(CDocEventHandler *CDocEventHandler_p, long lReferrer_p)
{
    m_DocEventHandler = CDocEventHandler_p;
    m_boolFramesRead = false;
    setWindowTitle(L(lReferrer_p != 0 ? txtCreateEdit : txtCreateNew));
    return 1;
}

void frmLinkDialog::EnableFrameOptions(bool boolEnable_p)
{
    optLinkMode[2]->setEnabled(boolEnable_p);
    optLinkMode[3]->setEnabled(boolEnable_p);
}

long frmLinkDialog::SetURL(const QString &strURL_p)
{
    txtURL->setText(strURL_p);
    txtURL->selectAll();
    txtURL->setFocus();
    return 1;
}

long frmLinkDialog::GetURL(QString &strURL_p) const
{
    strURL_p = txtURL->text().trimmed();
    return 1;
}

long frmLinkDialog::SetTarget(long lIndex_p, const QString &strFrameName)
{
    if (lIndex_p < 0 || lIndex_p > 3)
        return 0;
    optLinkMode[int(lIndex_p)]->setChecked(true);
    if (lIndex_p == 3)
        cmbFrameName->setCurrentText(strFrameName);
    return 1;
}

long frmLinkDialog::TargetIndex() const
{
    for (int i = 0; i < optLinkMode.size(); ++i)
        if (optLinkMode[i]->isChecked())
            return i;
    return 1;
}

long frmLinkDialog::GetTarget(QString &strTarget_p) const
{
    const long index = TargetIndex();
    strTarget_p = index == 3 ? cmbFrameName->currentText().trimmed() : Targets()[int(index)];
    return 1;
}

void frmLinkDialog::SetAlt(const QString &strAlt_p)
{
    txtAlt->setText(strAlt_p);
}

QString frmLinkDialog::GetAlt() const
{
    return txtAlt->text();
}

void frmLinkDialog::SetExtraProperty(const QString &strName_p, const QString &strValue_p)
{
    const qsizetype i = ExtraProperties().indexOf(strName_p);
    if (i >= 0)
        txtExtraProperty[int(i)]->setText(strValue_p);
}

QString frmLinkDialog::GetExtraProperty(const QString &strName_p) const
{
    const qsizetype i = ExtraProperties().indexOf(strName_p);
    return i >= 0 ? txtExtraProperty[int(i)]->text() : QString();
}

long frmLinkDialog::Show()
{
    if (exec() != QDialog::Accepted)
        txtURL->clear();
    return txtURL->text().trimmed().isEmpty() ? -1 : 1;
}

void frmLinkDialog::optLinkMode_Click()
{
    const bool named = optLinkMode[3]->isChecked();
    cmbFrameName->setEnabled(named);
    if (named)
        FillFrameNames();
}

// The names are asked for once, the first time the box is wanted.
void frmLinkDialog::FillFrameNames()
{
    if (m_boolFramesRead || !m_DocEventHandler)
        return;
    m_boolFramesRead = true;
    QStringList names;
    m_DocEventHandler->GetFrameNames(names);
    const QString typed = cmbFrameName->currentText();
    cmbFrameName->addItems(names);
    cmbFrameName->setCurrentText(typed);
}

void frmLinkDialog::cmdOpenSajtDialog_Click()
{
    const QString address = PickSitePage(this, m_strPageURL);
    if (!address.isEmpty())
        SetURL(address);
}

// A page of the site is linked by its path from this page, so the link
// keeps working wherever the site is served from.
QString frmLinkDialog::PickSitePage(QWidget *parent, const QString &strPageURL_p)
{
    frmSiteTree2 tree(parent);
    const long filled = tree.init();
    if (filled == 0) {
        MError::ShowError();
        return {};
    }
    if (filled != 1)
        return {};
    tree.exec();
    if (tree.Cancelled() || tree.ChosenAddress().isEmpty())
        return {};
    QString relative;
    FragmentAddresses::calculateRelativePath(strPageURL_p, tree.ChosenAddress(), relative);
    return relative.isEmpty() ? tree.ChosenAddress() : relative;
}

void frmLinkDialog::cmdShowAdvanced_Click()
{
    const bool show = !fraAdvanced->isVisible();
    fraAdvanced->setVisible(show);
    cmdShowAdvanced->setText(L(show ? txtHideAdvanced : txtShowAdvanced));
    adjustSize();
}

int frmLinkDialog::ChosenEvent() const
{
    for (int i = 0; i < OptExtraProp.size(); ++i)
        if (OptExtraProp[i]->isChecked())
            return i;
    return 0;
}

// The void address makes a link that goes nowhere: it belongs in the
// address box, never in an event.
void frmLinkDialog::cmdCopyScript_Click()
{
    const QString line = cboScriptFuncs->currentText();
    if (line == kVoid) {
        SetURL(kVoid);
        return;
    }
    QLineEdit *box = txtExtraProperty[ChosenEvent()];
    box->setText(box->text().isEmpty() ? line : box->text() + line);
}

void frmLinkDialog::cmdHelpSelFunc_Click()
{
    const QString line = cboScriptFuncs->currentText();
    if (line.startsWith(QLatin1String("changePic")))
        UserQuestions::MsgBox(L(txtHelpChangePic), UserQuestions::vbInformation, L(txtHelpPic));
    else if (line.contains(QLatin1String("Layers")))
        UserQuestions::MsgBox(L(txtHelpShowHide), UserQuestions::vbInformation, L(txtHelpLayers));
    else
        UserQuestions::MsgBox(L(txtHelpMM), UserQuestions::vbInformation, L(txtHelpJava));
}

void frmLinkDialog::cmdOK_Click()
{
    accept();
}

void frmLinkDialog::cmdCancel_Click()
{
    txtURL->clear();
    reject();
}
