#pragma once

#include "platform/HtmlDocument.h"

class HtmlTextRange;

// The selection of a document, read when asked.
class HtmlSelection
{
public:
    explicit HtmlSelection(const HtmlDocument &document);

    QString type() const;     // "None", "Text" or "Control"
    QString text() const;
    QString htmlText() const;
    // The picked element of a "Control" selection.
    HtmlElement control() const;
    HtmlTextRange createRange() const;
    void empty();

private:
    QVariantMap read() const;

    HtmlDocument m_document;
};
