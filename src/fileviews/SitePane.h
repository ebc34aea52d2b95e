#pragma once

#include "fileviews/CSiteTreeView.h"

#include <QWidget>

class QPushButton;
class SiteTreeWidget;

// The site pane (fmePages): the tree of the site's files with its buttons
// beneath it, "Add page" and the two transfer buttons. The local tree and
// its button join it with the local files.
class SitePane : public QWidget
{
    Q_OBJECT

public:
    explicit SitePane(QWidget *parent = nullptr);

    // The pane opens: the tree is filled when it is empty or shows
    // another site than the one in use.
    void Open();
    CSiteTreeView &SiteTree() { return m_SiteTree; }
    SiteTreeWidget *tvwSiteTree = nullptr;

private:
    void cmdAddNewPage_Click();

    QPushButton *cmdAddNewPage = nullptr;
    QPushButton *cmdDownloadFiles = nullptr;
    QPushButton *cmdUploadFiles = nullptr;
    CSiteTreeView m_SiteTree;
};
