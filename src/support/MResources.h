#pragma once

#include <QString>

// The string table: every text the program shows, by number and language.
// The table is src/resources/strings.tsv, compiled into the program; a row
// holds an id and its text in each language (columns named by language id:
// 1033 English, 1053 Swedish, 1030 Danish). In a text, \n is a line break,
// \t a tab and \\ a backslash.
class MResources
{
public:
    // The text of id in the current language; the empty string when the
    // table has none (never an error).
    static QString LoadResourceString(long id);
    static QString LoadResourceString(long id, long language);

    static long CurrentLanguage();
    static void SetCurrentLanguage(long language);
};
