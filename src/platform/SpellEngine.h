#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <memory>

class Hunspell;

// One Hunspell dictionary of the machine, loaded once per language for the
// whole run, with the user's personal word list added to it. It tells the
// words of a text as the dictionary itself counts letters (its WORDCHARS:
// digits, apostrophes, the Swedish hyphen and abbreviation points), whether a
// word is spelt right, and what it might have been.
class SpellEngine
{
public:
    struct Word
    {
        qsizetype start = 0;
        QString text;
    };

    ~SpellEngine();

    // The dictionary for a language tag as pages write it ("sv", "sv-SE",
    // "en_us"), or for the program's language when the tag is empty or no
    // dictionary answers to it. nullptr, with the pending error set, when
    // the machine has none for either.
    static SpellEngine *ForLanguage(const QString &tag);
    // The named dictionary ("sv_SE") read afresh, as a new start of the
    // program reads it; nullptr when the machine has none of that name.
    static std::unique_ptr<SpellEngine> Load(const QString &name);
    // The dictionary's own name, "en_US".
    QString Name() const { return m_name; }

    QList<Word> Words(const QString &text) const;
    bool Check(const QString &word) const;
    // Asked only for a word that Check refused: suggestions are slow.
    QStringList Suggest(const QString &word) const;
    // The word is right from now on, in this run and in every later one.
    void AddToPersonalList(const QString &word);

    static QString PersonalListPath();

private:
    SpellEngine(const QString &name, const QString &affix, const QString &words);
    bool IsWordChar(QChar c) const;
    std::string Encode(const QString &word) const;
    QString Decode(const std::string &word) const;
    void LoadPersonalList();

    QString m_name;
    std::unique_ptr<Hunspell> m_hunspell;
    QString m_wordChars;
    bool m_utf8 = true;
};
