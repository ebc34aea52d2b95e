#include "objects/frmFPHoover.h"

#include "document/CDocEventHandler.h"
#include "objects/frmColorDropper.h"
#include "objects/frmLinkDialog.h"
#include "platform/PageScriptCall.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/OkCancelButtons.h"
#include "support/UserQuestions.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFontDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

enum Text : long {
    txtTitle = 19010, txtButtonText = 19011, txtLinkLabel = 19012, txtEffect = 19013, txtFont = 19014,
    txtButtonColor = 19015, txtEffectColor = 19016, txtApply = 19017, txtParentFrame = 19018,
    txtBackground = 17617, txtTextColor = 20206, txtBrowse = 18821, txtNewWindow = 18801,
    txtThisWindow = 18802, txtNamedFrame = 18804, txtFrameName = 18805, txtSelectFrame = 19006
};

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

// The effects' captions by their index.
const long kEffectCaptions[] = {19007, 19008, 19009, 19000, 19001, 19002, 19003};

// The color buttons' and labels' names and captions, by frmFPHoover::kColors.
struct ColorRow
{
    const char *button;
    const char *label;
    long caption;
};
const ColorRow kColorRows[] = {{"cmdbgColor", "lblBkndColor", txtBackground},
                               {"cmdColor", "lblBtnColor", txtButtonColor},
                               {"cmdEffectColor", "lblEffectColor", txtEffectColor},
                               {"cmdTextColor", "lblTextColor", txtTextColor}};

using P = FPHooverApplet;

} // namespace

frmFPHoover::frmFPHoover(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmFPHoover"));
    setWindowTitle(L(txtTitle));
    auto *column = new QVBoxLayout(this);
    BuildText(column);
    BuildTarget(column);
    BuildLook(column);
    QDialogButtonBox *buttons = OkCancelButtons::Add(this, column, [this] { cmdOk_Click(); });
    auto *apply = buttons->addButton(L(txtApply), QDialogButtonBox::ApplyRole);
    apply->setObjectName(QStringLiteral("cmdApply"));
    connect(apply, &QPushButton::clicked, this, &frmFPHoover::cmdApply_Click);
}

void frmFPHoover::BuildText(QVBoxLayout *column)
{
    column->addWidget(new QLabel(L(txtButtonText), this));
    txtBtnText = new QLineEdit(this);
    txtBtnText->setObjectName(QStringLiteral("txtBtnText"));
    column->addWidget(txtBtnText);
    column->addWidget(new QLabel(L(txtLinkLabel), this));
    auto *row = new QHBoxLayout;
    txtLink = new QLineEdit(this);
    txtLink->setObjectName(QStringLiteral("txtLink"));
    auto *browse = new QPushButton(L(txtBrowse), this);
    browse->setObjectName(QStringLiteral("cmdSearchPath"));
    row->addWidget(txtLink, 1);
    row->addWidget(browse);
    column->addLayout(row);
    connect(txtBtnText, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_Applet.setValue(P::text, text);
        Changed();
    });
    connect(txtLink, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_Applet.setValue(P::URL, text);
        Changed();
    });
    connect(browse, &QPushButton::clicked, this, &frmFPHoover::cmdSearchPath_Click);
}

void frmFPHoover::BuildTarget(QVBoxLayout *column)
{
    const long captions[] = {txtNewWindow, txtThisWindow, txtParentFrame, txtNamedFrame};
    for (int i = 0; i < 4; ++i) {
        auto *option = new QRadioButton(L(captions[i]), this);
        option->setObjectName(QStringLiteral("optLinkMode%1").arg(i));
        optLinkMode.append(option);
        column->addWidget(option);
        connect(option, &QRadioButton::clicked, this, [this, i] { optLinkMode_Click(i); });
    }
    auto *row = new QHBoxLayout;
    row->addWidget(new QLabel(L(txtFrameName), this));
    cmbFrameName = new QComboBox(this);
    cmbFrameName->setObjectName(QStringLiteral("cmbFrameName"));
    cmbFrameName->setEditable(true);
    row->addWidget(cmbFrameName, 1);
    column->addLayout(row);
    connect(cmbFrameName, &QComboBox::currentTextChanged, this, [this] {
        if (optLinkMode[3]->isChecked())
            optLinkMode_Click(3);
    });
}

void frmFPHoover::BuildLook(QVBoxLayout *column)
{
    auto *grid = new QGridLayout;
    grid->addWidget(new QLabel(L(txtEffect), this), 0, 0);
    cmbEffect = new QComboBox(this);
    cmbEffect->setObjectName(QStringLiteral("cmbEffect"));
    for (long caption : kEffectCaptions)
        cmbEffect->addItem(L(caption));
    grid->addWidget(cmbEffect, 0, 1);
    connect(cmbEffect, &QComboBox::currentIndexChanged, this, &frmFPHoover::cmbEffect_Click);
    auto *font = new QPushButton(L(txtFont), this);
    font->setObjectName(QStringLiteral("cmdFont"));
    lblFont = new QLabel(this);
    lblFont->setObjectName(QStringLiteral("lblFont"));
    grid->addWidget(font, 1, 0);
    grid->addWidget(lblFont, 1, 1);
    connect(font, &QPushButton::clicked, this, &frmFPHoover::cmdFont_Click);
    for (int i = 0; i < 4; ++i) {
        auto *button = new QPushButton(L(kColorRows[i].caption), this);
        button->setObjectName(QString::fromLatin1(kColorRows[i].button));
        auto *label = new QLabel(this);
        label->setObjectName(QString::fromLatin1(kColorRows[i].label));
        label->setMinimumSize(48, 20);
        label->setFrameShape(QFrame::Box);
        lblColors.append(label);
        grid->addWidget(button, 2 + i, 0);
        grid->addWidget(label, 2 + i, 1);
        connect(button, &QPushButton::clicked, this, [this, i] { cmdColor_Click(i); });
    }
    column->addLayout(grid);
}

long frmFPHoover::SetData(const HtmlElement &HTMLHtmlElement_p, CDocEventHandler *CDocEventHandler_p)
{
    m_DocEventHandler = CDocEventHandler_p;
    if (ReadApplet(HTMLHtmlElement_p, m_Applet) != 1)
        return 0;
    ShowValues();
    return 1;
}

long frmFPHoover::ReadApplet(const HtmlElement &HTMLHtmlElement_p, FPHooverApplet &applet_p)
{
    WebBrowser *browser = HTMLHtmlElement_p.browser();
    const QVariantMap read = PageScriptCall::callOnHandle(browser ? browser->page() : nullptr, HTMLHtmlElement_p.handle(),
                                                          QStringLiteral("applets.read"), {},
                                                          QStringLiteral("frmFPHoover.SetData"))
                                 .toMap();
    if (MError::ErrorNumber() != 0)
        return 0;
    QList<P::Named> params;
    for (const QVariant &entry : read.value(QStringLiteral("params")).toList()) {
        const QVariantMap p = entry.toMap();
        params.append({p.value(QStringLiteral("name")).toString(), p.value(QStringLiteral("value")).toString(),
                       p.value(QStringLiteral("valuetype")).toString()});
    }
    QList<std::pair<QString, QString>> attributes;
    for (const QVariant &entry : read.value(QStringLiteral("attributes")).toList()) {
        const QVariantList pair = entry.toList();
        attributes.append({pair.value(0).toString(), pair.value(1).toString()});
    }
    applet_p.Read(params, attributes);
    return 1;
}

// The fields as the applet has them, which is no change of the user's.
void frmFPHoover::ShowValues()
{
    m_boolFilling = true;
    txtBtnText->setText(m_Applet.param(P::text).value);
    txtLink->setText(m_Applet.param(P::URL).value);
    cmbEffect->setCurrentIndex(P::EffectIndex(m_Applet.param(P::effect).value));
    if (m_DocEventHandler) {
        QStringList names;
        if (m_DocEventHandler->GetFrameNames(names) == 1)
            cmbFrameName->addItems(names);
    }
    const QString target = m_Applet.param(P::Target).value;
    if (!target.isEmpty()) {
        const int option = P::TargetOption(target);
        optLinkMode[option]->setChecked(true);
        if (option == 3)
            cmbFrameName->setCurrentText(target);
    }
    for (int i = 0; i < 4; ++i)
        ShowColor(i);
    ShowFont();
    m_boolFilling = false;
}

void frmFPHoover::ShowColor(int which)
{
    const QColor color(m_Applet.param(kColors[which]).value);
    lblColors[which]->setStyleSheet(color.isValid() ? QStringLiteral("background-color: %1").arg(color.name())
                                                    : QString());
}

void frmFPHoover::ShowFont()
{
    QStringList parts;
    for (P::Param p : {P::Font, P::FontSize, P::fontStyle}) {
        if (!m_Applet.param(p).value.isEmpty())
            parts << m_Applet.param(p).value;
    }
    lblFont->setText(parts.join(QStringLiteral(", ")));
}

void frmFPHoover::Changed()
{
    if (!m_boolFilling)
        m_boolChanged = true;
}

// Written as the applet's pages write colors: a number sign and six
// hexadecimal digits, red, green and blue, in capitals.
void frmFPHoover::cmdColor_Click(int which)
{
    const QString chosen = frmColorDropper::ChooseColor(this, m_Applet.param(kColors[which]).value,
                                                        L(kColorRows[which].caption));
    if (chosen.isEmpty())
        return;
    m_Applet.setValue(kColors[which], QLatin1Char('#') + chosen.mid(1).toUpper());
    ShowColor(which);
    Changed();
}

// The applet knows a font by its name, a size in points and a style of
// "regular", "bold", "italic" or "bolditalic".
void frmFPHoover::cmdFont_Click()
{
    QFont current(m_Applet.param(P::Font).value.isEmpty() ? QStringLiteral("Arial") : m_Applet.param(P::Font).value);
    current.setPointSize(qMax(1, m_Applet.param(P::FontSize).value.toInt()));
    const QString style = m_Applet.param(P::fontStyle).value.toLower();
    current.setBold(style.contains(QLatin1String("bold")));
    current.setItalic(style.contains(QLatin1String("italic")));
    bool ok = false;
    const QFont font = QFontDialog::getFont(&ok, current, this, L(txtFont), QFontDialog::DontUseNativeDialog);
    if (!ok)
        return;
    m_Applet.setValue(P::Font, font.family());
    m_Applet.setValue(P::FontSize, QString::number(font.pointSize()));
    const QString bold = font.bold() ? QStringLiteral("bold") : QString();
    const QString italic = font.italic() ? QStringLiteral("italic") : QString();
    m_Applet.setValue(P::fontStyle, bold + italic == QString() ? QStringLiteral("regular") : bold + italic);
    ShowFont();
    Changed();
}

void frmFPHoover::cmdSearchPath_Click()
{
    const QString address = frmLinkDialog::PickSitePage(this, m_strPageURL);
    if (!address.isEmpty())
        txtLink->setText(address);
}

// A named frame wants its name: without one the link opens in this window.
void frmFPHoover::optLinkMode_Click(int option)
{
    if (m_boolFilling)
        return;
    if (option == 3 && cmbFrameName->currentText().isEmpty()) {
        UserQuestions::MsgBox(L(txtSelectFrame), UserQuestions::vbInformation);
        optLinkMode[1]->setChecked(true);
        option = 1;
    }
    m_Applet.setValue(P::Target, P::TargetValue(option, cmbFrameName->currentText()));
    Changed();
}

void frmFPHoover::cmbEffect_Click(int index)
{
    if (m_boolFilling || index < 0 || index >= P::EffectValues().size())
        return;
    m_Applet.setValue(P::effect, P::EffectValues()[index]);
    Changed();
}

// The text is made now: a Cancel afterwards keeps what was applied.
void frmFPHoover::cmdApply_Click()
{
    if (!m_boolChanged)
        return;
    m_strNewApplet = m_Applet.Text();
    m_boolApplied = true;
}

void frmFPHoover::cmdOk_Click()
{
    cmdApply_Click();
    accept();
}

long frmFPHoover::GetData(bool &boolIsDirty_p, QString &strNewApplet_p, QString &strOldId_p) const
{
    boolIsDirty_p = m_boolApplied;
    strNewApplet_p = m_strNewApplet;
    strOldId_p = m_Applet.OldId();
    return 1;
}
