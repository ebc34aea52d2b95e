#include "platform/HtmlSelection.h"

#include "platform/HtmlTextRange.h"

HtmlSelection::HtmlSelection(const HtmlDocument &document)
    : m_document(document)
{
}

QVariantMap HtmlSelection::read() const
{
    return m_document.call(QStringLiteral("doc.selection"), {}, QStringLiteral("HtmlSelection")).toMap();
}

QString HtmlSelection::type() const { return read().value(QStringLiteral("type")).toString(); }
QString HtmlSelection::text() const { return read().value(QStringLiteral("text")).toString(); }
QString HtmlSelection::htmlText() const { return read().value(QStringLiteral("htmlText")).toString(); }

HtmlElement HtmlSelection::control() const
{
    return HtmlElement(m_document.browser(), read().value(QStringLiteral("control")).toInt());
}

HtmlTextRange HtmlSelection::createRange() const
{
    const int h = m_document.call(QStringLiteral("range.fromSelection"), {}, QStringLiteral("HtmlSelection.createRange")).toInt();
    return HtmlTextRange(m_document.browser(), h);
}

void HtmlSelection::empty()
{
    m_document.execCommand(QStringLiteral("Unselect"));
}
