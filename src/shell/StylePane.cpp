#include "shell/StylePane.h"

#include "objects/CStyle.h"
#include "support/MResources.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QToolButton>
#include <QVBoxLayout>

namespace {
constexpr long txtChoseFont = 14411, txtNoFormatting = 14412, txtHeading1 = 14413, txtFormatted = 14415,
               txtNumbered = 14416, txtUnnumbered = 14417, txtSectionDiv = 14418, txtParagraph = 14427,
               txtBold = 14425, txtItalic = 14426, txtUnderline = 17400, txtHelpOnThis = 14408, txtNone = 16802,
               txtNoRule = 16805, txtSelectRule = 16806, txtNoneInfo = 17401, txtLeft = 17206, txtCenter = 17204,
               txtRight = 17205, txtJustify = 23100, txtColor = 17606, txtHelpTip = 14402;
const char *const kJustify[] = {"left", "center", "right", "justify"};

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

template <class T> T *Named(QWidget *parent, const char *name)
{
    auto *widget = new T(parent);
    widget->setObjectName(QString::fromLatin1(name));
    return widget;
}

// The page names a list of families; the first one is what it asks for.
QString FirstFamily(const QString &list)
{
    QString first = list.section(QLatin1Char(','), 0, 0).trimmed();
    if (first.size() >= 2 && (first.front() == u'"' || first.front() == u'\''))
        first = first.mid(1, first.size() - 2);
    return first;
}
} // namespace

StylePane::StylePane(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("fmeStyle"));
    cboFont = Named<QComboBox>(this, "cboFont");
    txtFontSize = Named<QLineEdit>(this, "txtFontSize");
    txtFontSize->setReadOnly(true);
    updFontSizeUp = Named<QToolButton>(this, "updFontSizeUp");
    updFontSizeUp->setArrowType(Qt::UpArrow);
    updFontSizeDown = Named<QToolButton>(this, "updFontSizeDown");
    updFontSizeDown->setArrowType(Qt::DownArrow);
    chkBoldSel = Named<QCheckBox>(this, "chkBoldSel");
    chkItalicSel = Named<QCheckBox>(this, "chkItalicSel");
    chkUnderlineSel = Named<QCheckBox>(this, "chkUnderlineSel");
    lblColor = Named<QLabel>(this, "lblColor");
    lblColor->setTextFormat(Qt::RichText);
    cboJustify = Named<QComboBox>(this, "cboJustify");
    cboBlockFormat = Named<QComboBox>(this, "cboBlockFormat");
    cboClasses = Named<QComboBox>(this, "cboClasses");
    lblStyleCbo = Named<QLabel>(this, "lblStyleCbo");
    lblFontInfo = Named<QLabel>(this, "lblFontInfo");
    lblFontInfo->setWordWrap(true);
    cmdHelpfmeStyle = Named<QPushButton>(this, "cmdHelpfmeStyle");
    for (QComboBox *box : {cboFont, cboJustify, cboBlockFormat, cboClasses})
        box->setMinimumContentsLength(4);
    // A click on a switch leaves the caret in the page, to type on.
    for (QWidget *w : std::initializer_list<QWidget *>{chkBoldSel, chkItalicSel, chkUnderlineSel, updFontSizeUp, updFontSizeDown})
        w->setFocusPolicy(Qt::TabFocus);

    auto *size = new QHBoxLayout;
    size->addWidget(txtFontSize, 1);
    size->addWidget(updFontSizeUp);
    size->addWidget(updFontSizeDown);
    auto *hoover = Named<QGroupBox>(this, "fmeHooverInfo");
    (new QVBoxLayout(hoover))->addWidget(lblFontInfo);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(4, 4, 4, 4);
    column->addWidget(cboFont);
    column->addLayout(size);
    for (QWidget *w : std::initializer_list<QWidget *>{chkBoldSel, chkItalicSel, chkUnderlineSel, lblColor, cboJustify,
                                                       cboBlockFormat, lblStyleCbo, cboClasses, hoover})
        column->addWidget(w);
    column->addStretch(1);
    column->addWidget(cmdHelpfmeStyle);

    // Only the user's own choices are signalled: activated and clicked are
    // not sent when Show sets a control.
    connect(cboFont, &QComboBox::activated, this, [this](int item) {
        if (item != ChoseFont && item != Separator)
            emit FontChosen(item, item == NoFormatting ? QString() : cboFont->itemText(item));
    });
    connect(updFontSizeUp, &QToolButton::clicked, this, [this] { emit SizeStep(1); });
    connect(updFontSizeDown, &QToolButton::clicked, this, [this] { emit SizeStep(-1); });
    connect(chkBoldSel, &QCheckBox::clicked, this, &StylePane::BoldClicked);
    connect(chkItalicSel, &QCheckBox::clicked, this, &StylePane::ItalicClicked);
    connect(chkUnderlineSel, &QCheckBox::clicked, this, &StylePane::UnderlineClicked);
    connect(cboJustify, &QComboBox::activated, this,
            [this](int item) { emit JustifyChosen(QString::fromLatin1(kJustify[item])); });
    connect(cboBlockFormat, &QComboBox::activated, this, &StylePane::BlockFormatChosen);
    connect(cboClasses, &QComboBox::activated, this, [this](int item) {
        if (!m_classes.isEmpty() && item >= 1)
            emit ClassChosen(item == 1 ? QString() : m_classes.value(item - 2));
    });
    connect(cmdHelpfmeStyle, &QPushButton::clicked, this, &StylePane::HelpClicked);
    LoadResCaps();
    Show({});
}

void StylePane::LoadResCaps()
{
    chkBoldSel->setText(L(txtBold));
    chkItalicSel->setText(L(txtItalic));
    chkUnderlineSel->setText(L(txtUnderline));
    cmdHelpfmeStyle->setText(L(txtHelpOnThis));
    cmdHelpfmeStyle->setToolTip(L(txtHelpTip));
    lblStyleCbo->setText(L(txtSelectRule));
    cboJustify->clear();
    for (long id : {txtLeft, txtCenter, txtRight, txtJustify})
        cboJustify->addItem(L(id));
    cboBlockFormat->clear();
    cboBlockFormat->addItems({L(txtNone), L(txtParagraph)});
    // The string table has the first and the last heading; the ones
    // between are named the same way.
    for (int n = 1; n <= 6; ++n)
        cboBlockFormat->addItem(L(txtHeading1).replace(QLatin1Char('1'), QString::number(n)));
    cboBlockFormat->addItems({L(txtFormatted), L(txtNumbered), L(txtUnnumbered), L(txtSectionDiv)});
    FillFonts();
    SetHooverInfo(QString());
}

// The fixed items, then every family of the display.
void StylePane::FillFonts()
{
    cboFont->clear();
    cboFont->addItems({L(txtChoseFont), QStringLiteral("Arial"), QStringLiteral("Helvetica"),
                       QStringLiteral("Times New Roman"), QStringLiteral("Courier"), QStringLiteral("Georgia"),
                       QStringLiteral("Verdana"), L(txtNoFormatting), QStringLiteral("---------------")});
    QStringList families;
    CStyle::GetScreenFonts(families);
    cboFont->addItems(families);
}

void StylePane::FillClasses(const QStringList &classes, const QString &current)
{
    m_classes = classes;
    cboClasses->clear();
    if (classes.isEmpty()) {
        cboClasses->addItem(L(txtNoRule));
        return;
    }
    cboClasses->addItems({L(txtSelectRule), L(txtNone)});
    cboClasses->addItems(classes);
    const int at = classes.indexOf(current);
    cboClasses->setCurrentIndex(at >= 0 ? at + 2 : 0);
}

void StylePane::SetEnabledControls(bool on)
{
    for (QWidget *w : std::initializer_list<QWidget *>{cboFont, txtFontSize, updFontSizeUp, updFontSizeDown, chkBoldSel,
                                                       chkItalicSel, chkUnderlineSel, cboJustify, cboBlockFormat,
                                                       cboClasses})
        w->setEnabled(on);
}

void StylePane::Clear()
{
    cboFont->setCurrentIndex(ChoseFont);
    txtFontSize->clear();
    for (QCheckBox *box : {chkBoldSel, chkItalicSel, chkUnderlineSel})
        box->setChecked(false);
    lblColor->setText(L(txtColor));
    cboJustify->setCurrentIndex(-1);
    cboBlockFormat->setCurrentIndex(0);
    FillClasses(m_classes, QString());
}

void StylePane::Show(const StylePaneState &state)
{
    SetEnabledControls(state.enabled);
    m_classes = state.classes;
    if (!state.enabled)
        return Clear();
    const int font = cboFont->findText(FirstFamily(state.fontFamily), Qt::MatchFixedString);
    cboFont->setPlaceholderText(FirstFamily(state.fontFamily));
    cboFont->setCurrentIndex(font);
    txtFontSize->setText(QString::number(double(state.sizePt)) + QStringLiteral(" pt"));
    chkBoldSel->setChecked(state.bold);
    chkItalicSel->setChecked(state.italic);
    chkUnderlineSel->setChecked(state.underline);
    // A swatch of the colour before its number.
    const QString swatch = state.color.isEmpty()
        ? QString()
        : QStringLiteral("<span style=\"background-color:%1\">&nbsp;&nbsp;&nbsp;&nbsp;</span>&nbsp;").arg(state.color);
    lblColor->setText(swatch + L(txtColor) + QStringLiteral(": ") + state.color);
    SetHooverInfo(FirstFamily(state.fontFamily) + QStringLiteral(", ") + txtFontSize->text()
                  + (state.color.isEmpty() ? QString() : QStringLiteral(", ") + state.color));
    int justify = -1;
    for (int n = 0; n < 4; ++n)
        justify = state.justify == QLatin1String(kJustify[n]) ? n : justify;
    cboJustify->setCurrentIndex(justify);
    cboBlockFormat->setCurrentIndex(state.blockFormat);
    FillClasses(state.classes, state.className);
}

void StylePane::SetHooverInfo(const QString &text)
{
    lblFontInfo->setText(text.isEmpty() ? L(txtNoneInfo) : text);
}
