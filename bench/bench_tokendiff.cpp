// Lining up 150,000 tokens against 150,000: page-like keys with about 3,000
// scattered single-token differences, the same with a more repetitive page,
// and three hostile pairs (nothing in common; one key repeated against a
// pattern; two unrelated sequences over four keys). Prints the best time of
// several runs, how many tokens were matched, and the peak memory.

#include "document/TokenDiff.h"

#include <QElapsedTimer>

#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <random>

namespace {

using Keys = std::vector<quint64>;

// A few tags everywhere, attributes from a middle vocabulary, text that is
// unique one time in uniqueShare.
Keys pageLike(std::mt19937_64 &random, size_t count, int uniqueShare)
{
    Keys keys(count);
    for (quint64 &key : keys) {
        const int kind = int(random() % 10);
        key = kind < 10 - uniqueShare ? (kind < 4 ? 1000 + random() % 30 : 2000 + random() % 500) : random();
    }
    return keys;
}

Keys withEdits(std::mt19937_64 &random, Keys keys, int edits)
{
    for (int e = 0; e < edits; ++e) {
        const size_t at = random() % keys.size();
        switch (e % 3) {
        case 0: keys.insert(keys.begin() + qsizetype(at), 1000 + random() % 30); break;
        case 1: keys.erase(keys.begin() + qsizetype(at)); break;
        default: keys[at] = random(); break;
        }
    }
    return keys;
}

void figure(const char *name, const Keys &a, const Keys &b)
{
    double best = 1e9;
    qsizetype matched = 0;
    for (int run = 0; run < 5; ++run) {
        QElapsedTimer timer;
        timer.start();
        const std::vector<int> match = TokenDiff::Match(a, b);
        best = std::min(best, double(timer.nsecsElapsed()) / 1e6);
        matched = std::count_if(match.begin(), match.end(), [](int j) { return j >= 0; });
    }
    std::printf("%s_ms %.2f ms\n", name, best);
    std::printf("%s_matched %lld tokens\n", name, static_cast<long long>(matched));
}

} // namespace

int main()
{
    std::mt19937_64 random(1);
    const size_t size = 150000;

    const Keys page = pageLike(random, size, 4);
    figure("match_150k", page, withEdits(random, page, 3000));
    const Keys repetitive = pageLike(random, size, 1);
    figure("match_150k_repetitive", repetitive, withEdits(random, repetitive, 3000));

    Keys other(size);
    Keys distinct(size);
    for (quint64 &key : distinct) {
        key = random();
    }
    for (quint64 &key : other) {
        key = random();
    }
    figure("hostile_disjoint", distinct, other);

    const Keys repeated(size, 42);
    Keys pattern(size);
    for (size_t j = 0; j < size; ++j) {
        pattern[j] = j % 3 == 1 ? 42 : 7 + j % 2;
    }
    figure("hostile_repeated_key", repeated, pattern);

    Keys fourA(size);
    Keys fourB(size);
    for (size_t i = 0; i < size; ++i) {
        fourA[i] = random() % 4;
        fourB[i] = random() % 4;
    }
    figure("hostile_four_keys", fourA, fourB);

    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("peak_memory %.1f MB\n", double(usage.ru_maxrss) / 1024.0);
    return 0;
}
