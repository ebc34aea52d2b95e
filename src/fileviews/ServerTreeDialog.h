#pragma once

#include <QDialog>

class QLabel;
class QPushButton;
class SiteTreeWidget;

// What the two dialogs that pick a place on the server share: a tree of
// the site in use, filled to its first level when it is shown for another
// site than the last time, and read a folder at a time as folders open.
// The tree stays between uses, so a second use for the same site reads
// nothing until a folder is opened.
class ServerTreeDialog : public QDialog
{
    Q_OBJECT

public:
    SiteTreeWidget *tvwSiteTree = nullptr;
    QPushButton *cmdOk = nullptr;
    QPushButton *cmdAbort = nullptr;

    // The chosen node: "ROOT" for the site's root, else its path below the
    // web root with a leading "/"; "" when nothing was chosen.
    QString ChosenKey() const;

protected:
    ServerTreeDialog(QWidget *parent, bool boolFiles_p, long lTitle_p, long lFrame_p, long lLabel_p);

    // Fills the tree when the site changed since the last time. 1, -1
    // when the server gave nothing to show, 0 failure (error pending).
    long PopulateTree();
    QString Position(const char *strProcedure_p) const;

    QString m_strKey; // the key of the chosen node (an address)

private:
    bool m_boolFiles;
    QString m_strRootKey; // the site the tree shows
};
