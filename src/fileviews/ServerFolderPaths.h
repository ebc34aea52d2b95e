#pragma once

#include "config/MGlobalProjectObjects.h"

#include <QString>

// The answers of the folder dialog (frmSiteTree). Its chosen key is
// "ROOT" for the site's root, else the folder's path below the web root
// with a leading "/" ("/img", "/a/c"); an empty key is a cancel.
class ServerFolderPaths
{
public:
    // The path from the folder of a page (its location's pathname) to the
    // chosen folder: a page in /a/b and the folder /a/c give "../c", the
    // page's own folder "". Both sides are taken below the web root, so
    // the site's ftproot, which would stand in front of both, is left out.
    static QString RelativePath(const QString &strPathname_p, const QString &strChosenKey_p);
    // The folder on the FTP server of the chosen key.
    static QString UpLoadPath(const QString &strChosenKey_p, const SiteRecord &site_p);
};
