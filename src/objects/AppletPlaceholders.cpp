#include "objects/AppletPlaceholders.h"

#include "platform/HtmlDocument.h"

long AppletPlaceholders::Show(const HtmlDocument &Document_p)
{
    return Document_p.callRuntime(QStringLiteral("applets.show"), {}, QStringLiteral("AppletPlaceholders.Show")).isValid()
               ? 1
               : 0;
}

long AppletPlaceholders::Hide(const HtmlDocument &Document_p)
{
    return Document_p.callRuntime(QStringLiteral("applets.hide"), {}, QStringLiteral("AppletPlaceholders.Hide")).isValid()
               ? 1
               : 0;
}
