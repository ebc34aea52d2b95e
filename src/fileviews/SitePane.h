#pragma once

#include "fileviews/CLocalTreeView.h"
#include "fileviews/CSiteTreeView.h"

#include <QWidget>

class QPushButton;
class SiteTreeWidget;
class frmTreeViewLocal;

// The site pane (fmePages): the tree of the site's files with its buttons
// beneath it, "Add page" and the two transfer buttons, and under them the
// tree of this computer's files; the two share the height by a splitter.
class SitePane : public QWidget
{
    Q_OBJECT

public:
    explicit SitePane(QWidget *parent = nullptr);

    // The pane opens: the tree is filled when it is empty or shows
    // another site than the one in use.
    void Open();
    CSiteTreeView &SiteTree() { return m_SiteTree; }
    CLocalTreeView &LocalTree() { return m_LocalTree; }
    SiteTreeWidget *tvwSiteTree = nullptr;
    frmTreeViewLocal *LocalForm = nullptr;

private:
    void cmdAddNewPage_Click();

    QPushButton *cmdAddNewPage = nullptr;
    QPushButton *cmdDownloadFiles = nullptr;
    QPushButton *cmdUploadFiles = nullptr;
    CSiteTreeView m_SiteTree;
    CLocalTreeView m_LocalTree;
};
