// The temporary folder: made private, or refused when another user could
// read it or redirect what is written there.

#include "platform/LocalFolders.h"
#include "support/ErrorLog.h"
#include "support/TempFolderCheck.h"

#include "TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace {
using TempState = LocalFolders::TempState;

mode_t modeOf(const QString &path)
{
    struct stat st {};
    EXPECT_EQ(::lstat(QFile::encodeName(path).constData(), &st), 0) << path.toStdString();
    return st.st_mode & 07777;
}

// Each case gets a $TMPDIR of its own inside the test program's private
// folder, so the real /tmp/keldacms-<uid> is never touched.
class TempFolderTest : public ::testing::Test
{
protected:
    QTemporaryDir base{TestEnvironment::privateRoot() + QStringLiteral("/base-XXXXXX")};
    QByteArray savedTmpdir = qgetenv("TMPDIR");
    QString named;

    void SetUp() override
    {
        ASSERT_TRUE(base.isValid());
        qputenv("TMPDIR", QFile::encodeName(base.path()));
        named = LocalFolders::namedTempFolder();
        ASSERT_EQ(named, base.path() + QStringLiteral("/keldacms-") + QString::number(getuid()));
    }
    void TearDown() override { qputenv("TMPDIR", savedTmpdir); }

    // What a refusal must leave: the named place as it was, and a private
    // folder of ours elsewhere that takes the program's writes.
    void expectFallback()
    {
        const QString used = LocalFolders::tempFolder();
        ASSERT_FALSE(used.isEmpty());
        EXPECT_NE(used, named);
        EXPECT_TRUE(QFileInfo(used).isDir());
        EXPECT_FALSE(QFileInfo(used).isSymLink());
        EXPECT_EQ(QFileInfo(used).ownerId(), getuid());
        EXPECT_EQ(modeOf(used), mode_t(0700));
        EXPECT_EQ(LocalFolders::tempFolder(), used) << "one fallback, not a new one per call";
        ErrorLog::Append(7, QStringLiteral("a note"), QStringLiteral("TempFolderTest"));
        EXPECT_TRUE(QFile::exists(used + QStringLiteral("/error.log")));
        EXPECT_FALSE(TempFolderCheck::Problem().isEmpty());
    }
};
} // namespace

TEST_F(TempFolderTest, MissingFolderIsMadePrivateAndAnOpenOneOfOursIsNarrowed)
{
    const mode_t umaskWas = ::umask(0);
    const TempState made = LocalFolders::prepareTempFolder();
    ::umask(umaskWas);
    EXPECT_EQ(made, TempState::Private);
    EXPECT_EQ(modeOf(named), mode_t(0700));

    ASSERT_EQ(::chmod(QFile::encodeName(named).constData(), 0777), 0);
    EXPECT_EQ(LocalFolders::tempFolder(), named);
    EXPECT_EQ(modeOf(named), mode_t(0700));
    EXPECT_TRUE(TempFolderCheck::Problem().isEmpty());
}

TEST_F(TempFolderTest, PlantedLinkIsRefusedAndNothingIsWrittenThroughIt)
{
    // The link points at a folder of the victim's, and at one of his files.
    const QString victim = base.path() + QStringLiteral("/victim");
    ASSERT_TRUE(QDir().mkpath(victim));
    ASSERT_TRUE(QFile::link(victim, named));
    EXPECT_EQ(LocalFolders::prepareTempFolder(), TempState::Link);
    expectFallback();
    EXPECT_TRUE(QDir(victim).isEmpty());
    EXPECT_EQ(modeOf(victim), mode_t(0755)) << "the target's mode is not touched";

    ASSERT_TRUE(QFile::remove(named));
    const QString file = base.path() + QStringLiteral("/victim.txt");
    QFile target(file);
    ASSERT_TRUE(target.open(QIODevice::WriteOnly));
    target.write("his own");
    target.close();
    ASSERT_TRUE(QFile::link(file, named));
    EXPECT_EQ(LocalFolders::prepareTempFolder(), TempState::Link);
    expectFallback();
    ASSERT_TRUE(target.open(QIODevice::ReadOnly));
    EXPECT_EQ(target.readAll(), QByteArray("his own"));
}

TEST_F(TempFolderTest, PlainFileAtThePlaceIsRefused)
{
    QFile file(named);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("not a folder");
    file.close();
    EXPECT_EQ(LocalFolders::prepareTempFolder(), TempState::NotFolder);
    expectFallback();
    EXPECT_EQ(QFileInfo(named).size(), qint64(12));
}

TEST_F(TempFolderTest, FolderOfAnotherUserIsRefused)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only the superuser can give a folder to another user";
    ASSERT_EQ(::mkdir(QFile::encodeName(named).constData(), 0700), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(named).constData(), 0777), 0);
    ASSERT_EQ(::chown(QFile::encodeName(named).constData(), 65534, 65534), 0);
    EXPECT_EQ(LocalFolders::prepareTempFolder(), TempState::OtherOwner);
    EXPECT_EQ(modeOf(named) & 0777, mode_t(0777)) << "his folder is left as it was";
    expectFallback();
    EXPECT_TRUE(QDir(named).isEmpty());
}

TEST_F(TempFolderTest, RefusalSaysWhatIsWrongAndWhatToDo)
{
    const QString path = QStringLiteral("/tmp/keldacms-1000");
    EXPECT_EQ(TempFolderCheck::Message(TempState::OtherOwner, path),
              QStringLiteral("The temporary folder /tmp/keldacms-1000 belongs to another user.\n"
                             "Remove it, or set TMPDIR to a folder of your own, then start the "
                             "program again."));
    for (TempState state : {TempState::Link, TempState::NotFolder, TempState::NotCreated,
                            TempState::NotPrivate}) {
        const QString text = TempFolderCheck::Message(state, path);
        EXPECT_TRUE(text.startsWith(QStringLiteral("The temporary folder /tmp/keldacms-1000 ")))
            << text.toStdString();
        EXPECT_TRUE(text.contains(QStringLiteral("set TMPDIR"))) << text.toStdString();
    }
    EXPECT_TRUE(TempFolderCheck::Message(TempState::Private, path).isEmpty());
}
