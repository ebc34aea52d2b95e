#include "fileviews/LocalRoots.h"

#include "support/MResources.h"

#include <QDir>
#include <QStorageInfo>

namespace {
constexpr long txtHome = 19816, txtFileSystem = 19817;

bool UsersVolume(const QStorageInfo &volume)
{
    const QString path = volume.rootPath();
    for (const char *system : {"/proc", "/sys", "/dev", "/run", "/snap", "/boot", "/var", "/tmp", "/mnt/sandboxing"})
        if (path == QLatin1String(system) || path.startsWith(QLatin1String(system) + QLatin1Char('/')))
            return path.startsWith(QLatin1String("/run/media/"));
    const QByteArray type = volume.fileSystemType();
    return volume.device().startsWith("/dev/") || type.startsWith("nfs") || type == "cifs" || type == "smb3"
           || type == "fuse.sshfs";
}

int ImageOf(const QStorageInfo &volume)
{
    const QByteArray type = volume.fileSystemType();
    if (type == "iso9660" || type == "udf")
        return LocalRoots::Disc;
    const QString path = volume.rootPath();
    if (path.startsWith(QLatin1String("/media/")) || path.startsWith(QLatin1String("/run/media/")))
        return LocalRoots::Removable;
    return LocalRoots::Fixed;
}
} // namespace

QList<LocalRoots::Root> LocalRoots::List()
{
    const QString home = QDir::homePath();
    QList<Root> roots{{home, MResources::LoadResourceString(txtHome), Fixed},
                      {QStringLiteral("/"), MResources::LoadResourceString(txtFileSystem), Fixed}};
    for (const QStorageInfo &volume : QStorageInfo::mountedVolumes()) {
        const QString path = volume.rootPath();
        if (!volume.isValid() || !volume.isReady() || path == QLatin1String("/") || path == home || !UsersVolume(volume))
            continue;
        const QString name = volume.displayName();
        roots.append({path, name.isEmpty() || name == path ? QDir(path).dirName() : name, ImageOf(volume)});
    }
    return roots;
}
