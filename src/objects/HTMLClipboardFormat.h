#pragma once

#include <QByteArray>
#include <QString>

class QMimeData;

// The clipboard's HTML as the program exchanges it inside: one block of
// UTF-8 bytes with a header of offsets in front of the page text,
//
//   Version:1.0
//   StartHTML:0000000105
//   EndHTML:0000000211
//   StartFragment:0000000161
//   EndFragment:0000000175
//   SourceURL:http://host/folder/page.htm
//   <prefix><!--StartFragment -->fragment<!--EndFragment --><suffix>
//
// every line ending in CR LF and every offset a byte offset from the start
// of the block, written in ten digits so that the header keeps its length
// whatever the values. The desktop's clipboard knows no such block: it
// holds text/html (as browsers write it: UTF-8, sometimes a leading META
// charset and a trailing NUL, from older writers UTF-16), text/plain and,
// from some browsers, text/x-moz-url-priv with the source page's address.
// The block is built from that MIME data and turned back into it here, so
// that everything else reads and writes one format.
class HTMLClipboardFormat
{
public:
    // The block for a fragment with the page text around it and the
    // address of the page it comes from (empty when unknown).
    static QByteArray Build(const QString &fragment, const QString &prefix, const QString &suffix,
                            const QString &sourceURL);

    // Reads the fragment and the source address out of a block. 1 when it
    // held a fragment; 0 when it held none: no offsets, or offsets that
    // point outside the block and no marker comments to fall back on. An
    // empty fragment between valid offsets is a fragment.
    static long Parse(const QByteArray &block, QString &fragment, QString &sourceURL);

    // The block for what the clipboard holds: its text/html, and the
    // source address from text/x-moz-url-priv, else knownSource. Empty when
    // the clipboard holds no HTML.
    static QByteArray FromMimeData(const QMimeData &data, const QString &knownSource);

    // The MIME data of a block: text/html in UTF-8 with its charset
    // declared, and text/x-moz-url-priv when the source is known. The plain
    // text is the caller's, who can render the HTML. Null for a block
    // without a fragment.
    static QMimeData *ToMimeData(const QByteArray &block);

    // HTML bytes as a clipboard writer left them: a byte order mark, else
    // UTF-16 told by its zero bytes, else the charset a META tag declares,
    // else UTF-8; trailing NULs go.
    static QString DecodeHtml(const QByteArray &bytes);

    // The fragment inside what a writer put on the clipboard: what stands
    // between its StartFragment and EndFragment comments, else the content
    // of its body, else the whole text less a leading META tag.
    static QString FragmentOf(const QString &html);

    static constexpr const char *kSourceMime = "text/x-moz-url-priv";
};
