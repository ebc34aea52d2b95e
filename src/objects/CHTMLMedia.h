#pragma once

#include "objects/CIHTMLObject.h"

#include <memory>

class HtmlTextRange;

// A sound clip, a Flash film or a video clip put into a page from the
// user's disk. The page engine plays none of them, so while the page is
// edited the clip shows as a box of its size with its kind and file name
// (a rule of the editor's own style, never saved); the tag itself is
// written as it will stand on the server. At Save the file goes up to the
// folder the user chose, as a picture does, and the tag names it there.
class CHTMLMedia : public CIHTMLObject
{
public:
    enum Kind { Sound, Flash, Video };

    // The text menu's command: the file through the file dialog, its
    // server folder through the site tree, then the tag at the range. 1
    // inserted, -1 nothing done, 0 failed (error pending).
    static long Insert(CDocument &document, HtmlTextRange &range, Kind kind);

    // The clips the page held when the edit began get the box a new one
    // gets. They stay the author's as he wrote them: none is registered for
    // the save, and the mark that ties each to its box goes with the other
    // marks of edit mode. 1, or 0 with the error pending.
    static long ShowExisting(CDocument &document);
    // The mark of an existing clip, by which its box finds it.
    static QString BoxAttribute() { return QStringLiteral("keldamedia"); }

    // The tag of a new clip of the kind, with the file's address.
    static QString Markup(Kind kind, const QString &strSrc_p);
    // Whether the file's extension is one the kind is written for.
    static bool KnownFile(Kind kind, const QString &strFile_p);

    HtmlElement Element() const override { return m_Element; }
    long IsDirty(bool &boolIsDirty_p) const override;
    long Save(HtmlDocument &Document_p) override;
    // A clip has no commands of its own: it is removed as text is, by
    // selecting it and pressing Delete.
    long OnContextMenu() override { return 1; }
    long LetKeldaKey(long lNewKey_p) override;
    long GetKeldaKey(long &lKey_p) const override;
    long Init(CDocEventHandler *, CDocument *) override { return 1; }

private:
    static QString ChooseFile(Kind kind);
    static HtmlElement Place(HtmlDocument &page, HtmlTextRange &range, Kind kind, const QString &strFile_p);
    static bool KindOf(const HtmlElement &element, Kind &kind, QString &strFile_p);
    static bool InBoxedObject(const HtmlElement &element);
    static void ShowHiddenSound(HtmlElement &element);
    static void ShowPlaceholder(CDocument &document, const QString &selector, Kind kind, const QString &strFile_p,
                                int width, int height);

    CDocument *m_Document = nullptr;
    HtmlElement m_Element;
    QString m_strWebFolder; // the way from the page's folder to the chosen one
    long m_lKey = -1;
    bool m_boolDirty = true;
};
