#include "fileviews/frmSiteTree.h"

#include "fileviews/ServerFolderPaths.h"
#include "fileviews/SiteTreeKeys.h"
#include "fileviews/SiteTreeWidget.h"
#include "support/MError.h"

#include <QApplication>
#include <QPushButton>

namespace {
constexpr long txtTitle = 20023, txtFrame = 14401, txtLabel = 20024;
}

frmSiteTree &frmSiteTree::Instance()
{
    static frmSiteTree *form = [] {
        auto *made = new frmSiteTree;
        QObject::connect(qApp, &QCoreApplication::aboutToQuit, made, &QObject::deleteLater);
        return made;
    }();
    return *form;
}

frmSiteTree::frmSiteTree() : ServerTreeDialog(nullptr, false, txtTitle, txtFrame, txtLabel)
{
    setObjectName(QStringLiteral("frmSiteTree"));
    // No close box and no system menu: the form ends by its buttons.
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    connect(tvwSiteTree, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem *item) {
        m_strKey = SiteTreeWidget::Key(item);
        cmdOk->setEnabled(true);
    });
    connect(cmdOk, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdAbort, &QPushButton::clicked, this, &frmSiteTree::reject);
}

void frmSiteTree::reject()
{
    m_strKey.clear();
    QDialog::reject();
}

void frmSiteTree::Form_Paint()
{
    cmdOk->setEnabled(false);
    m_strKey.clear();
    if (PopulateTree() == 0)
        MError::ShowError();
    if (QTreeWidgetItem *root = tvwSiteTree->RootNode())
        tvwSiteTree->setCurrentItem(root);
}

long frmSiteTree::Choose()
{
    Form_Paint();
    exec();
    return ChosenKey().isEmpty() ? -1 : 1;
}

long frmSiteTree::GetPath(const QString &strPathname_p, QString &strRes_p)
{
    strRes_p.clear();
    const long chosen = Choose();
    if (chosen == 1)
        strRes_p = ServerFolderPaths::RelativePath(strPathname_p, ChosenKey());
    return chosen;
}

long frmSiteTree::GetUpLoadPath(QString &strUpLoadPath_p)
{
    strUpLoadPath_p.clear();
    const long chosen = Choose();
    if (chosen == 1)
        strUpLoadPath_p = ServerFolderPaths::UpLoadPath(ChosenKey(), SiteTreeKeys::CurrentSite());
    return chosen;
}
