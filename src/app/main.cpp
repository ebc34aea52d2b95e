#include "history/frmBrowser.h"
#include "platform/PageEngineEnvironment.h"
#include "shell/frmVindrell.h"
#include "support/QtMessagePresenter.h"
#include "transfer/frmTransferStatusEx.h"

#include <QApplication>

#include <cstdio>

int main(int argc, char *argv[])
{
    PageEngineEnvironment::prepare();
    if (!PageEngineEnvironment::hasDisplay()) {
        std::fprintf(stderr,
                     "keldacms needs a display to show its window, and none is set "
                     "(DISPLAY is empty).\n"
                     "Start it from a desktop session, or without a screen under a "
                     "virtual one:\n  xvfb-run -a %s\n",
                     argv[0]);
        return 2;
    }
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("keldacms"));
    // The core library asks its questions and shows its windows through
    // hooks; here the real Qt dialogs take them.
    QtMessagePresenter::install();
    frmTransferStatusEx::InstallFactory();
    frmBrowser::InstallAsRevisionViewer();
    frmVindrell window;
    window.show();
    return app.exec();
}
