#include "objects/CHTMLImg.h"

#include "document/CDocument.h"
#include "support/MError.h"

long CHTMLImg::Init(const HtmlElement &img, CDocument *document, long lKnownKey_p)
{
    if (img.isNull() || !document) {
        MError::SetErrorIfClear(91, QStringLiteral("Object variable not set"), QStringLiteral("CHTMLImg.Init"));
        return 0;
    }
    m_Img = img;
    m_Document = document;
    m_lKey = lKnownKey_p;
    return 1;
}

// An image inserted after edit mode began has no key yet: it joins the
// document's objects and takes the key they give it.
long CHTMLImg::Register(std::unique_ptr<CHTMLImg> image)
{
    CHTMLImg *self = image.get();
    CDocument *document = self->m_Document;
    const long key = document->AddObject(std::move(image)) - 1;
    return self->LetKeldaKey(key);
}

long CHTMLImg::IsDirty(bool &boolIsDirty_p) const
{
    boolIsDirty_p = m_boolDirty;
    return 1;
}

// An image whose file stays where it is on the server has nothing to
// upload: its size and place are in the page already. It only tells
// whether it was changed, so that the page counts as changed.
long CHTMLImg::Save(HtmlDocument &)
{
    return m_boolDirty ? 1 : -1;
}

// The image's own menu comes with the image commands; until then a right
// click on an image shows nothing.
long CHTMLImg::OnContextMenu()
{
    return 1;
}

long CHTMLImg::LetKeldaKey(long lNewKey_p)
{
    m_lKey = lNewKey_p;
    m_Img.setAttribute(KeyAttribute(), QString::number(lNewKey_p));
    return 1;
}

long CHTMLImg::GetKeldaKey(long &lKey_p) const
{
    lKey_p = m_lKey;
    return 1;
}
