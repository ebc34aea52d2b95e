#pragma once

#include <QObject>

class CDocument;
class CGUI;
class EditSession;
struct PageEvent;
class WebBrowser;

// Joins the band to the page under edit: the Font pane follows the caret
// and its controls act on the selection of the document that has it, Undo
// and Redo go to that document and are enabled from its engine's state,
// and the tag switches of the Visibility pane reach every document.
class BandEvents : public QObject
{
    Q_OBJECT

public:
    BandEvents(CGUI &gui, EditSession &session, WebBrowser *browser, QObject *parent = nullptr);

    // Shows the caret's formatting in the Font pane when it is open, and
    // sets Undo and Redo from the engine.
    void Follow();

private:
    void OnPageEvent(const PageEvent &event);
    void FollowSoon();
    void ConnectStylePane();
    // Runs the action on the document with the caret, then shows what it
    // made; a failure goes to the error dialog.
    template <class Action> void OnCurrent(Action action);

    CGUI &m_GUI;
    EditSession &m_session;
    bool m_boolFollowPending = false;
};
