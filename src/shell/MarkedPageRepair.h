#pragma once

#include <QByteArray>
#include <QString>

class CFTPS;

// A session that was cut off (the program killed, the machine down, the
// connection lost for good) between marking a script page and putting it
// back leaves the marked page live on the server. The next press of Edit on
// that page finds it before marking it again:
//
// - The sign is the page itself: a source that holds the start marker was
//   left by a session, as no author writes that marker. A copy beside the
//   page alone is no sign: the copy may stay when a session's last step
//   failed after the original was already back.
// - The original comes from the copy beside the page when the copy holds
//   no markers itself; otherwise the markers are cut out of the page's text,
//   which gives every block back as it was written. Lines that the marking
//   takes out of a page (directives, Option Explicit, empty blocks) only
//   the copy has; without it the page works again without them.
// - The original goes back to the server at once, the user is told which
//   page was repaired, and the session goes on with the original.
class MarkedPageRepair
{
public:
    static bool IsMarked(const QByteArray &source);
    // The marked page's text without its wrappers.
    static QByteArray StripMarkers(const QByteArray &source);
    // When source is a marked page: puts the original back on the server,
    // says so, and hands the original back in source. 1 (nothing to do or
    // repaired), 0 with the pending error set.
    static long Repair(CFTPS &ftp, const QString &strURL, QByteArray &source);
};
