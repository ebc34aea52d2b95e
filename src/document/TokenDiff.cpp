#include "document/TokenDiff.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <memory>

namespace {

// Work is counted in one unit, roughly one turn of an inner loop: a step
// along a diagonal of the greedy diff; half a word of a bit column; a
// quarter of a token put through the hash table. A whole match may spend
// kPoolPerToken units a token of both sides; the greedy diff of one range
// gets kDiffPerToken units a token of its own before it is cut short.
constexpr qint64 kPoolPerToken = 64;
constexpr qint64 kPoolFloor = qint64(1) << 20;
constexpr qint64 kDiffPerToken = 8;
constexpr qint64 kDiffFloor = qint64(1) << 16;
constexpr qint64 kHashCost = 4;
constexpr qint64 kBitWordCost = 2;

// Ranges this small skip anchoring: the diff alone is cheap and exact.
constexpr qint64 kSmallRange = 64;

// How far ahead of the token at hand the hash table is fetched into cache.
constexpr int kLookAhead = 16;

// Cells of one tile when a range too large for the bit columns is lined up
// piece by piece.
constexpr qint64 kTileArea = qint64(1) << 20;

// Memory ceilings: the greedy diff's record of furthest points, in ints
// (8 MB), and the bit columns, in 64-bit words (32 MB).
constexpr qsizetype kMaxTrace = qsizetype(1) << 21;
constexpr qsizetype kMaxBitWords = qsizetype(1) << 22;

// Half-open index ranges [a0, a1) of a and [b0, b1) of b still to be lined up.
struct Range
{
    int a0, a1, b0, b1;
};

constexpr int kFree = -1;
constexpr int kTwice = -2;

// A key and two numbers whose meaning is up to the user of the table; the
// slot is free while first is kFree, and its user sets first on taking it.
struct Slot
{
    quint64 key = 0;
    int first = kFree;
    int second = -1;
};

// Open addressing over token keys, sized afresh for each range.
class KeyTable
{
public:
    void reset(qint64 keys)
    {
        const quint64 size = std::bit_ceil(quint64(std::max<qint64>(16, keys + keys / 2)));
        m_slots.assign(size, Slot{});
        m_mask = size - 1;
        m_shift = 64 - std::countr_zero(size);
    }

    // The slot of key, taken for it when it is new.
    int insert(quint64 key)
    {
        quint64 at = home(key);
        while (m_slots[at].first != kFree && m_slots[at].key != key) {
            at = (at + 1) & m_mask;
        }
        m_slots[at].key = key;
        return int(at);
    }

    void prefetch(quint64 key) const { __builtin_prefetch(&m_slots[home(key)]); }

    int find(quint64 key) const
    {
        quint64 at = home(key);
        while (m_slots[at].first != kFree) {
            if (m_slots[at].key == key) {
                return int(at);
            }
            at = (at + 1) & m_mask;
        }
        return -1;
    }

    Slot &operator[](int at) { return m_slots[size_t(at)]; }
    qsizetype size() const { return qsizetype(m_slots.size()); }

private:
    quint64 home(quint64 key) const { return (key * 0x9E3779B97F4A7C15ULL) >> m_shift; }

    std::vector<Slot> m_slots;
    quint64 m_mask = 0;
    int m_shift = 60;
};

class Matcher
{
public:
    Matcher(const std::vector<quint64> &a, const std::vector<quint64> &b, std::vector<int> &out)
        : m_a(a.data()), m_b(b.data()), m_out(out),
          m_pool(kPoolPerToken * (qint64(a.size()) + qint64(b.size())) + kPoolFloor)
    {
        push(0, int(a.size()), 0, int(b.size()));
    }

    void run()
    {
        // Breadth first: should the work run out, what stays unmatched is
        // the finest detail everywhere rather than the whole end of the page.
        for (size_t next = 0; next < m_queue.size(); ++next) {
            process(m_queue[next]);
        }
    }

private:
    enum class Anchoring { Anchored, Disjoint, NoAnchors };

    void push(int a0, int a1, int b0, int b1)
    {
        if (a0 < a1 && b0 < b1) {
            m_queue.push_back({a0, a1, b0, b1});
        }
    }

    void process(Range r)
    {
        while (r.a0 < r.a1 && r.b0 < r.b1 && m_a[r.a0] == m_b[r.b0]) {
            m_out[size_t(r.a0++)] = r.b0++;
        }
        while (r.a0 < r.a1 && r.b0 < r.b1 && m_a[r.a1 - 1] == m_b[r.b1 - 1]) {
            m_out[size_t(--r.a1)] = --r.b1;
        }
        if (r.a0 == r.a1 || r.b0 == r.b1 || m_pool <= 0) {
            return;
        }
        if (qint64(r.a1 - r.a0) + (r.b1 - r.b0) > kSmallRange && anchor(r) != Anchoring::NoAnchors) {
            return;
        }
        diff(r);
    }

    // Keys that occur exactly once in each side of the range pair up; the
    // longest run of those pairs in order on both sides becomes fixed, and
    // the gaps between them are queued. Equal neighbours of an anchor join
    // it when its gaps have their ends trimmed.
    Anchoring anchor(const Range &r)
    {
        const int n = r.a1 - r.a0;
        const int m = r.b1 - r.b0;
        m_pool -= kHashCost * (qint64(n) + m);
        m_table.reset(n);
        const quint64 *a = m_a + r.a0;
        const quint64 *b = m_b + r.b0;
        for (int i = 0; i < n; ++i) {
            if (i + kLookAhead < n) {
                m_table.prefetch(a[i + kLookAhead]);
            }
            Slot &slot = m_table[m_table.insert(a[i])];
            slot.first = slot.first == kFree ? r.a0 + i : kTwice;
        }
        bool shared = false;
        for (int j = 0; j < m; ++j) {
            if (j + kLookAhead < m) {
                m_table.prefetch(b[j + kLookAhead]);
            }
            const int at = m_table.find(b[j]);
            if (at >= 0) {
                shared = true;
                Slot &slot = m_table[at];
                slot.second = slot.second == -1 ? r.b0 + j : kTwice;
            }
        }
        if (!shared) {
            return Anchoring::Disjoint;
        }

        // Pairs in the order of a, sorted by placing them at their index
        // in a; the longest run increasing in b, by patience sorting with
        // links back to each pile's predecessor.
        m_byA.assign(size_t(n), -1);
        for (int at = 0; at < m_table.size(); ++at) {
            const Slot &slot = m_table[at];
            if (slot.first >= 0 && slot.second >= 0) {
                m_byA[size_t(slot.first - r.a0)] = slot.second;
            }
        }
        m_pairs.clear();
        for (int i = 0; i < n; ++i) {
            if (m_byA[size_t(i)] >= 0) {
                m_pairs.push_back({r.a0 + i, m_byA[size_t(i)]});
            }
        }
        if (m_pairs.empty()) {
            return Anchoring::NoAnchors;
        }
        m_tails.clear();
        m_links.resize(m_pairs.size());
        for (int p = 0; p < int(m_pairs.size()); ++p) {
            const int j = m_pairs[size_t(p)].second;
            qsizetype pile = qsizetype(m_tails.size());
            if (!m_tails.empty() && j < m_pairs[size_t(m_tails.back())].second) {
                pile = std::lower_bound(m_tails.begin(), m_tails.end(), j,
                                        [this](int t, int value) { return m_pairs[size_t(t)].second < value; })
                       - m_tails.begin();
            }
            m_links[size_t(p)] = pile > 0 ? m_tails[size_t(pile - 1)] : -1;
            if (pile == qsizetype(m_tails.size())) {
                m_tails.push_back(p);
            } else {
                m_tails[size_t(pile)] = p;
            }
        }
        m_pool -= qint64(m_pairs.size()) * (qint64(std::bit_width(m_tails.size())) + 1);

        // Walk the links back from the end, queueing each gap behind an anchor.
        int a1 = r.a1;
        int b1 = r.b1;
        for (int p = m_tails.back(); p >= 0; p = m_links[size_t(p)]) {
            const auto [i, j] = m_pairs[size_t(p)];
            m_out[size_t(i)] = j;
            push(i + 1, a1, j + 1, b1);
            a1 = i;
            b1 = j;
        }
        push(r.a0, a1, r.b0, b1);
        return Anchoring::Anchored;
    }

    // The exact diff of a range, or the best it can do within its share.
    void diff(const Range &r)
    {
        const qint64 n = r.a1 - r.a0;
        const qint64 m = r.b1 - r.b0;
        const qint64 allowance = std::min(m_pool, kDiffPerToken * (n + m) + kDiffFloor);
        // The greedy diff needs at least |n - m| steps of growing width; a
        // range that lopsided goes to the bit columns first.
        const qint64 skew = std::abs(n - m);
        const bool lopsided = skew * skew / 4 > allowance;
        if (!lopsided && myers(r, allowance)) {
            return;
        }
        if (lcsColumns(r)) {
            keepFound(r.a1, r.b1);
            return;
        }
        Range rest = r;
        if (!lopsided) {
            // Keep what the greedy diff had lined up before it stopped.
            const int k = m_partialDiagonal;
            const int x = traceBack(r, m_partialStep, k);
            rest.a0 += x;
            rest.b0 += x - k;
        }
        walkTiles(rest);
    }

    // Where the path of diagonal k (x - y == k) starts at a step: one token of
    // b past the furthest point of diagonal k + 1 (above), or one token of a
    // past that of k - 1 (left), whichever gets further without leaving the
    // range; -1 when neither can.
    static int stepInto(int above, int left, int k, int n, int m)
    {
        const int down = above - k <= m ? above : -1;
        const int right = unsigned(left) < unsigned(n) ? left + 1 : -1;
        return std::max(down, right);
    }

    // The furthest point reached on diagonal k at step d, or -1.
    int furthest(int d, int k) const
    {
        const int lo = m_stepLo[size_t(d)];
        const qsizetype begin = m_stepBegin[size_t(d)];
        const qsizetype end = size_t(d) + 1 < m_stepBegin.size() ? m_stepBegin[size_t(d) + 1] : m_traceSize;
        if (k < lo || k > lo + 2 * (end - begin - 1)) {
            return -1;
        }
        return m_trace[size_t(begin + (k - lo) / 2)];
    }

    // Greedy shortest edit script: at step d, for every diagonal k the
    // furthest point reachable with d insertions and deletions, recorded
    // step by step for the walk back. Stops at the far corner, or false once
    // the work passes cap or the record is full, with the best point of the
    // last whole step kept in m_partialStep and m_partialDiagonal.
    bool myers(const Range &r, qint64 cap)
    {
        const quint64 *a = m_a + r.a0;
        const quint64 *b = m_b + r.b0;
        const int n = r.a1 - r.a0;
        const int m = r.b1 - r.b0;
        m_v.assign(size_t(n) + size_t(m) + 3, -1);
        int *v = m_v.data() + m + 1; // v[k] for k in [-m - 1, n + 1]
        if (!m_trace) {
            m_trace.reset(new int[size_t(kMaxTrace)]);
        }
        m_traceSize = 0;
        m_stepBegin.clear();
        m_stepLo.clear();
        qint64 work = 0;
        for (int d = 0;; ++d) {
            int lo = std::max(-d, -m);
            lo += (lo + d) & 1;
            int hi = std::min(d, n);
            hi -= (hi + d) & 1;
            const qsizetype count = (hi - lo) / 2 + 1;
            if (m_traceSize + count > kMaxTrace) {
                m_pool -= work;
                notePartial(d - 1);
                return false;
            }
            int *record = m_trace.get() + m_traceSize;
            m_stepBegin.push_back(m_traceSize);
            m_stepLo.push_back(lo);
            m_traceSize += count;
            for (int k = lo; k <= hi; k += 2) {
                int x = d == 0 ? 0 : stepInto(v[k + 1], v[k - 1], k, n, m);
                if (x >= 0) {
                    int y = x - k;
                    const int start = x;
                    while (x < n && y < m && a[x] == b[y]) {
                        ++x;
                        ++y;
                    }
                    work += x - start;
                    if (x == n && y == m) {
                        *record = x;
                        m_traceSize = record + 1 - m_trace.get();
                        m_pool -= work + (k - lo) / 2 + 1;
                        traceBack(r, d, k);
                        return true;
                    }
                }
                v[k] = x;
                *record++ = x;
                if (work > cap && d >= 2) {
                    // Drop the unfinished step; the one before is whole.
                    m_traceSize = m_stepBegin.back();
                    m_stepBegin.pop_back();
                    m_stepLo.pop_back();
                    m_pool -= work;
                    notePartial(d - 1);
                    return false;
                }
            }
            work += count;
            if (d >= 1 && work > cap) {
                m_pool -= work;
                notePartial(d);
                return false;
            }
        }
    }

    // The point of step d that is furthest along both sequences.
    void notePartial(int d)
    {
        const int lo = m_stepLo[size_t(d)];
        int best = lo;
        int bestSum = -1;
        for (qsizetype at = m_stepBegin[size_t(d)]; at < m_traceSize; ++at) {
            const int k = lo + 2 * int(at - m_stepBegin[size_t(d)]);
            const int x = m_trace[size_t(at)];
            if (x >= 0 && 2 * x - k > bestSum) {
                bestSum = 2 * x - k;
                best = k;
            }
        }
        m_partialStep = d;
        m_partialDiagonal = best;
    }

    // Matches the path that ends at the furthest point of diagonal k at
    // step d, and returns that point's x.
    int traceBack(const Range &r, int d, int k)
    {
        const int n = r.a1 - r.a0;
        const int m = r.b1 - r.b0;
        const int end = furthest(d, k);
        int x = end;
        for (; d > 0; --d) {
            const int above = furthest(d - 1, k + 1);
            const int left = furthest(d - 1, k - 1);
            const int start = stepInto(above, left, k, n, m);
            for (int t = start; t < x; ++t) {
                m_out[size_t(r.a0 + t)] = r.b0 + t - k;
            }
            // The same choice as on the way out: from above unless the left
            // neighbour got strictly further.
            const bool fromAbove = start == (above - k <= m ? above : -1);
            k += fromAbove ? 1 : -1;
            x = fromAbove ? above : left;
        }
        for (int t = 0; t < x; ++t) {
            m_out[size_t(r.a0 + t)] = r.b0 + t;
        }
        return end;
    }

    // A range too large for one set of bit columns, lined up a tile at a
    // time along its length. Each tile is about kTileArea cells, shaped like
    // what remains; only the first three quarters of its matching are kept,
    // and the next tile starts behind the last match kept, so the tiles
    // follow the line the matching takes. A tile with little in common
    // moves on by the whole three quarters instead.
    void walkTiles(Range r)
    {
        while (m_pool > 0) {
            while (r.a0 < r.a1 && r.b0 < r.b1 && m_a[r.a0] == m_b[r.b0]) {
                m_out[size_t(r.a0++)] = r.b0++;
            }
            const qint64 n = r.a1 - r.a0;
            const qint64 m = r.b1 - r.b0;
            if (n == 0 || m == 0) {
                return;
            }
            const qint64 tileA = std::clamp<qint64>(qint64(std::sqrt(double(kTileArea) * double(n) / double(m))), 1, n);
            const qint64 tileB = std::clamp<qint64>(kTileArea / tileA, 1, m);
            const Range tile{r.a0, r.a0 + int(tileA), r.b0, r.b0 + int(tileB)};
            if (!lcsColumns(tile)) {
                return;
            }
            if (tileA == n || tileB == m) {
                keepFound(tile.a1, tile.b1);
                return;
            }
            const int limitA = r.a0 + int(std::max<qint64>(1, tileA * 3 / 4));
            const int limitB = r.b0 + int(std::max<qint64>(1, tileB * 3 / 4));
            if (keepFound(limitA, limitB) * 8 >= std::min(tileA, tileB)) {
                r.a0 = m_lastKept.first + 1;
                r.b0 = m_lastKept.second + 1;
            } else {
                r.a0 = limitA;
                r.b0 = limitB;
            }
        }
    }

    // Matches what the bit columns found below limitA and limitB, and
    // returns how many that is.
    qint64 keepFound(int limitA, int limitB)
    {
        qint64 kept = 0;
        for (const std::pair<int, int> &found : m_found) {
            if (found.first >= limitA || found.second >= limitB) {
                break;
            }
            m_out[size_t(found.first)] = found.second;
            m_lastKept = found;
            ++kept;
        }
        return kept;
    }

    // Bit-parallel longest common subsequence, kept whole for the walk back,
    // which leaves the matching in m_found, first to last. Exact; its cost
    // grows with the area of the range rather than with the differences, so
    // it takes ranges the greedy diff finds too costly, as long as the area
    // fits. The walk back goes from the front, matching equal tokens as soon
    // as it meets them, so a tile's matching starts as early as it can; for
    // that the columns are built from the back: column j stands for the
    // j-th token of a from the end, and its bit i for the i-th token of b
    // from the end.
    bool lcsColumns(const Range &r)
    {
        const quint64 *a = m_a + r.a1 - 1; // a[-j]: the j-th token from the end
        const quint64 *b = m_b + r.b1 - 1;
        const int n = r.a1 - r.a0;
        const int m = r.b1 - r.b0;
        const qsizetype words = (m + 63) / 64;
        const qsizetype area = qsizetype(n) * words;
        const qint64 cost = kBitWordCost * area + kHashCost * (qint64(n) + m);
        if (area > kMaxBitWords || cost > m_pool) {
            return false;
        }
        m_pool -= cost;

        // Each key's places in b: a chain from first through m_chain, and
        // their count in second. Keys with more places than a column has
        // words get a mask of their own instead (at most 64 of them), and
        // second becomes -1 - its number.
        m_table.reset(m);
        m_chain.resize(size_t(m));
        for (int i = m - 1; i >= 0; --i) {
            Slot &slot = m_table[m_table.insert(b[-i])];
            const bool fresh = slot.first == kFree;
            m_chain[size_t(i)] = fresh ? -1 : slot.first;
            slot.second = fresh ? 1 : slot.second + 1;
            slot.first = i;
        }
        m_masks.clear();
        for (int at = 0; at < m_table.size(); ++at) {
            Slot &slot = m_table[at];
            if (slot.first != kFree && slot.second > words) {
                const qsizetype number = qsizetype(m_masks.size()) / words;
                slot.second = -1 - int(number);
                m_masks.resize(m_masks.size() + size_t(words), 0);
                quint64 *mask = m_masks.data() + number * words;
                for (int i = slot.first; i >= 0; i = m_chain[size_t(i)]) {
                    mask[i >> 6] |= quint64(1) << (i & 63);
                }
            }
        }

        // A set bit i in column j means the common length of the last j
        // tokens of a and the last i + 1 tokens of b is no longer than with
        // the last i tokens of b.
        m_columns.resize(size_t(area));
        m_ones.assign(size_t(words), ~quint64(0));
        m_u.assign(size_t(words), 0);
        const quint64 *previous = m_ones.data();
        for (int j = 0; j < n; ++j) {
            quint64 *column = m_columns.data() + size_t(j) * size_t(words);
            const int at = m_table.find(a[-j]);
            if (at < 0) {
                std::copy(previous, previous + words, column);
            } else {
                const Slot &slot = m_table[at];
                const quint64 *mask = slot.second < 0 ? m_masks.data() + qsizetype(-1 - slot.second) * words : nullptr;
                if (!mask) {
                    for (int i = slot.first; i >= 0; i = m_chain[size_t(i)]) {
                        m_u[size_t(i >> 6)] |= previous[i >> 6] & (quint64(1) << (i & 63));
                    }
                }
                quint64 carry = 0;
                for (qsizetype w = 0; w < words; ++w) {
                    const quint64 v = previous[w];
                    quint64 u;
                    if (mask) {
                        u = v & mask[w];
                    } else {
                        u = m_u[size_t(w)];
                        m_u[size_t(w)] = 0;
                    }
                    quint64 sum = v + u;
                    quint64 out = sum < v;
                    sum += carry;
                    out |= sum < carry;
                    carry = out;
                    column[w] = sum | (v & ~u);
                }
            }
            previous = column;
        }

        // The walk back keeps the common length at its place (here) and one
        // column further along a (across). Where a pair is unequal and either
        // side could be passed over, it passes over the side that is behind
        // in proportion, so a tile's matching runs close to its diagonal.
        const auto column = [&](int j) { return j == 0 ? m_ones.data() : m_columns.data() + size_t(j - 1) * size_t(words); };
        const auto bit = [](const quint64 *c, int i) { return int((c[i >> 6] >> (i & 63)) & 1); };
        m_found.clear();
        int i = m;
        int j = n;
        int here = zerosBelow(column(j), i);
        int across = zerosBelow(column(j - 1), i);
        while (i > 0 && j > 0) {
            const bool equal = a[1 - j] == b[1 - i];
            const bool passB = !equal && bit(column(j), i - 1);
            const bool passA = !equal && across == here;
            if (equal || (passA && (!passB || qint64(n - j) * m < qint64(m - i) * n))) {
                if (equal) {
                    m_found.push_back({r.a1 - j, r.b1 - i});
                    --i;
                    --here;
                } else {
                    here = across;
                }
                --j;
                across = j > 0 ? zerosBelow(column(j - 1), i) : 0;
            } else {
                here -= 1 - bit(column(j), i - 1);
                across -= 1 - bit(column(j - 1), i - 1);
                --i;
            }
        }
        return true;
    }

    // How many of the first i bits of a column are clear.
    static int zerosBelow(const quint64 *column, int i)
    {
        int ones = 0;
        for (int w = 0; w < i >> 6; ++w) {
            ones += std::popcount(column[w]);
        }
        if (i & 63) {
            ones += std::popcount(column[i >> 6] & ((quint64(1) << (i & 63)) - 1));
        }
        return i - ones;
    }

    const quint64 *m_a;
    const quint64 *m_b;
    std::vector<int> &m_out;
    qint64 m_pool;
    std::vector<Range> m_queue;

    KeyTable m_table;
    std::vector<int> m_byA;
    std::vector<std::pair<int, int>> m_pairs;
    std::vector<int> m_tails;
    std::vector<int> m_links;

    std::vector<int> m_v;
    std::unique_ptr<int[]> m_trace;
    qsizetype m_traceSize = 0;
    std::vector<qsizetype> m_stepBegin;
    std::vector<int> m_stepLo;
    int m_partialStep = 0;
    int m_partialDiagonal = 0;

    std::vector<std::pair<int, int>> m_found;
    std::pair<int, int> m_lastKept;

    std::vector<int> m_chain;
    std::vector<quint64> m_masks;
    std::vector<quint64> m_columns;
    std::vector<quint64> m_ones;
    std::vector<quint64> m_u;
};

} // namespace

std::vector<int> TokenDiff::Match(const std::vector<quint64> &a, const std::vector<quint64> &b)
{
    std::vector<int> out(a.size(), -1);
    Matcher matcher(a, b, out);
    matcher.run();
    return out;
}
