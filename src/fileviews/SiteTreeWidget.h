#pragma once

#include "transfer/DirTreeNodes.h"

#include <QHash>
#include <QTreeWidget>
#include <QUrl>

#include <functional>

// A tree of the site's files or folders on screen: the listings add and
// remove its nodes by key (DirTreeNodes), and a key-to-item index finds
// them. A folder not yet read holds one "Wait..." child with a key that
// begins "##wait_"; opening it calls the filler, which lists it. Closing a
// folder puts the "Wait..." child back, so the next opening lists it
// afresh and shows what changed on the server meanwhile.
//
// Each item carries its key and its image (the kind of file, FilePictures)
// in its data.
class SiteTreeWidget : public QTreeWidget, public DirTreeNodes
{
    Q_OBJECT

public:
    static constexpr int KeyRole = Qt::UserRole;
    static constexpr int ImageRole = Qt::UserRole + 1;
    static const QString WaitPrefix;

    explicit SiteTreeWidget(QWidget *parent = nullptr);

    long Add(const QString &parentKey, int relation, const QString &key, const QString &text, int image,
             int expandedImage) override;
    long Remove(const QString &key) override;
    long Count() const override { return long(m_index.size()); }

    QTreeWidgetItem *Node(const QString &key) const { return m_index.value(key); }
    static QString Key(const QTreeWidgetItem *item);
    static int Image(const QTreeWidgetItem *item);
    static bool IsFolder(const QTreeWidgetItem *item);
    // The first node: the site's root.
    QTreeWidgetItem *RootNode() const { return topLevelItem(0); }
    QString SelectedKey() const;
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

    // Drags out of the tree and drops on it, decided by the view that owns
    // the tree. A drag that began in this tree is never dropped on it.
    std::function<QMimeData *(QTreeWidgetItem *)> dragData;
    std::function<void()> dragEnded;
    std::function<bool(const QMimeData *, QTreeWidgetItem *)> acceptsDrop;
    // A drop runs after the drag has ended, so that the source is not held
    // while the files travel.
    std::function<void(const QList<QUrl> &, const QString &targetKey)> dropped;
    bool DragFromHere() const { return m_dragging; }

signals:
    // Mouse presses on the tree, with the point in the viewport.
    void MousePressed(Qt::MouseButton button, const QPoint &at);
    void RefreshPressed();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void startDrag(Qt::DropActions supportedActions) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void OnExpanded(QTreeWidgetItem *item);
    void OnCollapsed(QTreeWidgetItem *item);
    void Unindex(QTreeWidgetItem *item);
    bool Accepts(const QMimeData *data, const QPoint &at);

    QHash<QString, QTreeWidgetItem *> m_index;
    Filler m_fill;
    // The folder being listed and its new children, put in at once when
    // the listing ends: one by one, each would lay out the view anew.
    QTreeWidgetItem *m_fillTarget = nullptr;
    QList<QTreeWidgetItem *> m_pending;
    bool m_dragging = false;
    bool m_filling = false;
};
