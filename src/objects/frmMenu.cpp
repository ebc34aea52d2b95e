#include "objects/frmMenu.h"

#include "support/MResources.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QPointer>

namespace {

// One row per item: its name, the name of the menu it stands in, its
// caption (a string id, or the text itself for names and numbers that
// stay the same in every language) and whether it carries a check mark.
struct MenuRow
{
    const char *name;
    const char *parent;
    long caption;
    const char *text;
    bool checkable;
};

// The object menu (form fields and other controls without a class) and
// the text menu, which also serves image-map areas. The objects of later
// commands add their rows here.
constexpr MenuRow kRows[] = {
    {"mnuObjHTMLObject", "", 0, "", false},
    {"mnuObjUndo", "mnuObjHTMLObject", 17202, nullptr, false},
    {"mnuObjCut", "mnuObjHTMLObject", 19004, nullptr, false},
    {"mnuObjCopy", "mnuObjHTMLObject", 19005, nullptr, false},
    {"mnuObjPaste", "mnuObjHTMLObject", 17636, nullptr, false},
    {"mnuObjDelete", "mnuObjHTMLObject", 17602, nullptr, false},
    {"mnuObjAbsolutePosition", "mnuObjHTMLObject", 17200, nullptr, true},
    {"mnuObjPropertys", "mnuObjHTMLObject", 17203, nullptr, false},
    {"mnuCMS_AdminObject", "mnuObjHTMLObject", 17201, nullptr, false},
    {"mnuObjCMS_UnLock", "mnuCMS_AdminObject", 20601, nullptr, false},
    {"mnuObjCMS_DeleteLock", "mnuCMS_AdminObject", 20604, nullptr, false},
    {"mnuObjCMS_SetUser", "mnuCMS_AdminObject", 20600, nullptr, false},

    // The site tree's file and folder menus.
    {"mnuTVFile", "", 0, "", false},
    {"mnuTVFileCreateFolder", "mnuTVFile", 19600, nullptr, false},
    {"mnuTVFileEditFile", "mnuTVFile", 19601, nullptr, false},
    {"mnuTVFileChangeName", "mnuTVFile", 19602, nullptr, false},
    {"mnuTVFileDeletFile", "mnuTVFile", 19603, nullptr, false},
    {"mnuTVFileCopyFile", "mnuTVFile", 19604, nullptr, false},
    {"mnuTVFileCopyFileToDrive", "mnuTVFile", 19605, nullptr, false},
    {"mnuTVFileCMS_AdminLockPage", "mnuTVFile", 20605, nullptr, false},
    {"mnuTVFileCMS_AdminLockUpPage", "mnuTVFile", 20601, nullptr, false},
    {"mnuTVFolder", "", 0, "", false},
    {"mnuTVFolderCreateFolder", "mnuTVFolder", 19600, nullptr, false},
    {"mnuTVFolderDelete", "mnuTVFolder", 19606, nullptr, false},
    {"mnuTVFolderChangeName", "mnuTVFolder", 19602, nullptr, false},
    {"mnuTVFolderSendTo", "mnuTVFolder", 19607, nullptr, false},
    {"mnuTVFolderCopyFolderToDrive", "mnuTVFolder", 19608, nullptr, false},

    {"mnuHTMLText", "", 0, "", false},
    {"mnuUndo", "mnuHTMLText", 17202, nullptr, false},
    {"mnuCut", "mnuHTMLText", 19004, nullptr, false},
    {"mnuCopy", "mnuHTMLText", 19005, nullptr, false},
    {"mnuPaste", "mnuHTMLText", 17636, nullptr, false},
    {"mnuPasteText", "mnuHTMLText", 17600, nullptr, false},
    {"mnuPasteHTML", "mnuHTMLText", 17601, nullptr, false},
    {"mnuDelete", "mnuHTMLText", 17602, nullptr, false},
    {"mnuFormatText", "mnuHTMLText", 17603, nullptr, false},
    {"mnuFont", "mnuFormatText", 17604, nullptr, false},
    {"mnuFonSelect0", "mnuFont", 0, "Arial", false},
    {"mnuFonSelect1", "mnuFont", 0, "Helvetica", false},
    {"mnuFonSelect2", "mnuFont", 0, "Times New Roman", false},
    {"mnuFonSelect3", "mnuFont", 0, "Courier", false},
    {"mnuFonSelect4", "mnuFont", 0, "Georgia", false},
    {"mnuFonSelect5", "mnuFont", 0, "Verdana", false},
    {"mnuFonSelect6", "mnuFont", 0, "Arial, Helvetica, SansSerif", false},
    {"mnuJustify", "mnuFormatText", 17637, nullptr, false},
    {"mnuJustifyCenter", "mnuJustify", 17204, nullptr, false},
    {"mnuJustifyRight", "mnuJustify", 17205, nullptr, false},
    {"mnuJustifyLeft", "mnuJustify", 17206, nullptr, false},
    {"mnuSize", "mnuFormatText", 17638, nullptr, false},
    {"mnuH1", "mnuSize", 17639, nullptr, false},
    {"mnuH2", "mnuSize", 0, "2", false},
    {"mnuH3", "mnuSize", 0, "3", false},
    {"mnuH4", "mnuSize", 0, "4", false},
    {"mnuH5", "mnuSize", 0, "5", false},
    {"mnuH6", "mnuSize", 0, "6", false},
    {"mnuH7", "mnuSize", 17640, nullptr, false},
    {"mnuWhatsH1H7", "mnuSize", 17605, nullptr, false},
    {"mnuFontColorMenu", "mnuFormatText", 17606, nullptr, false},
    {"mnuColor", "mnuFontColorMenu", 17607, nullptr, false},
    {"mnuGetColorToFont", "mnuFontColorMenu", 17608, nullptr, false},
    {"mnuBold", "mnuFormatText", 14425, nullptr, true},
    {"mnuItalic", "mnuFormatText", 14426, nullptr, true},
    {"mnuUnderline", "mnuFormatText", 17400, nullptr, true},
    {"mnuAbsolutePosition", "mnuHTMLText", 17200, nullptr, true},
    {"mnuZOrder", "mnuHTMLText", 17609, nullptr, false},
    {"mnuSelectAll", "mnuHTMLText", 17610, nullptr, false},
    {"mnuCreateLink", "mnuHTMLText", 17611, nullptr, false},
    {"mnuEditLink", "mnuHTMLText", 17612, nullptr, false},
    {"mnuRemoveLink", "mnuHTMLText", 17613, nullptr, false},
    {"mnuInsertObject", "mnuHTMLText", 17614, nullptr, false},
    {"mnuInsertImage", "mnuInsertObject", 17641, nullptr, false},
    {"mnuInsertSoundClip", "mnuInsertObject", 17615, nullptr, false},
    {"mnuInsertFlash", "mnuInsertObject", 17642, nullptr, false},
    {"mnuInsertVideo", "mnuInsertObject", 17616, nullptr, false},
    {"mnuInsertTable", "mnuInsertObject", 18000, nullptr, false},
    {"mnuInsertBookMark", "mnuInsertObject", 17643, nullptr, false},
    {"mnuInsertRule", "mnuInsertObject", 17657, nullptr, false},
    {"mnuInsertFormField", "mnuInsertObject", 17658, nullptr, false},
    {"mnuInsertTextBox", "mnuInsertFormField", 17659, nullptr, false},
    {"mnuInsertCheckBox", "mnuInsertFormField", 17660, nullptr, false},
    {"mnuInsertOptionButton", "mnuInsertFormField", 17661, nullptr, false},
    {"mnuInsertDropDown", "mnuInsertFormField", 17662, nullptr, false},
    {"mnuInsertButton", "mnuInsertFormField", 17663, nullptr, false},
    {"mnuDocument", "mnuHTMLText", 17644, nullptr, false},
    {"mnuBkgndColorShowSub", "mnuDocument", 17617, nullptr, false},
    {"mnuBkgndColor", "mnuBkgndColorShowSub", 17618, nullptr, false},
    {"mnuBkgndColorRemove", "mnuBkgndColorShowSub", 17645, nullptr, false},
    {"mnuBkgndColorGetFroOther", "mnuBkgndColorShowSub", 17646, nullptr, false},
    {"mnuBkgndImage", "mnuDocument", 17619, nullptr, false},
    {"mnuSetBkndImg", "mnuBkgndImage", 17624, nullptr, false},
    {"mnuRemBkndImg", "mnuBkgndImage", 17645, nullptr, false},
    {"mnuDocumentTitle", "mnuDocument", 17620, nullptr, false},
    {"mnuInsertStyleSheet", "mnuDocument", 17621, nullptr, false},
    {"mnuEditScriptBlock", "mnuDocument", 17622, nullptr, false},
    {"mnuEditDocumentByHTML", "mnuDocument", 17623, nullptr, false},
    // The table under the pointer (enabled by the table object).
    {"mnuTbl", "mnuHTMLText", 18000, nullptr, false},
    {"mnuTblInsert", "mnuTbl", 18020, nullptr, false},
    {"mnuTblInsertRowAbove", "mnuTblInsert", 18001, nullptr, false},
    {"mnuTblInsertRowBelow", "mnuTblInsert", 18002, nullptr, false},
    {"mnuTblInsertColLeft", "mnuTblInsert", 18003, nullptr, false},
    {"mnuTblInsertColRight", "mnuTblInsert", 18004, nullptr, false},
    {"mnuTblDelete", "mnuTbl", 17645, nullptr, false},
    {"mnuTblDeleteRow", "mnuTblDelete", 18021, nullptr, false},
    {"mnuTblDeleteCol", "mnuTblDelete", 18022, nullptr, false},
    {"mnuTblProperties", "mnuTbl", 18005, nullptr, false},
    // The administrator's locks of the page (CMSLockCommands).
    {"mnuCMS_AdminText", "mnuHTMLText", 17201, nullptr, false},
    {"mnuCMS_AdminLockPage", "mnuCMS_AdminText", 20600, nullptr, false},
    {"mnuCMS_AdminLockUpArea", "mnuCMS_AdminText", 20601, nullptr, false},
    {"mnuCMS_AdminLockUpPage", "mnuCMS_AdminText", 20602, nullptr, false},
    {"mnuCMS_AdminLockUpObject", "mnuCMS_AdminText", 20601, nullptr, false},
    {"mnuCMS_AdminLockSubArea", "mnuCMS_AdminText", 20603, nullptr, false},

    // The picture's menu.
    {"mnuHTMLImg", "", 0, "", false},
    {"mnuChangeImg", "mnuHTMLImg", 17804, nullptr, false},
    {"mnuRemoveImg", "mnuHTMLImg", 17805, nullptr, false},
    {"mnuAlign", "mnuHTMLImg", 17821, nullptr, false},
    {"mnuImgJustifyCenter", "mnuAlign", 17204, nullptr, false},
    {"mnuImgJustifyRight", "mnuAlign", 17205, nullptr, false},
    {"mnuImgJustifyLeft", "mnuAlign", 17206, nullptr, false},
    {"mnuResetSize", "mnuHTMLImg", 17806, nullptr, false},
    {"mnuAbsolutPosition", "mnuHTMLImg", 17200, nullptr, true},
    {"mnuImgZOrder", "mnuHTMLImg", 17609, nullptr, false},
    {"mnuHTMLImgCreateLink", "mnuHTMLImg", 17611, nullptr, false},
    {"mnuHTMLImgEditLink", "mnuHTMLImg", 17612, nullptr, false},
    {"mnuHTMLImgRemoveLink", "mnuHTMLImg", 17613, nullptr, false},
    {"mnuHTMLImageProperties", "mnuHTMLImg", 17203, nullptr, false},

    // The hover button's menu.
    {"mnuFPHoover", "", 0, "", false},
    {"mnuFPHCut", "mnuFPHoover", 19004, nullptr, false},
    {"mnuFPHCopy", "mnuFPHoover", 19005, nullptr, false},
    {"mnuFPHDel", "mnuFPHoover", 17602, nullptr, false},
    {"mnuFPHAbsPos", "mnuFPHoover", 17200, nullptr, true},
    {"mnuFPHProp", "mnuFPHoover", 17203, nullptr, false},
};

QString Caption(const MenuRow &row)
{
    return row.text ? QString::fromUtf8(row.text) : MResources::LoadResourceString(row.caption);
}

bool HasItems(const char *name)
{
    for (const MenuRow &row : kRows)
        if (qstrcmp(row.parent, name) == 0)
            return true;
    return false;
}

QPointer<QMenu> g_shown;

} // namespace

frmMenu::frmMenu()
{
    Build();
}

// The top menus own the menus and items below them.
frmMenu::~frmMenu()
{
    for (const MenuRow &row : kRows)
        if (!*row.parent)
            delete m_menus.value(QString::fromLatin1(row.name));
}

void frmMenu::Build()
{
    for (const MenuRow &row : kRows) {
        const QString name = QString::fromLatin1(row.name);
        QMenu *parent = m_menus.value(QString::fromLatin1(row.parent));
        QAction *action = nullptr;
        if (HasItems(row.name)) {
            QMenu *menu = parent ? parent->addMenu(Caption(row)) : new QMenu();
            menu->setObjectName(name);
            m_menus.insert(name, menu);
            action = menu->menuAction();
        } else {
            action = parent->addAction(Caption(row));
            connect(action, &QAction::triggered, this, [this, name] { m_strPicked = name; });
        }
        action->setObjectName(name);
        action->setCheckable(row.checkable);
        m_items.insert(name, action);
    }
}

QAction *frmMenu::Item(const QString &name) const
{
    return m_items.value(name);
}

QMenu *frmMenu::Menu(const QString &name) const
{
    return m_menus.value(name);
}

QString frmMenu::PopupMenu(const QString &name, const QPoint &at)
{
    QMenu *menu = Menu(name);
    if (!menu)
        return {};
    m_strPicked.clear();
    g_shown = menu;
    menu->exec(at);
    g_shown = nullptr;
    return m_strPicked;
}

QMenu *frmMenu::Shown()
{
    return g_shown.data();
}
