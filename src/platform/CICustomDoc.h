#pragma once

#include <QPointer>
#include <QVariant>

class WebBrowser;

// The host's command channel to the page engine while a page is edited.
// Init binds it to the browser whose document is edited; Exec sends one of
// the engine's design commands (the ids of HtmlDocument) to the top document.
//
// The documents of the frames are reached the same way, per document, by
// CDocument through HtmlDocument::execDesign; this object is the channel of
// the window, which only knows the browser, so both end in the same call.
// The engine hands back every address it loads unchanged, so no address
// translation is offered here.
class CICustomDoc
{
public:
    // With a browser: keeps it. With nullptr: lets the held one go; on an
    // object that holds none it does nothing. Always 1.
    long Init(WebBrowser *IE_p);
    bool IsBound() const { return !m_IE.isNull(); }

    // Sends command CMDID with VarIn to the engine. CMDOPT is accepted and
    // not used: the engine never prompts. VarOut receives whether the engine
    // carried the command out. 1, or 0 with the error set under
    // "CICustomDoc.Exec".
    long Exec(long CMDID, long CMDOPT = 0, const QVariant &VarIn = {}, QVariant *VarOut = nullptr);

private:
    QPointer<WebBrowser> m_IE;
};
