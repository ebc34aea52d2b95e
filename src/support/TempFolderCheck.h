#pragma once

#include "platform/LocalFolders.h"

#include <QString>

// The start's check of the temporary folder: the program will not run with a
// folder that another user could read or redirect, and tells the user what
// is wrong with it and what to do.
class TempFolderCheck
{
public:
    // Prepares the named temporary folder; the empty string when it is safe
    // to use, else the message to show before the program ends.
    static QString Problem();

    // The message for a folder found in `state` at `path`, in the current
    // language; empty for a safe folder.
    static QString Message(LocalFolders::TempState state, const QString &path);
};
