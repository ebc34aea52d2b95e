#include "fileviews/frmTreeViewLocal.h"

#include "fileviews/FileTreeWidget.h"

#include <QComboBox>
#include <QFrame>
#include <QVBoxLayout>

frmTreeViewLocal::frmTreeViewLocal(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("frmTreeViewLocal"));
    fmeTV = new QFrame(this);
    fmeTV->setObjectName(QStringLiteral("fmeTV"));
    cmbDrives = new QComboBox(fmeTV);
    cmbDrives->setObjectName(QStringLiteral("cmbDrives"));
    tvwLocal = new FileTreeWidget(fmeTV);
    tvwLocal->setObjectName(QStringLiteral("tvwLocal"));
    auto *inner = new QVBoxLayout(fmeTV);
    inner->setContentsMargins(0, 0, 0, 0);
    inner->addWidget(cmbDrives);
    inner->addWidget(tvwLocal);
    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(fmeTV);
}

void frmTreeViewLocal::PopulateDriveCombo(const QList<LocalRoots::Root> &roots_p)
{
    cmbDrives->clear();
    for (const LocalRoots::Root &root : roots_p)
        cmbDrives->addItem(root.strText, root.strPath);
}
