#include "platform/SpellEngine.h"

#include "platform/LocalFolders.h"
#include "support/MError.h"
#include "support/MResources.h"

#include <hunspell/hunspell.hxx>

#include <QDir>
#include <QFile>
#include <QHash>
#include <QStringDecoder>
#include <QStringEncoder>

namespace {
constexpr long kSwedish = 1053, kDanish = 1030;

// Where Debian's hunspell-* packages put their files; DICPATH first, as
// Hunspell's own tools read it.
QStringList DictionaryFolders()
{
    QStringList folders = qEnvironmentVariable("DICPATH").split(QLatin1Char(':'), Qt::SkipEmptyParts);
    folders << QStringLiteral("/usr/share/hunspell") << QStringLiteral("/usr/share/myspell/dicts")
            << QStringLiteral("/usr/share/myspell");
    return folders;
}

QString FindDictionary(const QString &name)
{
    for (const QString &folder : DictionaryFolders())
        if (QFile::exists(folder + QLatin1Char('/') + name + QStringLiteral(".dic"))
            && QFile::exists(folder + QLatin1Char('/') + name + QStringLiteral(".aff")))
            return folder + QLatin1Char('/') + name;
    return {};
}

// "sv-se" -> sv_SE, then the usual country of the language, then any
// country the machine has a dictionary for.
QStringList Candidates(const QString &tag)
{
    const QStringList parts = tag.trimmed().replace(QLatin1Char('-'), QLatin1Char('_')).split(QLatin1Char('_'));
    const QString language = parts.value(0).toLower();
    if (language.isEmpty())
        return {};
    QStringList names;
    if (parts.size() > 1)
        names << language + QLatin1Char('_') + parts.at(1).toUpper();
    static const QHash<QString, QString> usual = {{QStringLiteral("en"), QStringLiteral("US")},
                                                  {QStringLiteral("sv"), QStringLiteral("SE")},
                                                  {QStringLiteral("da"), QStringLiteral("DK")}};
    names << language + QLatin1Char('_') + usual.value(language, language.toUpper());
    for (const QString &folder : DictionaryFolders())
        for (const QString &file : QDir(folder).entryList({language + QStringLiteral("_*.dic")}, QDir::Files, QDir::Name))
            names << file.chopped(4);
    names.removeDuplicates();
    return names;
}

QString ProgramLanguageTag()
{
    switch (MResources::CurrentLanguage()) {
    case kSwedish: return QStringLiteral("sv_SE");
    case kDanish: return QStringLiteral("da_DK");
    default: return QStringLiteral("en_US");
    }
}

QHash<QString, SpellEngine *> &Loaded()
{
    static QHash<QString, SpellEngine *> loaded;
    return loaded;
}
} // namespace

SpellEngine::SpellEngine(const QString &name, const QString &affix, const QString &words)
    : m_name(name)
    , m_hunspell(std::make_unique<Hunspell>(QFile::encodeName(affix).constData(), QFile::encodeName(words).constData()))
{
    m_utf8 = QString::fromStdString(m_hunspell->get_dict_encoding()).compare(QStringLiteral("UTF-8"), Qt::CaseInsensitive) == 0;
    m_wordChars = Decode(m_hunspell->get_wordchars_cpp());
    // Apostrophes join "don't" and "it's" whatever the dictionary lists.
    m_wordChars += QStringLiteral("'\u2019");
    LoadPersonalList();
}

SpellEngine::~SpellEngine() = default;

// Each dictionary is read once and kept for the run: reading the Swedish
// one takes longer than checking a page.
SpellEngine *SpellEngine::ForLanguage(const QString &tag)
{
    // Which dictionary a tag comes to is decided once: the candidates are
    // looked for in the dictionary folders.
    static QHash<QString, SpellEngine *> chosen;
    const QString choice = tag + QLatin1Char('|') + ProgramLanguageTag();
    if (SpellEngine *engine = chosen.value(choice))
        return engine;
    QHash<QString, SpellEngine *> &loaded = Loaded();
    QStringList names = Candidates(tag);
    names << Candidates(ProgramLanguageTag()) << QStringLiteral("en_US");
    for (const QString &name : std::as_const(names)) {
        SpellEngine *engine = loaded.value(name);
        if (!engine) {
            std::unique_ptr<SpellEngine> read = Load(name);
            if (!read)
                continue;
            engine = read.release();
            loaded.insert(name, engine);
        }
        chosen.insert(choice, engine);
        return engine;
    }
    MError::SetError(53,
                     QStringLiteral("No spelling dictionary for \"%1\" on this machine. Install the package "
                                    "hunspell-en-us or hunspell-sv (or another hunspell-* package).")
                         .arg(tag.isEmpty() ? ProgramLanguageTag() : tag),
                     QStringLiteral("SpellEngine.ForLanguage"));
    return nullptr;
}

std::unique_ptr<SpellEngine> SpellEngine::Load(const QString &name)
{
    const QString path = FindDictionary(name);
    if (path.isEmpty())
        return nullptr;
    return std::unique_ptr<SpellEngine>(new SpellEngine(name, path + QStringLiteral(".aff"), path + QStringLiteral(".dic")));
}

bool SpellEngine::IsWordChar(QChar c) const
{
    return c.isLetterOrNumber() || c.isMark() || m_wordChars.contains(c);
}

// A word is a run of letters and word characters; what is not a letter or
// a digit at its ends (a quote, a dash, a full stop) belongs to the
// sentence, except the point of an abbreviation the dictionary knows
// ("t.ex.").
QList<SpellEngine::Word> SpellEngine::Words(const QString &text) const
{
    QList<Word> words;
    qsizetype i = 0;
    while (i < text.size()) {
        if (!IsWordChar(text.at(i))) {
            ++i;
            continue;
        }
        qsizetype end = i;
        while (end < text.size() && IsWordChar(text.at(end)))
            ++end;
        qsizetype first = i, last = end;
        while (first < last && !text.at(first).isLetterOrNumber())
            ++first;
        while (last > first && !text.at(last - 1).isLetterOrNumber() && !text.at(last - 1).isMark())
            --last;
        QString word = text.mid(first, last - first);
        if (last < end && text.at(last) == QLatin1Char('.') && !Check(word) && Check(word + QLatin1Char('.')))
            word += QLatin1Char('.');
        bool letters = false;
        for (QChar c : std::as_const(word))
            letters = letters || c.isLetter();
        if (letters)
            words.append({first, word});
        i = end;
    }
    return words;
}

std::string SpellEngine::Encode(const QString &word) const
{
    if (m_utf8)
        return word.toStdString();
    QStringEncoder encoder(m_hunspell->get_dict_encoding().c_str());
    return encoder.isValid() ? QByteArray(encoder.encode(word)).toStdString() : word.toLatin1().toStdString();
}

QString SpellEngine::Decode(const std::string &word) const
{
    if (m_utf8)
        return QString::fromStdString(word);
    QStringDecoder decoder(m_hunspell->get_dict_encoding().c_str());
    return decoder.isValid() ? QString(decoder.decode(QByteArray::fromStdString(word))) : QString::fromLatin1(word);
}

bool SpellEngine::Check(const QString &word) const
{
    // The typographic apostrophe is the same letter to the reader.
    QString plain = word;
    plain.replace(QChar(0x2019), QLatin1Char('\''));
    return m_hunspell->spell(Encode(word)) || (plain != word && m_hunspell->spell(Encode(plain)));
}

QStringList SpellEngine::Suggest(const QString &word) const
{
    QStringList suggestions;
    for (const std::string &suggestion : m_hunspell->suggest(Encode(word)))
        suggestions << Decode(suggestion);
    return suggestions;
}

QString SpellEngine::PersonalListPath()
{
    return LocalFolders::dataFolder() + QStringLiteral("/personal-words.txt");
}

// One word a line, in UTF-8, shared by every language as the user's own
// words (names, places, trade words) are.
void SpellEngine::LoadPersonalList()
{
    QFile list(PersonalListPath());
    if (!list.open(QIODevice::ReadOnly))
        return;
    for (const QByteArray &line : list.readAll().split('\n'))
        if (!line.trimmed().isEmpty())
            m_hunspell->add(Encode(QString::fromUtf8(line.trimmed())));
}

void SpellEngine::AddToPersonalList(const QString &word)
{
    for (SpellEngine *engine : std::as_const(Loaded()))
        engine->m_hunspell->add(engine->Encode(word));
    QFile list(PersonalListPath());
    if (!list.open(QIODevice::Append))
        return;
    list.write(word.toUtf8() + '\n');
}
