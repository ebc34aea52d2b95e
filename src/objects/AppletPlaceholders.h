#pragma once

class HtmlDocument;

// The boxes that stand for the page's applets while it is edited: the
// engine runs no applets, so each is drawn at its own size with its label
// (a hover button's text, another applet's class). Only the editor's look:
// nothing of it reaches the saved file.
class AppletPlaceholders
{
public:
    // Draws them, or draws them anew after an applet changed. 1, or 0 with
    // the error pending.
    static long Show(const HtmlDocument &Document_p);
    static long Hide(const HtmlDocument &Document_p);
};
