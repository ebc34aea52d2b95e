#pragma once

#include "platform/HtmlDocument.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

class ctlVisibility;
struct PageEvent;

// The layers of one document under edit, in the Visibility pane: every DIV
// and every element whose own style hides it. Edit mode marks them; a right
// click with Shift held lists them as they stand at that moment; the user
// shows and hides them from the list while he edits (the pointer on a row
// shows its layer for as long as it stays there); the first row hides them
// all, and unticked again puts every layer and tick back as the list was
// filled. At Save every layer goes back to what it was when edit mode
// began, whatever the list holds, so the file keeps the author's own
// visibility.
//
// Layers are held by the runtime's handles rather than by their place among
// the page's elements: typing a new paragraph above a layer then still
// shows and hides the right one.
class CVisibility : public QObject
{
    Q_OBJECT

public:
    // Marks the layers and listens to the page and the list, which may be
    // null (no pane): the marks then still bring the layers back at Save.
    // 1, or 0 with the error pending.
    long Init(ctlVisibility *ctlVisibility_p, const HtmlDocument &Document_p, long lDocIndex_p);
    // Every layer back as edit mode found it, before the page is saved.
    // 1, or 0 with the error pending.
    long RestoreLayers();
    ~CVisibility() override;

private:
    struct Row
    {
        int handle;
        QString visibility; // the style's own visibility when the list was filled
        bool hidden;
    };

    void m_Document_onmousedown(const PageEvent &event);
    void FillList();
    void m_ctlVisibility_NewCheck(long lIndex, bool bChecked);
    void m_ctlVisibility_MouseIn(long lIndex);
    void m_ctlVisibility_MouseOut(long lIndex, long lRow);
    bool OwnsList() const;
    QVariant Call(const QString &function, const QString &position) const;
    bool SetVisibility(const QList<std::pair<int, QString>> &layers, const QString &position);
    static bool Report();

    HtmlDocument m_Document;
    QPointer<ctlVisibility> m_ctlVisibility;
    long m_lDocIndex = 0;
    // The rows of the last fill, in list order: row number i + 1.
    QList<Row> m_aRows;
};
