#pragma once

#include "platform/WebBrowser.h"
#include "platform/HtmlElement.h"

#include <QPointer>


// A stretch of a document between two boundary points, held by the page
// runtime until released.
class HtmlTextRange
{
public:
    HtmlTextRange() = default;
    HtmlTextRange(WebBrowser *browser, int handle);

    // The range around the contents of an element.
    static HtmlTextRange aroundElement(const HtmlElement &element);

    bool isNull() const { return m_handle == 0 || !m_browser; }
    QString text() const;
    QString htmlText() const;
    bool isCollapsed() const;
    HtmlElement parentElement() const;
    // Whether the range lies in, or reaches into, what the server's script
    // wrote into the page (sealed in edit mode).
    bool reachesSeal() const;

    void select();
    void pasteHTML(const QString &html);
    // Puts the element around the range's contents and gives it back.
    HtmlElement surroundWith(const HtmlElement &element);
    // Cuts the element at the range's start; the part after the cut goes
    // into a copy of the element right after it, which is returned.
    HtmlElement splitElement(const HtmlElement &element);
    void release();

private:
    QVariant call(const QString &function, QVariantList args, const QString &position) const;
    QVariantMap info() const;

    QPointer<WebBrowser> m_browser;
    int m_handle = 0;
};
