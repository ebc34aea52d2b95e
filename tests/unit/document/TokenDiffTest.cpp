// Lining up two sequences of token keys: always a common subsequence, the
// longest one where no key pins the middle, everything kept around a block
// edit, and bounded answers on hostile input.

#include "document/TokenDiff.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

using Keys = std::vector<quint64>;

// Empty when match is a common subsequence of a and b, else what is wrong.
std::string checkMatching(const Keys &a, const Keys &b, const std::vector<int> &match)
{
    if (match.size() != a.size()) {
        return "one entry per token of a expected";
    }
    int last = -1;
    for (size_t i = 0; i < a.size(); ++i) {
        const int j = match[i];
        if (j == -1) {
            continue;
        }
        if (j <= last || j >= int(b.size())) {
            return "index " + std::to_string(j) + " out of order at " + std::to_string(i);
        }
        if (a[i] != b[size_t(j)]) {
            return "unequal keys at " + std::to_string(i) + " and " + std::to_string(j);
        }
        last = j;
    }
    return {};
}

qsizetype matched(const std::vector<int> &match)
{
    return std::count_if(match.begin(), match.end(), [](int j) { return j >= 0; });
}

qsizetype lcsLength(const Keys &a, const Keys &b)
{
    std::vector<qsizetype> row(b.size() + 1, 0);
    for (const quint64 key : a) {
        qsizetype diagonal = 0;
        for (size_t j = 1; j <= b.size(); ++j) {
            const qsizetype above = row[j];
            row[j] = key == b[j - 1] ? diagonal + 1 : std::max(row[j], row[j - 1]);
            diagonal = above;
        }
    }
    return row.back();
}

Keys randomKeys(std::mt19937_64 &random, size_t count, quint64 alphabet)
{
    Keys keys(count);
    for (quint64 &key : keys) {
        key = alphabet ? random() % alphabet : random();
    }
    return keys;
}

// Like a page's tokens: a few tags used everywhere, attributes from a middle
// vocabulary, text mostly unique.
Keys pageLikeKeys(std::mt19937_64 &random, size_t count)
{
    Keys keys(count);
    for (quint64 &key : keys) {
        const quint64 kind = random() % 10;
        key = kind < 4 ? 1000 + random() % 30 : kind < 6 ? 2000 + random() % 500 : random();
    }
    return keys;
}

// b is a with scattered single-token insertions, deletions and replacements.
Keys scatterEdits(std::mt19937_64 &random, const Keys &a, int edits, quint64 alphabet)
{
    Keys b = a;
    for (int e = 0; e < edits && !b.empty(); ++e) {
        const size_t at = random() % b.size();
        switch (random() % 3) {
        case 0: b.insert(b.begin() + qsizetype(at), alphabet ? random() % alphabet : random()); break;
        case 1: b.erase(b.begin() + qsizetype(at)); break;
        default: b[at] = alphabet ? random() % alphabet : random(); break;
        }
    }
    return b;
}

} // namespace

TEST(TokenDiff, RandomInputsGiveCommonSubsequences)
{
    std::mt19937_64 random(11);
    const quint64 alphabets[] = {1, 2, 7, 60, 0};
    for (int round = 0; round < 300; ++round) {
        const quint64 alphabet = alphabets[round % 5];
        const Keys a = round % 3 == 0 ? pageLikeKeys(random, random() % 4000)
                                      : randomKeys(random, random() % 3000, alphabet);
        const Keys b = round % 2 ? scatterEdits(random, a, int(random() % 200), alphabet)
                                 : randomKeys(random, random() % 3000, alphabet);
        const std::vector<int> match = TokenDiff::Match(a, b);
        ASSERT_EQ(checkMatching(a, b, match), "") << "round " << round;
    }
    EXPECT_EQ(TokenDiff::Match({}, {1, 2}), std::vector<int>());
    EXPECT_EQ(TokenDiff::Match({1, 2}, {}), std::vector<int>({-1, -1}));
}

// Over two to four keys no key is found once on each side, so the whole
// range goes to the exact diff: lengths from a few tokens up to ones where
// the greedy diff runs out of work and the bit columns take over, square and
// lopsided.
TEST(TokenDiff, FindsTheLongestCommonSubsequenceWithoutAnchors)
{
    std::mt19937_64 random(23);
    const size_t sizes[][2] = {{1, 1}, {3, 5}, {20, 20}, {40, 90}, {200, 180}, {600, 650},
                               {1500, 1500}, {50, 3000}, {2500, 40}, {3000, 2900}};
    for (const auto &size : sizes) {
        for (quint64 alphabet = 2; alphabet <= 4; ++alphabet) {
            const Keys a = randomKeys(random, size[0], alphabet);
            const Keys b = randomKeys(random, size[1], alphabet);
            const std::vector<int> match = TokenDiff::Match(a, b);
            ASSERT_EQ(checkMatching(a, b, match), "");
            EXPECT_EQ(matched(match), lcsLength(a, b)) << size[0] << "x" << size[1] << " over " << alphabet;
        }
        // Mostly equal: the greedy diff finishes by itself.
        const Keys a = randomKeys(random, size[0], 3);
        const Keys b = scatterEdits(random, a, int(size[0] / 20) + 1, 3);
        EXPECT_EQ(matched(TokenDiff::Match(a, b)), lcsLength(a, b)) << size[0];
    }
}

TEST(TokenDiff, BlockEditsLeaveEverythingElseMatched)
{
    std::mt19937_64 random(5);
    // Distinct keys: the matching is forced, token for token.
    Keys a(60000);
    for (size_t i = 0; i < a.size(); ++i) {
        a[i] = i;
    }
    Keys b(a.begin(), a.begin() + 20000);
    for (quint64 k = 0; k < 700; ++k) {
        b.push_back(1000000 + k);
    }
    b.insert(b.end(), a.begin() + 20000, a.begin() + 40000);
    b.insert(b.end(), a.begin() + 41500, a.end());
    std::vector<int> match = TokenDiff::Match(a, b);
    for (int i = 0; i < 60000; ++i) {
        const int expected = i < 20000 ? i : i < 40000 ? i + 700 : i < 41500 ? -1 : i + 700 - 1500;
        ASSERT_EQ(match[size_t(i)], expected) << i;
    }

    // Page-like keys: a copy of an earlier stretch inserted in the middle,
    // another stretch deleted, a few replacements; everything outside them stays.
    a = pageLikeKeys(random, 80000);
    b.assign(a.begin(), a.begin() + 50000);
    b.insert(b.end(), a.begin() + 10000, a.begin() + 12000);
    b.insert(b.end(), a.begin() + 50000, a.begin() + 60000);
    b.insert(b.end(), a.begin() + 61000, a.end());
    for (int r = 0; r < 200; ++r) {
        b[random() % b.size()] = random();
    }
    match = TokenDiff::Match(a, b);
    ASSERT_EQ(checkMatching(a, b, match), "");
    EXPECT_GE(matched(match), 80000 - 1000 - 200);
}

// Over four keys with thousands of edits the range is too large for one exact
// answer and is lined up tile by tile. The tiles have to follow the matching
// as insertions crowded into the first quarter push it off the diagonal, and
// as a short sequence spreads out thinly through a long one.
TEST(TokenDiff, TilesFollowTheMatching)
{
    std::mt19937_64 random(31);
    const Keys a = randomKeys(random, 60000, 4);
    for (const int insertions : {1500, 4000}) {
        Keys b = a;
        for (int e = 0; e < insertions; ++e) {
            b.insert(b.begin() + qsizetype(random() % (b.size() / 4)), random() % 4);
        }
        for (int e = 0; e < 300; ++e) {
            b[random() % b.size()] = random() % 4;
        }
        const std::vector<int> match = TokenDiff::Match(a, b);
        ASSERT_EQ(checkMatching(a, b, match), "");
        EXPECT_GE(matched(match), 60000 - 300) << insertions;
    }

    const Keys shortA(a.begin(), a.begin() + 3000);
    Keys longB = randomKeys(random, 150000, 4);
    for (size_t i = 0; i < shortA.size(); ++i) {
        longB[i * 50 + random() % 50] = shortA[i];
    }
    const std::vector<int> match = TokenDiff::Match(shortA, longB);
    ASSERT_EQ(checkMatching(shortA, longB, match), "");
    EXPECT_GE(matched(match), 2990);
}

TEST(TokenDiff, HostileInputsStayValid)
{
    std::mt19937_64 random(7);
    const Keys distinctA = randomKeys(random, 150000, 0);
    const Keys distinctB = randomKeys(random, 150000, 0);
    EXPECT_EQ(matched(TokenDiff::Match(distinctA, distinctB)), 0);

    const Keys same(150000, 42);
    const Keys shorter(70000, 42);
    EXPECT_EQ(matched(TokenDiff::Match(same, shorter)), 70000);

    // One key repeated against a pattern that holds it 50,000 times, and two
    // unrelated sequences over a few keys: both far beyond an exact answer,
    // yet most of what can be matched is.
    Keys pattern(150000);
    for (size_t j = 0; j < pattern.size(); ++j) {
        pattern[j] = j % 3 == 1 ? 42 : 7 + j % 2;
    }
    const Keys fourA = randomKeys(random, 150000, 4);
    const Keys fourB = randomKeys(random, 150000, 4);
    const struct { const Keys &a, &b; qsizetype atLeast; } cases[] = {
        {same, pattern, 45000}, {pattern, same, 45000}, {fourA, fourB, 80000}};
    for (const auto &c : cases) {
        const std::vector<int> match = TokenDiff::Match(c.a, c.b);
        ASSERT_EQ(checkMatching(c.a, c.b, match), "");
        EXPECT_GE(matched(match), c.atLeast);
    }
}
