// The program as a user installs and starts it: the Debian package built by
// CPack, unpacked into a clean root, its desktop files checked by the
// validators and its installed binary started for the self-check; and a
// second start of the program bringing the first one forward.

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

// The build folder: the test programs stand in its "tests" folder.
QString buildFolder()
{
    return QDir(QCoreApplication::applicationDirPath() + QStringLiteral("/..")).absolutePath();
}

struct Outcome
{
    int code = -1;
    QString out;
};

Outcome run(const QString &program, const QStringList &arguments, const QProcessEnvironment &environment = {},
        int deadlineMs = 120000)
{
    QProcess process;
    if (!environment.isEmpty())
        process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForFinished(deadlineMs)) {
        process.kill();
        process.waitForFinished();
        return {-1, QString::fromLocal8Bit(process.readAll()) + QStringLiteral(" (did not end)")};
    }
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromLocal8Bit(process.readAll())};
}

// Settings, browser data and runtime folder of a user of his own.
QProcessEnvironment freshUser(const QString &home)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *folder : {"config", "data", "cache", "runtime", "tmp"})
        QDir().mkpath(home + QLatin1Char('/') + QLatin1String(folder));
    environment.insert(QStringLiteral("HOME"), home);
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home + QStringLiteral("/config"));
    environment.insert(QStringLiteral("XDG_DATA_HOME"), home + QStringLiteral("/data"));
    environment.insert(QStringLiteral("XDG_CACHE_HOME"), home + QStringLiteral("/cache"));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), home + QStringLiteral("/runtime"));
    environment.insert(QStringLiteral("TMPDIR"), home + QStringLiteral("/tmp"));
    return environment;
}

bool waitFor(const std::function<bool()> &condition, int deadlineMs)
{
    const QDeadlineTimer deadline(deadlineMs);
    while (!condition() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    return condition();
}

} // namespace

TEST(InstalledProgram, ThePackageInstallsIntoACleanRootAndItsProgramStarts)
{
    QTemporaryDir work;
    const Outcome packed = run(QStringLiteral("cpack"),
                           {QStringLiteral("-G"), QStringLiteral("DEB"), QStringLiteral("-B"), work.path(),
                            QStringLiteral("--config"), buildFolder() + QStringLiteral("/CPackConfig.cmake")});
    ASSERT_EQ(packed.code, 0) << packed.out.toStdString();
    const QString package = QDir(work.path()).entryInfoList({QStringLiteral("keldacms_*.deb")}).value(0).filePath();
    ASSERT_FALSE(package.isEmpty()) << packed.out.toStdString();

    const Outcome depends = run(QStringLiteral("dpkg-deb"), {QStringLiteral("-f"), package, QStringLiteral("Depends")});
    EXPECT_TRUE(depends.out.contains(QStringLiteral("libqt6webenginecore6"))) << depends.out.toStdString();
    EXPECT_TRUE(depends.out.contains(QStringLiteral("libcurl"))) << depends.out.toStdString();

    const QString root = work.path() + QStringLiteral("/root");
    ASSERT_EQ(run(QStringLiteral("dpkg-deb"), {QStringLiteral("-x"), package, root}).code, 0);
    const QString share = root + QStringLiteral("/usr/share");
    const Outcome desktop = run(QStringLiteral("desktop-file-validate"),
                            {share + QStringLiteral("/applications/org.keldacms.Editor.desktop")});
    EXPECT_EQ(desktop.code, 0) << desktop.out.toStdString();
    const Outcome metainfo = run(QStringLiteral("appstreamcli"),
                             {QStringLiteral("validate"), QStringLiteral("--no-net"),
                              share + QStringLiteral("/metainfo/org.keldacms.Editor.metainfo.xml")});
    EXPECT_EQ(metainfo.code, 0) << metainfo.out.toStdString();
    EXPECT_TRUE(QFile::exists(share + QStringLiteral("/icons/hicolor/scalable/apps/org.keldacms.Editor.svg")));
    EXPECT_TRUE(QFile::exists(share + QStringLiteral("/icons/hicolor/48x48/apps/org.keldacms.Editor.png")));

    const QString program = root + QStringLiteral("/usr/bin/keldacms");
    EXPECT_EQ(run(program, {QStringLiteral("--version")}).out.trimmed(), QStringLiteral("keldacms 0.1.0"));
    const Outcome check = run(program, {QStringLiteral("--self-check")}, freshUser(work.path() + QStringLiteral("/home")));
    EXPECT_EQ(check.code, 0) << check.out.toStdString();
    EXPECT_TRUE(check.out.contains(QStringLiteral("keldacms: self-check passed"))) << check.out.toStdString();
}

TEST(InstalledProgram, ASecondStartBringsTheRunningWindowForward)
{
    QTemporaryDir home;
    const QProcessEnvironment user = freshUser(home.path());
    const QString program = buildFolder() + QStringLiteral("/keldacms");
    QProcess first;
    first.setProcessEnvironment(user);
    first.setProcessChannelMode(QProcess::MergedChannels);
    first.start(program, {});
    const QDir runtime(home.path() + QStringLiteral("/runtime"));
    ASSERT_TRUE(waitFor([&runtime] { return !runtime.entryList({QStringLiteral("keldacms-*.socket")}, QDir::System).isEmpty(); },
                        60000))
        << first.readAll().toStdString();

    const Outcome second = run(program, {}, user, 30000);
    EXPECT_EQ(second.code, 0) << second.out.toStdString();
    EXPECT_TRUE(second.out.contains(QStringLiteral("already running"))) << second.out.toStdString();
    QString told;
    EXPECT_TRUE(waitFor([&first, &told] { told += QString::fromLocal8Bit(first.readAll());
                                          return told.contains(QStringLiteral("brought this window forward")); },
                        30000))
        << told.toStdString();
    EXPECT_EQ(first.state(), QProcess::Running);
    first.terminate();
    if (!first.waitForFinished(10000)) {
        first.kill();
        first.waitForFinished();
    }
}

TEST(InstalledProgram, VersionAndHelpPrintAndExit)
{
    const QString program = buildFolder() + QStringLiteral("/keldacms");
    const Outcome help = run(program, {QStringLiteral("--help")});
    EXPECT_EQ(help.code, 0);
    EXPECT_TRUE(help.out.startsWith(QStringLiteral("Usage: keldacms"))) << help.out.toStdString();
    const Outcome wrong = run(program, {QStringLiteral("--no-such-option")});
    EXPECT_EQ(wrong.code, 2);
    EXPECT_TRUE(wrong.out.contains(QStringLiteral("--self-check"))) << wrong.out.toStdString();
}
