#include "objects/CPoHTMLobject.h"

#include "cms/CMSLockCommands.h"
#include "cms/CMSTables.h"
#include "document/CDocument.h"
#include "objects/frmMenu.h"
#include "support/MError.h"

#include <QAction>
#include <QCursor>

#include <functional>

namespace {

constexpr std::int32_t kAbsolutePositionBit = 256;

const QString kPosition = QStringLiteral("position");
const QString kAbsolute = QStringLiteral("absolute");

} // namespace

long CPoHTMLobject::Init(CDocument *CDocument_p, const HtmlElement &HTMLobject_p, long x_p, long y_p)
{
    if (!CDocument_p || HTMLobject_p.isNull()) {
        MError::SetErrorIfClear(91, QStringLiteral("Object variable not set"), QStringLiteral("CPoHTMLobject.Init"));
        return 0;
    }
    m_Document = CDocument_p;
    m_Document->GetDocument(m_HTMLDocument);
    m_Element = HTMLobject_p;
    m_ptClick = QPoint(int(x_p), int(y_p));
    frmMenu menu;
    Prepare(menu);
    if (MError::ErrorNumber() != 0)
        return 0;
    Connect(menu);
    menu.PopupMenu(QStringLiteral("mnuObjHTMLObject"), QCursor::pos());
    return 1;
}

// The menu as this element wants it. Properties have no dialog for a
// generic control, so the item never shows.
void CPoHTMLobject::Prepare(frmMenu &menu)
{
    m_boolAbsolute = m_Element.styleValue(kPosition) == kAbsolute;
    menu.Item(QStringLiteral("mnuObjAbsolutePosition"))->setChecked(m_boolAbsolute);
    menu.Item(QStringLiteral("mnuObjPropertys"))->setVisible(false);
    const bool unlocked = !m_Element.getAttribute(QStringLiteral("keldaedit")).isNull();
    menu.Item(QStringLiteral("mnuObjCMS_DeleteLock"))->setEnabled(unlocked);
    menu.Item(QStringLiteral("mnuObjCMS_UnLock"))->setEnabled(!unlocked);
    menu.Item(QStringLiteral("mnuCMS_AdminObject"))->setVisible(!CMSRestrictedUser());
    if (!LimitsAllowAbsolutePosition())
        menu.Item(QStringLiteral("mnuObjAbsolutePosition"))->setEnabled(false);
}

// With no CMS user found no limit applies.
bool CPoHTMLobject::LimitsAllowAbsolutePosition()
{
    const long user = long(g_sngCMSUser);
    if (g_sngCMSUser == CMS_NO_USER || user < 0 || user + 1 >= long(g_aCMSUsers.size()))
        return true;
    return (g_aCMSUsers[size_t(user)].limits.lRightClick & kAbsolutePositionBit) != 0;
}

void CPoHTMLobject::Connect(frmMenu &menu)
{
    const std::pair<const char *, const char *> commands[] = {
        {"mnuObjUndo", "Undo"}, {"mnuObjCut", "Cut"}, {"mnuObjCopy", "Copy"},
        {"mnuObjPaste", "Paste"}, {"mnuObjDelete", "Delete"}};
    for (const auto &[item, command] : commands) {
        const QString name = QString::fromLatin1(command);
        connect(menu.Item(QString::fromLatin1(item)), &QAction::triggered, this, [this, name] { Command(name); });
    }
    connect(menu.Item(QStringLiteral("mnuObjAbsolutePosition")), &QAction::triggered, this,
            &CPoHTMLobject::m_mnuObjAbsolutePosition_Click);
    const std::pair<const char *, std::function<long()>> locks[] = {
        {"mnuObjCMS_UnLock", [this] { return CMSLockCommands::UnlockObject(*m_Document, m_Element); }},
        {"mnuObjCMS_DeleteLock", [this] { return CMSLockCommands::DeleteLock(*m_Document, m_Element); }},
        {"mnuObjCMS_SetUser", [this] { return CMSLockCommands::SetUsers(*m_Document); }}};
    for (const auto &[item, work] : locks)
        connect(menu.Item(QString::fromLatin1(item)), &QAction::triggered, this, [this, work] {
            if (StillInPage() && work() == 1)
                m_Document->SetDirty();
            if (MError::ErrorNumber() != 0)
                MError::ShowError();
        });
}

// The page's own script may have taken the element out while the menu was
// open: the command then has nothing to act on, and says nothing.
bool CPoHTMLobject::StillInPage() const
{
    return m_Element.isConnected();
}

void CPoHTMLobject::Command(const QString &command)
{
    if (!StillInPage())
        return;
    m_HTMLDocument.execCommand(command, false, 0);
    m_Document->SetDirty();
    if (MError::ErrorNumber() != 0)
        MError::ShowError();
}

void CPoHTMLobject::m_mnuObjAbsolutePosition_Click()
{
    if (!StillInPage())
        return;
    if (m_boolAbsolute)
        ReleaseIntoFlow();
    else
        PositionAbsolute();
    m_Document->SetDirty();
    if (MError::ErrorNumber() != 0)
        MError::ShowError();
}

// The element floats where it stood.
void CPoHTMLobject::PositionAbsolute()
{
    m_Element.setStyleValue(QStringLiteral("top"), QString::number(m_Element.offsetTop()) + QStringLiteral("px"));
    m_Element.setStyleValue(QStringLiteral("left"), QString::number(m_Element.offsetLeft()) + QStringLiteral("px"));
    m_Element.setStyleValue(QStringLiteral("clear"), QStringLiteral("both"));
    m_Element.setStyleValue(kPosition, kAbsolute);
}

// The element goes back into the flow of the page inside what lies under
// it, found on rings around the point of the click.
void CPoHTMLobject::ReleaseIntoFlow()
{
    HtmlElement parent = m_HTMLDocument.flowParentNear(m_Element, m_ptClick.x(), m_ptClick.y());
    if (parent.isNull())
        return;
    for (const char *name : {"top", "left", "width", "height", "clear"})
        m_Element.setStyleValue(QString::fromLatin1(name), QString());
    m_Element.removeStyleValue(kPosition);
    parent.insertAdjacentElement(QStringLiteral("beforeEnd"), m_Element);
}
