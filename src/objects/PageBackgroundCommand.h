#pragma once

#include "platform/HtmlElement.h"

class CDocument;

// The page's background as the text menu sets it: a color on the body, or
// a picture. A picture of the user's disk shows from the disk while the
// page is edited and waits in marks on the body (its local path, the
// server folder it goes to) for the save, which uploads it and points the
// page at it. Each gives 1 when the page changed (the document is marked),
// -1 when nothing was done, 0 on failure with the error pending.
class PageBackgroundCommand
{
public:
    static long SetColor(CDocument &document);
    static long RemoveColor(CDocument &document);
    // The color picked from anything on screen with the color dropper.
    static long RetrieveColor(CDocument &document);

    static long SetPicture(CDocument &document);
    static long RemovePicture(CDocument &document);

    // Whether the body has a background picture, on the server or pending.
    static bool HasPicture(const HtmlElement &body);

private:
    static long Changed(CDocument &document);
    static long AskUploadFolder(QString &strFolder_p);
};
