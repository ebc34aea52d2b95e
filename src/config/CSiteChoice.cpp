#include "config/CSiteChoice.h"

#include "config/MGlobalProjectObjects.h"
#include "config/frmChooseSiteToEdit.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QDebug>

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
        frmChooseSiteToEdit::Choose(sites, strNavigate_p);
        return 1;
    }
    const long answer = UserQuestions::MsgBox(MResources::LoadResourceString(13006),
                                              UserQuestions::vbYesNo | UserQuestions::vbQuestion,
                                              MResources::LoadResourceString(13005));
    // The settings dialog that activates a site is not part of this build
    // yet; a Yes is only noted.
    if (answer == UserQuestions::vbYes)
        qInfo() << "CSiteChoice.OfferSites: activation asked for, but the settings dialog does not exist yet";
    return 1;
}
