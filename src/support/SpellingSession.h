#pragma once

#include "platform/SpellEngine.h"

#include <QHash>
#include <QSet>

// One check of a text, misspelt word by misspelt word, as the spelling
// dialog walks it: the user's answer to each word (change, change all,
// ignore, ignore all, add to the dictionary) decides the next stop. The
// text itself is never rewritten as a whole: the answers are kept as edits
// of the words, so that whoever put the text up (a page) can put back
// exactly the words that changed and nothing else.
class SpellingSession
{
public:
    struct Edit
    {
        qsizetype start = 0; // in the text as it came
        qsizetype length = 0;
        QString replacement;
    };

    SpellingSession(SpellEngine &engine, const QString &text);

    // On to the next misspelt word; false when none is left.
    bool Next();
    QString Word() const { return m_words.value(m_at).text; }
    QStringList Suggestions() const;
    // The sentence of the word as it reads now, and where the word starts in it.
    QString Sentence(qsizetype &wordAt) const;

    void Change(const QString &to);
    void ChangeAll(const QString &to);
    void Ignore() {}
    void IgnoreAll() { m_ignored.insert(Word().toLower()); }
    void AddToDictionary();

    QString Text() const;
    const QList<Edit> &Edits() const { return m_edits; }

private:
    bool Misspelt(const QString &word);
    qsizetype Shift(qsizetype start) const;
    // The replacement with the first letter in the case of the word's.
    static QString InCaseOf(const QString &word, QString to);

    SpellEngine &m_engine;
    const QString m_original;
    const QList<SpellEngine::Word> m_words;
    qsizetype m_at = -1;
    QList<Edit> m_edits;
    QSet<QString> m_ignored;
    QHash<QString, QString> m_changeAll;
    QHash<QString, bool> m_checked;
};
