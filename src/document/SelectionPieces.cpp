#include "document/SelectionPieces.h"

SelectionPieces::SelectionPieces(QList<Piece> pieces)
    : m_pieces(std::move(pieces))
{
    for (qsizetype i = 0; i < m_pieces.size(); ++i) {
        if (i > 0 && m_pieces.at(i).lineBefore)
            m_text += QLatin1Char('\n');
        m_starts.append(m_text.size());
        m_text += m_pieces.at(i).text;
    }
}

QStringList SelectionPieces::Apply(const QList<SpellingSession::Edit> &edits) const
{
    QStringList texts;
    for (const Piece &piece : m_pieces)
        texts << piece.text;
    // From the back, so that the offsets of the edits still to make hold.
    for (auto edit = edits.crbegin(); edit != edits.crend(); ++edit) {
        const qsizetype end = edit->start + edit->length;
        for (qsizetype i = m_pieces.size() - 1; i >= 0; --i) {
            const qsizetype from = qMax(edit->start, m_starts.at(i));
            const qsizetype to = qMin(end, m_starts.at(i) + m_pieces.at(i).text.size());
            if (from >= to)
                continue;
            const bool first = from == edit->start;
            texts[i].replace(from - m_starts.at(i), to - from, first ? edit->replacement : QString());
        }
    }
    return texts;
}
