#include "objects/CHTMLImg.h"

#include "support/MError.h"

long CHTMLImg::Init(const HtmlElement &img, CDocument *document)
{
    if (img.isNull() || !document) {
        MError::SetErrorIfClear(91, QStringLiteral("Object variable not set"), QStringLiteral("CHTMLImg.Init"));
        return 0;
    }
    m_Img = img;
    m_Document = document;
    return 1;
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
