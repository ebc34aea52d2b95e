#pragma once

#include <QtGlobal>

#include <vector>

// Lines up two sequences of token keys: as many equal keys as it can find,
// in the same order on both sides. Made for long sequences that are mostly
// equal, such as the tokens of a page's source against the engine's
// serialisation of it. Common ends are matched first; keys found exactly
// once on each side anchor the middle; the gaps between anchors get an exact
// diff, or, when a gap is too large for that, one piece at a time. Work and
// memory are bounded by the length of the input, so unrelated or degenerate
// sequences give a valid but possibly shorter matching rather than a long
// wait.
class TokenDiff
{
public:
    // For each index i of a: the index in b that a[i] is matched to, or -1.
    // Matched pairs have equal keys and strictly increasing indices on both sides.
    static std::vector<int> Match(const std::vector<quint64> &a, const std::vector<quint64> &b);
};
