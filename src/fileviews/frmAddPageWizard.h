#pragma once

#include <QDialog>
#include <QStringList>

class QLabel;
class QLineEdit;
class QPushButton;
class QStackedWidget;

// Leads through making a new page in four steps: where it goes, its title,
// its file name, and the end, where the page's address is put on the
// clipboard for a link. The caller reads title and file name when the
// wizard was not cancelled and sends the page.
class frmAddPageWizard : public QDialog
{
    Q_OBJECT

public:
    explicit frmAddPageWizard(QWidget *parent = nullptr);

    // The folder's key in the site tree (its address); reads its names.
    long init(const QString &strCurrentFolder_p);
    QString GetTitle() const;
    QString GetFileName() const;
    bool Cancelled() const { return m_boolCancelled; }
    int Step() const { return m_nStep; }

    // Mends the name in the box (FileNameRules::MendPageName); true when
    // the folder holds a file of that name.
    bool CheckFileNameFinal();

    QLabel *lblDocPath = nullptr;
    QLineEdit *txtDocTitle = nullptr;
    QLineEdit *txtFileName = nullptr;
    QLabel *lblDocAbsolutePath = nullptr;
    QPushButton *cmdPrevius = nullptr;
    QPushButton *cmdNext = nullptr;
    QPushButton *cmdCancel = nullptr;
    QPushButton *cmdOk = nullptr;

private:
    QWidget *BuildStep(int caption, const QList<QWidget *> &content);
    void ShowStep(int step);
    void cmdNext_Click();
    void cmdPrevius_Click();
    void txtFileName_Change();

    QStackedWidget *Frame1 = nullptr;
    QLabel *m_lblCaption = nullptr;
    int m_nStep = 0;
    QStringList m_astrFiles;
    bool m_boolCancelled = true;
};
