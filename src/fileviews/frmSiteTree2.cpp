#include "fileviews/frmSiteTree2.h"

#include "fileviews/SiteTreeWidget.h"

#include <QPushButton>

namespace {
constexpr long txtTitle = 20025, txtFrame = 20026, txtLabel = 20027;
}

frmSiteTree2::frmSiteTree2(QWidget *parent) : ServerTreeDialog(parent, true, txtTitle, txtFrame, txtLabel)
{
    setObjectName(QStringLiteral("frmSiteTree2"));
    cmdOk->setEnabled(false);
    connect(tvwSiteTree, &QTreeWidget::itemSelectionChanged, this, &frmSiteTree2::m_tvwSiteTree_Click);
    connect(tvwSiteTree, &SiteTreeWidget::MousePressed, this, [this](Qt::MouseButton button, const QPoint &at) {
        if (button == Qt::RightButton)
            RightClick(at);
    });
    connect(cmdOk, &QPushButton::clicked, this, [this] {
        m_boolCancelled = false;
        accept();
    });
    connect(cmdAbort, &QPushButton::clicked, this, &QDialog::reject);
}

long frmSiteTree2::init()
{
    m_boolCancelled = true;
    return PopulateTree();
}

// Folders and every kind of file can be linked; the "Wait..." placeholder
// (image 3) and a node without an image can't.
void frmSiteTree2::m_tvwSiteTree_Click()
{
    QTreeWidgetItem *item = tvwSiteTree->currentItem();
    const int image = SiteTreeWidget::Image(item);
    const bool linkable = item && image > 0 && image != 3;
    m_strKey = linkable ? SiteTreeWidget::Key(item) : QString();
    cmdOk->setEnabled(linkable);
}

void frmSiteTree2::RightClick(const QPoint &at)
{
    if (QTreeWidgetItem *item = tvwSiteTree->itemAt(at))
        tvwSiteTree->setCurrentItem(item);
}
