#include "support/EnvironmentSettings.h"

#include "platform/CReg.h"

namespace {
const QString Section = QStringLiteral("Environment");
const QString LangKey = QStringLiteral("Lang");
const QString ServiceKey = QStringLiteral("ErrorReportService");

CReg environment()
{
    CReg key;
    key.KeyRoot = CReg::AppKey();
    key.Subkey = Section;
    return key;
}
} // namespace

long EnvironmentSettings::Lang()
{
    bool ok = false;
    const long language = CReg::GetSetting(Section, LangKey).toLong(&ok);
    return ok ? language : 1033;
}

void EnvironmentSettings::SetLang(long language)
{
    // A number, as the settings dialog writes it.
    environment().SetRegistryValue(LangKey, qlonglong(language), CReg::REG_DWORD);
}

QString EnvironmentSettings::ErrorReportService()
{
    return CReg::GetSetting(Section, ServiceKey, QStringLiteral("https://service.vindrell.com"));
}

void EnvironmentSettings::SetErrorReportService(const QString &address)
{
    CReg::SaveSetting(Section, ServiceKey, address);
}
