#pragma once

#include "platform/PageKeyFilter.h"

#include <QObject>
#include <QPointer>

class QWidget;
class WebBrowser;

// The keyboard rules of the main window. While a page is edited F5 and F11
// never reach the page (F5 does reach a tree that has the focus); outside
// editing F5 in the browser reloads the page. It watches the whole
// application, because the engine's keyboard widget is created and replaced
// by the engine itself and a filter on the window would see its keys too
// late.
class EditKeyGuard : public QObject
{
    Q_OBJECT

public:
    enum TreeKind { SiteTree, LocalTree };

    explicit EditKeyGuard(WebBrowser *browser, QObject *parent = nullptr);
    ~EditKeyGuard() override;

    // Called by the edit session when Edit goes down and up.
    void setEditing(bool on) { m_filter.setEditing(on); }
    bool editing() const { return m_filter.editing(); }

    // A widget that stands for the site's tree or the local tree: its focus
    // sets and clears the tree's flag.
    void registerTree(QWidget *tree, TreeKind kind);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool InBrowser(QObject *target) const;
    void TreeFocus(QObject *watched, bool on);

    PageKeyFilter m_filter;
    QPointer<WebBrowser> m_browser;
    QPointer<QWidget> m_siteTree;
    QPointer<QWidget> m_localTree;
};
