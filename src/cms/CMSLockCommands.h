#pragma once

#include "platform/HtmlElement.h"
#include "platform/HtmlTextRange.h"

class CDocument;
class HtmlDocument;
class QWidget;
class frmMenu;

// The administrator's commands that lock and unlock pages and parts of
// them: the page's entry in the CMS table with the users allowed on it, and
// the keldaedit marks in the page itself ("1" an unlocked area, "0" a
// locked part inside one). Each gives 1 when it changed the page or the
// table (the caller marks the document, and the next Save writes both), -1
// when nothing changed, 0 on failure with the error pending.
class CMSLockCommands
{
public:
    // The page under CMS control, with the users chosen for it.
    static long LockPage(CDocument &doc_p);
    // The page out of the table: no longer under CMS control.
    static long UnlockPage(CDocument &doc_p);
    // The selected part of a locked page becomes an area its users may
    // edit; the administrator sees it and may go back.
    static long UnlockArea(CDocument &doc_p, HtmlTextRange range_p);
    // The selection inside an unlocked area stays locked.
    static long LockSubArea(CDocument &doc_p, HtmlTextRange range_p);
    // One object (a picture, a table) becomes an unlocked area of its own.
    static long UnlockObject(CDocument &doc_p, HtmlElement object_p);
    // The mark and its frame off an element.
    static long DeleteLock(CDocument &doc_p, HtmlElement element_p);
    // The users of the page, asked again.
    static long SetUsers(CDocument &doc_p);
    // The same for a page of the site tree, by its address: locked with no
    // users yet (only administrators edit it), or out of the table.
    static long LockPageAt(const QString &strAddress_p);
    static long UnlockPageAt(const QString &strAddress_p);

    // The "CMS Tools" group of the text menu as the page and the selection
    // allow. A user who is no administrator doesn't get it.
    static void PrepareTextMenu(frmMenu &menu_p, CDocument &doc_p, HtmlTextRange range_p);

    // The look of an area while editing.
    static void ShowUnlocked(HtmlElement &element_p);

    // The sixteen border properties of a frame, as the save takes them off.
    static const QStringList &BorderProperties();

private:
    static long TieToUsers(CDocument &doc_p);
    static bool LooksGood();
    static void PrepareArea(HtmlElement &area_p, const QString &strPage_p);
    static void Unwrap(HtmlElement &area_p);
    static HtmlElement NewArea(HtmlDocument &page_p, HtmlElement container_p);
};
