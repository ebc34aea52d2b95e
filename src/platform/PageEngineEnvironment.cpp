#include "platform/PageEngineEnvironment.h"

#include "platform/LocalPictureScheme.h"

#include <QByteArray>
#include <QDir>
#include <QFileInfo>
#include <QtGlobal>

#include <unistd.h>

void PageEngineEnvironment::prepare()
{
    if (geteuid() == 0 && !qEnvironmentVariableIsSet("QTWEBENGINE_DISABLE_SANDBOX"))
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    if (!qEnvironmentVariableIsSet("QTWEBENGINE_CHROMIUM_FLAGS")) {
        qputenv("QTWEBENGINE_CHROMIUM_FLAGS",
                "--disable-gpu --no-sandbox --disable-background-networking "
                "--disable-component-update --disable-sync --no-first-run");
    }
    LocalPictureScheme::Register();
    FindSpellingDictionaries();
}

// The engine's own spelling dictionaries (made at build time from the
// machine's Hunspell files) lie beside the program in the build, or under
// share/keldacms where it is installed; the engine reads the place only from
// its environment. A place the user has set is kept.
void PageEngineEnvironment::FindSpellingDictionaries()
{
    if (qEnvironmentVariableIsSet("QTWEBENGINE_DICTIONARIES_PATH"))
        return;
    const QString program = QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath();
    const QDir folder = QFileInfo(program).dir();
    for (const QString &place : {QStringLiteral("qtwebengine_dictionaries"), QStringLiteral("../qtwebengine_dictionaries"),
                                 QStringLiteral("../share/keldacms/qtwebengine_dictionaries")}) {
        const QString path = QDir::cleanPath(folder.absoluteFilePath(place));
        if (QFileInfo(path).isDir()) {
            qputenv("QTWEBENGINE_DICTIONARIES_PATH", QFile::encodeName(path));
            return;
        }
    }
}

bool PageEngineEnvironment::hasDisplay()
{
    return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY")
           || qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
}
