// The spell check of the selection in a page in design mode (F7). The
// words are checked as one text across inline markup, and only the words
// the user changed go back, each into the text node it came from: bold,
// links and spans inside the selection keep their places and the rest of
// the page keeps its bytes. The clipboard is never used on the way.

#include "document/CDocument.h"

#include "config/MGlobalProjectObjects.h"
#include "document/SelectionPieces.h"
#include "support/MError.h"
#include "support/MSpelling.h"

namespace {
const QString kPosition = QStringLiteral("CDocument.Spellcheck");

QList<SelectionPieces::Piece> PiecesOf(const QVariantList &list)
{
    QList<SelectionPieces::Piece> pieces;
    for (const QVariant &item : list) {
        const QVariantMap piece = item.toMap();
        pieces.append({piece.value(QStringLiteral("text")).toString(), piece.value(QStringLiteral("lineBefore")).toBool()});
    }
    return pieces;
}
} // namespace

long CDocument::Spellcheck()
{
    if (!MGlobalProjectObjects::useSpellCheck)
        return 1;
    const QVariantMap selection = m_Document.callRuntime(QStringLiteral("spelling.pieces"), {}, kPosition).toMap();
    if (MError::ErrorNumber() != 0)
        return 0;
    const SelectionPieces pieces(PiecesOf(selection.value(QStringLiteral("pieces")).toList()));
    if (pieces.Text().trimmed().isEmpty())
        return 1;
    QString corrected;
    QList<SpellingSession::Edit> edits;
    const long result = MSpelling::Spellcheck(pieces.Text(), corrected, selection.value(QStringLiteral("lang")).toString(), &edits);
    if (result != 1)
        return result == 0 ? 0 : 1;
    m_Document.callRuntime(QStringLiteral("spelling.apply"), {pieces.Apply(edits)}, kPosition);
    if (MError::ErrorNumber() != 0)
        return 0;
    m_boolDirty = true;
    return 1;
}
