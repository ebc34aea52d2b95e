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
    long IsDirty(bool &boolIsDirty_p) const override;
    long Save(HtmlDocument &Document_p) override;
    // Every change of the image marks it.
    void SetDirty() { m_boolDirty = true; }

private:
    HtmlElement m_Img;
    bool m_boolDirty = false;
    CDocument *m_Document = nullptr;
};
