#pragma once

#include "platform/HtmlDocument.h"

#include <QList>
#include <QPoint>
#include <QString>
#include <QStringList>
#include <QVariant>

// The character formatting of one document: what the style pane and the
// toolbar show for the caret or the element under the mouse, and the font
// size change over a selection. Bold, italic, underline, the font name and
// the justification are changed by engine commands of the document, not
// here.
class CStyle
{
public:
    // One rule of the page's style sheets, in sheet and rule order.
    struct Rule
    {
        bool bReadOnly = false;
        QString strSelector;
    };
    // One value by which a class or id rule changes an element.
    struct StyleDiff
    {
        QString name;
        QVariant value;
    };
    // What GetHooverStyle found under the mouse.
    struct HooverStyle
    {
        long kind = 0;
        QString strName;
        QList<StyleDiff> diffs;
    };

    // The fonts of the system, from index 0; the highest index, -1 with none.
    static long GetScreenFonts(QStringList &astrFonts_p);
    static long IsTag(QString strIsTag_p, bool &boolIsTag_p);

    // Reads the style sheets into the rule table. 1, or 0 with the error
    // pending.
    long Init(const HtmlDocument &HTMLDocument_p);

    long GetCaretAttr(bool &boolBold_p, bool &boolItalic_p, bool &boolUnderline_p);
    long GetBlockTag(QString &strBlockTag_p);
    long GetCaretFontFamily(QString &strFontFamily_p, float &sngSize_p);
    // The colour (#rrggbb) and justification ("left", "center", "right",
    // "justify") at the caret, for the toolbar.
    long GetCaretColor(QString &strColor_p);
    long GetCaretJustify(QString &strJustify_p);
    // The size change over the selection, in points. Nothing happens at a
    // bare caret. A selection from one table cell into another, or into
    // what the server's script wrote, is refused with a message: 1 done
    // or nothing to do, -1 refused, 0 failed with the error pending.
    long SetCaretFontSize(float sngSize_p);

    // Under the mouse, at the point in the document's client coordinates.
    // The flags are only ever set, never cleared.
    long GetHooverAttr(const QPoint &at, bool &boolBold_p, bool &boolItalic_p, bool &boolUnderline_p);
    long GetHooverFontFamily(const QPoint &at, QString &strFontFamily_p);
    // An image under the mouse gives nothing.
    long GetHooverFontSize(const QPoint &at, QString &strFontFamily_p, float &sngSize_p);
    long GetHooverStyle(const QPoint &at, HooverStyle &style_p);

    // Every selector, from index 0; -1 with fewer than two rules.
    long GetStyleRules(QStringList &astrRules_p) const;
    // The class selectors without their dot: 1 with some, -1 with none or
    // with fewer than two rules in the table.
    long GetStyleClasses(QStringList &astrClasses_p) const;

    const QList<Rule> &Rules() const { return m_aRules; }

private:
    // The style the engine computed, read in one call.
    QVariantMap Caret(const QString &position);
    static bool IsBold(const QString &fontWeight);
    static bool IsItalic(const QString &fontStyle);
    void SetStyleDiff(HooverStyle &style, const QString &name, const QVariant &value) const;
    static QString SizeText(float sngSize_p);

    HtmlDocument m_Document;
    QList<Rule> m_aRules;
};
