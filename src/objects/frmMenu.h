#pragma once

#include <QHash>
#include <QObject>
#include <QPoint>
#include <QString>

class QAction;
class QMenu;

// The one place that holds every popup menu of the page objects. It is
// made anew for each menu shown, so no state (enabled, visible, checked,
// a caption changed) survives from one menu to the next. An object takes
// the items it needs by name, sets their state, connects its handlers to
// their triggered() and shows the top item with PopupMenu. Captions come
// from the string table when the form is made.
class frmMenu : public QObject
{
    Q_OBJECT

public:
    frmMenu();
    ~frmMenu() override;

    // An item by its name ("mnuObjCut"); a menu's own entry for one with
    // items below it. Null for a name the form doesn't hold.
    QAction *Item(const QString &name) const;
    QMenu *Menu(const QString &name) const;

    // Shows the menu at the point (global coordinates) and returns when it
    // has closed, after the handler of the picked item has run. Gives the
    // name of the picked item, empty when the menu was dismissed.
    QString PopupMenu(const QString &name, const QPoint &at);

    // The menu on screen, if any: the one window tests drive.
    static QMenu *Shown();

private:
    void Build();

    QHash<QString, QAction *> m_items;
    QHash<QString, QMenu *> m_menus;
    QString m_strPicked;
};
