#pragma once

#include "config/MGlobalProjectObjects.h"

#include <QString>

// The keys of the site tree are the addresses of its files: the site's
// address (less a trailing "/") for the root, and the root's key, "/" and
// the path below it for everything else. The transfer client takes paths
// below the site's address; these helpers turn one into the other.
class SiteTreeKeys
{
public:
    // The record of the site in use; an empty one when there is none.
    static SiteRecord CurrentSite();
    // The root key of the site in use.
    static QString CurrentRootKey() { return RootKey(CurrentSite().baseaddress); }
    // The key of the root for a site address.
    static QString RootKey(const QString &strBaseAddress_p);
    // The path below the site of a key: "" for the root, "img/logo.png".
    static QString Address(const QString &strKey_p, const QString &strRootKey_p);
    // The address of a file in the folder of a key: "sub/name".
    static QString InFolder(const QString &strFolderKey_p, const QString &strRootKey_p, const QString &strName_p);
    // The address through which the client lists a folder (a file name in
    // it that stands for the folder itself).
    static QString FolderAddress(const QString &strFolderKey_p, const QString &strRootKey_p);
    // The key of the folder that holds the node of a key.
    static QString ParentKey(const QString &strKey_p);
};
