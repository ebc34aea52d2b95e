// The events of a document in design mode: CDocument as the hub of what the
// user does in the page and in the style pane. The keys whose engine
// defaults must not run (the line keys, Ctrl+D, the reload and search
// keys) are decided in the page runtime before the engine acts; what
// reaches this side is the record of the event.

#include "document/CDocument.h"

#include "aspfilter/CASPFilter.h"
#include "document/StylePaneState.h"
#include "platform/HtmlSelection.h"
#include "platform/PageEvent.h"
#include "platform/PageScriptCall.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QHash>

#include <algorithm>
#include <cmath>

namespace {
constexpr int KeyF6 = 117, KeyF7 = 118;
constexpr long txtRemoveAll = 16807, txtRemoveFormatting = 16808;
const char *const kBlockTags[] = {"<DIV>", "<P>", "<H1>", "<H2>", "<H3>", "<H4>", "<H5>", "<H6>", "<PRE>"};
constexpr int kOrderedList = 9, kUnorderedList = 10;

QVariant CallEvents(const HtmlDocument &page, const QString &function, QVariantList args, const QString &position)
{
    QVariantList path;
    for (int i : page.framePath())
        path.append(i);
    args.prepend(QVariant(path));
    return PageScriptCall::call(page.browser()->page(), QStringLiteral("events.") + function, args, position);
}
} // namespace

QString CDocument::EventPosition(const QString &handler)
{
    return QStringLiteral("CDocument.") + handler;
}

// Any key counts as a change, also one that changes nothing (an arrow):
// the user expects to be asked about anything typed. So do a picked
// object, a paste and a drop.
long CDocument::OnPageEvent(const PageEvent &event)
{
    if (event.type == QLatin1String("keydown")) {
        if (!event.ctrl && !event.alt && event.keyCode == KeyF6) {
            m_boolGlyphsOn = !m_boolGlyphsOn;
            ShowDisableGlyphs(m_boolGlyphsOn, m_boolGlyphsOn, m_boolGlyphsOn, m_boolGlyphsOn, m_boolGlyphsOn);
        } else if (!event.ctrl && !event.alt && event.keyCode == KeyF7) {
            if (Spellcheck() == 0)
                return 0;
        }
        m_boolDirty = true;
    } else if (event.type == QLatin1String("controlselect") || event.type == QLatin1String("paste")
               || event.type == QLatin1String("drop") || event.type == QLatin1String("keyup")) {
        m_boolDirty = true;
    }
    return 1;
}

long CDocument::SetStylePaneProperties(StylePaneState &state)
{
    state = {};
    m_Style.GetStyleClasses(state.classes);
    const QString type = m_Document.selection().type();
    if (MError::ErrorNumber() != 0)
        return 0;
    if (type != QLatin1String("None") && type != QLatin1String("Text"))
        return 1;
    if (!m_Style.GetCaretFontFamily(state.fontFamily, state.sizePt)
        || !m_Style.GetCaretAttr(state.bold, state.italic, state.underline) || !m_Style.GetCaretColor(state.color)
        || !m_Style.GetCaretJustify(state.justify))
        return 0;
    const QVariantMap block = CallEvents(m_Document, QStringLiteral("block"), {}, EventPosition(QStringLiteral("SetStylePaneProperties"))).toMap();
    if (MError::ErrorNumber() != 0)
        return 0;
    state.blockFormat = block.value(QStringLiteral("format")).toInt();
    state.className = block.value(QStringLiteral("className")).toString();
    state.enabled = true;
    return 1;
}

long CDocument::Command(const QString &command, const QVariant &value, const QString &handler)
{
    m_Document.execCommand(command, false, value);
    if (MError::ErrorNumber() != 0) {
        MError::SetErrorIfClear(MError::ErrorNumber(), MError::ErrorDescription(), EventPosition(handler));
        return 0;
    }
    m_boolDirty = true;
    return 1;
}

// "No formatting" takes every character format off the selection, once
// the user has said yes to it.
long CDocument::m_cboFont_Click(const QString &strFontName_p)
{
    if (!strFontName_p.isEmpty())
        return Command(QStringLiteral("FontName"), strFontName_p, QStringLiteral("m_cboFont_Click"));
    if (UserQuestions::MsgBox(MResources::LoadResourceString(txtRemoveAll), UserQuestions::vbYesNo,
                              MResources::LoadResourceString(txtRemoveFormatting))
        != UserQuestions::vbYes)
        return 1;
    return Command(QStringLiteral("RemoveFormat"), {}, QStringLiteral("m_cboFont_Click"));
}

// The lists are made by the engine's list commands: its block format
// command knows paragraphs, headings, PRE and DIV only.
long CDocument::m_cboBlockFormat(int item)
{
    const QString handler = QStringLiteral("m_cboBlockFormat");
    if (item == kOrderedList)
        return Command(QStringLiteral("InsertOrderedList"), {}, handler);
    if (item == kUnorderedList)
        return Command(QStringLiteral("InsertUnorderedList"), {}, handler);
    const bool known = item >= 1 && item < int(std::size(kBlockTags));
    return Command(QStringLiteral("FormatBlock"), QString::fromLatin1(kBlockTags[known ? item : 0]), handler);
}

long CDocument::m_cboClasses(const QString &strClass_p)
{
    const bool set = CallEvents(m_Document, QStringLiteral("setBlockClass"), {strClass_p}, EventPosition(QStringLiteral("m_cboClasses"))).toBool();
    if (MError::ErrorNumber() != 0)
        return 0;
    m_boolDirty = m_boolDirty || set;
    return 1;
}

long CDocument::m_chkBoldSel_Click()
{
    return Command(QStringLiteral("Bold"), {}, QStringLiteral("m_chkBoldSel_Click"));
}

long CDocument::m_chkItalicSel_Click()
{
    return Command(QStringLiteral("Italic"), {}, QStringLiteral("m_chkItalicSel_Click"));
}

long CDocument::m_chkUnderlineSel_Click()
{
    return Command(QStringLiteral("Underline"), {}, QStringLiteral("m_chkUnderlineSel_Click"));
}

long CDocument::SetJustify(const QString &strJustify_p)
{
    static const QHash<QString, QString> commands{{QStringLiteral("left"), QStringLiteral("JustifyLeft")},
                                                  {QStringLiteral("center"), QStringLiteral("JustifyCenter")},
                                                  {QStringLiteral("right"), QStringLiteral("JustifyRight")},
                                                  {QStringLiteral("justify"), QStringLiteral("JustifyFull")}};
    return Command(commands.value(strJustify_p, QStringLiteral("JustifyLeft")), {}, QStringLiteral("SetJustify"));
}

// One point up or down from the size at the caret, over the selection.
long CDocument::m_updFontSize(int direction)
{
    QString family;
    float size = 0;
    if (!m_Style.GetCaretFontFamily(family, size))
        return 0;
    const float next = std::max(1.0f, std::round(size) + float(direction));
    const long done = m_Style.SetCaretFontSize(next);
    if (done == 1)
        m_boolDirty = true;
    return done == 0 ? 0 : 1;
}

long CDocument::Undo()
{
    return Command(QStringLiteral("undo"), {}, QStringLiteral("Undo"));
}

long CDocument::Redo()
{
    return Command(QStringLiteral("redo"), {}, QStringLiteral("Redo"));
}

long CDocument::GetUndoRedo(bool &boolCanUndo_p, bool &boolCanRedo_p) const
{
    boolCanUndo_p = m_Document.queryCommandEnabled(QStringLiteral("undo"));
    boolCanRedo_p = m_Document.queryCommandEnabled(QStringLiteral("redo"));
    return MError::ErrorNumber() == 0 ? 1 : 0;
}

// A script block copied in this program comes back as a block: the copy of
// its output between its marks goes in at the caret, sealed like the
// original, and becomes a block of its own with the same source.
long CDocument::PasteASPObject(const QString &strMarker_p)
{
    const QString handler = QStringLiteral("PasteASPObject");
    const long pasted = CallEvents(m_Document, QStringLiteral("pasteRegion"), {strMarker_p}, EventPosition(handler)).toLongLong();
    if (MError::ErrorNumber() != 0)
        return 0;
    if (pasted != 1)
        return -1;
    m_boolDirty = true;
    return ResolvePastedASP();
}

// The copy keeps the source its block has now, also one the user edited
// before he copied it.
long CDocument::ResolvePastedASP()
{
    if (!m_ASPFilter)
        return 1;
    const QVariantList pairs = CallEvents(m_Document, QStringLiteral("renumberCopies"), {qlonglong(m_ASPFilter->GetLastASPPos() + 2)},
                                          EventPosition(QStringLiteral("ResolvePastedASP")))
                                   .toList();
    if (MError::ErrorNumber() != 0)
        return 0;
    for (const QVariant &pair : pairs) {
        const QStringList ids = pair.toStringList();
        QString text;
        m_ASPFilter->GetASP(ids.value(0), text);
        if (m_ASPFilter->CopyASPObject(ids.value(0).toLong(), ids.value(1).toLong()) != 1)
            return 0;
        m_ASPFilter->SetASP(ids.value(1), text);
    }
    return SealASPBlocks();
}
