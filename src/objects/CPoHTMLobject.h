#pragma once

#include "platform/HtmlDocument.h"
#include "platform/HtmlElement.h"

#include <QObject>
#include <QPoint>

class CDocument;
class frmMenu;

// The object behind the menu of anything picked as a control that has no
// class of its own: a form field, a button, an embedded object. It lives
// for one menu: Init shows the menu and runs the command picked.
class CPoHTMLobject : public QObject
{
    Q_OBJECT

public:
    // x_p and y_p: where the click fell, in the page; the menu opens at the
    // pointer. 1, or 0 with the error pending.
    long Init(CDocument *CDocument_p, const HtmlElement &HTMLobject_p, long x_p, long y_p);

private:
    void Prepare(frmMenu &menu);
    void Connect(frmMenu &menu);
    void Command(const QString &command);
    void m_mnuObjAbsolutePosition_Click();
    void PositionAbsolute();
    void ReleaseIntoFlow();
    bool StillInPage() const;
    static bool LimitsAllowAbsolutePosition();

    CDocument *m_Document = nullptr;
    HtmlDocument m_HTMLDocument;
    HtmlElement m_Element;
    QPoint m_ptClick;
    bool m_boolAbsolute = false;
};
