#include "config/CSiteChoice.h"

#include "config/MGlobalProjectObjects.h"
#include "config/frmChooseSiteToEdit.h"
#include "config/frmSettingsEx.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"


QStringList CSiteChoice::ActiveSites()
{
    QStringList sites;
    const auto &records = MGlobalProjectObjects::URLDATA;
    for (auto it = records.rbegin(); it != records.rend(); ++it)
        if (it->isactive == QLatin1String("1"))
            sites.append(it->baseaddress);
    return sites;
}

long CSiteChoice::OfferSites(QString &strNavigate_p)
{
    strNavigate_p.clear();
    const QStringList sites = ActiveSites();
    if (!sites.isEmpty()) {
        if (frmChooseSiteToEdit::Choose(sites, strNavigate_p) == frmChooseSiteToEdit::ToSettings)
            frmSettingsEx::ShowOnNewSite(nullptr);
        return 1;
    }
    const long answer = UserQuestions::MsgBox(MResources::LoadResourceString(13006),
                                              UserQuestions::vbYesNo | UserQuestions::vbQuestion,
                                              MResources::LoadResourceString(13005));
    if (answer == UserQuestions::vbYes)
        frmSettingsEx::ShowOnNewSite(nullptr);
    return 1;
}
