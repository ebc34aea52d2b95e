#pragma once

#include "support/SpellingSession.h"

// The spell check of a text: the dictionary of its language, and the
// spelling dialog when a word is misspelt.
class MSpelling
{
public:
    // 1 with the corrected text in vResult and the changed words in edits;
    // -1 when nothing is to change (no misspelt word, every one ignored, or
    // the user cancelled: vResult is the text as it came); 0 on failure
    // with the pending error set. An empty text gives 0 and no error.
    // language is a tag as pages write it ("sv-SE"); empty is the
    // program's language.
    static long Spellcheck(const QString &strText_p, QString &vResult, const QString &language = {},
                           QList<SpellingSession::Edit> *edits = nullptr);
};
