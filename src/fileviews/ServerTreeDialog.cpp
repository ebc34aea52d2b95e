#include "fileviews/ServerTreeDialog.h"

#include "fileviews/SiteTreeKeys.h"
#include "fileviews/SiteTreeWidget.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "transfer/CFTPS.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
constexpr long txtOk = 14624, txtCancel = 14625;
}

ServerTreeDialog::ServerTreeDialog(QWidget *parent, bool boolFiles_p, long lTitle_p, long lFrame_p, long lLabel_p)
    : QDialog(parent), m_boolFiles(boolFiles_p)
{
    setModal(true);
    setWindowTitle(MResources::LoadResourceString(lTitle_p));
    auto *frame = new QGroupBox(MResources::LoadResourceString(lFrame_p), this);
    auto *label = new QLabel(MResources::LoadResourceString(lLabel_p), frame);
    label->setWordWrap(true);
    tvwSiteTree = new SiteTreeWidget(frame);
    tvwSiteTree->setObjectName(QStringLiteral("tvwSiteTree"));
    tvwSiteTree->setDragEnabled(false);
    tvwSiteTree->setAcceptDrops(false);
    auto *inside = new QVBoxLayout(frame);
    inside->addWidget(label);
    inside->addWidget(tvwSiteTree);
    cmdOk = new QPushButton(MResources::LoadResourceString(txtOk), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdAbort = new QPushButton(MResources::LoadResourceString(txtCancel), this);
    cmdAbort->setObjectName(QStringLiteral("cmdAbort"));
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdAbort);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(frame);
    layout->addLayout(buttons);
    resize(420, 460);
    tvwSiteTree->SetFiller([this](const QString &key) {
        CFTPS ftp;
        return m_boolFiles ? ftp.GetDirFiles(*tvwSiteTree, key) : ftp.GetDirBranch(*tvwSiteTree, key);
    });
}

QString ServerTreeDialog::ChosenKey() const
{
    if (m_strKey.isEmpty())
        return {};
    if (m_strKey == m_strRootKey)
        return QStringLiteral("ROOT");
    return QLatin1Char('/') + SiteTreeKeys::Address(m_strKey, m_strRootKey);
}

long ServerTreeDialog::PopulateTree()
{
    const QString root = SiteTreeKeys::CurrentRootKey();
    if (root == m_strRootKey && tvwSiteTree->Count() > 0)
        return 1;
    tvwSiteTree->ClearNodes();
    m_strRootKey.clear();
    CFTPS ftp;
    const long result = m_boolFiles ? ftp.GetDirFiles(*tvwSiteTree) : ftp.GetDirBranch(*tvwSiteTree);
    if (result != 1) {
        tvwSiteTree->ClearNodes();
        return result == 0 ? 0 : -1;
    }
    m_strRootKey = root;
    if (QTreeWidgetItem *top = tvwSiteTree->RootNode())
        top->setExpanded(true);
    return 1;
}

QString ServerTreeDialog::Position(const char *strProcedure_p) const
{
    return objectName() + QLatin1Char('.') + QString::fromLatin1(strProcedure_p);
}
