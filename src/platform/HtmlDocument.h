#pragma once

#include "platform/WebBrowser.h"
#include "platform/HtmlElement.h"

#include <QList>
#include <QPointer>
#include <QString>
#include <QStringList>

class HtmlSelection;
class HtmlTextRange;

// One style sheet of a document: its selectors, and whether the editor may
// change it (a linked sheet lives in its own file and is read-only here).
struct StyleSheetInfo
{
    QString href;
    bool readOnly = false;
    QStringList selectors;
};

// A document of the page: the top one (empty path) or that of a frame,
// reached from the top document by the frames' indexes. A frame of another
// origin refuses every call with "Permission denied".
class HtmlDocument
{
public:
    // Display commands that the editor switches while editing.
    static constexpr int RespectVisibilityInDesign = 2405;
    static constexpr int ShowZeroBorderAtDesignTime = 2328;
    static constexpr int EmptyGlyphTable = 2336;
    static constexpr int AddToGlyphTable = 2337;

    HtmlDocument() = default;
    HtmlDocument(WebBrowser *browser, const QList<int> &framePath);

    bool isNull() const { return !m_browser; }
    WebBrowser *browser() const { return m_browser; }
    QList<int> framePath() const { return m_path; }

    // "HTMLDocument" for the top page, "HTMLWindow2" for a frame's window.
    QString TypeName() const;

    QString title() const;
    void setTitle(const QString &title);
    QString URL() const;
    QString href() const;     // location.href
    QString pathname() const; // location.pathname
    QString characterSet() const; // the charset the engine read the page with
    QString readyState() const; // "loading", "interactive", "complete"
    QString designMode() const; // "On" or "Off"
    void setDesignMode(const QString &mode);
    QString doctype() const;

    HtmlElement body() const;
    HtmlElement documentElement() const;
    QList<HtmlElement> all() const;
    int allLength() const;
    QList<HtmlElement> getElementsByTagName(const QString &tag) const;
    HtmlElement getElementById(const QString &id) const;
    HtmlElement createElement(const QString &tag);
    HtmlElement elementFromPoint(int x, int y) const;

    int frameCount() const;
    HtmlDocument frame(int index) const;

    bool execCommand(const QString &command, bool showUI = false, const QVariant &value = {});
    bool queryCommandEnabled(const QString &command) const;
    bool queryCommandState(const QString &command) const;
    // The design commands by number; for the glyph table the argument is the
    // rows text ("%%tag^^%%picture^^%%S^^...**"), for the others a boolean.
    long execDesign(int command, const QVariant &argument = {});

    HtmlSelection selection() const;
    QList<StyleSheetInfo> styleSheets() const;

    // The page as a file: the doctype, then documentElement.outerHTML.
    QString serialize() const;
    // Every node of the document in order, the comments outside its root
    // element too: what the save lines up with the page's source.
    QString snapshot() const;
    // Makes the output of server script between its marker comments
    // read-only, each block with its look; gives the count of stretches,
    // or -1. ids gets the blocks' numbers.
    long sealScript(QStringList *ids = nullptr);

    // What a right click at the point falls on: "type" of the selection,
    // and "control" and "point" (the picked control, the element under the
    // pointer), each with "h" (handle, 0 for none), "tag", "editable",
    // "key" (keldaKey or null), "keldasp", "code", "input", "connected".
    QVariantMap contextTarget(int x, int y) const;
    // Where a floating element goes back into the flow, searched around the
    // point.
    HtmlElement flowParentNear(const HtmlElement &element, int x, int y) const;
    // The computed style of the selection's element, or of the element at
    // the point: "tag", "fontFamily", "fontSizePt", "fontWeight",
    // "fontStyle", "underline", "color" (#rrggbb), "justify".
    QVariantMap styleAtSelection() const;
    QVariantMap styleAtPoint(int x, int y) const;
    // Gives the selection the font size (a CSS length) by splitting the
    // elements it cuts, sizing those inside and wrapping bare text in
    // spans. "refused" is "cells" or "script" when nothing was done for
    // that reason; "changed" counts the elements made or changed.
    QVariantMap setSelectionFontSize(const QString &size);
    // The kind of formatting at the point, judged against the selectors:
    // "kind", "selector", "heading", "diffs" (name/value maps).
    QVariantMap styleKindAt(int x, int y, const QStringList &selectors) const;

    // The editor's look of a page that is shown but not edited.
    long setHatched(bool on);

    // Bulk work done in one round trip: returns the count of elements or
    // attributes touched, or -1 on failure.
    long setAttributeOnTags(const QString &tag, const QString &name, const QString &value);
    long removeAttributesEverywhere(const QStringList &names);
    // Strips the named attributes from every element and numbers each
    // element of the tag with keyName = 0, 1, ... in document order; gives
    // the count numbered.
    long keyAndStrip(const QString &tag, const QString &keyName, const QStringList &names);

    // A background picture an element still waits to have uploaded, as its
    // attributes said before stripEditMarks took them off.
    struct PendingBackground
    {
        HtmlElement element;
        QString relativepath;
        QString uploadpath;
        QString background;
        QString bgbytad;
    };
    // Takes the marks of edit mode off every element in one pass: keldaKey,
    // the layer marks (written back as the style's visibility) and the
    // background marks. Gives the elements whose background waits for its
    // upload; ok is false when the page refused the call.
    QList<PendingBackground> stripEditMarks(bool &ok);
    // Takes the editing state and the given style properties off every
    // element that carries a CMS lock mark, and contentEditable off the
    // body. The count of marked elements, or -1.
    long stripLockMarks(const QStringList &styleProperties);
    // Every change made to the page after holdChanges is recorded, and
    // undoHeldChanges takes them all back, the last first, leaving the very
    // nodes the page had. Each 1, or 0 when the page refused the call (or
    // nothing was held).
    long holdChanges();
    long undoHeldChanges();

    // Calls a function of the page's runtime (e.g. "layers.list") on this
    // document: the frame's path goes first, then the arguments.
    QVariant callRuntime(const QString &function, const QVariantList &args, const QString &position) const
    {
        return call(function, args, position);
    }

private:
    friend class HtmlSelection;
    friend class HtmlTextRange;
    QVariant call(const QString &function, QVariantList args, const QString &position) const;
    QVariantMap info(const QString &position) const;

    QPointer<WebBrowser> m_browser;
    QList<int> m_path;
};
