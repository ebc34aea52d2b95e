#include "fileviews/SitePane.h"

#include "fileviews/FileTreeWidget.h"
#include "fileviews/SiteTreeKeys.h"
#include "fileviews/SiteTreeWidget.h"
#include "fileviews/frmAddPageWizard.h"
#include "fileviews/frmTreeViewLocal.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "transfer/CFTPS.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>

namespace {
constexpr long txtAddPage = 14410, txtUp = 14428, txtDown = 14429;

QPushButton *Button(QWidget *parent, const char *name, long caption)
{
    auto *button = new QPushButton(MResources::LoadResourceString(caption), parent);
    button->setObjectName(QString::fromLatin1(name));
    return button;
}
} // namespace

SitePane::SitePane(QWidget *parent) : QWidget(parent), m_SiteTree(this), m_LocalTree(this)
{
    setObjectName(QStringLiteral("fmePages"));
    setMinimumWidth(260);
    tvwSiteTree = new SiteTreeWidget(this);
    tvwSiteTree->setObjectName(QStringLiteral("tvwSiteTree"));
    cmdAddNewPage = Button(this, "cmdAddNewPage", txtAddPage);
    cmdDownloadFiles = Button(this, "cmdDownloadFiles", txtDown);
    cmdUploadFiles = Button(this, "cmdUploadFiles", txtUp);
    auto *buttons = new QHBoxLayout;
    for (QPushButton *button : {cmdAddNewPage, cmdDownloadFiles, cmdUploadFiles})
        buttons->addWidget(button);
    auto *site = new QWidget(this);
    auto *siteColumn = new QVBoxLayout(site);
    siteColumn->setContentsMargins(0, 0, 0, 0);
    siteColumn->addWidget(tvwSiteTree);
    siteColumn->addLayout(buttons);
    LocalForm = new frmTreeViewLocal(this);
    auto *split = new QSplitter(Qt::Vertical, this);
    split->setObjectName(QStringLiteral("picSplitPane4"));
    split->addWidget(site);
    split->addWidget(LocalForm);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(split);
    connect(cmdAddNewPage, &QPushButton::clicked, this, &SitePane::cmdAddNewPage_Click);
}

// The buttons wait for the tree: they are off until it stands.
void SitePane::Open()
{
    for (QPushButton *button : {cmdAddNewPage, cmdDownloadFiles, cmdUploadFiles})
        button->setEnabled(false);
    m_SiteTree.init(this);
    cmdAddNewPage->setEnabled(tvwSiteTree->Count() > 0);
    // The local tree is read once; F5 and a download read a folder again.
    if (LocalForm->tvwLocal->topLevelItemCount() == 0)
        m_LocalTree.Init(this);
}

// With nothing selected, or a file, the new page goes into the folder
// that holds the selection, or the site's root: where the user looks.
void SitePane::cmdAddNewPage_Click()
{
    QString folder = tvwSiteTree->SelectedKey();
    if (folder.isEmpty() || folder.startsWith(SiteTreeWidget::WaitPrefix))
        folder = SiteTreeKeys::CurrentRootKey();
    else if (!SiteTreeWidget::IsFolder(tvwSiteTree->Node(folder)))
        folder = SiteTreeKeys::ParentKey(folder);
    frmAddPageWizard wizard(this);
    wizard.init(folder);
    wizard.exec();
    if (wizard.Cancelled())
        return;
    const QString root = SiteTreeKeys::CurrentRootKey();
    CFTPS ftp;
    if (ftp.SendNewPage(wizard.GetTitle(), SiteTreeKeys::InFolder(folder, root, wizard.GetFileName())) != 1) {
        MError::ShowError();
        return;
    }
    m_SiteTree.CollapseNode(folder);
}
