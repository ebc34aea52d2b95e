#pragma once

#include <QString>

// The text work a page goes through on its way to the server: the META
// tags written the way the program writes them, and HTML Tidy's clean-up.
// Plain text in, plain text out; nothing here touches the page engine.
class CSaveText
{
public:
    // The engine writes a META tag's name last; the program writes it first.
    // 1 always: a text without a head comes back unchanged.
    static long ReArrangeMetaNames(const QString &strIn, QString &strOut);

    // Runs the page through HTML Tidy with the encoding and indent of the
    // settings. 1 tidied; 0 Tidy failed: strOut is strIn and the reason
    // went to error.log (position "CDocument.TidyUpHTML").
    static long TidyUpHTML(const QString &strIn, QString &strOut);

    // The charset a TidyCharEncodingType stands for; "" for a type that has
    // none.
    static QString CharsetOfType(long type);

private:
    static QString RunTidy(const QString &text, long encodingType, long indentScheme, bool &ok);
    static QString CollapseBlankLines(const QString &text);
};
