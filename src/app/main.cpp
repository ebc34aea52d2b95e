#include "history/frmBrowser.h"
#include "platform/EngineProfile.h"
#include "platform/PageEngineEnvironment.h"
#include "platform/SingleInstance.h"
#include "shell/SelfCheck.h"
#include "shell/frmVindrell.h"
#include "support/MResources.h"
#include "support/QtMessagePresenter.h"
#include "support/TempFolderCheck.h"
#include "support/UserQuestions.h"
#include "transfer/frmTransferStatusEx.h"

#include <QApplication>

#include <cstdio>
#include <cstring>

namespace {

// The main window takes no arguments; --version and --help are what every
// program on Linux answers, and --self-check proves an installation.
enum class Mode { Window, SelfCheck, Done, Wrong };

Mode ReadArguments(int argc, char *argv[])
{
    if (argc < 2)
        return Mode::Window;
    const char *argument = argv[1];
    if (argc == 2 && std::strcmp(argument, "--version") == 0) {
        std::printf("keldacms %s\n", KELDA_VERSION_TEXT);
        return Mode::Done;
    }
    if (argc == 2 && std::strcmp(argument, "--self-check") == 0)
        return Mode::SelfCheck;
    const bool help = argc == 2 && (std::strcmp(argument, "--help") == 0 || std::strcmp(argument, "-h") == 0);
    std::fprintf(help ? stdout : stderr,
                 "Usage: keldacms [--version | --help | --self-check]\n"
                 "Edit the pages of your own web site in place and save them back to its server.\n\n"
                 "  --version     print the version and exit\n"
                 "  --help        print this help and exit\n"
                 "  --self-check  start, show the window, render a page with the page engine, and exit\n\n"
                 "Settings: $XDG_CONFIG_HOME/keldacms (~/.config/keldacms)\n"
                 "Browser data: $XDG_DATA_HOME/keldacms/engine (~/.local/share/keldacms/engine)\n"
                 "Error log: error.log in the program's temporary folder ($TMPDIR/keldacms-<uid>)\n");
    return help ? Mode::Done : Mode::Wrong;
}

// A window that a second start asked for comes to the front.
void BringForward(QWidget &window)
{
    window.showNormal();
    window.raise();
    window.activateWindow();
}

} // namespace

int main(int argc, char *argv[])
{
    const Mode mode = ReadArguments(argc, argv);
    if (mode == Mode::Done)
        return 0;
    if (mode == Mode::Wrong)
        return 2;
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
    QApplication::setApplicationVersion(QStringLiteral(KELDA_VERSION_TEXT));
    // The id of the desktop entry: on Wayland the window shows its icon.
    QGuiApplication::setDesktopFileName(QStringLiteral("org.keldacms.Editor"));
    SingleInstance instance(EngineProfile::StoragePath(), SingleInstance::RuntimeFolder());
    if (!instance.Claim()) {
        std::fprintf(stderr, "keldacms is already running: its window was asked to come forward.\n");
        return 0;
    }
    // The core library asks its questions and shows its windows through
    // hooks; here the real Qt dialogs take them.
    QtMessagePresenter::install();
    frmTransferStatusEx::InstallFactory();
    frmBrowser::InstallAsRevisionViewer();
    frmVindrell window;
    QObject::connect(&instance, &SingleInstance::Activated, &window, [&window] {
        std::fprintf(stderr, "keldacms: a second start brought this window forward\n");
        BringForward(window);
    });
    window.show();
    if (mode == Mode::SelfCheck)
        return SelfCheck::Run(window);
    return app.exec();
}
