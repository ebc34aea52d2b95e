#pragma once

#include <QString>

// The wrappers that bracket a script block in the page while it is edited.
// The server runs the start wrapper's response.write, so the browser holds a
// hidden span with the start marker, the block's output and a comment with
// the end marker, all inside one outer span.
namespace ASPMarkers {

inline constexpr const char *StartMarker = "keldaspIN#";
inline constexpr const char *EndComment = "<!--keldaspOUT#";
// From the start of keldaspIN# to the block's first character:
// the marker (15) and `</SPAN>"%>` (10).
inline constexpr int BlockOffset = 25;
// "<!--keldaspOUT#nnnnn-->" and "</SPAN>".
inline constexpr int EndCommentLength = 23;
inline constexpr int CloseSpanLength = 7;

QString FormatID(long id);
QString StartWrapper(const QString &id);
QString EndWrapper(const QString &id);

} // namespace ASPMarkers
