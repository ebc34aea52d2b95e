#pragma once

#include <QString>
#include <QStringList>

// What the style pane shows for the caret of the document under edit. A
// selection of a picked object (a picture, a table) has no character
// formatting: the pane is then cleared and its controls are off.
struct StylePaneState
{
    bool enabled = false;
    QString fontFamily; // as the page names it: the first family of the list counts
    float sizePt = 0;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    QString color;   // #rrggbb, or empty
    QString justify; // "left", "center", "right", "justify"
    int blockFormat = 0; // the place in the block format list, 0 none
    QString className;   // the class of the block around the caret
    QStringList classes; // the class rules of the page's style sheets
};
