#include "history/frmBrowser.h"
#include "platform/PageEngineEnvironment.h"
#include "shell/frmVindrell.h"
#include "support/MResources.h"
#include "support/QtMessagePresenter.h"
#include "support/TempFolderCheck.h"
#include "support/UserQuestions.h"
#include "transfer/frmTransferStatusEx.h"

#include <QApplication>

#include <cstdio>

int main(int argc, char *argv[])
{
    PageEngineEnvironment::prepare();
    // error.log and the working copies of pages go into the temporary
    // folder; one that another user owns, or a link he planted, would hand
    // him what is written there. The message goes to the console, and into
    // a box as well when there is a display to show one.
    MResources::InitLangSupport();
    const QString tempProblem = TempFolderCheck::Problem();
    if (!tempProblem.isEmpty()) {
        std::fprintf(stderr, "%s\n", tempProblem.toLocal8Bit().constData());
        if (PageEngineEnvironment::hasDisplay()) {
            QApplication app(argc, argv);
            QtMessagePresenter::install();
            UserQuestions::MsgBox(tempProblem, UserQuestions::vbCritical);
        }
        return 2;
    }
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
