#include "support/MSpelling.h"

#include "support/Hourglass.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"
#include "support/frmSpelling.h"

#include <QApplication>

namespace {
constexpr long txtVindrell = 20801, txtCanceled = 20803;
}

long MSpelling::Spellcheck(const QString &strText_p, QString &vResult, const QString &language,
                           QList<SpellingSession::Edit> *edits)
{
    vResult = strText_p;
    if (strText_p.isEmpty())
        return 0;
    SpellEngine *engine = nullptr;
    {
        const Hourglass wait;
        engine = SpellEngine::ForLanguage(language);
    }
    if (!engine)
        return 0;
    SpellingSession session(*engine, strText_p);
    if (!session.Next())
        return -1;
    frmSpelling dialog(session, QApplication::activeWindow());
    if (dialog.exec() != QDialog::Accepted) {
        UserQuestions::MsgBox(MResources::LoadResourceString(txtCanceled), UserQuestions::vbCritical,
                              MResources::LoadResourceString(txtVindrell));
        return -1;
    }
    if (session.Edits().isEmpty())
        return -1;
    vResult = session.Text();
    if (edits)
        *edits = session.Edits();
    return 1;
}
