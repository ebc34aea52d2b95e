#pragma once

#include <QDialog>

#include <memory>

class QGroupBox;
class QLabel;
class QPushButton;
class SiteActivation;

// The two ways to activate the site on screen in the settings dialog:
// automatic, which proves the pair on the live servers (SiteActivation), and
// manual, which takes the user's word for it. The record is changed in
// place; the settings dialog stores it.
class frmActivateHow : public QDialog
{
    Q_OBJECT

public:
    frmActivateHow(long lIndex_p, QWidget *parent = nullptr);
    ~frmActivateHow() override;

    long IsChange(bool &boolIsChanged_p) const;
    // The site was activated, one way or the other.
    bool Activated() const { return m_boolActivated; }

protected:
    void reject() override;

private:
    void cmdAutoActivate_Click();
    void cmdForceActivate_Click();
    void Running(bool boolRunning_p);
    void ShowDone(QGroupBox *frame, QLabel *label);

    long m_lIndex;
    QGroupBox *fmeAutomatic = nullptr;
    QGroupBox *fmeManual = nullptr;
    QPushButton *cmdAutoActivate = nullptr;
    QPushButton *cmdForceActivate = nullptr;
    QPushButton *cmdOk = nullptr;
    QPushButton *cmdCancel = nullptr;
    QLabel *lblWait = nullptr;
    QLabel *lblAutomaticActivateInfo = nullptr;
    QLabel *lblManualActivateInfo = nullptr;
    QLabel *imgOK = nullptr;
    std::unique_ptr<SiteActivation> m_run; // while an automatic run is under way
    bool m_boolChanged = false;
    bool m_boolActivated = false;
};
