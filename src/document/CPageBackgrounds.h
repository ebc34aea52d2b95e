#pragma once

#include "config/MGlobalProjectObjects.h"
#include "platform/HtmlDocument.h"

#include <QString>

// Background pictures that the user chose from his own disk while editing:
// the page holds them by their local path, in attributes set by the page
// objects, until the save uploads each file and points the page at it on
// the server.
class CPageBackgrounds
{
public:
    // The page's own background, pending on BODY (BkndImgSrcPath,
    // BkndImgUploadPath, BkndImgDocPath). strPagePath_p is the page's path
    // on the server. 1 uploaded, -1 nothing pending, 0 failed (error set).
    static long SaveBodyBackground(HtmlElement &body, const SiteRecord &site, const QString &strPagePath_p);

    // The background of another element, as stripEditMarks handed it over.
    // 1, or 0 with the error set.
    static long SaveElementBackground(const HtmlDocument::PendingBackground &pending, const SiteRecord &site);

    // The path that leads from one server folder to a file in another.
    static QString RelativePath(const QString &strFromFolder_p, const QString &strToFolder_p, const QString &strName_p);

private:
    static QString BodyUploadFolder(const HtmlElement &body, const SiteRecord &site, const QString &strPageFolder_p);
    static QString FileName(const QString &strLocalPath_p);
    static QString FolderOf(const QString &strPath_p);
    static long Upload(const QString &strLocalFile_p, const QString &strFolder_p, const SiteRecord &site);
};
