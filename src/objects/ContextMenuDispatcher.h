#pragma once

#include "platform/HtmlDocument.h"
#include "platform/HtmlElement.h"

#include <QString>
#include <QVariantMap>

class CDocument;

// Decides which page object gets a right click in a page being edited,
// by the kind of the selection and the element under the pointer, and
// builds it. Objects of later commands plug in where their row stands.
class ContextMenuDispatcher
{
public:
    enum class Target {
        Nothing,          // no menu at all
        RegisteredObject, // the picked element's own object, by its key
        Area,             // an area of the picked image's map
        ASPObject,        // a piece of server script shown in the page
        HoverButton,      // the hover button applet
        ComboDialog,      // the list of a select field
        GenericObject,    // any other picked control
        Text              // text and everything else
    };

    explicit ContextMenuDispatcher(CDocument &document);

    // Reads the page at the point (client coordinates of the document's
    // frame) and decides.
    Target Decide(int x, int y);
    // Decides and runs the object's menu. 1; 0 when the object failed,
    // which is shown to the user here.
    long Dispatch(int x, int y);

private:
    Target DecideControl() const;
    Target DecideText() const;
    long Run(Target target, int x, int y);
    long EditCombo(const HtmlElement &select, const HtmlDocument &page);
    QString Block() const;
    long EditASP();

    CDocument &m_Document;
    QVariantMap m_control;
    QVariantMap m_point;
};
