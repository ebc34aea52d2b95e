#include "objects/CFPHoover.h"

#include "document/CDocEventHandler.h"
#include "document/CDocument.h"
#include "objects/AppletPlaceholders.h"
#include "objects/FPHooverApplet.h"
#include "objects/frmFPHoover.h"
#include "objects/frmMenu.h"
#include "support/MError.h"

#include <QAction>
#include <QCursor>

namespace {
const QString kPosition = QStringLiteral("position");
const QString kAbsolute = QStringLiteral("absolute");
} // namespace

long CFPHoover::Init(const HtmlElement &HTMLHtmlElement_p, CDocument *CDocument_p)
{
    if (!CDocument_p || HTMLHtmlElement_p.isNull()) {
        MError::SetErrorIfClear(91, QStringLiteral("Object variable not set"), QStringLiteral("CFPHover.Init"));
        return 0;
    }
    m_Document = CDocument_p;
    m_Document->GetDocument(m_HTMLDocument);
    m_Element = HTMLHtmlElement_p;
    frmMenu menu;
    m_boolAbsolute = m_Element.styleValue(kPosition) == kAbsolute;
    if (MError::ErrorNumber() != 0)
        return 0;
    menu.Item(QStringLiteral("mnuFPHAbsPos"))->setChecked(m_boolAbsolute);
    Connect(menu);
    menu.PopupMenu(QStringLiteral("mnuFPHoover"), QCursor::pos());
    if (m_boolDirty)
        m_Document->SetDirty();
    return 1;
}

long CFPHoover::GetDirty(bool &boolIsDirty_p) const
{
    boolIsDirty_p = m_boolDirty;
    return 1;
}

void CFPHoover::Connect(frmMenu &menu)
{
    const std::pair<const char *, const char *> commands[] = {
        {"mnuFPHCut", "Cut"}, {"mnuFPHCopy", "Copy"}, {"mnuFPHDel", "Delete"}};
    for (const auto &[item, command] : commands) {
        const QString name = QString::fromLatin1(command);
        connect(menu.Item(QString::fromLatin1(item)), &QAction::triggered, this, [this, name] { Command(name); });
    }
    connect(menu.Item(QStringLiteral("mnuFPHAbsPos")), &QAction::triggered, this, &CFPHoover::m_mnuAbsPos_Click);
    connect(menu.Item(QStringLiteral("mnuFPHProp")), &QAction::triggered, this, &CFPHoover::m_mnuFPProp_Click);
}

// The applet is the picked control: the engine's own command acts on it.
void CFPHoover::Command(const QString &command)
{
    m_HTMLDocument.execCommand(command, false, 0);
    m_boolDirty = command != QLatin1String("Copy");
    Done();
}

// Floats the button where it stands, or puts it back into the flow.
void CFPHoover::m_mnuAbsPos_Click()
{
    if (m_boolAbsolute) {
        for (const char *name : {"position", "left", "top"})
            m_Element.removeStyleValue(QString::fromLatin1(name));
    } else {
        m_Element.setStyleValue(QStringLiteral("left"), QString::number(m_Element.offsetLeft()) + QStringLiteral("px"));
        m_Element.setStyleValue(QStringLiteral("top"), QString::number(m_Element.offsetTop()) + QStringLiteral("px"));
        m_Element.setStyleValue(kPosition, kAbsolute);
    }
    m_boolDirty = true;
    Done();
}

void CFPHoover::m_mnuFPProp_Click()
{
    CDocEventHandler *handler = nullptr;
    m_Document->GetDocumentEventHandler(handler);
    QWidget *form = nullptr;
    if (handler)
        handler->GetForm(form);
    frmFPHoover dialog(form);
    QString page;
    m_Document->GetURL_FullPath(page);
    dialog.SetPageAddress(page);
    if (dialog.SetData(m_Element, handler) != 1)
        return Done();
    dialog.exec();
    bool changed = false;
    QString text;
    QString oldId;
    dialog.GetData(changed, text, oldId);
    if (changed && Replace(text, oldId) == 1)
        m_boolDirty = true;
    Done();
}

// The new text goes in before the old element, which then goes; the new
// element, found by the id the text gave it, gets the old id back, or none.
long CFPHoover::Replace(const QString &strNewApplet_p, const QString &strOldId_p)
{
    if (!m_Element.isConnected() || !m_Element.insertAdjacentHTML(QStringLiteral("beforeBegin"), strNewApplet_p))
        return 0;
    m_Element.removeNode(true);
    HtmlElement added = m_HTMLDocument.getElementById(FPHooverApplet::NewId());
    if (added.isNull())
        return 0;
    if (strOldId_p.isEmpty())
        added.removeAttribute(QStringLiteral("id"));
    else
        added.setAttribute(QStringLiteral("id"), strOldId_p);
    m_Element = added;
    return AppletPlaceholders::Show(m_HTMLDocument);
}

// A command is the user's own act: its failure is shown where it was met.
void CFPHoover::Done()
{
    if (MError::ErrorNumber() != 0)
        MError::ShowError();
}
