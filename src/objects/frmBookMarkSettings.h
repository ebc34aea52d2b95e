#pragma once

#include <QDialog>

class QLineEdit;

// Asks for the name of a bookmark (an anchor a link can point at with
// page.htm#name). A name is required to close with OK; Cancel clears it.
class frmBookMarkSettings : public QDialog
{
    Q_OBJECT

public:
    explicit frmBookMarkSettings(QWidget *parent = nullptr);

    QString BookMarkName() const;
    void SetBookMarkName(const QString &strName_p);
    // Runs the dialog modally: 1 with a name, -1 cancelled.
    long Show();

private:
    void OKButton_Click();
    void CancelButton_Click();

    QLineEdit *txtBookMarkName = nullptr;
};
