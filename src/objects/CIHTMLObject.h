#pragma once

#include "platform/HtmlDocument.h"
#include "platform/HtmlElement.h"

// A page object: something in the page the editor knows how to change,
// registered with its document under the key its element carries.
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
};
