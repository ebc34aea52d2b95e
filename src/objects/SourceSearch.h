#pragma once

#include <QRegularExpression>
#include <QString>

#include <vector>

// One search of the source editor: the word as typed, plain or as a
// regular expression, with or without case, as a whole word or anywhere.
class SourceSearch
{
public:
    struct Options
    {
        bool matchCase = false;
        bool wholeWord = false;
        bool regularExpression = false;
    };

    struct Hit
    {
        qsizetype start = -1;
        qsizetype length = 0;
        QRegularExpressionMatch match;
    };

    SourceSearch(const QString &word, Options options);

    // False for an empty word or a regular expression that does not parse;
    // Error() then says why.
    bool IsValid() const;
    QString Error() const;

    // Every hit in the text, in order, none overlapping. A match of no
    // characters (a pattern like "x*") is no hit: there is nothing to show
    // or replace. One pass: a search started anew at each hit would check
    // the whole text again each time.
    std::vector<Hit> Hits(const QString &text) const;

    // What a hit is replaced by: the text as typed, or for a regular
    // expression with $1 ... $9 standing for its groups ($$ for a dollar).
    QString Replacement(const Hit &hit, const QString &replaceWith) const;

private:
    QRegularExpression m_pattern;
    bool m_regularExpression = false;
    bool m_empty = true;
};
