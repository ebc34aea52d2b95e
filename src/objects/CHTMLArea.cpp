#include "objects/CHTMLArea.h"

#include "document/CDocument.h"
#include "objects/frmMenu.h"
#include "support/MError.h"

#include <QAction>
#include <QCursor>

long CHTMLArea::Init(CDocument *CDocument_p, const HtmlElement &area)
{
    if (!CDocument_p || area.isNull()) {
        MError::SetErrorIfClear(91, QStringLiteral("Object variable not set"), QStringLiteral("CHTMLArea.Init"));
        return 0;
    }
    m_Document = CDocument_p;
    m_Document->GetDocument(m_HTMLDocument);
    m_Area = area;
    frmMenu menu;
    Prepare(menu);
    if (MError::ErrorNumber() != 0)
        return 0;
    Connect(menu);
    menu.PopupMenu(QStringLiteral("mnuHTMLText"), QCursor::pos());
    return 1;
}

// An area with an address offers to edit or remove its link, one without
// to create one.
void CHTMLArea::Prepare(frmMenu &menu)
{
    for (const char *name : {"mnuCopy", "mnuDelete", "mnuUndo", "mnuPaste", "mnuInsertImage", "mnuInsertSoundClip",
                             "mnuInsertFlash", "mnuInsertVideo", "mnuAbsolutePosition", "mnuZOrder"})
        menu.Item(QString::fromLatin1(name))->setEnabled(false);
    menu.Item(QStringLiteral("mnuSelectAll"))->setEnabled(true);
    menu.Item(QStringLiteral("mnuCreateLink"))->setEnabled(true);
    menu.Item(QStringLiteral("mnuAbsolutePosition"))->setChecked(false);
    const bool linked = !m_Area.getAttribute(QStringLiteral("href")).toString().isEmpty();
    menu.Item(QStringLiteral("mnuEditLink"))->setVisible(linked);
    menu.Item(QStringLiteral("mnuRemoveLink"))->setVisible(linked);
    menu.Item(QStringLiteral("mnuCreateLink"))->setVisible(!linked);
}

// The link and title dialogs come with the commands of the text menu,
// which this menu then shares.
void CHTMLArea::Connect(frmMenu &menu)
{
    const std::pair<const char *, const char *> commands[] = {
        {"mnuSelectAll", "SelectAll"}, {"mnuDelete", "Delete"}, {"mnuUndo", "Undo"}};
    for (const auto &[item, command] : commands) {
        const QString name = QString::fromLatin1(command);
        connect(menu.Item(QString::fromLatin1(item)), &QAction::triggered, this,
                [this, name] { Run([this, name] { m_HTMLDocument.execCommand(name, false, 0); }); });
    }
    connect(menu.Item(QStringLiteral("mnuRemoveLink")), &QAction::triggered, this, &CHTMLArea::m_mnuRemoveLink_Click);
    connect(menu.Item(QStringLiteral("mnuRemBkndImg")), &QAction::triggered, this, &CHTMLArea::m_mnuRemBkndImg_Click);
}

// A handler whose area the page's own script took away meanwhile does
// nothing; any other failure is shown where it happened.
void CHTMLArea::Run(const std::function<void()> &work)
{
    if (!m_Area.isConnected())
        return;
    work();
    if (MError::ErrorNumber() != 0)
        MError::ShowError();
}

// An area without an address is no link: it keeps its shape and leads
// nowhere.
void CHTMLArea::m_mnuRemoveLink_Click()
{
    Run([this] {
        m_Area.removeAttribute(QStringLiteral("href"));
        m_Area.removeAttribute(QStringLiteral("target"));
        m_Document->SetDirty();
    });
}

void CHTMLArea::m_mnuRemBkndImg_Click()
{
    Run([this] {
        HtmlElement body = m_HTMLDocument.body();
        for (const char *name : {"background", "BkndImgSrcPath", "BkndImgUploadPath"})
            body.removeAttribute(QString::fromLatin1(name));
        m_Document->SetDirty();
    });
}
