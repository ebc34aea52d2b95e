#pragma once

#include "document/PageToken.h"

#include <QList>
#include <QString>
#include <QStringView>

#include <functional>

// Reads HTML into tokens, the way a browser's parser splits it, without
// building a tree: the same reader serves the author's source and the page
// engine's serialisation, so that the two can be lined up token by token.
//
// A key is made from what the browser understands: tag and attribute names
// in lower case, attribute values and text with their character references
// read, line ends as the parser gives them (CR LF and CR become LF). Quoting,
// case, the order of a tag's attributes and the way a character is written
// therefore do not count.
class PageTokenizer
{
public:
    // Turns a stretch of the text read into characters: the source is read
    // as one character per byte, and this gives the characters of the
    // page's charset. Empty: the text is characters already.
    using Decoder = std::function<QString(QStringView)>;

    struct Attribute
    {
        QString name; // lower case
        qsizetype nameStart = 0;
        qsizetype valueStart = -1; // -1: no value; the span holds no quotes
        qsizetype valueEnd = -1;
        QChar quote; // '"', '\'' or none
    };

    // With skipBlocks, "<%" to the next "%>" is server script: one Script
    // token where it stands in the text, and inside a tag, a comment or the
    // text of a script element it is part of that token (holdsBlock).
    static QList<PageToken> Tokenize(QStringView text, bool skipBlocks, const Decoder &decode = {});

    // The name of a tag token's element, lower case.
    static QString TagName(QStringView text, const PageToken &token);
    // The attributes of one tag's text, "<" to ">", each name once.
    static QList<Attribute> Attributes(QStringView tag);
    // A key for text that is written in the engine's spelling already.
    static quint64 TextKey(PageToken::Kind kind, QStringView characters);

private:
    class Reader;
};
