#pragma once

#include "FtpListParser.h"

#include <QString>

// Reads the lines of an MLSD reply: facts, one space, the name
// ("type=file;size=12;modify=20240301090500; index.htm"). Unlike LIST, the
// form is fixed by the standard, so names with spaces, leading dots and
// dates need no guessing. Fact names are compared without case, as servers
// write "Type=" as often as "type=".
class MlsdParser
{
public:
    // Fills `out` and gives true for an entry; the folder itself ("cdir")
    // and its parent ("pdir") are no entries of the folder.
    static bool parseLine(const QString &line, FtpListEntry &out);

private:
    static QDateTime modifyTime(const QString &value); // "YYYYMMDDHHMMSS[.sss]", UTC
};
