#pragma once

#include <QString>
#include <QtGlobal>

class CDocument;

// A paste into a page being edited. The engine's own paste is cancelled
// in edit mode and this one runs instead: the HTML on the clipboard has
// its addresses rewritten for the page it goes into (see
// FragmentAddresses), and goes in at the selection; a clipboard of plain
// text goes in as text. Server script and event attributes in a fragment
// go into the page as markup the user can see in the source, but nothing
// of them runs while it is pasted.
class PageClipboardPaste
{
public:
    // 1 pasted (the document is marked changed); -1 nothing to paste, or a
    // fragment too large for a page, which is said to the user; 0 failed,
    // with the error pending.
    static long Paste(CDocument &document);
    // The text given goes in at the selection as it stands: as plain text,
    // or read as HTML whose addresses are taken as the site's (strBase_p).
    // The same results.
    // A script block's start mark on the clipboard, on a script page: the
    // block goes in again (CDocument::PasteASPObject). -1 when the
    // clipboard holds no such mark.
    static long PasteScriptBlock(CDocument &document);
    static long PasteText(CDocument &document, const QString &strText_p, bool asHTML, const QString &strBase_p = {});

    // What a page takes in one paste, in characters of HTML: a fragment
    // this large is refused with a message rather than leaving the window
    // busy for minutes building it.
    static constexpr qsizetype kLargestFragment = 8 * 1024 * 1024;
};
