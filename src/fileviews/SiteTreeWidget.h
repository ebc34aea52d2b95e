#pragma once

#include "fileviews/FileTreeWidget.h"
#include "transfer/DirTreeNodes.h"

#include <QHash>

#include <functional>

// A tree of the site's files or folders on screen: the listings add and
// remove its nodes by key (DirTreeNodes), and a key-to-item index finds
// them. A folder not yet read holds one "Wait..." child with a key that
// begins "##wait_"; opening it calls the filler, which lists it. Closing a
// folder puts the "Wait..." child back, so the next opening lists it
// afresh and shows what changed on the server meanwhile.
//
// An item's image is the kind of file (FilePictures).
class SiteTreeWidget : public FileTreeWidget, public DirTreeNodes
{
    Q_OBJECT

public:
    static const QString WaitPrefix;

    explicit SiteTreeWidget(QWidget *parent = nullptr);

    long Add(const QString &parentKey, int relation, const QString &key, const QString &text, int image,
             int expandedImage) override;
    long Remove(const QString &key) override;
    long Count() const override { return long(m_index.size()); }

    QTreeWidgetItem *Node(const QString &key) const { return m_index.value(key); }
    // The first node: the site's root.
    QTreeWidgetItem *RootNode() const { return topLevelItem(0); }
    void ClearNodes();

    // Lists the folder of a key into the tree; its status. -2 (the server
    // didn't answer in time) closes the folder again.
    using Filler = std::function<long(const QString &key)>;
    void SetFiller(Filler fill) { m_fill = std::move(fill); }

    // The folder of the key as not read yet: its children go and a
    // "Wait..." child stands in for them.
    void ResetFolder(const QString &key);
    // ResetFolder, then open it, which lists it.
    void Reread(const QString &key);

private:
    void OnExpanded(QTreeWidgetItem *item);
    void OnCollapsed(QTreeWidgetItem *item);
    void Unindex(QTreeWidgetItem *item);

    QHash<QString, QTreeWidgetItem *> m_index;
    Filler m_fill;
    // The folder being listed and its new children, put in at once when
    // the listing ends: one by one, each would lay out the view anew.
    QTreeWidgetItem *m_fillTarget = nullptr;
    QList<QTreeWidgetItem *> m_pending;
    bool m_filling = false;
};
