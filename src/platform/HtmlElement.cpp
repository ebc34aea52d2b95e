#include "platform/HtmlElement.h"

#include "platform/PageScriptCall.h"
#include "platform/WebBrowser.h"

HtmlElement::HtmlElement(WebBrowser *browser, int handle)
    : m_browser(browser)
    , m_handle(handle)
{
}

QVariant HtmlElement::call(const QString &function, QVariantList args, const QString &position) const
{
    return PageScriptCall::callOnHandle(m_browser ? m_browser->page() : nullptr, m_handle,
                                        QStringLiteral("elm.") + function, args, position);
}

QVariant HtmlElement::getAttribute(const QString &name) const
{
    return call(QStringLiteral("getAttr"), {name}, QStringLiteral("HtmlElement.getAttribute"));
}

void HtmlElement::setAttribute(const QString &name, const QVariant &value)
{
    call(QStringLiteral("setAttr"), {name, value.toString()}, QStringLiteral("HtmlElement.setAttribute"));
}

bool HtmlElement::removeAttribute(const QString &name)
{
    return call(QStringLiteral("removeAttr"), {name}, QStringLiteral("HtmlElement.removeAttribute")).toBool();
}

QVariant HtmlElement::property(const QString &name) const
{
    return call(QStringLiteral("get"), {name}, QStringLiteral("HtmlElement.") + name);
}

void HtmlElement::setProperty(const QString &name, const QVariant &value)
{
    call(QStringLiteral("set"), {name, value}, QStringLiteral("HtmlElement.") + name);
}

QString HtmlElement::tagName() const { return property(QStringLiteral("tagName")).toString(); }
QString HtmlElement::innerHTML() const { return property(QStringLiteral("innerHTML")).toString(); }
QString HtmlElement::outerHTML() const { return property(QStringLiteral("outerHTML")).toString(); }
QString HtmlElement::innerText() const { return property(QStringLiteral("innerText")).toString(); }
QString HtmlElement::id() const { return property(QStringLiteral("id")).toString(); }
void HtmlElement::setInnerHTML(const QString &html) { setProperty(QStringLiteral("innerHTML"), html); }
void HtmlElement::setOuterHTML(const QString &html) { setProperty(QStringLiteral("outerHTML"), html); }
void HtmlElement::setInnerText(const QString &text) { setProperty(QStringLiteral("innerText"), text); }
int HtmlElement::offsetWidth() const { return property(QStringLiteral("offsetWidth")).toInt(); }
int HtmlElement::offsetHeight() const { return property(QStringLiteral("offsetHeight")).toInt(); }
int HtmlElement::offsetLeft() const { return property(QStringLiteral("offsetLeft")).toInt(); }
int HtmlElement::offsetTop() const { return property(QStringLiteral("offsetTop")).toInt(); }

QString HtmlElement::contentEditable() const
{
    return property(QStringLiteral("contentEditable")).toString();
}

void HtmlElement::setContentEditable(bool editable)
{
    setProperty(QStringLiteral("contentEditable"), editable);
}

bool HtmlElement::isContentEditable() const
{
    return property(QStringLiteral("isContentEditable")).toBool();
}

bool HtmlElement::isConnected() const
{
    return property(QStringLiteral("isConnected")).toBool();
}

QString HtmlElement::styleValue(const QString &name) const
{
    return call(QStringLiteral("styleGet"), {name}, QStringLiteral("HtmlElement.style")).toString();
}

void HtmlElement::setStyleValue(const QString &name, const QString &value)
{
    call(QStringLiteral("styleSet"), {name, value}, QStringLiteral("HtmlElement.style"));
}

bool HtmlElement::removeStyleValue(const QString &name)
{
    return call(QStringLiteral("styleRemove"), {name}, QStringLiteral("HtmlElement.style")).toBool();
}

CurrentStyle HtmlElement::currentStyle() const
{
    const QVariantMap m = call(QStringLiteral("current"), {}, QStringLiteral("HtmlElement.currentStyle")).toMap();
    CurrentStyle s;
    s.fontFamily = m.value(QStringLiteral("fontFamily")).toString();
    s.fontSizePt = m.value(QStringLiteral("fontSizePt")).toDouble();
    s.fontWeight = m.value(QStringLiteral("fontWeight")).toString();
    s.fontStyle = m.value(QStringLiteral("fontStyle")).toString();
    s.textDecoration = m.value(QStringLiteral("textDecoration")).toString();
    s.color = m.value(QStringLiteral("color")).toString();
    s.backgroundColor = m.value(QStringLiteral("backgroundColor")).toString();
    s.display = m.value(QStringLiteral("display")).toString();
    s.visibility = m.value(QStringLiteral("visibility")).toString();
    return s;
}

HtmlElement HtmlElement::parentElement() const
{
    return HtmlElement(m_browser, call(QStringLiteral("parent"), {}, QStringLiteral("HtmlElement.parentElement")).toInt());
}

QList<HtmlElement> HtmlElement::children() const
{
    return fromHandles(m_browser, call(QStringLiteral("children"), {}, QStringLiteral("HtmlElement.children")));
}

QList<HtmlElement> HtmlElement::all() const
{
    return fromHandles(m_browser, call(QStringLiteral("all"), {}, QStringLiteral("HtmlElement.all")));
}

bool HtmlElement::removeNode(bool deep)
{
    return call(QStringLiteral("removeNode"), {deep}, QStringLiteral("HtmlElement.removeNode")).toBool();
}

HtmlElement HtmlElement::insertAdjacentElement(const QString &where, const HtmlElement &element)
{
    const QVariant h = call(QStringLiteral("insertAdjacentElement"), {where, element.handle()},
                            QStringLiteral("HtmlElement.insertAdjacentElement"));
    return HtmlElement(m_browser, h.toInt());
}

bool HtmlElement::insertAdjacentHTML(const QString &where, const QString &html)
{
    return call(QStringLiteral("insertAdjacentHTML"), {where, html},
                QStringLiteral("HtmlElement.insertAdjacentHTML")).toBool();
}

HtmlElement HtmlElement::appendChild(const HtmlElement &child)
{
    const QVariant h = call(QStringLiteral("appendChild"), {child.handle()}, QStringLiteral("HtmlElement.appendChild"));
    return HtmlElement(m_browser, h.toInt());
}

QList<HtmlElement> HtmlElement::fromHandles(WebBrowser *browser, const QVariant &handles)
{
    QList<HtmlElement> out;
    for (const QVariant &h : handles.toList())
        out.append(HtmlElement(browser, h.toInt()));
    return out;
}
