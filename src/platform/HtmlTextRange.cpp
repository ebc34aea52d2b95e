#include "platform/HtmlTextRange.h"

#include "platform/PageScriptCall.h"
#include "platform/WebBrowser.h"

HtmlTextRange::HtmlTextRange(WebBrowser *browser, int handle)
    : m_browser(browser)
    , m_handle(handle)
{
}

HtmlTextRange HtmlTextRange::aroundElement(const HtmlElement &element)
{
    if (element.isNull())
        return {};
    const QVariant h = PageScriptCall::call(element.browser()->page(), QStringLiteral("range.aroundElement"),
                                            {element.handle()}, QStringLiteral("HtmlTextRange.aroundElement"));
    return HtmlTextRange(element.browser(), h.toInt());
}

QVariant HtmlTextRange::call(const QString &function, QVariantList args, const QString &position) const
{
    return PageScriptCall::callOnHandle(m_browser ? m_browser->page() : nullptr, m_handle,
                                        QStringLiteral("range.") + function, args, position);
}

QVariantMap HtmlTextRange::info() const
{
    return call(QStringLiteral("info"), {}, QStringLiteral("HtmlTextRange")).toMap();
}

QString HtmlTextRange::text() const { return info().value(QStringLiteral("text")).toString(); }
QString HtmlTextRange::htmlText() const { return info().value(QStringLiteral("htmlText")).toString(); }
bool HtmlTextRange::isCollapsed() const { return info().value(QStringLiteral("collapsed")).toBool(); }

bool HtmlTextRange::reachesSeal() const
{
    return call(QStringLiteral("sealed"), {}, QStringLiteral("HtmlTextRange.reachesSeal")).toBool();
}

HtmlElement HtmlTextRange::parentElement() const
{
    return HtmlElement(m_browser, info().value(QStringLiteral("parent")).toInt());
}

void HtmlTextRange::select()
{
    call(QStringLiteral("select"), {}, QStringLiteral("HtmlTextRange.select"));
}

void HtmlTextRange::pasteHTML(const QString &html)
{
    call(QStringLiteral("pasteHTML"), {html}, QStringLiteral("HtmlTextRange.pasteHTML"));
}

HtmlElement HtmlTextRange::surroundWith(const HtmlElement &element)
{
    const QVariant h = call(QStringLiteral("surround"), {element.handle()}, QStringLiteral("HtmlTextRange.surroundWith"));
    return HtmlElement(m_browser, h.toInt());
}

HtmlElement HtmlTextRange::splitElement(const HtmlElement &element)
{
    const QVariant h = call(QStringLiteral("splitAt"), {element.handle()}, QStringLiteral("HtmlTextRange.splitElement"));
    return HtmlElement(m_browser, h.toInt());
}

void HtmlTextRange::release()
{
    if (!isNull())
        call(QStringLiteral("release"), {}, QStringLiteral("HtmlTextRange.release"));
    m_handle = 0;
}
