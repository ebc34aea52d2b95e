#include "platform/CICustomDoc.h"

#include "platform/HtmlDocument.h"
#include "platform/WebBrowser.h"
#include "support/MError.h"

namespace {
const long ErrObjectNotSet = 91;
}

long CICustomDoc::Init(WebBrowser *IE_p)
{
    m_IE = IE_p;
    return 1;
}

long CICustomDoc::Exec(long CMDID, long CMDOPT, const QVariant &VarIn, QVariant *VarOut)
{
    Q_UNUSED(CMDOPT);
    const QString position = QStringLiteral("CICustomDoc.Exec");
    if (!m_IE) {
        MError::SetError(ErrObjectNotSet, QStringLiteral("Object variable not set"), position);
        return 0;
    }
    const long done = m_IE->Document().execDesign(int(CMDID), VarIn);
    if (VarOut)
        *VarOut = done == 1;
    if (done != 1) {
        // The engine's own failure is already pending; it is told again under
        // this position, which is where the caller went through.
        const long number = MError::ErrorNumber();
        const QString description = MError::ErrorDescription();
        MError::SetError(number ? number : 1, description, position);
        return 0;
    }
    return 1;
}
