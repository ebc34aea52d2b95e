#pragma once

#include "platform/HtmlElement.h"

// A page object: something in the page the editor knows how to change,
// registered with its document under the key its element carries.
class CIHTMLObject
{
public:
    virtual ~CIHTMLObject() = default;
    virtual HtmlElement Element() const = 0;
};
