#include "objects/CStyle.h"

#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QFontDatabase>

namespace {

constexpr long kNone = 17401;
constexpr long kSizeCaption = 17638;
constexpr long kMsgAcrossCells = 17402;
constexpr long kMsgIntoScript = 17403;

// The element names of HTML as the editor knows them ("Hn" stands for the
// headings by that very name).
const QStringList &TagNames()
{
    static const QStringList names = QStringLiteral(
        "!DOCTYPE A ACRONYM ADDRESS APPLET AREA B BASE BASEFONT BDO BGSOUND BIG BLOCKQUOTE BODY BR BUTTON "
        "CAPTION CENTER CITE CODE COL COLGROUP COMMENT DD DEL DFN DIR DIV DL DT EM EMBED FIELDSET FONT FORM "
        "FRAME FRAMESET HEAD Hn HR HTML I IFRAME IMG INPUT INS ISINDEX KBD LABEL LEGEND LI LINK LISTING MAP "
        "MARQUEE MENU META NEXTID NOBR NOFRAMES NOSCRIPT OBJECT OL OPTION P PARAM PLAINTEXT PRE Q RT RUBY S "
        "SAMP SCRIPT SELECT SMALL SPAN STRIKE STRONG STYLE SUB SUP TABLE TBODY TD TEXTAREA TFOOT TH THEAD "
        "TITLE TR TT U UL VAR WBR XML XMP").split(QLatin1Char(' '));
    return names;
}

} // namespace

long CStyle::GetScreenFonts(QStringList &astrFonts_p)
{
    astrFonts_p = QFontDatabase::families();
    return long(astrFonts_p.size()) - 1;
}

long CStyle::IsTag(QString strIsTag_p, bool &boolIsTag_p)
{
    boolIsTag_p = TagNames().contains(strIsTag_p.toUpper());
    return 1;
}

long CStyle::Init(const HtmlDocument &HTMLDocument_p)
{
    m_Document = HTMLDocument_p;
    m_aRules.clear();
    for (const StyleSheetInfo &sheet : m_Document.styleSheets())
        for (const QString &selector : sheet.selectors)
            m_aRules.append({sheet.readOnly, selector});
    if (MError::ErrorNumber() != 0) {
        MError::SetErrorIfClear(MError::ErrorNumber(), MError::ErrorDescription(), QStringLiteral("CStyle.Init"));
        return 0;
    }
    return 1;
}

QVariantMap CStyle::Caret(const QString &position)
{
    const QVariantMap style = m_Document.styleAtSelection();
    if (style.isEmpty())
        MError::SetErrorIfClear(91, QStringLiteral("Object variable not set"), position);
    return style;
}

// 400 is the weight of plain text: only above it is a text bold.
bool CStyle::IsBold(const QString &fontWeight)
{
    if (fontWeight == QLatin1String("bold") || fontWeight == QLatin1String("bolder"))
        return true;
    bool number = false;
    const int weight = fontWeight.toInt(&number);
    return number && weight > 400;
}

bool CStyle::IsItalic(const QString &fontStyle)
{
    return fontStyle == QLatin1String("italic") || fontStyle.startsWith(QLatin1String("oblique"));
}

long CStyle::GetCaretAttr(bool &boolBold_p, bool &boolItalic_p, bool &boolUnderline_p)
{
    const QVariantMap style = Caret(QStringLiteral("CStyle.GetCaretAttr"));
    boolBold_p = IsBold(style.value(QStringLiteral("fontWeight")).toString());
    boolItalic_p = IsItalic(style.value(QStringLiteral("fontStyle")).toString());
    boolUnderline_p = style.value(QStringLiteral("underline")).toBool();
    return style.isEmpty() ? 0 : 1;
}

long CStyle::GetBlockTag(QString &strBlockTag_p)
{
    const QVariantMap style = Caret(QStringLiteral("CStyle.GetBlockTag"));
    strBlockTag_p = style.value(QStringLiteral("tag")).toString();
    return style.isEmpty() ? 0 : 1;
}

long CStyle::GetCaretFontFamily(QString &strFontFamily_p, float &sngSize_p)
{
    const QVariantMap style = Caret(QStringLiteral("CStyle.GetCaretFontFamily"));
    strFontFamily_p = style.value(QStringLiteral("fontFamily")).toString();
    sngSize_p = style.value(QStringLiteral("fontSizePt")).toFloat();
    return style.isEmpty() ? 0 : 1;
}

long CStyle::GetCaretColor(QString &strColor_p)
{
    const QVariantMap style = Caret(QStringLiteral("CStyle.GetCaretColor"));
    strColor_p = style.value(QStringLiteral("color")).toString();
    return style.isEmpty() ? 0 : 1;
}

long CStyle::GetCaretJustify(QString &strJustify_p)
{
    const QVariantMap style = Caret(QStringLiteral("CStyle.GetCaretJustify"));
    strJustify_p = style.value(QStringLiteral("justify")).toString();
    return style.isEmpty() ? 0 : 1;
}

// The size is written as the user gave it, in points ("12pt", "10.5pt").
QString CStyle::SizeText(float sngSize_p)
{
    return QString::number(double(sngSize_p)) + QStringLiteral("pt");
}

long CStyle::SetCaretFontSize(float sngSize_p)
{
    const QVariantMap result = m_Document.setSelectionFontSize(SizeText(sngSize_p));
    if (result.isEmpty()) {
        MError::SetErrorIfClear(91, QStringLiteral("Object variable not set"), QStringLiteral("CStyle.SetCaretFontSize"));
        return 0;
    }
    const QString refused = result.value(QStringLiteral("refused")).toString();
    if (refused.isEmpty())
        return 1;
    UserQuestions::MsgBox(MResources::LoadResourceString(refused == QLatin1String("cells") ? kMsgAcrossCells : kMsgIntoScript),
                          UserQuestions::vbExclamation, MResources::LoadResourceString(kSizeCaption));
    return -1;
}

long CStyle::GetHooverAttr(const QPoint &at, bool &boolBold_p, bool &boolItalic_p, bool &boolUnderline_p)
{
    const QVariantMap style = m_Document.styleAtPoint(at.x(), at.y());
    if (style.value(QStringLiteral("tag")).toString().isEmpty())
        return MError::ErrorNumber() != 0 ? 0 : 1;
    boolBold_p = boolBold_p || IsBold(style.value(QStringLiteral("fontWeight")).toString());
    boolItalic_p = boolItalic_p || IsItalic(style.value(QStringLiteral("fontStyle")).toString());
    boolUnderline_p = boolUnderline_p || style.value(QStringLiteral("underline")).toBool();
    return 1;
}

long CStyle::GetHooverFontFamily(const QPoint &at, QString &strFontFamily_p)
{
    strFontFamily_p = m_Document.styleAtPoint(at.x(), at.y()).value(QStringLiteral("fontFamily")).toString();
    return MError::ErrorNumber() != 0 ? 0 : 1;
}

long CStyle::GetHooverFontSize(const QPoint &at, QString &strFontFamily_p, float &sngSize_p)
{
    const QVariantMap style = m_Document.styleAtPoint(at.x(), at.y());
    const QString tag = style.value(QStringLiteral("tag")).toString();
    if (tag.isEmpty() || tag == QLatin1String("IMG"))
        return MError::ErrorNumber() != 0 ? 0 : 1;
    strFontFamily_p = style.value(QStringLiteral("fontFamily")).toString();
    sngSize_p = style.value(QStringLiteral("fontSizePt")).toFloat();
    return 1;
}

// The pane shows the kind's name: "-none" for plain text, an inline style
// or a FONT face, "-none" and the number for a heading, the selector of
// the rule otherwise. For a class or id rule it also lists what the rule
// changes, so the pane can tell apart two rules of the same look.
long CStyle::GetHooverStyle(const QPoint &at, HooverStyle &style_p)
{
    QStringList selectors;
    for (const Rule &rule : m_aRules)
        selectors.append(rule.strSelector);
    const QVariantMap found = m_Document.styleKindAt(at.x(), at.y(), selectors);
    if (MError::ErrorNumber() != 0)
        return 0;
    style_p = {};
    style_p.kind = found.value(QStringLiteral("kind")).toLongLong();
    const QString selector = found.value(QStringLiteral("selector")).toString();
    switch (style_p.kind) {
    case 2:
        style_p.strName = MResources::LoadResourceString(kNone) + found.value(QStringLiteral("heading")).toString();
        break;
    case 4:
    case 5:
    case 6:
        style_p.strName = selector;
        break;
    default:
        style_p.strName = MResources::LoadResourceString(kNone);
    }
    for (const QVariant &diff : found.value(QStringLiteral("diffs")).toList())
        SetStyleDiff(style_p, diff.toMap().value(QStringLiteral("name")).toString(), diff.toMap().value(QStringLiteral("value")));
    return 1;
}

void CStyle::SetStyleDiff(HooverStyle &style, const QString &name, const QVariant &value) const
{
    style.diffs.append({name, value});
}

long CStyle::GetStyleRules(QStringList &astrRules_p) const
{
    astrRules_p.clear();
    if (m_aRules.size() < 2)
        return -1;
    for (const Rule &rule : m_aRules)
        astrRules_p.append(rule.strSelector);
    return long(astrRules_p.size()) - 1;
}

// A page with a single rule offers no class: the pane's list would hold
// nothing to choose between.
long CStyle::GetStyleClasses(QStringList &astrClasses_p) const
{
    astrClasses_p.clear();
    if (m_aRules.size() < 2)
        return -1;
    for (const Rule &rule : m_aRules)
        if (rule.strSelector.startsWith(QLatin1Char('.')))
            astrClasses_p.append(rule.strSelector.mid(1));
    return astrClasses_p.isEmpty() ? -1 : 1;
}
