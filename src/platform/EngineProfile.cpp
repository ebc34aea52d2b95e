#include "EngineProfile.h"

#include "platform/LocalPictureScheme.h"

#include <QCoreApplication>
#include <QDir>
#include <QWebEngineProfile>

namespace {
QString xdgFolder(const char *variable, const QString &fallback)
{
    const QString set = qEnvironmentVariable(variable);
    return set.isEmpty() ? QDir::homePath() + fallback : set;
}

QString made(const QString &path)
{
    QDir().mkpath(path);
    return path;
}
} // namespace

QString EngineProfile::StoragePath()
{
    return xdgFolder("XDG_DATA_HOME", QStringLiteral("/.local/share")) + QStringLiteral("/keldacms/engine");
}

QWebEngineProfile *EngineProfile::Shared()
{
    static QWebEngineProfile *profile = nullptr;
    if (!profile) {
        profile = new QWebEngineProfile(QStringLiteral("keldacms"), QCoreApplication::instance());
        profile->setPersistentStoragePath(made(StoragePath()));
        profile->setCachePath(made(xdgFolder("XDG_CACHE_HOME", QStringLiteral("/.cache")) + QStringLiteral("/keldacms/engine")));
        profile->setPersistentCookiesPolicy(QWebEngineProfile::AllowPersistentCookies);
        LocalPictureScheme::InstallIn(profile);
    }
    return profile;
}

void EngineProfile::SetSpellCheck(bool on)
{
    QWebEngineProfile *profile = Shared();
    QStringList languages;
    const QDir dictionaries(qEnvironmentVariable("QTWEBENGINE_DICTIONARIES_PATH"));
    for (const QString &file : dictionaries.entryList({QStringLiteral("*.bdic")}, QDir::Files, QDir::Name))
        languages << file.chopped(5);
    if (on && !languages.isEmpty() && profile->spellCheckLanguages() != languages)
        profile->setSpellCheckLanguages(languages);
    profile->setSpellCheckEnabled(on && !languages.isEmpty());
}
