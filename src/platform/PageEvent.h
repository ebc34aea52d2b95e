#pragma once

#include <QList>
#include <QString>

// An event of the page as the runtime posts it: where it happened, the
// element under it (a handle), the keys and buttons, and whether the runtime
// already cancelled the engine's default action.
struct PageEvent
{
    QString type;        // "mousedown", "keydown", "contextmenu", "controlselect", ...
    QList<int> frame;    // index path of the frame from the top document
    int element = 0;     // handle of the target element, 0 for none
    int x = 0;           // client coordinates in the frame
    int y = 0;
    int button = 0;      // 0 left, 1 middle, 2 right
    int keyCode = 0;
    QString key;
    bool shift = false;
    bool ctrl = false;
    bool alt = false;
    bool cancelled = false;
};
