#pragma once

#include <QtGlobal>

// A stretch of a page's source that belongs to the server's script: a
// block, a tag or comment that holds one, an include, a runat=server
// element, or a whole If, loop or procedure with the HTML inside it. What
// the server makes of it can't be traced back to the source, so it is
// copied, never edited. `marked` is false for the script at the top of the
// page that must stay first (a directive, Option Explicit).
struct ScriptRegion
{
    qsizetype start = 0; // in the source, one character per byte
    qsizetype end = 0;
    int firstToken = 0; // the source's tokens it covers
    int lastToken = 0;
    bool marked = true;
};
