#pragma once

#include "objects/CIHTMLObject.h"

#include <memory>

class CDocument;

// An image of a page being edited.
class CHTMLImg : public CIHTMLObject
{
public:
    // Binds the object to its element and document. Edit mode numbers the
    // images in the page itself and passes the key it wrote; an image
    // inserted later has none and goes through Register. 0 when the
    // element is gone, with the error pending.
    long Init(const HtmlElement &img, CDocument *document, long lKnownKey_p = -1);
    // Adds a bound image without a key to its document's objects and
    // writes the key they gave it on the element.
    static long Register(std::unique_ptr<CHTMLImg> image);
    HtmlElement Element() const override { return m_Img; }
    CDocument *Document() const { return m_Document; }
    long IsDirty(bool &boolIsDirty_p) const override;
    long Save(HtmlDocument &Document_p) override;
    long OnContextMenu() override;
    long LetKeldaKey(long lNewKey_p) override;
    long GetKeldaKey(long &lKey_p) const override;
    long Init(CDocEventHandler *, CDocument *) override { return 1; }
    // Every change of the image marks it.
    void SetDirty() { m_boolDirty = true; }

private:
    HtmlElement m_Img;
    bool m_boolDirty = false;
    long m_lKey = -1;
    CDocument *m_Document = nullptr;
};
