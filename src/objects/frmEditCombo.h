#pragma once

#include "platform/HtmlDocument.h"
#include "platform/HtmlElement.h"

#include <QDialog>
#include <QList>

class QComboBox;
class QLineEdit;

// The options of a drop-down list in a form of the page: each option's
// text and value, added, changed and removed, written back in their order
// on OK.
class frmEditCombo : public QDialog
{
    Q_OBJECT

public:
    struct Entry
    {
        QString text;
        QString value;
    };

    explicit frmEditCombo(QWidget *parent = nullptr);

    // Reads the options of the SELECT element. 1, or 0 with the error
    // pending when the element is gone.
    long Init(const HtmlElement &HTMLHtmlElement_p, const HtmlDocument &HTMLDocument_p);
    const QList<Entry> &Entries() const { return m_aEntries; }
    // Runs the dialog modally; on OK the options are written to the
    // element. 1 written, -1 cancelled, 0 failed (error pending).
    long Show();

private:
    void cmbText_Click(int index);
    void cmbText_Change(const QString &text);
    void txtValue_Change(const QString &value);
    void cmdAdd_Click();
    void fpBtn2_Click();
    long WriteOptions();

    HtmlElement m_Select;
    HtmlDocument m_Document;
    QList<Entry> m_aEntries;
    QComboBox *cmbText = nullptr;
    QLineEdit *txtValue = nullptr;
    bool m_boolFilling = false;
};
