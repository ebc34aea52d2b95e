#pragma once

#include "platform/HtmlDocument.h"
#include "platform/HtmlElement.h"

#include <QObject>

class CDocument;
class frmMenu;

// The menu of a hover button applet: Cut, Copy, Delete, Absolute position
// and Properties, which opens frmFPHoover and puts the applet it writes in
// place of the old one. Lives for one menu.
class CFPHoover : public QObject
{
    Q_OBJECT

public:
    // Shows the menu and runs the command picked. 1, or 0 with the error
    // pending.
    long Init(const HtmlElement &HTMLHtmlElement_p, CDocument *CDocument_p);
    // Whether a command changed the page.
    long GetDirty(bool &boolIsDirty_p) const;

private:
    void Connect(frmMenu &menu);
    void Command(const QString &command);
    void m_mnuAbsPos_Click();
    void m_mnuFPProp_Click();
    long Replace(const QString &strNewApplet_p, const QString &strOldId_p);
    static void Done();

    CDocument *m_Document = nullptr;
    HtmlDocument m_HTMLDocument;
    HtmlElement m_Element;
    bool m_boolAbsolute = false;
    bool m_boolDirty = false;
};
