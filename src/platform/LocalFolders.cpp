#include "platform/LocalFolders.h"

#include <QDir>
#include <QFile>

#include <unistd.h>

QString LocalFolders::configFolder()
{
    QString base = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (base.isEmpty())
        base = QDir::homePath() + QStringLiteral("/.config");
    return ensureFolder(base + QStringLiteral("/keldacms"));
}

QString LocalFolders::tempFolder()
{
    QString base = qEnvironmentVariable("TMPDIR");
    if (base.isEmpty())
        base = QStringLiteral("/tmp");
    return ensureFolder(base + QStringLiteral("/keldacms-") + QString::number(getuid()));
}

QString LocalFolders::ensureFolder(const QString &path)
{
    QDir().mkpath(path);
    QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner
                                    | QFileDevice::ExeOwner);
    return path;
}
