#pragma once

#include "platform/HtmlDocument.h"

#include <QList>
#include <QString>

// The head tags a save settles in the live page before it is serialised:
// the charset declaration (asking the user when the page's charset cannot
// be saved safely) and the three tags that keep caches from holding an
// edited page.
class CPageMetaTags
{
public:
    // 1, or -1 when the user chose not to convert a charset the program
    // cannot save: the page must not be saved then. May switch Tidy on and
    // change its encoding; both are stored in the settings.
    // keepsBytes: the save writes the page's own bytes and new text in the
    // page's charset, so a page in UTF-8 or another charset loses nothing
    // and is not asked about; only the windows-1252 advice remains.
    static long CheckCharCodeMetaTag(HtmlDocument &doc, bool keepsBytes = false);

    // Expires -1, Pragma no-cache and Last-Modified strSaveDate, each set on
    // the page's own tag or added at the end of the head. 1, or 0 with the
    // pending error set when the page has no head.
    static long AddMetaEditTags(HtmlDocument &doc, const QString &strSaveDate);

    // The content value that declares the charset of a TidyCharEncodingType.
    static QString ContentOfType(long type);

private:
    enum Action { Keep, Drop, Refuse };
    static HtmlElement Head(const HtmlDocument &doc);
    static QList<HtmlElement> HeadMetas(const HtmlElement &head);
    static QString HttpEquiv(const HtmlElement &meta);
    static Action AskAboutCharset(const HtmlElement &meta, const QString &content, bool keepsBytes);
    static bool AskToConvert(const HtmlElement &meta, const QString &question, long type);
    static QString Question(long firstPart, long lastPart, bool warnNo);
    static void SwitchTidyOn(long type);
    static void InsertCharsetTag(HtmlDocument &doc, HtmlElement &head);
};
