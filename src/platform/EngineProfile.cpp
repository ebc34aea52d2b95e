#include "EngineProfile.h"

#include "platform/LocalFolders.h"
#include "platform/LocalPictureScheme.h"

#include <QCoreApplication>
#include <QDir>
#include <QWebEngineProfile>

namespace {
QString made(const QString &path)
{
    QDir().mkpath(path);
    return path;
}
} // namespace

QString EngineProfile::StoragePath()
{
    return LocalFolders::dataFolder() + QStringLiteral("/engine");
}

QWebEngineProfile *EngineProfile::Shared()
{
    static QWebEngineProfile *profile = nullptr;
    if (!profile) {
        profile = new QWebEngineProfile(QStringLiteral("keldacms"), QCoreApplication::instance());
        profile->setPersistentStoragePath(made(StoragePath()));
        profile->setCachePath(made(LocalFolders::xdgFolder("XDG_CACHE_HOME", QStringLiteral("/.cache")) + QStringLiteral("/keldacms/engine")));
        profile->setPersistentCookiesPolicy(QWebEngineProfile::AllowPersistentCookies);
        LocalPictureScheme::InstallIn(profile);
    }
    return profile;
}

void EngineProfile::SetSpellCheck(bool on)
{
    QWebEngineProfile *profile = Shared();
    // The dictionaries' folder is set before the engine starts and read once.
    static const QStringList languages = [] {
        QStringList names;
        const QDir dictionaries(qEnvironmentVariable("QTWEBENGINE_DICTIONARIES_PATH"));
        for (const QString &file : dictionaries.entryList({QStringLiteral("*.bdic")}, QDir::Files, QDir::Name))
            names << file.chopped(5);
        return names;
    }();
    if (on && !languages.isEmpty() && profile->spellCheckLanguages() != languages)
        profile->setSpellCheckLanguages(languages);
    profile->setSpellCheckEnabled(on && !languages.isEmpty());
}
