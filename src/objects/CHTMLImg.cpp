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
