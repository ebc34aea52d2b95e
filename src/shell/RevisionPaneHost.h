#pragma once

#include "shell/FrameList.h"

// What the revision pane needs from the window that holds it: the documents
// of the edit session, in the session's order (the top document first, then
// the frames).
class RevisionPaneHost
{
public:
    virtual ~RevisionPaneHost() = default;
    virtual QList<SessionDocument> SessionDocuments() = 0;
};
