#pragma once

#include "support/SpellingSession.h"

#include <QList>
#include <QString>

// The text of a selection as the page holds it: the pieces of its text
// nodes in order, each with whether a line (a block's edge or a <br>) ends
// before it. Read as one text, words are checked across inline markup
// ("wo<b>rd</b>" is one word); edits of that text go back into the pieces,
// so the markup around them stays as the author wrote it.
class SelectionPieces
{
public:
    struct Piece
    {
        QString text;
        bool lineBefore = false;
    };

    explicit SelectionPieces(QList<Piece> pieces);

    // The pieces joined, a line break where a line ends.
    QString Text() const { return m_text; }
    // The pieces' texts after the edits (offsets into Text()). An edit
    // across pieces puts its replacement into the first and takes the
    // word's rest out of the others.
    QStringList Apply(const QList<SpellingSession::Edit> &edits) const;

private:
    QList<Piece> m_pieces;
    QList<qsizetype> m_starts;
    QString m_text;
};
