#include "support/EnvironmentSettings.h"

#include "platform/LocalFolders.h"

#include <QSettings>

namespace {
const QString LangKey = QStringLiteral("Environment/Lang");
const QString ServiceKey = QStringLiteral("Environment/ErrorReportService");
} // namespace

QString EnvironmentSettings::StorePath()
{
    return LocalFolders::configFolder() + QStringLiteral("/keldacms.ini");
}

long EnvironmentSettings::Lang()
{
    QSettings store(StorePath(), QSettings::IniFormat);
    bool ok = false;
    const long language = store.value(LangKey).toString().toLong(&ok);
    return ok ? language : 1033;
}

void EnvironmentSettings::SetLang(long language)
{
    QSettings store(StorePath(), QSettings::IniFormat);
    store.setValue(LangKey, qlonglong(language));
}

QString EnvironmentSettings::ErrorReportService()
{
    QSettings store(StorePath(), QSettings::IniFormat);
    return store.value(ServiceKey, QStringLiteral("https://service.vindrell.com")).toString();
}

void EnvironmentSettings::SetErrorReportService(const QString &address)
{
    QSettings store(StorePath(), QSettings::IniFormat);
    store.setValue(ServiceKey, address);
}
