#pragma once

#include <QDialog>
#include <QStringList>

class QListWidget;

// The list of active sites, offered when Edit is pressed on a page of no
// active site; the user picks the one to go to.
class frmChooseSiteToEdit : public QDialog
{
    Q_OBJECT

public:
    // The result of Choose when the user asked for the settings dialog, to
    // add the site he is on.
    static constexpr long ToSettings = -2;

    explicit frmChooseSiteToEdit(QWidget *parent = nullptr);

    void SetSites(const QStringList &astrSites_p);
    // The row picked, or -1 when the user cancelled.
    long GetChosen() const { return m_lChosen; }

    // Shows the dialog modally. Returns the index of the picked site in
    // astrSites_p, -1 when none was picked, or ToSettings; strChosen_p gets
    // the picked address.
    static long Choose(const QStringList &astrSites_p, QString &strChosen_p, QWidget *parent = nullptr);

private:
    void cmdOK_Click();

    QListWidget *m_lstSites = nullptr;
    long m_lChosen = -1;
};
