#pragma once

#include "fileviews/LocalRoots.h"

#include <QWidget>

class FileTreeWidget;
class QComboBox;
class QFrame;

// The controls of the local tree: the frame fmeTV, the list of the
// computer's top levels cmbDrives above the tree tvwLocal. Its layout
// follows the pane it stands in; the behaviour is CLocalTreeView's.
class frmTreeViewLocal : public QWidget
{
    Q_OBJECT

public:
    explicit frmTreeViewLocal(QWidget *parent = nullptr);

    // The top levels, for a quick jump to one of them in the tree.
    void PopulateDriveCombo(const QList<LocalRoots::Root> &roots_p);

    QFrame *fmeTV = nullptr;
    QComboBox *cmbDrives = nullptr;
    FileTreeWidget *tvwLocal = nullptr;
};
