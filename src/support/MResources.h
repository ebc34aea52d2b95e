#pragma once

#include <QList>
#include <QString>

// The string table: every text the program shows, by number and language.
// The table is src/resources/strings.tsv, compiled into the program; a row
// holds an id and its text in each language (columns named by language id:
// 1033 English, 1053 Swedish, 1030 Danish). In a text, \n is a line break,
// \t a tab and \\ a backslash.
class MResources
{
public:
    struct Language
    {
        QString name;
        long id = 0;
    };

    // Fills the languages offered (English 1033, Swedish 1053; Danish 1030
    // is partly in the table but not offered) and reads the current one from
    // the setting Lang of the section Environment. Called first at start;
    // a change of the setting takes effect at the next start. Returns 1.
    static long InitLangSupport();

    // The languages offered, in order, for the settings dialog. Returns 1.
    static long GetLanguages(QList<Language> &aLangs_p);

    // The text of id in the current language; the empty string when the
    // table has none (never an error, and no other language stands in).
    static QString LoadResourceString(long id);
    static QString LoadResourceString(long id, long language);

    static long CurrentLanguage();
    static void SetCurrentLanguage(long language);
};
