#pragma once

#include "platform/HtmlDocument.h"

#include <QString>

// The upload of a picture of the user's disk at Save. It goes to the
// folder that the page reaches by the given path, under a name that web
// servers take: blanks and every character that an address would have to
// escape become "_". A file of that name on the server is never replaced
// unasked: the user chooses between replacing it, putting his picture
// beside it under a free name, and stopping the save. The file goes up by
// the safe replace, from a copy, so a picture changed on the disk in the
// meantime never goes up half.
class ImageUpload
{
public:
    // strFolder_p: the folder as the page writes it ("", "img/", "../img/",
    // or a whole address of the site). strName_p gives the name the file
    // has on the server now. 1, or 0 with the error pending (also when the
    // user stopped the save at the question).
    static long Send(const HtmlDocument &page, const QString &strLocalFile_p, const QString &strFolder_p,
                     QString &strName_p);

    // A local copy of a picture of the site, as the server holds it, in the
    // program's cache. 1, or 0 with the error pending.
    static long FetchCopy(const HtmlDocument &page, const QString &strSrc_p, QString &strLocalFile_p);

    // The name the file gets on the server.
    static QString ServerName(const QString &strLocalName_p);
    // A name like strName_p that none of the names holds: "_2", "_3", ...
    // before the extension.
    static QString FreeName(const QString &strName_p, const QStringList &names_p);
    // Where the program keeps the pictures it compresses or scales, apart
    // from the user's own folders.
    static QString WorkFolder();

private:
    static QString ServerPathOf(const HtmlDocument &page, const QString &strSrc_p);
    static long Ask(const QString &strName_p, const QString &strFolder_p, const QStringList &names_p,
                    QString &strUseName_p, bool &boolReplace_p);
};
