#include "platform/PageEngineEnvironment.h"

#include "platform/LocalPictureScheme.h"

#include <QByteArray>
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
}

bool PageEngineEnvironment::hasDisplay()
{
    return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY")
           || qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
}
