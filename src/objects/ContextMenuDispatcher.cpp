#include "objects/ContextMenuDispatcher.h"

#include "aspfilter/ASPMarkers.h"
#include "document/CDocument.h"
#include "objects/CFPHoover.h"
#include "objects/CHTMLArea.h"
#include "objects/CHTMLText.h"
#include "objects/CIHTMLObject.h"
#include "objects/CPoHTMLobject.h"
#include "objects/CSPANASP.h"
#include "objects/frmEditCombo.h"
#include "support/MError.h"

#include <QSet>

#include <cstring>

namespace {

const QString kTag = QStringLiteral("tag");
const QString kHandle = QStringLiteral("h");

// Tags that a click picks now and then by accident: the edges of a
// paragraph or a table. Nothing useful can be offered for them.
bool IsLayoutTag(const QString &tag)
{
    static const QSet<QString> tags = {QStringLiteral("P"), QStringLiteral("TD"), QStringLiteral("TR"),
                                       QStringLiteral("TBODY"), QStringLiteral("BR")};
    return tags.contains(tag);
}

// Guards against a second right click while a menu is still open: its
// event may come from the page's queue while the first menu runs.
bool g_boolMenuOpen = false;

} // namespace

ContextMenuDispatcher::ContextMenuDispatcher(CDocument &document)
    : m_Document(document)
{
}

ContextMenuDispatcher::Target ContextMenuDispatcher::Decide(int x, int y)
{
    HtmlDocument page;
    m_Document.GetDocument(page);
    const QVariantMap target = page.contextTarget(x, y);
    m_control = target.value(QStringLiteral("control")).toMap();
    m_point = target.value(QStringLiteral("point")).toMap();
    if (target.isEmpty())
        return Target::Nothing;
    if (!Block().isEmpty())
        return Target::ASPObject;
    return target.value(QStringLiteral("type")).toString() == QLatin1String("Control") ? DecideControl() : DecideText();
}

ContextMenuDispatcher::Target ContextMenuDispatcher::DecideControl() const
{
    if (!m_control.value(QStringLiteral("editable")).toBool())
        return Target::Nothing;
    if (!m_control.value(QStringLiteral("key")).isNull())
        return m_point.value(kTag).toString() == QLatin1String("AREA") ? Target::Area : Target::RegisteredObject;
    if (m_control.value(QStringLiteral("keldasp")).toBool())
        return Target::ASPObject;
    const QString tag = m_control.value(kTag).toString();
    if (tag == QLatin1String("APPLET"))
        return m_control.value(QStringLiteral("code")).toString().compare(QLatin1String("fphover.class"), Qt::CaseInsensitive) == 0
                   ? Target::HoverButton
                   : Target::Nothing;
    if (tag == QLatin1String("SELECT"))
        return Target::ComboDialog;
    return IsLayoutTag(tag) ? Target::Nothing : Target::GenericObject;
}

// Form fields keep the engine's own handling of their text.
ContextMenuDispatcher::Target ContextMenuDispatcher::DecideText() const
{
    if (m_point.value(kHandle).toInt() == 0 || !m_point.value(QStringLiteral("editable")).toBool())
        return Target::Nothing;
    return m_point.value(QStringLiteral("input")).toBool() ? Target::Nothing : Target::Text;
}

long ContextMenuDispatcher::Dispatch(int x, int y)
{
    if (g_boolMenuOpen)
        return 1;
    g_boolMenuOpen = true;
    const long result = Run(Decide(x, y), x, y);
    g_boolMenuOpen = false;
    if (result != 0)
        return 1;
    MError::SetErrorIfClear(91, QStringLiteral("Object variable not set"), QStringLiteral("CDocument.oncontextmenu"));
    MError::ShowError();
    return 0;
}

long ContextMenuDispatcher::Run(Target target, int x, int y)
{
    HtmlDocument page;
    m_Document.GetDocument(page);
    const HtmlElement control(page.browser(), m_control.value(kHandle).toInt());
    switch (target) {
    case Target::RegisteredObject: {
        CIHTMLObject *object = m_Document.Object(m_control.value(QStringLiteral("key")).toString());
        return object ? object->OnContextMenu() : 1;
    }
    case Target::Area:
        return CHTMLArea().Init(&m_Document, HtmlElement(page.browser(), m_point.value(kHandle).toInt()));
    case Target::HoverButton:
        return CFPHoover().Init(control, &m_Document);
    case Target::GenericObject:
        return CPoHTMLobject().Init(&m_Document, control, x, y);
    case Target::ComboDialog:
        return EditCombo(control, page);
    case Target::Text:
        return CHTMLText().Init(&m_Document, x, y);
    case Target::ASPObject:
        return EditASP();
    default:
        return 1;
    }
}

// The start mark of the script block under the pointer or picked.
QString ContextMenuDispatcher::Block() const
{
    const QString point = m_point.value(QStringLiteral("block")).toString();
    return point.isEmpty() ? m_control.value(QStringLiteral("block")).toString() : point;
}

// A block the document doesn't hold (a script piece marked otherwise) is
// asked of the filter all the same, which says it can't be read.
long ContextMenuDispatcher::EditASP()
{
    const QString marker = Block();
    if (CSPANASP *span = m_Document.ASPSpan(marker))
        return span->OnContextMenu();
    CSPANASP stray;
    stray.Init(marker.mid(qsizetype(std::strlen(ASPMarkers::StartMarker))), nullptr, nullptr, &m_Document);
    return stray.OnContextMenu();
}

// The options of the list are edited in their dialog; OK changes the page.
long ContextMenuDispatcher::EditCombo(const HtmlElement &select, const HtmlDocument &page)
{
    frmEditCombo dialog;
    if (dialog.Init(select, page) == 0)
        return 0;
    const long result = dialog.Show();
    if (result == 1)
        m_Document.SetDirty();
    return result == 0 ? 0 : 1;
}
