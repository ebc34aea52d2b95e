#include "platform/LocalFolders.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <cstdlib>

#include <sys/stat.h>
#include <unistd.h>

namespace {
// Judges what stands at `path` without following a link, and narrows the
// permissions of a folder of ours to 0700.
LocalFolders::TempState judge(const QByteArray &path)
{
    using TempState = LocalFolders::TempState;
    struct stat st {};
    if (::lstat(path.constData(), &st) != 0)
        return TempState::NotCreated;
    if (S_ISLNK(st.st_mode))
        return TempState::Link;
    if (!S_ISDIR(st.st_mode))
        return TempState::NotFolder;
    if (st.st_uid != getuid())
        return TempState::OtherOwner;
    // Ours: a folder left open to others (or closed to us by a umask) is
    // narrowed. Nobody else can swap it between lstat and chmod, since in a
    // sticky /tmp only its owner may rename or remove it.
    if ((st.st_mode & 07777) != 0700 && ::chmod(path.constData(), 0700) != 0)
        return TempState::NotPrivate;
    return TempState::Private;
}

// A private folder made with mkdtemp when the named one is unsafe; one per
// named folder (tests change $TMPDIR between cases), removed at exit.
struct Fallback
{
    QString forNamed;
    QString path;
    ~Fallback()
    {
        if (!path.isEmpty() && judge(QFile::encodeName(path)) == LocalFolders::TempState::Private)
            QDir(path).removeRecursively();
    }
};

Fallback &fallback()
{
    static Fallback instance;
    return instance;
}

QString tempBase()
{
    QString base = qEnvironmentVariable("TMPDIR");
    if (base.isEmpty())
        base = QStringLiteral("/tmp");
    return base;
}
} // namespace

QString LocalFolders::configFolder()
{
    return ensureFolder(xdgFolder("XDG_CONFIG_HOME", QStringLiteral("/.config")) + QStringLiteral("/keldacms"));
}

QString LocalFolders::dataFolder()
{
    return ensureFolder(xdgFolder("XDG_DATA_HOME", QStringLiteral("/.local/share")) + QStringLiteral("/keldacms"));
}

// The folder an XDG variable names, or its default under the home folder.
QString LocalFolders::xdgFolder(const char *variable, const QString &underHome)
{
    const QString set = qEnvironmentVariable(variable);
    return set.isEmpty() ? QDir::homePath() + underHome : set;
}

QString LocalFolders::namedTempFolder()
{
    return tempBase() + QStringLiteral("/keldacms-") + QString::number(getuid());
}

LocalFolders::TempState LocalFolders::prepareTempFolder()
{
    // The base ($TMPDIR or /tmp) is the user's own choice and may be made
    // whole; the last part never is: mkdir does not follow a link planted
    // there, and an existing entry is judged below, not trusted.
    QDir().mkpath(tempBase());
    const QByteArray path = QFile::encodeName(namedTempFolder());
    if (::mkdir(path.constData(), 0700) != 0 && errno != EEXIST)
        return TempState::NotCreated;
    return judge(path);
}

// The start refuses to run when the named folder is unsafe, so the fallback
// serves only code that runs without that check (tools, tests) or a folder
// spoiled while the program runs. Handing out the unsafe folder would let
// its owner read error.log and the pages, or a link redirect our writes into
// files of his choice; an empty string would make callers write at the root
// of the file system. So a folder of our own is made with mkdtemp (mode 0700,
// a fresh name nobody could plant beforehand). Only when even that fails is
// the result empty: then $TMPDIR is unusable and every caller's file
// operation fails, which at the root ("/error.log") only the superuser could
// even try, in a folder nobody else can write to.
QString LocalFolders::tempFolder()
{
    const QString named = namedTempFolder();
    if (prepareTempFolder() == TempState::Private)
        return named;
    Fallback &own = fallback();
    // Made again when $TMPDIR changed, or when ours is gone (its name could
    // then be taken by anyone).
    if (own.forNamed != named || own.path.isEmpty()
        || judge(QFile::encodeName(own.path)) != TempState::Private) {
        if (!own.path.isEmpty() && judge(QFile::encodeName(own.path)) == TempState::Private)
            QDir(own.path).removeRecursively();
        QByteArray pattern = QFile::encodeName(named + QStringLiteral("-XXXXXX"));
        own.forNamed = named;
        own.path = ::mkdtemp(pattern.data()) ? QFile::decodeName(pattern) : QString();
    }
    return own.path;
}

QString LocalFolders::ensureFolder(const QString &path)
{
    QDir().mkpath(path);
    QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner
                                    | QFileDevice::ExeOwner);
    return path;
}
