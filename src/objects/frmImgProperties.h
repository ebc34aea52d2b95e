#pragma once

#include "platform/HtmlElement.h"

#include <QDialog>

class QLineEdit;
class QSpinBox;
class QWidget;

// The attributes of a picture that the program can't change as a file (one
// of another host): its name, its ALT text and its border. Also the Misc.
// part of the full picture dialog, which builds the same fields.
class frmImgProperties : public QDialog
{
    Q_OBJECT

public:
    explicit frmImgProperties(QWidget *parent = nullptr);

    // The fields of the three attributes, in a form of the caller's.
    struct Fields
    {
        QLineEdit *txtImageName = nullptr;
        QLineEdit *txtAltText = nullptr;
        QSpinBox *txtBorderSize = nullptr;
    };
    static Fields BuildFields(QWidget *form);
    static void ReadFields(const Fields &fields, const HtmlElement &img);
    // Writes what the user changed: an emptied field takes its attribute
    // off; a field left as it was leaves the page's bytes alone. True when
    // something was written.
    static bool WriteFields(const Fields &fields, HtmlElement &img);

    void Init(const HtmlElement &img);
    // 1 when OK changed the picture; -1 for Abort, or an OK that changed
    // nothing.
    long Show();

private:
    HtmlElement m_Img;
    Fields m_fields;
};
