#pragma once

#include <QString>

// Whether the server-script markers of a filtered page came back from the
// server as they were sent: every opening marker once, numbered 0, 2, 4 and
// so on, each with its closing twin, and nothing besides. A loop in the
// server script that repeats a block repeats its markers, and such a page
// can't be saved back without losing the script.
class ASPMarkerAudit
{
public:
    static bool MarkersIntact(const QString &html);
};
