#include "fileviews/SiteTreeWidget.h"


const QString SiteTreeWidget::WaitPrefix = QStringLiteral("##wait_");

SiteTreeWidget::SiteTreeWidget(QWidget *parent) : FileTreeWidget(parent)
{
    connect(this, &QTreeWidget::itemExpanded, this, &SiteTreeWidget::OnExpanded);
    connect(this, &QTreeWidget::itemCollapsed, this, &SiteTreeWidget::OnCollapsed);
}

long SiteTreeWidget::Add(const QString &parentKey, int, const QString &key, const QString &text, int image, int)
{
    if (m_index.contains(key))
        return errKeyNotUnique;
    QTreeWidgetItem *parent = nullptr;
    if (!parentKey.isEmpty()) {
        parent = m_index.value(parentKey);
        if (!parent)
            return errElementNotFound;
    }
    auto *item = new QTreeWidgetItem(QStringList(text));
    item->setData(0, KeyRole, key);
    item->setData(0, ImageRole, image);
    if (image != 3)
        item->setIcon(0, StyleIcon(image == 1 || image == 2 ? QStyle::SP_DirIcon : QStyle::SP_FileIcon));
    if (parent && parent == m_fillTarget)
        m_pending.append(item);
    else if (parent)
        parent->addChild(item);
    else
        addTopLevelItem(item);
    m_index.insert(key, item);
    return 1;
}

long SiteTreeWidget::Remove(const QString &key)
{
    QTreeWidgetItem *item = m_index.value(key);
    if (!item)
        return errElementNotFound;
    Unindex(item);
    delete item;
    return 1;
}

void SiteTreeWidget::Unindex(QTreeWidgetItem *item)
{
    m_index.remove(Key(item));
    for (int i = 0; i < item->childCount(); ++i)
        Unindex(item->child(i));
}

void SiteTreeWidget::ClearNodes()
{
    m_index.clear();
    clear();
}

void SiteTreeWidget::ResetFolder(const QString &key)
{
    QTreeWidgetItem *folder = m_index.value(key);
    if (!folder)
        return;
    const QList<QTreeWidgetItem *> children = folder->takeChildren();
    for (QTreeWidgetItem *child : children) {
        Unindex(child);
        delete child;
    }
    Add(key, tvwChild, WaitPrefix + key, QStringLiteral("Wait..."), 3, 3);
}

void SiteTreeWidget::Reread(const QString &key)
{
    QTreeWidgetItem *folder = m_index.value(key);
    if (!folder)
        return;
    const QSignalBlocker quiet(this);
    folder->setExpanded(false);
    ResetFolder(key);
    blockSignals(false);
    folder->setExpanded(true);
}

// Only a folder whose first child is the "Wait..." placeholder is listed:
// one that is open already keeps what it shows.
void SiteTreeWidget::OnExpanded(QTreeWidgetItem *item)
{
    if (m_filling || !m_fill || item->childCount() == 0 || !Key(item->child(0)).startsWith(QLatin1String("##wait")))
        return;
    m_filling = true;
    m_fillTarget = item;
    const long result = m_fill(Key(item));
    m_fillTarget = nullptr;
    if (m_index.value(Key(item)) == item) {
        item->addChildren(m_pending);
    } else {
        for (QTreeWidgetItem *orphan : std::as_const(m_pending)) {
            Unindex(orphan);
            delete orphan;
        }
    }
    m_pending.clear();
    m_filling = false;
    if (result == -2 && m_index.contains(Key(item)))
        item->setExpanded(false);
}

void SiteTreeWidget::OnCollapsed(QTreeWidgetItem *item)
{
    if (m_filling || Image(item) == 3)
        return;
    if (item->childCount() > 0 && Key(item->child(0)).startsWith(QLatin1String("##wait")))
        return;
    ResetFolder(Key(item));
}

