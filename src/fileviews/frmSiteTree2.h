#pragma once

#include "fileviews/ServerTreeDialog.h"

// Asks for a file or folder of the site to link to. The tree shows files
// too; OK is offered only on a node that can be linked.
class frmSiteTree2 : public ServerTreeDialog
{
    Q_OBJECT

public:
    explicit frmSiteTree2(QWidget *parent = nullptr);

    // Sets the cancelled flag and fills the tree if it shows no site or
    // another one. 1, -1 nothing to show, 0 failure (error pending).
    long init();
    bool Cancelled() const { return m_boolCancelled; }
    // The chosen node's address.
    QString ChosenAddress() const { return m_strKey; }

private:
    void m_tvwSiteTree_Click();
    void RightClick(const QPoint &at);

    bool m_boolCancelled = true;
};
