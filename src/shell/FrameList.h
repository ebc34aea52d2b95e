#pragma once

#include "platform/HtmlDocument.h"

#include <QList>
#include <QStringList>

// One document of an edit session as the frame list and the revision pane
// see it: the engine's document, whether it is shown (a frameset is not),
// whether it holds an IFRAME, and its path on the server (GetURL).
struct SessionDocument
{
    HtmlDocument document;
    bool visible = true;
    bool isIFrame = false;
    QString url;
};

// The frames of the page under edit, as the frame combo offers them.
class FrameList
{
public:
    // Builds the names and documents of the frames. A page with an IFRAME
    // enters first as "Mainframe"; then each frame of every frameset with
    // its name. A nameless frame is named "frame " and a running number, and
    // that name is written into the frame element so that it stays the same
    // for the rest of the session. Frames of another origin are skipped.
    // Gives the count, or -1 when there is no frame.
    static long GetFrameNames(const QList<SessionDocument> &aDocuments_p, QList<HtmlDocument> &aFrames_p,
                              QStringList &astrNames_p);

private:
    static void AddFramesOf(const HtmlDocument &frameset, int &nNameless, QList<HtmlDocument> &aFrames_p,
                            QStringList &astrNames_p);
    static bool Reachable(const HtmlDocument &frame);
};
