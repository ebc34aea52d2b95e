#pragma once

#include <QDialog>

class QLineEdit;
class QListWidget;
class QPushButton;
class QTextEdit;
class SpellingSession;

// The spelling dialog: the word in its sentence, suggestions, the word to
// put instead, and the usual answers. It walks the session from one
// misspelt word to the next and closes by itself (accepted) after the
// last; Cancel (or Esc) rejects, and the caller keeps the text as it was.
class frmSpelling : public QDialog
{
    Q_OBJECT

public:
    // The session stands on its first misspelt word.
    frmSpelling(SpellingSession &session, QWidget *parent = nullptr);

private:
    void Build();
    void ShowWord();
    void GoOn();
    void cmdIgnore_Click();
    void cmdIgnoreAll_Click();
    void cmdAdd_Click();
    void cmdChange_Click();
    void cmdChangeAll_Click();

    SpellingSession &m_session;
    QTextEdit *txtSentence = nullptr;
    QLineEdit *txtChangeTo = nullptr;
    QListWidget *lstSuggestions = nullptr;
    QPushButton *cmdChange = nullptr;
};
