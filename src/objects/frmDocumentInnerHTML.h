#pragma once

#include <QDialog>
#include <QStringList>

class HtmlSourceHighlighter;
class QCheckBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QVBoxLayout;
class SourceSearch;

// The HTML source of a page, shown for editing by hand: a fixed-width
// text box that colours tags, attributes, server script and comments, with
// find and replace, go to line (Ctrl+G) and the caret's line and position
// below. The caller loads it, fills it with Init, shows it with Show, and
// reads Cancelled and Text afterwards.
class frmDocumentInnerHTML : public QDialog
{
    Q_OBJECT

public:
    explicit frmDocumentInnerHTML(QWidget *parent = nullptr);
    ~frmDocumentInnerHTML() override;

    // The source and its kind (an ASP source is shown as it is), and the
    // window's caption.
    long Init(const QString &HTMLCode_p, bool IsASP_p, const QString &strCaption_p);
    // Runs the dialog modally (and answers a test's script, see below).
    // 1 when the user pressed OK, -1 when he cancelled.
    long Show();
    // However the dialog was run, only OK counts as not cancelled.
    void done(int result) override;
    bool Cancelled() const { return m_boolCancelled; }
    // The text handed back: after OK, what the box held, completed by the
    // save step; before, the text given to Init.
    QString Text() const;
    bool IsASP() const { return m_boolIsASP; }

    // The buttons of the search row; each gives the count of hits, or -1
    // when the search text can't be used (the user has been told why).
    long cmdFindWord_Click();
    long cmdReplace_Click();
    // Every hit replaced without a question, as one step of Undo.
    long cmdReplaceAll_Click();
    // Ctrl+G: asks for a line number and puts the caret at its start.
    long GoToLine();

    // What OK hands back for a page that isn't an ASP source and whose
    // first characters open a script or a style sheet: a hidden paragraph
    // goes in front, or the page engine would drop those from the body.
    static QString SaveStep(const QString &text, bool IsASP_p);

    // Test support: under a UserQuestions script the dialog is not shown;
    // each dialog answered OK takes the next of these texts as what the
    // user typed (with none left, the text stays as it was given).
    static void ScriptEdits(const QStringList &texts);
    // Test support: the dialog runs for real even under a script, so that a
    // test types into it as a user does; its own questions still take the
    // script's answers.
    static void RunUnderScript(bool on);

protected:
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void BuildSearchRow(QVBoxLayout *column);
    void BuildButtonRow(QVBoxLayout *column);
    void cmdOK_Click();
    void UpdateStatus();
    void PaintShownLines();
    // The box's text with a plain line feed between lines, so that a
    // position in it is a position in the box.
    QString BoxText() const;
    void Select(qsizetype start, qsizetype length);
    bool Usable(const SourceSearch &search);
    void TellHits(long hits);

    QPlainTextEdit *m_rtfInnerHTML = nullptr;
    HtmlSourceHighlighter *m_highlighter = nullptr;
    QLineEdit *m_txtWordToFind = nullptr;
    QLineEdit *m_txtReplace = nullptr;
    QCheckBox *m_chkMatchCase = nullptr;
    QCheckBox *m_chkWholeWord = nullptr;
    QCheckBox *m_chkRegularExpression = nullptr;
    QLabel *m_lblStatus = nullptr;
    QString m_strResult;
    bool m_boolIsASP = false;
    bool m_boolCRLF = false;
    bool m_boolCancelled = true;
    bool m_boolPainting = false;
};
