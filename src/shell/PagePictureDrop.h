#pragma once

#include <QObject>
#include <QPoint>
#include <QStringList>

class EditSession;
class QDropEvent;
class WebBrowser;

// Picture files dropped on the page under edit, from the desktop's file
// manager or the local tree: each goes into the page where it was dropped,
// as a picture the editor follows (and uploads at Save). The page engine
// never sees such a drop, which it would take for a page to open. Drops of
// anything else, or while no page is edited, go on to the engine.
class PagePictureDrop : public QObject
{
    Q_OBJECT

public:
    PagePictureDrop(EditSession &session, WebBrowser *browser);

    // The local picture files the drop carries; empty when it carries
    // anything else too.
    static QStringList PictureFiles(const QDropEvent *event);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void Insert(const QStringList &files, const QPoint &at);

    EditSession &m_session;
    WebBrowser *m_browser;
};
