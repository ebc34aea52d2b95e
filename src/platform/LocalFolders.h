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
    // $XDG_DATA_HOME/keldacms, or ~/.local/share/keldacms: what the user
    // builds up over time (the personal word list); created on demand.
    static QString dataFolder();

    // What stands at the place of the temporary folder once we have tried to
    // make it ours.
    enum class TempState {
        Private,    // a folder of ours that only we can enter
        NotCreated, // nothing there, and it could not be made
        Link,       // a symbolic link, wherever it points
        NotFolder,  // a file, a socket, ...
        OtherOwner, // a folder that belongs to another user
        NotPrivate, // ours, but its permissions could not be narrowed to 0700
    };

    // $TMPDIR/keldacms-<user id>, or /tmp/keldacms-<user id>: the folder's
    // name, whatever stands there.
    static QString namedTempFolder();

    // Makes the named temporary folder (mode 0700) when it is missing,
    // narrows its permissions to 0700 when it is ours, and says whether it is
    // safe to use. Never follows a link at that place.
    static TempState prepareTempFolder();

    // The folder for error.log and the working copies of pages: the named
    // folder when prepareTempFolder() finds it safe. Otherwise a private
    // folder of this process made with mkdtemp beside it; see the .cpp.
    static QString tempFolder();

    // $<variable>, or the home folder with underHome ("/.cache").
    static QString xdgFolder(const char *variable, const QString &underHome);

private:
    static QString ensureFolder(const QString &path);
};
