#include "support/SpellingSession.h"

SpellingSession::SpellingSession(SpellEngine &engine, const QString &text)
    : m_engine(engine)
    , m_original(text)
    , m_words(engine.Words(text))
{
}

// A word is asked of the dictionary once per check, however often it stands.
bool SpellingSession::Misspelt(const QString &word)
{
    auto known = m_checked.constFind(word);
    if (known == m_checked.constEnd())
        known = m_checked.insert(word, !m_engine.Check(word));
    return *known;
}

// "Ignore all" and "Change all" hold for the word in any case: "Wrold"
// changed to "World" for all makes "wrold" "world" too.
bool SpellingSession::Next()
{
    while (++m_at < m_words.size()) {
        const QString &word = m_words.at(m_at).text;
        if (m_ignored.contains(word.toLower()))
            continue;
        if (m_changeAll.contains(word.toLower())) {
            Change(InCaseOf(word, m_changeAll.value(word.toLower())));
            continue;
        }
        if (Misspelt(word))
            return true;
    }
    return false;
}

QStringList SpellingSession::Suggestions() const
{
    return m_engine.Suggest(Word());
}

void SpellingSession::Change(const QString &to)
{
    const SpellEngine::Word &word = m_words.at(m_at);
    if (to != word.text)
        m_edits.append({word.start, word.text.size(), to});
}

QString SpellingSession::InCaseOf(const QString &word, QString to)
{
    if (!to.isEmpty() && word.at(0).isLower())
        to[0] = to.at(0).toLower();
    else if (!to.isEmpty() && word.at(0).isUpper())
        to[0] = to.at(0).toUpper();
    return to;
}

void SpellingSession::ChangeAll(const QString &to)
{
    m_changeAll.insert(Word().toLower(), to);
    Change(to);
}

void SpellingSession::AddToDictionary()
{
    m_engine.AddToPersonalList(Word());
    m_checked.insert(Word(), false);
}

// Where a place of the text as it came stands now, after the edits before it.
qsizetype SpellingSession::Shift(qsizetype start) const
{
    qsizetype shifted = start;
    for (const Edit &edit : m_edits)
        if (edit.start < start)
            shifted += edit.replacement.size() - edit.length;
    return shifted;
}

QString SpellingSession::Text() const
{
    QString text = m_original;
    for (auto edit = m_edits.crbegin(); edit != m_edits.crend(); ++edit)
        text.replace(edit->start, edit->length, edit->replacement);
    return text;
}

QString SpellingSession::Sentence(qsizetype &wordAt) const
{
    const QString text = Text();
    const qsizetype start = Shift(m_words.value(m_at).start);
    qsizetype from = start, to = start + Word().size();
    auto ends = [](QChar c) { return c == QLatin1Char('.') || c == QLatin1Char('!') || c == QLatin1Char('?') || c == QLatin1Char('\n'); };
    while (from > 0 && !ends(text.at(from - 1)))
        --from;
    while (to < text.size() && !ends(text.at(to)))
        ++to;
    if (to < text.size() && text.at(to) != QLatin1Char('\n'))
        ++to;
    while (from < start && text.at(from).isSpace())
        ++from;
    wordAt = start - from;
    return text.mid(from, to - from);
}
