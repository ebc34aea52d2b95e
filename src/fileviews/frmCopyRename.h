#pragma once

#include <QDialog>
#include <QStringList>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

// Asks for a new name of a file or folder on the server. The caller sets
// the caption and the label for its command; "Syntax check" keeps the name
// to the characters every server takes, and a name that is in the folder
// already is asked about, except in the mode "copy2".
class frmCopyRename : public QDialog
{
    Q_OBJECT

public:
    explicit frmCopyRename(QWidget *parent = nullptr);

    // Keeps the mode and reads the names of the folder (an address in it).
    long init(const QString &strCurrentFolder_p, const QString &strAction_p);
    void SetCaption(const QString &strCaption_p) { setWindowTitle(strCaption_p); }
    void SetLabel(const QString &strLabel_p);
    void SetText(const QString &strText_p);
    QString GetText() const;
    bool Cancelled() const { return m_boolCancelled; }

    // The name box's colour: black for a name that passes, red for one
    // that doesn't. Both name dialogs use it.
    static void MarkName(QLineEdit *box_p, bool boolValid_p);

    // True when the folder holds a file of that name.
    bool CheckFileNameFinal(const QString &strName_p) const;

    QLineEdit *txtNewFileName = nullptr;
    QLabel *lblNewFileName = nullptr;
    QCheckBox *ChkNoSpellcontrol = nullptr;
    QPushButton *cmdOk = nullptr;
    QPushButton *cmdCancel = nullptr;

private:
    void txtNewFileName_Change();
    void cmdOk_Click();
    void cmdCancel_Click();

    QString m_strAction;
    QStringList m_astrFiles;
    bool m_boolCancelled = true;
};
