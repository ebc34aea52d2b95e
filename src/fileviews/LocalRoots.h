#pragma once

#include <QList>
#include <QString>

// The top levels of this computer's tree: the home folder (the main one,
// opened at start), the file system's root and the mounted volumes that
// hold the user's files: disks, sticks, discs and network shares, not the
// system's own mounts.
class LocalRoots
{
public:
    // The images of the levels in the trees' image list.
    enum Image : int { Computer = 9, Fixed = 28, Disc = 29, Removable = 30 };

    struct Root
    {
        QString strPath;
        QString strText;
        int lImage = Fixed;
    };

    static QList<Root> List();
    static bool IsDriveImage(int image) { return image == Fixed || image == Disc || image == Removable; }
};
