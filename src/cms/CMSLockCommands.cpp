#include "cms/CMSLockCommands.h"

#include "cms/CMSTables.h"
#include "cms/frmAddUserToDocument.h"
#include "document/CDocument.h"
#include "fileviews/MTreeViewTypes.h"
#include "objects/frmMenu.h"
#include "platform/HtmlDocument.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QAction>
#include <QApplication>
#include <QRegularExpression>
#include <QTime>

namespace {
enum : long { txtAdminTitle = 20228, txtNotUnlocked = 20607, txtLooksGood = 20608 };

const QString kMark = QStringLiteral("keldaedit");
const QString kUnlockedFrame = QStringLiteral("green 3px dashed");

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

QString PageAddress(CDocument &doc)
{
    QString address;
    doc.GetURL_FullPath(address);
    return address;
}

// Addresses compared without their scheme, as host and path.
QString HostPath(const QString &address)
{
    static const QRegularExpression scheme(QStringLiteral("^[a-zA-Z][a-zA-Z0-9+.-]*://"));
    QString out = address;
    return out.remove(scheme);
}

QWidget *Parent()
{
    return QApplication::activeWindow();
}

// Where an area's size is set: the numbers as the engine reads them, or
// 100 by 100 for an area that shows no height yet.
void FixSize(HtmlElement &area, int extra)
{
    const bool shown = area.offsetHeight() != 0;
    area.setStyleValue(QStringLiteral("height"), QStringLiteral("%1px").arg(shown ? area.offsetHeight() + extra : 100));
    area.setStyleValue(QStringLiteral("width"), QStringLiteral("%1px").arg(shown ? area.offsetWidth() + extra : 100));
}

void MarkUnlocked(HtmlElement &area)
{
    area.setAttribute(kMark, QStringLiteral("1"));
    area.setStyleValue(QStringLiteral("display"), QStringLiteral("inline"));
    area.setStyleValue(QStringLiteral("overflow"), QStringLiteral("hidden"));
    CMSLockCommands::ShowUnlocked(area);
}
} // namespace

const QStringList &CMSLockCommands::BorderProperties()
{
    static const QStringList borders = {
        QStringLiteral("borderBottom"), QStringLiteral("borderBottomWidth"), QStringLiteral("borderBottomStyle"),
        QStringLiteral("borderBottomColor"), QStringLiteral("borderTop"), QStringLiteral("borderTopWidth"),
        QStringLiteral("borderTopStyle"), QStringLiteral("borderTopColor"), QStringLiteral("borderRight"),
        QStringLiteral("borderRightWidth"), QStringLiteral("borderRightStyle"), QStringLiteral("borderRightColor"),
        QStringLiteral("borderLeft"), QStringLiteral("borderLeftWidth"), QStringLiteral("borderLeftStyle"),
        QStringLiteral("borderLeftColor")};
    return borders;
}

// "Unlock page" and "Lock sub area" are offered too: an administrator
// who can lock a page from here expects to undo it here.
void CMSLockCommands::PrepareTextMenu(frmMenu &menu_p, CDocument &doc_p, HtmlTextRange range_p)
{
    QAction *group = menu_p.Item(QStringLiteral("mnuCMS_AdminText"));
    group->setVisible(!CMSRestrictedUser());
    const bool text = !range_p.isNull() && !range_p.text().isEmpty();
    menu_p.Item(QStringLiteral("mnuCMS_AdminLockUpArea"))->setEnabled(text);
    menu_p.Item(QStringLiteral("mnuCMS_AdminLockUpObject"))->setVisible(false);
    const bool floating = menu_p.Item(QStringLiteral("mnuAbsolutePosition"))->isChecked();
    menu_p.Item(QStringLiteral("mnuCMS_AdminLockSubArea"))->setEnabled(text && !floating);
    bool listed = false;
    const QString address = PageAddress(doc_p);
    for (std::size_t i = 0; !listed && i + 1 < g_aCMSPages.size(); ++i)
        listed = g_aCMSPages[i].strPath == address;
    menu_p.Item(QStringLiteral("mnuCMS_AdminLockUpPage"))->setVisible(listed);
}
void CMSLockCommands::ShowUnlocked(HtmlElement &element_p)
{
    element_p.setContentEditable(true);
    element_p.setStyleValue(QStringLiteral("border"), kUnlockedFrame);
}

// The common step of every command that puts a page under control: its
// entry in the table, and the users allowed on it asked for. False when
// the users' dialog was cancelled.
long CMSLockCommands::TieToUsers(CDocument &doc_p)
{
    doc_p.setDocumentControledByCMS(true);
    bool existed = false;
    const std::size_t entry = CMSMakePageEntry(PageAddress(doc_p), existed);
    g_boolCMSTablesChanged = true;
    return frmAddUserToDocument::AskForUsers(Parent(), g_aCMSPages, entry, existed, g_aCMSUsers) ? 1 : -1;
}

long CMSLockCommands::LockPage(CDocument &doc_p)
{
    TieToUsers(doc_p);
    return 1;
}

long CMSLockCommands::SetUsers(CDocument &doc_p)
{
    return TieToUsers(doc_p);
}

long CMSLockCommands::UnlockPage(CDocument &doc_p)
{
    doc_p.setDocumentControledByCMS(false);
    if (!CMSRemovePageEntry(PageAddress(doc_p)))
        return -1;
    g_boolCMSTablesChanged = true;
    return 1;
}

long CMSLockCommands::LockPageAt(const QString &strAddress_p)
{
    bool existed = false;
    CMSMakePageEntry(strAddress_p, existed);
    g_boolCMSTablesChanged = g_boolCMSTablesChanged || !existed;
    return existed ? -1 : 1;
}

long CMSLockCommands::UnlockPageAt(const QString &strAddress_p)
{
    if (!CMSRemovePageEntry(strAddress_p))
        return -1;
    g_boolCMSTablesChanged = true;
    return 1;
}

bool CMSLockCommands::LooksGood()
{
    return UserQuestions::MsgBox(L(txtLooksGood), UserQuestions::vbYesNo | UserQuestions::vbQuestion, L(txtAdminTitle))
           == UserQuestions::vbYes;
}

// The area is framed in the page as its users will find it: tables in it
// lose what ties them to the width of the page, and links to pages of the
// site are made relative to the page, so that the area can move.
void CMSLockCommands::PrepareArea(HtmlElement &area_p, const QString &strPage_p)
{
    const QString base = HostPath(strPage_p);
    for (HtmlElement &e : area_p.all()) {
        const QString tag = e.tagName();
        if (tag == QLatin1String("TABLE")) {
            e.removeAttribute(QStringLiteral("align"));
            for (const char *size : {"height", "width"})
                if (e.styleValue(QString::fromLatin1(size)).contains(QLatin1Char('%')))
                    e.setStyleValue(QString::fromLatin1(size), QString());
            continue;
        }
        const QString attribute = tag == QLatin1String("A") ? QStringLiteral("href")
                                  : tag == QLatin1String("IMG") ? QStringLiteral("src") : QString();
        if (attribute.isEmpty())
            continue;
        const QString target = e.getAttribute(attribute).toString();
        QString relative;
        if (target.startsWith(QLatin1String("http"), Qt::CaseInsensitive)
            && MTreeViewTypes::GetRelativePath(HostPath(target), base, relative) == 1)
            e.setAttribute(attribute, relative);
    }
}

// A new area for what stands in the container. An area is shown inline,
// so a DIV and a SPAN look the same; but a DIV inside a paragraph does not
// survive the next reading of the page: the parser ends the paragraph
// where a DIV starts, and the words round the area would stand in
// paragraphs of their own, for every visitor. Inside a paragraph the area
// is therefore a SPAN, elsewhere a DIV as it has always been; the marks are
// read whatever the tag. The search stops where the parser's closing of a
// paragraph stops.
HtmlElement CMSLockCommands::NewArea(HtmlDocument &page_p, HtmlElement container_p)
{
    static const QStringList bounds = {QStringLiteral("BODY"), QStringLiteral("TD"), QStringLiteral("TH"),
                                       QStringLiteral("TABLE"), QStringLiteral("CAPTION"), QStringLiteral("BUTTON"),
                                       QStringLiteral("OBJECT"), QStringLiteral("APPLET"), QStringLiteral("MARQUEE"),
                                       QStringLiteral("HTML")};
    for (HtmlElement e = container_p; !e.isNull(); e = e.parentElement()) {
        const QString tag = e.tagName();
        if (tag == QLatin1String("P"))
            return page_p.createElement(QStringLiteral("SPAN"));
        if (tag.isEmpty() || bounds.contains(tag))
            break;
    }
    MError::ClearError();
    return page_p.createElement(QStringLiteral("DIV"));
}

// Going back: the area's content stays where it stood, without the area.
void CMSLockCommands::Unwrap(HtmlElement &area_p)
{
    area_p.removeNode(false);
}

// The selection is lifted out of the page into a new area: the engine
// splits the tags the selection crossed and closes them on both sides.
// The clipboard is not used, so what the user had on it stays.
long CMSLockCommands::UnlockArea(CDocument &doc_p, HtmlTextRange range_p)
{
    HtmlDocument page;
    doc_p.GetDocument(page);
    HtmlElement area = range_p.isNull() || range_p.text().isEmpty()
                           ? HtmlElement()
                           : range_p.surroundWith(NewArea(page, range_p.parentElement()));
    if (area.isNull() || !area.isConnected()) {
        MError::ClearError();
        UserQuestions::MsgBox(L(txtNotUnlocked), UserQuestions::vbExclamation, L(txtAdminTitle));
        return -1;
    }
    MarkUnlocked(area);
    FixSize(area, 0);
    PrepareArea(area, PageAddress(doc_p));
    if (TieToUsers(doc_p) != 1 || !LooksGood()) {
        Unwrap(area);
        return -1;
    }
    return 1;
}

long CMSLockCommands::LockSubArea(CDocument &doc_p, HtmlTextRange range_p)
{
    HtmlDocument page;
    doc_p.GetDocument(page);
    if (range_p.isNull() || range_p.text().isEmpty())
        return -1;
    HtmlElement area = range_p.surroundWith(NewArea(page, range_p.parentElement()));
    if (area.isNull())
        return 0;
    area.setAttribute(kMark, QStringLiteral("0"));
    area.setStyleValue(QStringLiteral("border"), QStringLiteral("red 1px solid"));
    area.setStyleValue(QStringLiteral("display"), QStringLiteral("inline"));
    area.setStyleValue(QStringLiteral("overflow"), QStringLiteral("hidden"));
    doc_p.setDocumentControledByCMS(true);
    bool existed = false;
    CMSMakePageEntry(PageAddress(doc_p), existed);
    g_boolCMSTablesChanged = true;
    return 1;
}

// A floating object takes its area along: the area floats where the object
// stood, and the object sits in it.
long CMSLockCommands::UnlockObject(CDocument &doc_p, HtmlElement object_p)
{
    HtmlDocument page;
    doc_p.GetDocument(page);
    HtmlElement area = object_p.insertAdjacentElement(QStringLiteral("beforeBegin"), NewArea(page, object_p.parentElement()));
    if (area.isNull())
        return 0;
    area.appendChild(object_p);
    MarkUnlocked(area);
    const int height = object_p.offsetHeight(), width = object_p.offsetWidth();
    area.setStyleValue(QStringLiteral("height"), QStringLiteral("%1px").arg(height + 7));
    area.setStyleValue(QStringLiteral("width"), QStringLiteral("%1px").arg(width + 7));
    const bool floating = object_p.styleValue(QStringLiteral("position")) == QLatin1String("absolute");
    const QString left = object_p.styleValue(QStringLiteral("left")), top = object_p.styleValue(QStringLiteral("top"));
    if (floating) {
        area.setStyleValue(QStringLiteral("position"), QStringLiteral("absolute"));
        area.setStyleValue(QStringLiteral("left"), left);
        area.setStyleValue(QStringLiteral("top"), top);
        for (const char *name : {"left", "top", "position"})
            object_p.removeStyleValue(QString::fromLatin1(name));
    }
    if (TieToUsers(doc_p) == 1 && LooksGood())
        return 1;
    if (floating) {
        object_p.setStyleValue(QStringLiteral("position"), QStringLiteral("absolute"));
        object_p.setStyleValue(QStringLiteral("left"), left);
        object_p.setStyleValue(QStringLiteral("top"), top);
    }
    Unwrap(area);
    return -1;
}

long CMSLockCommands::DeleteLock(CDocument &doc_p, HtmlElement element_p)
{
    element_p.removeAttribute(kMark);
    element_p.removeAttribute(QStringLiteral("contentEditable"));
    for (const QString &property : BorderProperties())
        element_p.removeStyleValue(property);
    doc_p.setDocumentControledByCMS(true);
    return 1;
}
