#pragma once

#include "document/StylePaneState.h"

#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QToolButton;

// The Font pane (fmeStyle): the font, its size with a step up and down,
// bold, italic and underline, the colour and the justification at the
// caret, the block format and the class of the block around the caret, and
// what lies under the mouse. It shows what the document under edit tells
// it (Show) and says what the user chose through its signals; the session
// sends those to the document that has the caret.
class StylePane : public QWidget
{
    Q_OBJECT

public:
    explicit StylePane(QWidget *parent = nullptr);

    // The captions and the fixed items of the lists, in the current
    // language. The fonts of the display follow the fixed font items.
    void LoadResCaps();
    // Shows the caret's formatting; a state that is not enabled clears the
    // controls and turns them off. Setting a control from here is never
    // taken for the user's choice.
    void Show(const StylePaneState &state);
    // The line under the mouse ("-none" when nothing is told).
    void SetHooverInfo(const QString &text);

    // The items of cboBlockFormat and cboFont that stand for something
    // other than a font.
    enum FontItem { ChoseFont = 0, NoFormatting = 7, Separator = 8 };

signals:
    // A font of the list, or NoFormatting (name empty).
    void FontChosen(int item, const QString &name);
    void SizeStep(int direction);
    void BoldClicked();
    void ItalicClicked();
    void UnderlineClicked();
    void JustifyChosen(const QString &justify);
    void BlockFormatChosen(int item);
    // The class for the block around the caret; empty for "None".
    void ClassChosen(const QString &name);
    void HelpClicked();

private:
    void FillFonts();
    void FillClasses(const QStringList &classes, const QString &current);
    void SetEnabledControls(bool on);
    void Clear();

    QComboBox *cboFont = nullptr;
    QLineEdit *txtFontSize = nullptr;
    QToolButton *updFontSizeUp = nullptr;
    QToolButton *updFontSizeDown = nullptr;
    QCheckBox *chkBoldSel = nullptr;
    QCheckBox *chkItalicSel = nullptr;
    QCheckBox *chkUnderlineSel = nullptr;
    QLabel *lblColor = nullptr;
    QComboBox *cboJustify = nullptr;
    QComboBox *cboBlockFormat = nullptr;
    QComboBox *cboClasses = nullptr;
    QLabel *lblStyleCbo = nullptr;
    QLabel *lblFontInfo = nullptr;
    QPushButton *cmdHelpfmeStyle = nullptr;
    QStringList m_classes;
};
