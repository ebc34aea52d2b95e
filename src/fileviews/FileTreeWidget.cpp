#include "fileviews/FileTreeWidget.h"

#include <QDrag>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QTimer>

FileTreeWidget::FileTreeWidget(QWidget *parent) : QTreeWidget(parent)
{
    setHeaderHidden(true);
    setColumnCount(1);
    setDragEnabled(true);
    setAcceptDrops(true);
    setDropIndicatorShown(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
}

QString FileTreeWidget::Key(const QTreeWidgetItem *item)
{
    return item ? item->data(0, KeyRole).toString() : QString();
}

int FileTreeWidget::Image(const QTreeWidgetItem *item)
{
    return item ? item->data(0, ImageRole).toInt() : 0;
}

bool FileTreeWidget::IsFolder(const QTreeWidgetItem *item)
{
    const int image = Image(item);
    return image == 1 || image == 2;
}

QIcon FileTreeWidget::StyleIcon(QStyle::StandardPixmap which)
{
    auto found = m_icons.constFind(which);
    if (found == m_icons.constEnd())
        found = m_icons.insert(which, style()->standardIcon(which));
    return *found;
}

QString FileTreeWidget::SelectedKey() const
{
    return Key(currentItem());
}

void FileTreeWidget::mousePressEvent(QMouseEvent *event)
{
    QTreeWidget::mousePressEvent(event);
    emit MousePressed(event->button(), event->position().toPoint());
}

void FileTreeWidget::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_F5) {
        emit RefreshPressed();
        return;
    }
    QTreeWidget::keyPressEvent(event);
}

void FileTreeWidget::startDrag(Qt::DropActions)
{
    QTreeWidgetItem *item = currentItem();
    if (!item || !dragData)
        return;
    QMimeData *data = dragData(item);
    if (!data)
        return;
    auto *drag = new QDrag(this);
    drag->setMimeData(data);
    m_dragging = true;
    drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::CopyAction);
    m_dragging = false;
    if (dragEnded)
        dragEnded();
}

bool FileTreeWidget::Accepts(const QMimeData *data, const QPoint &at)
{
    if (m_dragging || !acceptsDrop)
        return false;
    QTreeWidgetItem *item = itemAt(at);
    if (item)
        setCurrentItem(item);
    return acceptsDrop(data, item);
}

void FileTreeWidget::dragEnterEvent(QDragEnterEvent *event)
{
    if (!m_dragging && event->mimeData()->hasUrls())
        event->acceptProposedAction();
    else
        event->ignore();
}

void FileTreeWidget::dragMoveEvent(QDragMoveEvent *event)
{
    if (Accepts(event->mimeData(), event->position().toPoint()))
        event->acceptProposedAction();
    else
        event->ignore();
}

void FileTreeWidget::dropEvent(QDropEvent *event)
{
    const QPoint at = event->position().toPoint();
    if (!Accepts(event->mimeData(), at) || !dropped) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
    const QList<QUrl> urls = event->mimeData()->urls();
    const QString target = Key(itemAt(at));
    QTimer::singleShot(0, this, [this, urls, target] { dropped(urls, target); });
}
