#pragma once

#include "platform/HtmlDocument.h"
#include "platform/HtmlElement.h"

#include <QString>

class CDocEventHandler;
class CDocument;

// A page object: something in the page the editor knows how to change,
// registered with its document under the key its element carries in the
// attribute keldaKey (the text of a whole number from "0").
class CIHTMLObject
{
public:
    virtual ~CIHTMLObject() = default;
    virtual HtmlElement Element() const = 0;
    // Whether the object holds changes that its Save must carry out.
    virtual long IsDirty(bool &boolIsDirty_p) const = 0;
    // Writes what the object has pending (uploads, attributes) into the page
    // about to be saved: 1 done, -1 nothing to do, 0 failed (error pending).
    virtual long Save(HtmlDocument &Document_p) = 0;
    // Shows the object's menu and runs the command the user picks.
    virtual long OnContextMenu() = 0;
    virtual long LetKeldaKey(long lNewKey_p) = 0;
    virtual long GetKeldaKey(long &lKey_p) const = 0;
    // Part of the protocol only: each object binds itself by an Init of its
    // own that takes what it needs.
    virtual long Init(CDocEventHandler *CDocEventHandler_p, CDocument *CDocument_p) = 0;

    // The attribute that ties an element to its object.
    static QString KeyAttribute() { return QStringLiteral("keldaKey"); }
};
