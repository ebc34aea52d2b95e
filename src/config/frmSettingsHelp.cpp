#include "config/frmSettingsHelp.h"

#include "platform/CReg.h"
#include "support/MResources.h"

#include <QDesktopServices>
#include <QUrl>

namespace {
constexpr long kHelpBaseText = 30000;
}

QString frmSettingsHelp::HelpBase()
{
    QString base = CReg::GetSetting(QStringLiteral("Environment"), QStringLiteral("HelpBase"));
    if (base.isEmpty())
        base = MResources::LoadResourceString(kHelpBaseText);
    return base.endsWith(QLatin1Char('/')) ? base : base + QLatin1Char('/');
}

long frmSettingsHelp::ShowHelpOn(const QString &strURL_p, long)
{
    const QString address = strURL_p.contains(QStringLiteral("://")) ? strURL_p : HelpBase() + strURL_p;
    return QDesktopServices::openUrl(QUrl(address)) ? 1 : 0;
}

long frmSettingsHelp::SetParentWindowHnd(QWidget *)
{
    return 1;
}
