#pragma once

#include <QDialog>
#include <QString>

class QPushButton;
class QTextEdit;

// The source of one server script block, to view and edit. The delimiters
// at its ends are shown blue; Tab types a tab, as script is indented with
// them. Save is offered only while the box holds something. After Show,
// ASP() is "-1" when the user cancelled or closed the window, otherwise
// the text as he left it, with the line ends the block had.
class frmASPDialog : public QDialog
{
    Q_OBJECT

public:
    explicit frmASPDialog(QWidget *parent = nullptr);

    void SetASP(const QString &strASP_p);
    QString ASP() const { return m_strASP; }
    void Show();

private:
    void SetColors();
    void cmdOk_Click();
    void cmdAbort_Click();

    QTextEdit *rtfASP = nullptr;
    QPushButton *cmdOk = nullptr;
    QPushButton *cmdAbort = nullptr;
    QString m_strASP = QStringLiteral("-1");
    bool m_boolCRLF = false;
};
