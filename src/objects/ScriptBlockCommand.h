#pragma once

#include "platform/HtmlElement.h"

class CDocument;

// The page's own script block, the one the text menu's "Add/edit script"
// manages: the last JavaScript block in the head with its text in the
// page, made when the page has none.
class ScriptBlockCommand
{
public:
    // Opens the block's text for editing. 1 saved into the page (the
    // document is marked), -1 cancelled (a block made for the command goes
    // again), 0 failed with the error pending.
    static long EditScriptBlock(CDocument &document);

    // The block the command works on; null when the head has none.
    static HtmlElement FindScriptBlock(const HtmlDocument &page);

private:
    static HtmlElement MakeScriptBlock(HtmlDocument &page);
};
