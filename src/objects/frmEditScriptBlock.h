#pragma once

#include <QDialog>

class QComboBox;
class QPlainTextEdit;

// The text of the page's own script block, with ready-made functions to
// add to it. Save closes with the text; Cancel and the close box leave it
// as it was.
class frmEditScriptBlock : public QDialog
{
    Q_OBJECT

public:
    explicit frmEditScriptBlock(QWidget *parent = nullptr);

    long Init(const QString &strJavaScript_p);
    QString Text() const;
    // Runs the dialog modally: 1 saved, -1 cancelled.
    long Show();

    // The ready-made functions: their names as the list offers them, and
    // the text each adds.
    static const QStringList &TemplateNames();
    static QString TemplateText(int index);

private:
    void cmdAddScriptToTextbox_Click();

    QPlainTextEdit *txtScriptText = nullptr;
    QComboBox *cboAddJavaScript = nullptr;
    bool m_boolSaved = false;
};
