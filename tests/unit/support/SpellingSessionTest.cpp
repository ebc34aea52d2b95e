// The spell check's walk through a text against the machine's real
// Hunspell dictionaries (hunspell-en-us, hunspell-sv), and the way its
// edits go back into the text nodes of a page's selection.

#include "document/SelectionPieces.h"
#include "platform/SpellEngine.h"
#include "support/MResources.h"
#include "support/SpellingSession.h"

#include <QFile>

#include <gtest/gtest.h>

namespace {

QStringList WordsOf(SpellEngine &engine, const QString &text)
{
    QStringList words;
    for (const SpellEngine::Word &word : engine.Words(text))
        words << word.text;
    return words;
}

QStringList Stops(SpellingSession &session)
{
    QStringList stops;
    while (session.Next())
        stops << session.Word();
    return stops;
}

} // namespace

TEST(SpellingSessionTest, WordsAreCutAsEachDictionaryCountsLetters)
{
    SpellEngine *english = SpellEngine::ForLanguage(QStringLiteral("en-GB"));
    ASSERT_NE(english, nullptr);
    EXPECT_EQ(english->Name(), QStringLiteral("en_US")); // no British one here: the usual country
    EXPECT_EQ(WordsOf(*english, QStringLiteral("\"Don't\" they're—it's 42 cats, (dogs)... rock’n’roll 3D")),
              QStringList({"Don't", "they're", "it's", "cats", "dogs", "rock’n’roll", "3D"}));
    EXPECT_TRUE(english->Check(QStringLiteral("it’s")));

    SpellEngine *swedish = SpellEngine::ForLanguage(QStringLiteral("sv"));
    ASSERT_NE(swedish, nullptr);
    EXPECT_EQ(swedish->Name(), QStringLiteral("sv_SE"));
    // The hyphen and the abbreviation point are Swedish letters; a dash and a
    // full stop at a sentence's end are not.
    EXPECT_EQ(WordsOf(*swedish, QStringLiteral("Skicka e-post, t.ex. till kön - sedan slut.")),
              QStringList({"Skicka", "e-post", "t.ex.", "till", "kön", "sedan", "slut"}));
    EXPECT_TRUE(swedish->Check(QStringLiteral("kön")));
    EXPECT_FALSE(swedish->Check(QStringLiteral("kökk")));

    // No tag: the program's language.
    MResources::SetCurrentLanguage(1053);
    EXPECT_EQ(SpellEngine::ForLanguage(QString())->Name(), QStringLiteral("sv_SE"));
    MResources::SetCurrentLanguage(1033);
    EXPECT_EQ(SpellEngine::ForLanguage(QStringLiteral("xx-YY"))->Name(), QStringLiteral("en_US"));
}

TEST(SpellingSessionTest, EachAnswerDecidesTheNextStopAndTheEdits)
{
    SpellEngine &english = *SpellEngine::ForLanguage(QStringLiteral("en_US"));
    const QString text = QStringLiteral("Teh cat saw teh dog. Wrold peace, wrold\nwide. Kelvindra came.");

    SpellingSession untouched(english, text);
    EXPECT_EQ(Stops(untouched), QStringList({"Teh", "teh", "Wrold", "wrold", "Kelvindra"}));
    EXPECT_TRUE(untouched.Edits().isEmpty());
    EXPECT_EQ(untouched.Text(), text);

    SpellingSession session(english, text);
    ASSERT_TRUE(session.Next());
    EXPECT_TRUE(session.Suggestions().contains(QStringLiteral("The")));
    session.Change(QStringLiteral("The"));
    ASSERT_TRUE(session.Next());
    EXPECT_EQ(session.Word(), QStringLiteral("teh"));
    session.Ignore();
    ASSERT_TRUE(session.Next());
    qsizetype at = -1;
    EXPECT_EQ(session.Sentence(at), QStringLiteral("Wrold peace, wrold"));
    EXPECT_EQ(at, 0);
    session.ChangeAll(QStringLiteral("World"));
    // The second "wrold" is changed without a stop, in its own case; the
    // name is the next.
    ASSERT_TRUE(session.Next());
    EXPECT_EQ(session.Word(), QStringLiteral("Kelvindra"));
    EXPECT_EQ(session.Sentence(at), QStringLiteral("Kelvindra came."));
    session.IgnoreAll();
    EXPECT_FALSE(session.Next());
    EXPECT_EQ(session.Text(), QStringLiteral("The cat saw teh dog. World peace, world\nwide. Kelvindra came."));
    ASSERT_EQ(session.Edits().size(), 3);
    EXPECT_EQ(session.Edits().at(1).start, text.indexOf(QStringLiteral("Wrold")));
}

TEST(SpellingSessionTest, AWordAddedToTheDictionaryIsKnownToTheNextStart)
{
    QFile::remove(SpellEngine::PersonalListPath());
    SpellEngine &swedish = *SpellEngine::ForLanguage(QStringLiteral("sv_SE"));
    SpellingSession session(swedish, QStringLiteral("Hej Kelvindrasson och Kelvindrasson."));
    ASSERT_TRUE(session.Next());
    session.AddToDictionary();
    EXPECT_FALSE(session.Next()); // the second one is known now
    EXPECT_TRUE(SpellEngine::ForLanguage(QStringLiteral("en_US"))->Check(QStringLiteral("Kelvindrasson")));

    // A later start reads the dictionary afresh, with the user's list.
    std::unique_ptr<SpellEngine> fresh = SpellEngine::Load(QStringLiteral("sv_SE"));
    ASSERT_NE(fresh, nullptr);
    EXPECT_TRUE(fresh->Check(QStringLiteral("Kelvindrasson")));
    QFile list(SpellEngine::PersonalListPath());
    ASSERT_TRUE(list.open(QIODevice::ReadOnly));
    EXPECT_EQ(list.readAll(), QByteArray("Kelvindrasson\n"));
}

TEST(SelectionPiecesTest, EditsGoBackIntoTheTextNodesTheyCameFrom)
{
    // "Teh <b>wr</b>old and teh<br>endd": a word across a bold tag, a line.
    const SelectionPieces pieces({{QStringLiteral("Teh "), false},
                                  {QStringLiteral("wr"), false},
                                  {QStringLiteral("old and teh"), false},
                                  {QStringLiteral("endd"), true}});
    EXPECT_EQ(pieces.Text(), QStringLiteral("Teh wrold and teh\nendd"));
    SpellingSession session(*SpellEngine::ForLanguage(QStringLiteral("en")), pieces.Text());
    QStringList answers = {"The", "world", "the", "end"};
    while (session.Next())
        session.Change(answers.takeFirst());
    EXPECT_TRUE(answers.isEmpty());
    EXPECT_EQ(pieces.Apply(session.Edits()), QStringList({"The ", "world", " and the", "end"}));
}
