#pragma once

#include <QByteArray>
#include <QString>

// The desktop's clipboard as HTML: what the page objects paste, and what
// the CMS command that unlocks an area writes back. Every read and write
// goes through the exchange block of HTMLClipboardFormat, made from and
// turned into the clipboard's MIME data. When the clipboard can't be
// reached, reads give nothing and writes write nothing, without a message.
class M_HTMLClipboard
{
public:
    // Empties the clipboard and writes the fragment with the page text
    // around it and the address of the page it came from, as HTML and as
    // its plain text. 1, or 0 when the clipboard can't be written.
    static long PutHTMLClipboard(const QString &strFragment_p, const QString &strPrefix_p, const QString &strSuffix_p,
                                 const QString &strSourceURL_p);
    // The fragment on the clipboard; empty without HTML.
    static QString GetHTMLClipboard();
    // The fragment and the address of its page (empty when unknown). 1 when
    // the clipboard held HTML, 0 when not.
    static long GetHTMLClipboard2(QString &strFragment_p, QString &strSourceURL_p);
    // Puts the fragment on the clipboard inside a DIV with the id, between
    // the two comments by which the CMS finds the pasted text again. 1, or
    // 0 without HTML on the clipboard.
    static long EmbeddHTMLInClipboardInDIV(const QString &strId_p);

    // The exchange block of what the clipboard holds now; empty without
    // HTML.
    static QByteArray ClipboardBlock();

    // The page engine is copying from the page at the address. The engine
    // writes the clipboard without it, so it is kept here for as long as
    // the clipboard holds what this program wrote.
    static void NoteEngineCopy(const QString &strSourceURL_p);
    // The source kept by NoteEngineCopy while it still holds; else empty.
    static QString EngineCopySource();
};
