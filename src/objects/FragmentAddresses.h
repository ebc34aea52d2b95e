#pragma once

#include <QString>

// The addresses of an HTML fragment that moves from one page to another
// (a paste, a drop): each is resolved against the page it came from and
// written relative to the page it goes into when both lie on the same
// server (scheme, host and port), so that the site keeps working when it
// moves; an address on another server stays absolute. Anchors in the page
// ("#top"), mail, script and data addresses are left as they are, and so
// is a relative address whose source page is unknown: it is never guessed.
class FragmentAddresses
{
public:
    // The address as it is to stand in the page at strDocumentURL_p, for
    // an address strSourceURL_p written in a fragment from the page at
    // strFromURL_p (empty when unknown). An empty result leaves the address
    // as it was written. Always 1.
    static long calculateRelativePath(const QString &strDocumentURL_p, const QString &strSourceURL_p,
                                      QString &strResult_p, const QString &strFromURL_p = QString());

    // Rewrites the addresses (href, src and background attributes) of the
    // fragment's tags in place; everything else keeps its characters. Gives
    // the number of addresses changed.
    static long ConvertAbsoluteURL(QString &strFragment_p, const QString &strSource_p, const QString &strTarget_p);
};
