#include "objects/CHTMLASP.h"

#include "aspfilter/ASPMarkers.h"
#include "aspfilter/CASPFilter.h"
#include "objects/frmASPDialog.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

namespace {
constexpr long txtCannotInterpret = 17000;
}

long CHTMLASP::Init(CASPFilter *CASPFilter_p, const QString &strASPID_p, QWidget *parent)
{
    const QString mark = QLatin1String(ASPMarkers::StartMarker);
    const qsizetype at = strASPID_p.indexOf(mark);
    const QString id = at < 0 ? QString() : strASPID_p.mid(at + mark.size(), 5);
    QString text;
    if (!CASPFilter_p || id.size() != 5 || CASPFilter_p->GetASP(id, text) != 1) {
        UserQuestions::MsgBox(MResources::LoadResourceString(txtCannotInterpret), UserQuestions::vbExclamation);
        return -1;
    }
    frmASPDialog form(parent);
    form.SetASP(text);
    form.Show();
    const QString edited = form.ASP();
    if (edited == QLatin1String("-1") || edited.isEmpty())
        return -1;
    CASPFilter_p->SetASP(id, edited);
    return 1;
}
