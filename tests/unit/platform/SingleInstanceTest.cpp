// One program per profile: a second claim asks the first to come forward,
// and a lock whose process is gone is taken over.

#include "platform/SingleInstance.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

bool pumpUntil(const std::function<bool()> &condition)
{
    const QDeadlineTimer deadline(10000);
    while (!condition() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    return condition();
}

// The pid of a process that has ended.
qint64 endedProcess()
{
    QProcess process;
    process.start(QStringLiteral("/bin/true"), {});
    process.waitForFinished();
    return process.processId() > 0 ? process.processId() : 0x3ffffe;
}

} // namespace

TEST(SingleInstance, ASecondClaimAsksTheFirstToComeForward)
{
    QTemporaryDir runtime;
    SingleInstance first(QStringLiteral("/profile/a"), runtime.path());
    ASSERT_TRUE(first.Claim());
    int asked = 0;
    QObject::connect(&first, &SingleInstance::Activated, [&asked] { ++asked; });

    SingleInstance second(QStringLiteral("/profile/a"), runtime.path());
    EXPECT_FALSE(second.Claim());
    EXPECT_TRUE(pumpUntil([&asked] { return asked == 1; }));

    // Another profile is another program.
    SingleInstance other(QStringLiteral("/profile/b"), runtime.path());
    EXPECT_TRUE(other.Claim());
}

TEST(SingleInstance, ALockLeftByACrashIsTakenOver)
{
    QTemporaryDir runtime;
    const QDir dir(runtime.path());
    QString lockPath;
    QByteArray held;
    {
        SingleInstance running(QStringLiteral("/profile/c"), runtime.path());
        ASSERT_TRUE(running.Claim());
        lockPath = dir.filePath(dir.entryList({QStringLiteral("keldacms-*.lock")}, QDir::Files).value(0));
        QFile lock(lockPath);
        ASSERT_TRUE(lock.open(QIODevice::ReadOnly));
        held = lock.readAll();
    }
    // The same lock as a program leaves it that was killed: its first line,
    // the pid, names a process that has ended.
    ASSERT_TRUE(held.startsWith(QByteArray::number(QCoreApplication::applicationPid()) + '\n'));
    held.replace(0, held.indexOf('\n'), QByteArray::number(endedProcess()));
    QFile stale(lockPath);
    ASSERT_TRUE(stale.open(QIODevice::WriteOnly));
    stale.write(held);
    stale.close();

    SingleInstance next(QStringLiteral("/profile/c"), runtime.path());
    EXPECT_TRUE(next.Claim());
}
