#include "objects/ctlVisibility.h"

#include <QEvent>
#include <QListWidget>
#include <QMouseEvent>
#include <QVBoxLayout>

namespace {
constexpr int kKeyRole = Qt::UserRole;
} // namespace

ctlVisibility::ctlVisibility(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(ObjectName());
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    lstLayers = new QListWidget(this);
    lstLayers->setObjectName(QStringLiteral("lstLayers"));
    lstLayers->setMouseTracking(true);
    lstLayers->viewport()->installEventFilter(this);
    column->addWidget(lstLayers, 1);
    connect(lstLayers, &QListWidget::itemEntered, this, &ctlVisibility::RowEntered);
    connect(lstLayers, &QListWidget::itemChanged, this, &ctlVisibility::TickChanged);
}

long ctlVisibility::RowCount() const
{
    return long(lstLayers->count()) - 1;
}

void ctlVisibility::Clear()
{
    m_lHoverRow = -1;
    lstLayers->clear();
}

void ctlVisibility::AddRow(const QString &strKey_p, const QString &strCaption_p, long lState_p)
{
    m_boolSetting = true;
    auto *item = new QListWidgetItem(strCaption_p);
    item->setData(kKeyRole, strKey_p);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsUserCheckable);
    item->setCheckState(lState_p == 1 ? Qt::Checked : Qt::Unchecked);
    lstLayers->addItem(item);
    m_boolSetting = false;
}

void ctlVisibility::SetRowCheck(long lRow_p, bool boolTicked_p)
{
    QListWidgetItem *item = lstLayers->item(int(lRow_p));
    if (!item)
        return;
    m_boolSetting = true;
    item->setCheckState(boolTicked_p ? Qt::Checked : Qt::Unchecked);
    m_boolSetting = false;
}

void ctlVisibility::GetRowCheck(long lRow_p, bool &boolTicked_p) const
{
    const QListWidgetItem *item = lstLayers->item(int(lRow_p));
    boolTicked_p = item && item->checkState() == Qt::Checked;
}

// A key that is no number ("All") reads as 0.
long ctlVisibility::KeyOf(const QListWidgetItem *item)
{
    return item->data(kKeyRole).toString().toLong();
}

void ctlVisibility::RowEntered(QListWidgetItem *item)
{
    const long row = lstLayers->row(item);
    if (row == m_lHoverRow)
        return;
    LeaveRow();
    m_lHoverRow = row;
    emit MouseIn(KeyOf(item));
}

void ctlVisibility::LeaveRow()
{
    QListWidgetItem *item = lstLayers->item(int(m_lHoverRow));
    m_lHoverRow = -1;
    if (item)
        emit MouseOut(KeyOf(item), lstLayers->row(item));
}

// A tick changed with the keyboard, away from the pointer, takes effect at
// once: no pointer will leave its row to carry it out.
void ctlVisibility::TickChanged(QListWidgetItem *item)
{
    if (m_boolSetting)
        return;
    const long row = lstLayers->row(item);
    emit NewCheck(KeyOf(item), item->checkState() == Qt::Checked);
    if (row != m_lHoverRow && lstLayers->item(int(row)) == item)
        emit MouseOut(KeyOf(item), row);
}

// The pointer left the list, or moved onto its empty part.
bool ctlVisibility::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == lstLayers->viewport()) {
        if (event->type() == QEvent::Leave)
            LeaveRow();
        else if (event->type() == QEvent::MouseMove && m_lHoverRow >= 0
                 && !lstLayers->itemAt(static_cast<QMouseEvent *>(event)->position().toPoint()))
            LeaveRow();
    }
    return QWidget::eventFilter(watched, event);
}
