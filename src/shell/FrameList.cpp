#include "shell/FrameList.h"

#include "platform/HtmlElement.h"
#include "support/MError.h"
#include "support/MResources.h"

namespace {
const long IdFrameWord = 14202;
const long IdDenied = 14006;
} // namespace

long FrameList::GetFrameNames(const QList<SessionDocument> &aDocuments_p, QList<HtmlDocument> &aFrames_p,
                              QStringList &astrNames_p)
{
    aFrames_p.clear();
    astrNames_p.clear();
    if (aDocuments_p.isEmpty())
        return -1;
    if (aDocuments_p.first().isIFrame) {
        aFrames_p.append(aDocuments_p.first().document);
        astrNames_p.append(QStringLiteral("Mainframe"));
    }
    int nNameless = 0;
    for (const SessionDocument &doc : aDocuments_p) {
        if (!doc.visible && !doc.isIFrame)
            AddFramesOf(doc.document, nNameless, aFrames_p, astrNames_p);
    }
    return astrNames_p.isEmpty() ? -1 : long(astrNames_p.size());
}

void FrameList::AddFramesOf(const HtmlDocument &frameset, int &nNameless, QList<HtmlDocument> &aFrames_p,
                            QStringList &astrNames_p)
{
    // The engine numbers a frameset's windows in the order of its FRAME
    // elements, so element i and window i are the same frame.
    QList<HtmlElement> elements = frameset.getElementsByTagName(QStringLiteral("FRAME"));
    for (int i = 0; i < elements.size(); ++i) {
        const HtmlDocument frame = frameset.frame(i);
        if (!Reachable(frame))
            continue;
        QString name = elements[i].getAttribute(QStringLiteral("name")).toString();
        if (name.isEmpty()) {
            name = MResources::LoadResourceString(IdFrameWord) + QString::number(++nNameless);
            elements[i].setAttribute(QStringLiteral("name"), name);
        }
        aFrames_p.append(frame);
        astrNames_p.append(name);
    }
}

// A frame of another origin refuses to be read; it is left out and the
// refusal is no error of the list. Any other failure stays pending.
bool FrameList::Reachable(const HtmlDocument &frame)
{
    const long numberBefore = MError::ErrorNumber();
    const QString descriptionBefore = MError::ErrorDescription();
    frame.URL();
    if (MError::ErrorNumber() == numberBefore && MError::ErrorDescription() == descriptionBefore)
        return true;
    const QString description = MError::ErrorDescription();
    if (description == MResources::LoadResourceString(IdDenied) || description == QStringLiteral("Permission denied")
        || description == QStringLiteral("Access is denied") || description == QStringLiteral("Åtkomst nekad"))
        MError::ClearError();
    return false;
}
