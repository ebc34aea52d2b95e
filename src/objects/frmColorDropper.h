#pragma once

#include "platform/HtmlElement.h"

#include <QColor>
#include <QDialog>

class QLabel;
class QLineEdit;

// Picks a color from anywhere on the screen: the user presses the picture
// button, keeps it down while moving over the color he wants and lets it
// go there. Set gives the color to an attribute of an element, or to its
// style.
class frmColorDropper : public QDialog
{
    Q_OBJECT

public:
    explicit frmColorDropper(QWidget *parent = nullptr);

    // The name of the color attribute and the element that gets it.
    long Init(const QString &strObjectProp_p, const HtmlElement &htmlobj_p);
    // With BolSetStyle_p the color goes to the style: "bgColor" as the
    // background color, "borderColor" as the border's.
    long InitEx(const QString &strObjectProp_p, const HtmlElement &htmlobj_p, bool BolSetStyle_p);
    // Runs the dialog modally: 1 when a color was set, -1 when not.
    long Show();

    // The color the boxes show, "#rrggbb".
    QString ColorText() const;

    // The standard color dialog, starting at the color given (#rrggbb).
    // The color chosen as #rrggbb; empty when the user cancelled.
    static QString ChooseColor(QWidget *parent, const QString &strCurrent_p, const QString &strTitle_p);
    // Reads the screen at the point (global coordinates) into the boxes;
    // false where the desktop refuses to give its pixels.
    bool PickAt(const QPoint &at);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void ShowColor(const QColor &color);
    void AskInstead();
    void cmdSetColor_Click();
    long ApplyColor();

    QString m_strObjectProp;
    HtmlElement m_Element;
    bool m_boolSetStyle = false;
    bool m_boolDragging = false;
    bool m_boolGrabRefused = false;
    bool m_boolApplied = false;
    QLabel *Picture1 = nullptr;
    QLabel *Picture2 = nullptr;
    QLineEdit *txtRed = nullptr;
    QLineEdit *txtGreen = nullptr;
    QLineEdit *txtBlue = nullptr;
    QLineEdit *txtHex = nullptr;
};
