#pragma once

#include <QString>

// Helpers the two file trees share, and the pages that take links from them.
class MTreeViewTypes
{
public:
    // A size for the questions before a transfer: up to 1000 in bytes,
    // then in kB up to 1000000, then in MB, with two decimals.
    static QString FormatSizeString(double dblSize_p);

    // The address of a target as a link from a page (base): "./x.htm" in the
    // page's folder, "../img/x.gif" one above. 1, or -1 when either is empty,
    // or both are the same and hold no "/". A target on another host comes
    // back as it is.
    static long GetRelativePath(const QString &strTarget_p, const QString &strBase_p, QString &strResult_p);
};
