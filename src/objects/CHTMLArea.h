#pragma once

#include "platform/HtmlDocument.h"
#include "platform/HtmlElement.h"

#include <QObject>

#include <functional>

class CDocument;
class frmMenu;

// The object behind a right click on an area of an image map in a picked
// image. It shows the text menu, limited to what makes sense for an area:
// the commands that work on the selection would act on the whole image,
// so they are offered disabled. It lives for one menu.
class CHTMLArea : public QObject
{
    Q_OBJECT

public:
    // 1, or 0 with the error pending.
    long Init(CDocument *CDocument_p, const HtmlElement &area);

private:
    void Prepare(frmMenu &menu);
    void Connect(frmMenu &menu);
    void Run(const std::function<void()> &work);
    void m_mnuRemoveLink_Click();
    void m_mnuRemBkndImg_Click();

    CDocument *m_Document = nullptr;
    HtmlDocument m_HTMLDocument;
    HtmlElement m_Area;
};
