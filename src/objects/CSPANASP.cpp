#include "objects/CSPANASP.h"

#include "aspfilter/ASPMarkers.h"
#include "config/MGlobalProjectObjects.h"
#include "document/CDocument.h"
#include "objects/CHTMLASP.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

namespace {
constexpr long txtEnableASPEditing = 16803, txtDontEditASP = 16804;
}

long CSPANASP::Init(const QString &strID_p, CDocEventHandler *CDocEventHandler_p, QWidget *frmVindrell_p,
                    CDocument *Document_p)
{
    m_strID = strID_p;
    m_DocEventHandler = CDocEventHandler_p;
    m_frmVindrell = frmVindrell_p;
    m_Document = Document_p;
    return 1;
}

QString CSPANASP::Marker() const
{
    return QLatin1String(ASPMarkers::StartMarker) + m_strID;
}

long CSPANASP::OnContextMenu()
{
    if ((MGlobalProjectObjects::AdvancedUserSettings & advEditASP) == 0) {
        UserQuestions::MsgBox(MResources::LoadResourceString(txtEnableASPEditing) + QLatin1Char('\r')
                                  + MResources::LoadResourceString(txtDontEditASP),
                              UserQuestions::vbInformation);
        return 1;
    }
    if (!m_Document)
        return 0;
    if (CHTMLASP().Init(m_Document->ASPFilter(), Marker(), m_frmVindrell) == 1)
        m_Document->SetDirty();
    return 1;
}
