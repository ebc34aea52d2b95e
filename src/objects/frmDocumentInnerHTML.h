#pragma once

#include <QDialog>
#include <QStringList>

class QPlainTextEdit;

// The HTML source of a page, shown for editing by hand: a text box with OK
// and Cancel. The caller loads it, fills it with Init, shows it with Show,
// and reads Cancelled and Text afterwards.
class frmDocumentInnerHTML : public QDialog
{
    Q_OBJECT

public:
    explicit frmDocumentInnerHTML(QWidget *parent = nullptr);

    // The source and its kind (an ASP source is shown as it is), and the
    // window's caption.
    long Init(const QString &HTMLCode_p, bool IsASP_p, const QString &strCaption_p);
    // Runs the dialog modally (and answers a test's script, see below).
    // 1 when the user pressed OK, -1 when he cancelled.
    long Show();
    // However the dialog was run, only OK counts as not cancelled.
    void done(int result) override;
    bool Cancelled() const { return m_boolCancelled; }
    QString Text() const;
    bool IsASP() const { return m_boolIsASP; }

    // Test support: under a UserQuestions script the dialog is not shown;
    // each dialog answered OK takes the next of these texts as what the
    // user typed (with none left, the text stays as it was given).
    static void ScriptEdits(const QStringList &texts);

private:
    void cmdOK_Click();

    QPlainTextEdit *m_rtfInnerHTML = nullptr;
    bool m_boolIsASP = false;
    bool m_boolCRLF = false;
    bool m_boolCancelled = true;
};
