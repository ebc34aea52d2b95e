#pragma once

#include <QtGlobal>

// One piece of a page's markup as the save lines up the author's source
// with the page engine's view of it: a word or a run of white space of the
// text, a tag, a comment, a declaration, the content of an element whose
// text is not markup (script, style, title...), or a stretch of server
// script. `key` says what the piece means, not how it is spelt: two tokens
// with the same key are the same to a browser.
struct PageToken
{
    enum Kind : quint8 { Word, Space, StartTag, EndTag, Comment, Declaration, RawText, Script };

    Kind kind = Word;
    qsizetype start = 0; // the span in the text that was read
    qsizetype end = 0;
    quint64 key = 0;
    bool holdsBlock = false; // server script lies inside this tag, comment or text
    bool added = false; // a tag of an element the editor's commands put in: never one of the author's
};
