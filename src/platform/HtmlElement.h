#pragma once

#include "platform/WebBrowser.h"
#include <QList>
#include <QPointer>
#include <QString>
#include <QVariant>


// Font and display values the engine computed for an element.
struct CurrentStyle
{
    QString fontFamily;
    double fontSizePt = 0;
    QString fontWeight;
    QString fontStyle;
    QString textDecoration;
    QString color;
    QString backgroundColor;
    QString display;
    QString visibility;
};

// An element of a page, held by its handle in the page runtime. Calls on an
// element whose page has gone set the pending error and give empty values.
class HtmlElement
{
public:
    HtmlElement() = default;
    HtmlElement(WebBrowser *browser, int handle);

    bool isNull() const { return m_handle == 0 || !m_browser; }
    int handle() const { return m_handle; }
    WebBrowser *browser() const { return m_browser; }
    bool operator==(const HtmlElement &other) const { return m_handle == other.m_handle; }

    // Attribute names are not case sensitive: "keldaKey" is "keldakey".
    QVariant getAttribute(const QString &name) const; // null QVariant when absent
    void setAttribute(const QString &name, const QVariant &value);
    bool removeAttribute(const QString &name);

    QString tagName() const; // upper case
    QString innerHTML() const;
    QString outerHTML() const;
    QString innerText() const;
    QString id() const;
    void setInnerHTML(const QString &html);
    void setOuterHTML(const QString &html);
    void setInnerText(const QString &text);
    int offsetWidth() const;
    int offsetHeight() const;
    int offsetLeft() const;
    int offsetTop() const;
    QString contentEditable() const; // "true", "false" or "inherit"
    void setContentEditable(bool editable);
    bool isContentEditable() const;
    // Still in its page: the page's own script may have taken it out.
    bool isConnected() const;

    // Style values by name ("fontSize" or "font-size"); names the engine does
    // not know are read from and written to the style attribute's text.
    QString styleValue(const QString &name) const;
    void setStyleValue(const QString &name, const QString &value);
    bool removeStyleValue(const QString &name);
    CurrentStyle currentStyle() const;

    HtmlElement parentElement() const;
    QList<HtmlElement> children() const;
    QList<HtmlElement> all() const;

    // Without deep the element's children stay in its place.
    bool removeNode(bool deep);
    HtmlElement insertAdjacentElement(const QString &where, const HtmlElement &element);
    bool insertAdjacentHTML(const QString &where, const QString &html);
    HtmlElement appendChild(const HtmlElement &child);

    // Generic property access for what has no method of its own.
    QVariant property(const QString &name) const;
    void setProperty(const QString &name, const QVariant &value);

    static QList<HtmlElement> fromHandles(WebBrowser *browser, const QVariant &handles);

private:
    QVariant call(const QString &function, QVariantList args, const QString &position) const;

    QPointer<WebBrowser> m_browser;
    int m_handle = 0;
};
