#pragma once

#include "platform/HtmlElement.h"

class CDocument;

// The commands of the text menu that make links and bookmarks in the
// selection of a page being edited, each through its dialog. Each gives 1
// when the page changed (the document is marked), -1 when nothing was
// done (Cancel, or a selection it can't act on, which is said), 0 on
// failure with the error pending.
class LinkCommand
{
public:
    // A new link around the selection.
    static long CreateLink(CDocument &document);
    // The link, or the bookmark (an anchor with a name and no address),
    // that the element lies in, as GetHREF finds it.
    static long EditLink(CDocument &document, const HtmlElement &link);
    // A bookmark at the selection: around the selected text, or empty at
    // the caret.
    static long InsertBookmark(CDocument &document);

    // The first A with an address or a name from the element up to the
    // body; null when there is none.
    static HtmlElement GetHREF(const HtmlElement &element);

private:
    static long EditBookmark(CDocument &document, HtmlElement &anchor);
};
