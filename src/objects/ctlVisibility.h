#pragma once

#include <QWidget>

class QListWidget;
class QListWidgetItem;

// The list of the Visibility pane: one row per layer of the page, each with
// a check box (ticked: shown). All the
// documents of a frameset share the one list; DocIndex says whose rows it
// holds, and each document's CVisibility acts only on events of its own.
//
// A row's key is the number its events carry (lIndex): the first row's key
// "All" reads as 0. Rows are numbered from 0, so the first layer's row is
// number 1.
//
// The band's Visibility pane holds it under the object name
// "ctlVisibility1", by which each document finds it when edit mode begins.
class ctlVisibility : public QWidget
{
    Q_OBJECT

public:
    explicit ctlVisibility(QWidget *parent = nullptr);

    static QString ObjectName() { return QStringLiteral("ctlVisibility1"); }

    long DocIndex() const { return m_lDocIndex; }
    void SetDocIndex(long lIndex_p) { m_lDocIndex = lIndex_p; }
    // The number of the last row; -1 when the list is empty.
    long RowCount() const;
    void Clear();
    void AddRow(const QString &strKey_p, const QString &strCaption_p, long lState_p);
    void SetRowCheck(long lRow_p, bool boolTicked_p);
    void GetRowCheck(long lRow_p, bool &boolTicked_p) const;

signals:
    // The user changed a row's tick.
    void NewCheck(long lIndex, bool bChecked);
    // The pointer came onto a row, or left it.
    void MouseIn(long lIndex);
    void MouseOut(long lIndex, long lRow);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void RowEntered(QListWidgetItem *item);
    void LeaveRow();
    void TickChanged(QListWidgetItem *item);
    static long KeyOf(const QListWidgetItem *item);

    QListWidget *lstLayers = nullptr;
    long m_lDocIndex = -1;
    // The row under the pointer, -1 for none.
    long m_lHoverRow = -1;
    // Ticks set by the code are no user's change.
    bool m_boolSetting = false;
};
