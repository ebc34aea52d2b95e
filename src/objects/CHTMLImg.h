#pragma once

#include "objects/CIHTMLObject.h"

class CDocument;

// An image of a page being edited.
class CHTMLImg : public CIHTMLObject
{
public:
    // Binds the object to its element and document; 0 when the element is
    // gone, with the error pending.
    long Init(const HtmlElement &img, CDocument *document);
    HtmlElement Element() const override { return m_Img; }
    CDocument *Document() const { return m_Document; }

private:
    HtmlElement m_Img;
    CDocument *m_Document = nullptr;
};
