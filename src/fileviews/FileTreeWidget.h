#pragma once

#include <QHash>
#include <QIcon>
#include <QStyle>
#include <QTreeWidget>
#include <QUrl>

#include <functional>

// A tree of files on screen, the site's or this computer's: each item
// carries its key (the file's address or path) and its image (the kind of
// node: folder, page, picture, drive...) in its data. Drags out of it and
// drops on it are decided by the view that owns it; a drag that began in
// the tree is never dropped on it.
class FileTreeWidget : public QTreeWidget
{
    Q_OBJECT

public:
    static constexpr int KeyRole = Qt::UserRole;
    static constexpr int ImageRole = Qt::UserRole + 1;

    explicit FileTreeWidget(QWidget *parent = nullptr);

    static QString Key(const QTreeWidgetItem *item);
    static int Image(const QTreeWidgetItem *item);
    static bool IsFolder(const QTreeWidgetItem *item);
    QString SelectedKey() const;
    // The style's icon, looked up once per tree: a lookup reads the icon
    // theme and costs more than the rest of an item, and a folder may put
    // thousands of items in at once.
    QIcon StyleIcon(QStyle::StandardPixmap which);

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
    bool Accepts(const QMimeData *data, const QPoint &at);

    bool m_dragging = false;
    QHash<int, QIcon> m_icons;
};
