#pragma once

#include <QString>

class CDocEventHandler;
class CDocument;
class QWidget;

// One server script block of a page under edit, as the object the user
// sees. The page runtime seals its output before the engine acts on
// anything: the block's look, a click picks it whole, the caret never goes
// into it, and typing, Backspace and Delete that would reach into it do
// nothing. Copied, it goes to the clipboard as its start mark. This side
// knows the block by its number and opens its source on a right click.
// The document keeps one per block, renewed whenever the page's blocks
// are sealed again.
class CSPANASP
{
public:
    long Init(const QString &strID_p, CDocEventHandler *CDocEventHandler_p, QWidget *frmVindrell_p, CDocument *Document_p);
    const QString &ID() const { return m_strID; }
    // "keldaspIN#" and the number.
    QString Marker() const;
    // The block's source in its dialog when ASP editing is allowed, else
    // the words that say how to allow it. An edit makes the page changed.
    // 1, or 0 with the error pending.
    long OnContextMenu();

private:
    QString m_strID;
    CDocEventHandler *m_DocEventHandler = nullptr;
    QWidget *m_frmVindrell = nullptr;
    CDocument *m_Document = nullptr;
};
