#pragma once

#include <QString>

// Where the program keeps its files on this machine: the settings store in
// the user's configuration folder and a private temporary folder. Both follow
// the environment ($XDG_CONFIG_HOME, $TMPDIR) so that tests can point them at
// folders of their own.
class LocalFolders
{
public:
    // $XDG_CONFIG_HOME/keldacms, or ~/.config/keldacms; created on demand.
    static QString configFolder();

    // $TMPDIR/keldacms-<user id>, or /tmp/keldacms-<user id>; created on
    // demand, readable by the user alone.
    static QString tempFolder();

private:
    static QString ensureFolder(const QString &path);
};
