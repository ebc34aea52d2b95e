#pragma once

#include <QDialog>

class QCheckBox;
class QLabel;
class QHBoxLayout;

// A message with the check box "Don´t show this message in the future.".
// The box's state is kept in the settings store (section "environment",
// under the message's name), and a message whose mark is set is not shown.
class frmMessageBoxOnce : public QDialog
{
    Q_OBJECT

public:
    explicit frmMessageBoxOnce(QWidget *parent = nullptr);

    // Stores the texts and reads the mark: boolDontShow comes back True when
    // the user silenced this message before, and the caller skips it.
    void init(const QString &strMessage_p, const QString &strMessageBoxTitle_p,
              const QString &strMessageBoxName_p, bool &boolDontShow);

    // Writes "1" under the message's name when the box is checked, "" when not.
    void ChkShowOnlyOnce_Click();
    QCheckBox *ChkShowOnlyOnce() const { return m_chkShowOnlyOnce; }

    // The button pressed: vbOK here, vbYes or vbNo for the yes/no kind.
    long Answer() const { return m_lAnswer; }

    // Shows the message unless it was silenced. Returns vbOK, or 0 when the
    // message was not shown.
    static long Show(const QString &strMessage_p, const QString &strMessageBoxTitle_p,
                     const QString &strMessageBoxName_p, QWidget *parent = nullptr);

protected:
    // Adds a button that closes the dialog with the given answer.
    void AddAnswerButton(const QString &caption, long answer);
    static long ShowDialog(frmMessageBoxOnce &form, const QString &strMessage_p,
                           const QString &strMessageBoxTitle_p, const QString &strMessageBoxName_p,
                           long lClosedAnswer_p);

private:
    QLabel *m_lblMessage = nullptr;
    QCheckBox *m_chkShowOnlyOnce = nullptr;
    QHBoxLayout *m_buttons = nullptr;
    QString m_strName;
    long m_lAnswer = 0;
};
