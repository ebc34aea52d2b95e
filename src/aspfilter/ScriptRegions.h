#pragma once

#include "aspfilter/ScriptRegion.h"
#include "document/PageToken.h"

#include <QList>
#include <QString>
#include <QStringView>

// Finds the server script of a page and marks it for one run on the server.
//
// Each region is bracketed by two HTML comments, "<!--keldaspIN#nnnnn-->"
// before it and "<!--keldaspOUT#nnnnn-->" behind it, with an even number
// per region (region k has 2k). The marks are static HTML: no script is
// added, so the page runs exactly as the author wrote it, and a comment is
// kept where the parser meets it (in a table, a select, the head, before
// the document) where an element would be moved. A visitor sees nothing.
//
// A block inside a tag, a comment, or the text of a script, style, title
// or textarea element widens the region to that whole tag or element, and
// blocks joined by an open If, loop, Select, With or procedure are one
// region with everything between them: the server may print that HTML
// many times or never.
class ScriptRegions
{
public:
    // The tokens are the source's, read with skipBlocks.
    static QList<ScriptRegion> Find(QStringView source, const QList<PageToken> &tokens);
    // The source with every marked region between its two comments.
    static QString Marked(QStringView source, const QList<ScriptRegion> &regions);

    static QString MarkerIn(int index);
    static QString MarkerOut(int index);
    // The region index of a marker comment's text ("keldaspIN#00004" -> 2),
    // -1 when the comment is no marker. `opening` tells which kind.
    static int MarkerIndex(QStringView commentText, bool &opening);

    // How much deeper one block leaves the nesting of If, loops and
    // procedures (VBScript, or braces for a JScript page).
    static int NestingChange(QStringView block, bool jscript);
};
