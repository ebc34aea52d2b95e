#include "config/frmMessageBoxYesNoOnce.h"

#include "support/MResources.h"
#include "support/UserQuestions.h"

frmMessageBoxYesNoOnce::frmMessageBoxYesNoOnce(QWidget *parent)
    : frmMessageBoxOnce(parent)
{
    setObjectName(QStringLiteral("frmMessageBoxYesNoOnce"));
    AddAnswerButton(MResources::LoadResourceString(13013), UserQuestions::vbYes); // cmdYes
    AddAnswerButton(MResources::LoadResourceString(13014), UserQuestions::vbNo);  // cmdNo
}

long frmMessageBoxYesNoOnce::Show(const QString &strMessage_p, const QString &strMessageBoxTitle_p,
                                  const QString &strMessageBoxName_p, QWidget *parent)
{
    frmMessageBoxYesNoOnce form(parent);
    // Closing the window without an answer is a No: nothing is started.
    return ShowDialog(form, strMessage_p, strMessageBoxTitle_p, strMessageBoxName_p, UserQuestions::vbNo);
}
