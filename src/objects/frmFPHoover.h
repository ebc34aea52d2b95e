#pragma once

#include "objects/FPHooverApplet.h"
#include "platform/HtmlElement.h"

#include <QDialog>
#include <QList>

class CDocEventHandler;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QVBoxLayout;

// The properties of a hover button: its text, link and target, effect,
// font and four colors. SetData reads the applet; on OK (or Apply) the
// dialog writes a whole new <APPLET> text for the page, which GetData gives
// with the old element's id. Parameters the dialog has no field for (the
// images and sounds, and any of other names) come back as they were read.
class frmFPHoover : public QDialog
{
    Q_OBJECT

public:
    explicit frmFPHoover(QWidget *parent = nullptr);

    // 1, or 0 with the error pending.
    long SetData(const HtmlElement &HTMLHtmlElement_p, CDocEventHandler *CDocEventHandler_p);
    // Reads the applet's PARAMs and attributes from the page. 1, or 0 with
    // the error pending.
    static long ReadApplet(const HtmlElement &HTMLHtmlElement_p, FPHooverApplet &applet_p);
    // The page the button is in: a page of the site picked with Browse is
    // linked by its path from there.
    void SetPageAddress(const QString &strPageURL_p) { m_strPageURL = strPageURL_p; }
    // Whether the user changed anything (OK or Apply), the new text and the
    // id the old element had.
    long GetData(bool &boolIsDirty_p, QString &strNewApplet_p, QString &strOldId_p) const;

    // The four colors by the parameter they set.
    static constexpr FPHooverApplet::Param kColors[] = {FPHooverApplet::bgColor, FPHooverApplet::Color,
                                                        FPHooverApplet::HoverColor, FPHooverApplet::textColor};

private:
    void BuildText(QVBoxLayout *column);
    void BuildTarget(QVBoxLayout *column);
    void BuildLook(QVBoxLayout *column);
    void ShowValues();
    void ShowColor(int which);
    void ShowFont();
    void Changed();
    void cmdColor_Click(int which);
    void cmdFont_Click();
    void cmdSearchPath_Click();
    void optLinkMode_Click(int option);
    void cmbEffect_Click(int index);
    void cmdApply_Click();
    void cmdOk_Click();

    FPHooverApplet m_Applet;
    CDocEventHandler *m_DocEventHandler = nullptr;
    QString m_strPageURL;
    bool m_boolChanged = false;
    bool m_boolFilling = false;
    bool m_boolApplied = false;
    QString m_strNewApplet;

    QLineEdit *txtBtnText = nullptr;
    QLineEdit *txtLink = nullptr;
    QList<QRadioButton *> optLinkMode;
    QComboBox *cmbFrameName = nullptr;
    QComboBox *cmbEffect = nullptr;
    QLabel *lblFont = nullptr;
    QList<QLabel *> lblColors; // by kColors
};
