#include "document/FaithfulSave.h"

#include "aspfilter/ScriptGuard.h"
#include "aspfilter/ScriptRegions.h"
#include "document/CPageEncoding.h"
#include "document/HtmlEntities.h"
#include "document/PageTokenizer.h"
#include "document/TokenDiff.h"

#include <QHash>
#include <QSet>

#include <algorithm>

namespace {

// Below this share of its words lining up with the file, the page shown is
// not the file on the server (another file, a stale copy, a page its own
// script rewrote): its text can't be placed back into that file.
constexpr double kLeastWordsLinedUp = 0.5;

quint64 RegionKey(int index)
{
    return PageTokenizer::TextKey(PageToken::Script, QStringLiteral("\x01region %1").arg(index));
}

bool IsAscii(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}

QString RawAttribute(QStringView tag, const PageTokenizer::Attribute &a)
{
    const qsizetype end = a.valueStart < 0 ? a.nameStart + a.name.size() : a.valueEnd + (a.quote.isNull() ? 0 : 1);
    return tag.mid(a.nameStart, std::min(end, tag.size()) - a.nameStart).toString();
}

QString Value(QStringView tag, const PageTokenizer::Attribute &a)
{
    return a.valueStart < 0 ? QString() : HtmlEntities::Decode(tag.mid(a.valueStart, a.valueEnd - a.valueStart));
}

const PageTokenizer::Attribute *Named(const QList<PageTokenizer::Attribute> &list, const QString &name)
{
    for (const PageTokenizer::Attribute &a : list) {
        if (a.name == name)
            return &a;
    }
    return nullptr;
}

struct Edit
{
    qsizetype start;
    qsizetype end;
    QString text;
};

} // namespace

// ------------------------------------------------------------- at Edit

long FaithfulSave::Prepare(const QByteArray &original, const QString &engineView, QString &reason)
{
    m_prepared = false;
    m_original = original;
    m_charset = CPageEncoding::DeclaredCharset(original);
    if (m_charset.startsWith(QLatin1String("utf-16"))) {
        reason = QStringLiteral("The page is stored in UTF-16, which the editor can only write back whole.");
        return 0;
    }
    m_source = QString::fromLatin1(original);
    m_sourceTokens = SourceTokens(m_source, m_regions);
    m_regionTokens.clear();
    for (int s = 0; s < m_sourceTokens.size(); ++s) {
        if (m_sourceTokens[s].kind == PageToken::Script)
            m_regionTokens.insert(m_sourceTokens[s].key, s);
    }
    QSet<qsizetype> added; // nothing of the page at Edit is new to it
    m_view = WithoutAddedMarks(engineView, added);
    if (!ViewTokens(m_view, m_viewTokens, reason))
        return 0;
    m_viewToSource = LineUp(m_viewTokens, m_sourceTokens);
    const QList<PageToken> sourceChecked = WithoutSpaceBetweenMarkup(m_sourceTokens);
    m_baseline = Unmatched(LineUp(WithoutSpaceBetweenMarkup(m_viewTokens), sourceChecked), size_t(sourceChecked.size()));
    if (CheckRegions(reason) != 1 || CheckMapping(reason) != 1)
        return 0;
    m_prepared = true;
    return 1;
}

// The source's tokens with each script region as one token.
QList<PageToken> FaithfulSave::SourceTokens(const QString &source, QList<ScriptRegion> &regions) const
{
    const QString charset = m_charset;
    const PageTokenizer::Decoder decode = [charset](QStringView bytes) {
        return IsAscii(bytes) ? bytes.toString() : CPageEncoding::DecodeAs(bytes.toLatin1(), charset);
    };
    const QList<PageToken> tokens = PageTokenizer::Tokenize(source, true, decode);
    regions = ScriptRegions::Find(source, tokens);
    QList<PageToken> collapsed;
    collapsed.reserve(tokens.size());
    int next = 0;
    for (int k = 0; k < regions.size(); ++k) {
        const ScriptRegion &r = regions[k];
        collapsed.append(tokens.mid(next, r.firstToken - next));
        PageToken script;
        script.kind = PageToken::Script;
        script.start = r.start;
        script.end = r.end;
        script.key = RegionKey(k);
        script.holdsBlock = true;
        collapsed.append(script);
        next = r.lastToken + 1;
    }
    collapsed.append(tokens.mid(next));
    return collapsed;
}

// The engine's tokens with the stretch between each pair of marker
// comments as one token; false when a marker has lost its partner.
bool FaithfulSave::ViewTokens(const QString &view, QList<PageToken> &tokens, QString &reason)
{
    const QList<PageToken> all = PageTokenizer::Tokenize(view, false);
    tokens.clear();
    tokens.reserve(all.size());
    for (int i = 0; i < all.size(); ++i) {
        const PageToken &t = all[i];
        bool opening = false;
        const int k = t.kind == PageToken::Comment ? ScriptRegions::MarkerIndex(QStringView(view).mid(t.start, t.end - t.start), opening) : -1;
        if (k < 0) {
            tokens.append(t);
            continue;
        }
        const QString partner = ScriptRegions::MarkerOut(k);
        int j = i + 1;
        while (opening && j < all.size() && QStringView(view).mid(all[j].start, all[j].end - all[j].start) != partner)
            ++j;
        if (!opening || j >= all.size()) {
            reason = QStringLiteral("The server's script broke the page's structure where it printed its output (mark %1).").arg(2 * k);
            return false;
        }
        PageToken script;
        script.kind = PageToken::Script;
        script.start = t.start;
        script.end = all[j].end;
        script.key = RegionKey(k);
        tokens.append(script);
        i = j;
    }
    return true;
}

// The view without the marks of elements the editor put in; added gets
// where each of their start tags begins in the text returned.
QString FaithfulSave::WithoutAddedMarks(const QString &view, QSet<qsizetype> &added)
{
    const QString mark = QLatin1String(AddedMark);
    if (!view.contains(mark))
        return view;
    QString clean;
    clean.reserve(view.size());
    qsizetype from = 0;
    for (const PageToken &t : PageTokenizer::Tokenize(view, false)) {
        if (t.kind != PageToken::StartTag)
            continue;
        const QStringView tag = QStringView(view).mid(t.start, t.end - t.start);
        const PageTokenizer::Attribute *a = Named(PageTokenizer::Attributes(tag), mark);
        if (!a)
            continue;
        qsizetype cut = a->nameStart;
        while (cut > 0 && tag[cut - 1].isSpace())
            --cut;
        clean += QStringView(view).mid(from, t.start - from);
        added.insert(clean.size());
        clean += tag.left(cut);
        from = t.start + a->nameStart + RawAttribute(tag, *a).size();
    }
    clean += QStringView(view).mid(from);
    return clean;
}

// The tokens the view is lined up by: the tags of each element the editor
// put in, its start tag and its end tag, get keys of their own, so that no
// tag of the author's can stand for them. The text inside keeps its keys:
// the user may have typed the author's words there. The engine closes
// every element it writes, so each end tag closes the last open element of
// its name (elements without content never see one).
QList<PageToken> FaithfulSave::KeyedApart(QList<PageToken> tokens, const QString &view, const QSet<qsizetype> &added)
{
    if (added.isEmpty())
        return tokens;
    const auto apart = [](PageToken &t) {
        t.added = true;
        t.key = PageTokenizer::TextKey(t.kind, QChar(3) + QStringLiteral("added %1").arg(t.key));
    };
    QHash<QString, QList<bool>> open; // by name, whether each open element was put in
    for (PageToken &t : tokens) {
        if (t.kind == PageToken::StartTag) {
            const bool isAdded = added.contains(t.start);
            open[PageTokenizer::TagName(view, t)].append(isAdded);
            if (isAdded)
                apart(t);
        } else if (t.kind == PageToken::EndTag) {
            QList<bool> &named = open[PageTokenizer::TagName(view, t)];
            if (!named.isEmpty() && named.takeLast())
                apart(t);
        }
    }
    return tokens;
}

// Script comes first: its regions are lined up by their numbers, which the
// server may have moved (output behind </html> ends up in the body), and
// the tokens between two regions are lined up on their own. Otherwise a
// pair of end tags could outweigh a region and leave it unplaced.
std::vector<int> FaithfulSave::LineUp(const QList<PageToken> &a, const QList<PageToken> &b)
{
    // A block the user pasted stands twice under one key: each region of a
    // is lined up with the next one of its key in b.
    QHash<quint64, QList<int>> inB;
    for (int j = 0; j < b.size(); ++j) {
        if (b[j].kind == PageToken::Script)
            inB[b[j].key].append(j);
    }
    std::vector<int> match(size_t(a.size()), -1);
    int fromA = 0;
    int fromB = 0;
    const auto gap = [&](int toA, int toB) {
        std::vector<quint64> ka, kb;
        for (int i = fromA; i < toA; ++i)
            ka.push_back(a[i].key);
        for (int j = fromB; j < toB; ++j)
            kb.push_back(b[j].key);
        const std::vector<int> part = TokenDiff::Match(ka, kb);
        for (size_t i = 0; i < part.size(); ++i)
            match[size_t(fromA) + i] = part[i] < 0 ? -1 : fromB + part[i];
    };
    for (int i = 0; i < a.size(); ++i) {
        int j = -1;
        if (a[i].kind == PageToken::Script)
            for (int at : inB.value(a[i].key))
                if (at >= fromB) {
                    j = at;
                    break;
                }
        if (j < fromB)
            continue;
        gap(i, j);
        match[size_t(i)] = j;
        fromA = i + 1;
        fromB = j + 1;
    }
    gap(int(a.size()), int(b.size()));
    return match;
}

std::vector<quint64> FaithfulSave::Keys(const QList<PageToken> &tokens)
{
    std::vector<quint64> keys;
    keys.reserve(size_t(tokens.size()));
    for (const PageToken &t : tokens)
        keys.push_back(t.key);
    return keys;
}

// The tokens the result is checked by. White space between two pieces of
// markup is left out: where the engine has an implied tag the file lacks
// (the <tbody> of a table written without one), a deleted row leaves the
// file's white space on both sides of it in one piece, while the engine
// holds it in two. Such space never holds the user's words, and a change
// placed wrongly shows in the tags and text around it.
QList<PageToken> FaithfulSave::WithoutSpaceBetweenMarkup(const QList<PageToken> &tokens)
{
    const auto markup = [](const PageToken &t) {
        return t.kind == PageToken::StartTag || t.kind == PageToken::EndTag || t.kind == PageToken::Comment
               || t.kind == PageToken::Declaration;
    };
    QList<PageToken> kept;
    kept.reserve(tokens.size());
    for (qsizetype i = 0; i < tokens.size(); ++i) {
        const bool between = i > 0 && i + 1 < tokens.size() && markup(tokens[i - 1]) && markup(tokens[i + 1]);
        if (tokens[i].kind != PageToken::Space || !between)
            kept.append(tokens[i]);
    }
    return kept;
}

// Tokens of either side that found no partner.
int FaithfulSave::Unmatched(const std::vector<int> &match, size_t otherSize)
{
    const int matched = int(std::count_if(match.begin(), match.end(), [](int m) { return m >= 0; }));
    return int(match.size() + otherSize) - 2 * matched;
}

// Every marked region must stand in the view once, in order, and line up
// with its source.
long FaithfulSave::CheckRegions(QString &reason) const
{
    QList<int> seen;
    for (int i = 0; i < m_viewTokens.size(); ++i) {
        if (m_viewTokens[i].kind != PageToken::Script)
            continue;
        const int s = m_viewToSource[size_t(i)];
        seen.append(s >= 0 && m_sourceTokens[s].kind == PageToken::Script ? s : -1);
    }
    QSet<qsizetype> marked;
    for (const ScriptRegion &r : m_regions) {
        if (r.marked)
            marked.insert(r.start);
    }
    int at = 0;
    for (int s = 0; s < m_sourceTokens.size(); ++s) {
        const PageToken &t = m_sourceTokens[s];
        if (t.kind != PageToken::Script)
            continue;
        if (!marked.contains(t.start))
            continue;
        if (at >= seen.size() || seen[at] != s) {
            reason = QStringLiteral("The output of the server script on line %1 could not be found in the page "
                                    "as the server sends it.").arg(LineOf(t.start));
            return 0;
        }
        ++at;
    }
    if (at != seen.size()) {
        reason = QStringLiteral("The server printed the output of some of the page's script more than once, "
                                "from script the editor can't see (an include file).");
        return 0;
    }
    return 1;
}

long FaithfulSave::CheckMapping(QString &reason) const
{
    int words = 0;
    int lined = 0;
    for (int i = 0; i < m_viewTokens.size(); ++i) {
        if (m_viewTokens[i].kind != PageToken::Word)
            continue;
        ++words;
        lined += m_viewToSource[size_t(i)] >= 0 ? 1 : 0;
    }
    if (words > 0 && double(lined) / words < kLeastWordsLinedUp) {
        reason = QStringLiteral("The page shown differs too much from the file on the server.");
        return 0;
    }
    return 1;
}

int FaithfulSave::LineOf(qsizetype position) const
{
    return int(QStringView(m_source).left(position).count(u'\n')) + 1;
}

// ------------------------------------------------------------- at Save

long FaithfulSave::Splice(const QString &engineView, QByteArray &result, QString &reason) const
{
    if (!m_prepared) {
        reason = QStringLiteral("The page's source was not kept when editing began.");
        return 0;
    }
    QSet<qsizetype> added;
    const QString view = WithoutAddedMarks(engineView, added);
    QList<PageToken> now;
    if (!ViewTokens(view, now, reason))
        return 0;
    for (const PageToken &t : now) {
        if (t.kind == PageToken::Script && !m_texts.contains(t.key) && !m_regionTokens.contains(t.key)) {
            reason = QStringLiteral("The page holds the output of script the editor doesn't know.");
            return 0;
        }
    }
    const QList<PageToken> lined = KeyedApart(now, view, added);
    std::vector<int> match = LineUp(m_viewTokens, lined);
    // A region the user gave a new source is written anew where it stands.
    for (size_t i = 0; i < match.size(); ++i) {
        if (match[i] >= 0 && m_viewTokens[qsizetype(i)].kind == PageToken::Script && m_texts.contains(m_viewTokens[qsizetype(i)].key))
            match[i] = -1;
    }
    PairTags(match, lined, view);
    SlideInsertions(match, lined, view);
    QString out;
    out.reserve(m_source.size() + 1024);
    QHash<qsizetype, quint64> written; // where each region of the result starts, and its key
    qsizetype at = 0;
    for (const Hunk &hunk : Hunks(match, m_viewTokens, lined)) {
        qsizetype start = 0;
        qsizetype end = 0;
        QString text;
        QHash<qsizetype, quint64> regionsAt; // in text
        if (!Place(hunk, view, lined, start, end, text, regionsAt) || start < at) {
            reason = QStringLiteral("A change could not be placed in the page's source.");
            return 0;
        }
        KeepBytes(out, at, start, written);
        for (auto r = regionsAt.cbegin(); r != regionsAt.cend(); ++r)
            written.insert(out.size() + r.key(), r.value());
        out += text;
        at = end;
    }
    KeepBytes(out, at, m_source.size(), written);
    if (Verify(out, now, written, reason) != 1)
        return 0;
    result = out.toLatin1();
    return 1;
}

// The source's bytes from..to go out as they are, with the regions in them.
void FaithfulSave::KeepBytes(QString &out, qsizetype from, qsizetype to, QHash<qsizetype, quint64> &written) const
{
    for (const PageToken &t : m_sourceTokens) {
        if (t.kind == PageToken::Script && t.start >= from && t.start < to)
            written.insert(out.size() + t.start - from, t.key);
    }
    out += QStringView(m_source).mid(from, to - from);
}

// The runs of tokens between two lined-up tokens that differ; a pair of
// tags lined up by name alone is a run of its own.
QList<FaithfulSave::Hunk> FaithfulSave::Hunks(const std::vector<int> &match, const QList<PageToken> &a,
                                              const QList<PageToken> &b)
{
    const int sizeA = int(a.size());
    const int sizeB = int(b.size());
    QList<Hunk> hunks;
    int i = 0;
    int j = 0;
    while (i < sizeA || j < sizeB) {
        if (i < sizeA && match[size_t(i)] == j) {
            if (a[i].key != b[j].key)
                hunks.append({i, i + 1, j, j + 1});
            ++i;
            ++j;
            continue;
        }
        int next = i;
        while (next < sizeA && match[size_t(next)] < 0)
            ++next;
        const int partner = next < sizeA ? match[size_t(next)] : sizeB;
        hunks.append({i, next, j, partner});
        i = next;
        j = partner;
    }
    return hunks;
}

// Inside each run that changed, start tags of the same element are lined
// up by name: the cell whose attributes and content both changed (a merge
// sets its span and joins its neighbour's text) then keeps the author's
// spelling of its tag, with only the changed values written, instead of
// going out as the engine writes the whole run. Script is never paired
// this way: a region the user rewrote stays a change of its own.
void FaithfulSave::PairTags(std::vector<int> &match, const QList<PageToken> &now, const QString &view) const
{
    const auto loose = [](const PageToken &t, const QString &text, char side) {
        if (t.kind == PageToken::Script)
            return PageTokenizer::TextKey(PageToken::Script, QString(QLatin1Char(side)));
        if (t.kind == PageToken::StartTag && !t.added)
            return PageTokenizer::TextKey(PageToken::StartTag, u'\x02' + PageTokenizer::TagName(text, t));
        return t.key;
    };
    for (const Hunk &hunk : Hunks(match, m_viewTokens, now)) {
        if (hunk.a0 == hunk.a1 || hunk.b0 == hunk.b1)
            continue;
        std::vector<quint64> ka, kb;
        for (int i = hunk.a0; i < hunk.a1; ++i)
            ka.push_back(loose(m_viewTokens[i], m_view, 'a'));
        for (int j = hunk.b0; j < hunk.b1; ++j)
            kb.push_back(loose(now[j], view, 'b'));
        const std::vector<int> part = TokenDiff::Match(ka, kb);
        for (size_t i = 0; i < part.size(); ++i) {
            if (part[i] >= 0)
                match[size_t(hunk.a0) + i] = hunk.b0 + part[i];
        }
    }
}

// An inserted run whose first token is like the token behind it (or whose
// last is like the one before it) could stand one token later (earlier)
// just as well; two start tags of one element are alike, the one before
// the run then being the changed one. The run is moved to where it starts
// with no end tag and ends with no start tag: a row put in above the first
// goes before the author's <TR> whole, not behind it as the end of a new
// row followed by a <tr> of the engine's for the author's cells, and a
// cell of his that changed in the same save keeps his tag.
void FaithfulSave::SlideInsertions(std::vector<int> &match, const QList<PageToken> &now, const QString &view) const
{
    const int sizeA = int(m_viewTokens.size());
    const auto whole = [&now](int b0, int b1) {
        return now[b0].kind != PageToken::EndTag && now[b1 - 1].kind != PageToken::StartTag;
    };
    const auto alike = [&now, &view](int x, int y) {
        if (now[x].kind == PageToken::Script)
            return false; // a region and the user's copy of it are not to be swapped
        if (now[x].added != now[y].added)
            return false; // the author's tag never goes to an element the editor put in
        return now[x].key == now[y].key
               || (now[x].kind == PageToken::StartTag && now[y].kind == PageToken::StartTag
                   && PageTokenizer::TagName(view, now[x]) == PageTokenizer::TagName(view, now[y]));
    };
    for (const Hunk &hunk : Hunks(match, m_viewTokens, now)) {
        if (hunk.a0 != hunk.a1 || hunk.b0 == hunk.b1 || whole(hunk.b0, hunk.b1))
            continue;
        for (const int step : {-1, 1}) {
            std::vector<std::pair<int, int>> was;
            int a = hunk.a0;
            int b0 = hunk.b0;
            int b1 = hunk.b1;
            while (!whole(b0, b1)) {
                if (step < 0 && a > 0 && match[size_t(a - 1)] == b0 - 1 && alike(b0 - 1, b1 - 1)) {
                    was.push_back({a - 1, b0 - 1});
                    match[size_t(a - 1)] = b1 - 1;
                } else if (step > 0 && a < sizeA && match[size_t(a)] == b1 && alike(b1, b0)) {
                    was.push_back({a, b1});
                    match[size_t(a)] = b0;
                } else {
                    break;
                }
                a += step;
                b0 += step;
                b1 += step;
            }
            if (whole(b0, b1))
                break;
            for (const auto &[i, j] : was)
                match[size_t(i)] = j;
        }
    }
}

// Where in the source a change goes and what it writes there.
bool FaithfulSave::Place(const Hunk &hunk, const QString &view, const QList<PageToken> &tokens, qsizetype &start,
                         qsizetype &end, QString &text, QHash<qsizetype, quint64> &regionsAt) const
{
    int first = -1;
    int last = -1;
    for (int a = hunk.a0; a < hunk.a1; ++a) {
        const int s = m_viewToSource[size_t(a)];
        if (s < 0)
            continue;
        first = first < 0 ? s : first;
        last = s;
    }
    if (first >= 0) {
        start = m_sourceTokens[first].start;
        end = m_sourceTokens[last].end;
        const PageToken &was = m_viewTokens[hunk.a0];
        const bool oneTag = hunk.a1 - hunk.a0 == 1 && hunk.b1 - hunk.b0 == 1 && was.kind == PageToken::StartTag
                            && tokens[hunk.b0].kind == PageToken::StartTag
                            && PageTokenizer::TagName(m_view, was) == PageTokenizer::TagName(view, tokens[hunk.b0]);
        text = oneTag ? Attributes(m_sourceTokens[first], was, view, tokens[hunk.b0])
                      : NewText(view, tokens, hunk.b0, hunk.b1, regionsAt);
        return true;
    }
    start = end = m_source.size();
    for (int a = hunk.a0 - 1; a >= 0; --a) {
        if (m_viewToSource[size_t(a)] >= 0) {
            start = end = m_sourceTokens[m_viewToSource[size_t(a)]].end;
            break;
        }
    }
    if (hunk.a0 == 0 || start == m_source.size()) {
        for (int a = hunk.a1; a < m_viewTokens.size(); ++a) {
            if (m_viewToSource[size_t(a)] >= 0) {
                start = end = std::min(start, m_sourceTokens[m_viewToSource[size_t(a)]].start);
                break;
            }
        }
    }
    text = NewText(view, tokens, hunk.b0, hunk.b1, regionsAt);
    return true;
}

// The engine's text of new tokens in the page's charset; script among them
// is copied from the source, or is the text the user gave the region.
// regionsAt gets where each region starts in the text.
QString FaithfulSave::NewText(const QString &view, const QList<PageToken> &tokens, int from, int to,
                              QHash<qsizetype, quint64> &regionsAt) const
{
    QString text;
    for (int b = from; b < to; ++b) {
        const PageToken &t = tokens[b];
        if (t.kind != PageToken::Script) {
            text += Encoded(view.mid(t.start, t.end - t.start));
            continue;
        }
        const int region = m_regionTokens.value(t.key, -1);
        regionsAt.insert(text.size(), t.key);
        if (m_texts.contains(t.key))
            text += m_texts.value(t.key);
        else if (region >= 0)
            text += QStringView(m_source).mid(m_sourceTokens[region].start, m_sourceTokens[region].end - m_sourceTokens[region].start);
        else
            text += Encoded(view.mid(t.start, t.end - t.start));
    }
    return text;
}

// One tag whose attributes changed: the author's tag with only those
// values replaced, removed or added.
QString FaithfulSave::Attributes(const PageToken &source, const PageToken &before, const QString &view,
                                 const PageToken &after) const
{
    const QString tag = m_source.mid(source.start, source.end - source.start);
    const QString was = m_view.mid(before.start, before.end - before.start);
    const QString now = view.mid(after.start, after.end - after.start);
    const auto ours = PageTokenizer::Attributes(tag);
    const auto wasList = PageTokenizer::Attributes(was);
    const auto nowList = PageTokenizer::Attributes(now);
    QList<Edit> edits;
    for (const PageTokenizer::Attribute &a : ours) {
        const PageTokenizer::Attribute *b = Named(nowList, a.name);
        const PageTokenizer::Attribute *w = Named(wasList, a.name);
        if (!b) {
            qsizetype from = a.nameStart;
            while (from > 0 && tag[from - 1].isSpace())
                --from;
            edits.append({from, a.nameStart + RawAttribute(tag, a).size(), QString()});
            continue;
        }
        if (w && Value(was, *w) == Value(now, *b))
            continue;
        QString value = b->valueStart < 0 ? QString() : Encoded(now.mid(b->valueStart, b->valueEnd - b->valueStart));
        if (a.quote == u'\'')
            edits.append({a.valueStart, a.valueEnd, value.replace(u'\'', QStringLiteral("&#39;"))});
        else if (a.quote == u'"')
            edits.append({a.valueStart, a.valueEnd, value});
        else if (a.valueStart >= 0)
            edits.append({a.valueStart, a.valueEnd, u'"' + value + u'"'});
        else
            edits.append({a.nameStart + a.name.size(), a.nameStart + a.name.size(), QStringLiteral("=\"") + value + u'"'});
    }
    qsizetype close = tag.endsWith(QLatin1String("/>")) ? tag.size() - 2 : tag.endsWith(u'>') ? tag.size() - 1 : tag.size();
    while (close > 0 && tag[close - 1].isSpace() && tag.endsWith(QLatin1String("/>")))
        --close;
    // New attributes go behind the author's, in the engine's order: one
    // edit, so that several added at once don't come out reversed.
    QString added;
    for (const PageTokenizer::Attribute &b : nowList) {
        if (!Named(ours, b.name))
            added += u' ' + Encoded(RawAttribute(now, b));
    }
    if (!added.isEmpty())
        edits.append({close, close, added});
    std::stable_sort(edits.begin(), edits.end(), [](const Edit &x, const Edit &y) { return x.start > y.start; });
    QString out = tag;
    for (const Edit &e : edits)
        out.replace(e.start, e.end - e.start, e.text);
    return out;
}

QString FaithfulSave::Encoded(const QString &characters) const
{
    return QString::fromLatin1(CPageEncoding::EncodeAs(characters, m_charset));
}

void FaithfulSave::AllowCopyOf(int region)
{
    const int token = m_regionTokens.value(RegionKey(region), -1);
    if (token < 0)
        return;
    const PageToken &t = m_sourceTokens[token];
    m_copies.append(ScriptGuard::Pieces(QStringView(m_source).mid(t.start, t.end - t.start)));
}

QStringList FaithfulSave::RegionSources() const
{
    QStringList sources;
    for (const ScriptRegion &r : m_regions)
        sources.append(CPageEncoding::DecodeAs(m_original.mid(r.start, r.end - r.start), m_charset));
    return sources;
}

void FaithfulSave::SetRegionText(int region, const QString &text)
{
    const QString bytes = QString::fromLatin1(CPageEncoding::EncodeAs(text, m_charset));
    if (region >= m_regions.size())
        m_copies.append(ScriptGuard::Pieces(bytes));
    m_texts.insert(RegionKey(region), bytes);
}

// The source as the user's edits of regions make it: what the outgoing
// script is held against.
QString FaithfulSave::Expected() const
{
    QString expected = m_source;
    for (qsizetype s = m_sourceTokens.size() - 1; s >= 0; --s) {
        const PageToken &t = m_sourceTokens[s];
        if (t.kind == PageToken::Script && m_texts.contains(t.key))
            expected.replace(t.start, t.end - t.start, m_texts.value(t.key));
    }
    return expected;
}

// The script of the marked regions that no longer stand in the page.
QStringList FaithfulSave::Deleted(const QList<PageToken> &view) const
{
    QSet<quint64> shown;
    for (const PageToken &t : view) {
        if (t.kind == PageToken::Script)
            shown.insert(t.key);
    }
    QStringList gone;
    for (int k = 0; k < m_regions.size(); ++k) {
        const quint64 key = RegionKey(k);
        if (!m_regions[k].marked || shown.contains(key))
            continue;
        const int token = m_regionTokens.value(key, -1);
        if (token < 0)
            continue;
        const PageToken &t = m_sourceTokens[token];
        gone.append(ScriptGuard::Pieces(m_texts.contains(key) ? m_texts.value(key) : m_source.mid(t.start, t.end - t.start)));
    }
    return gone;
}

// The result keeps the script, changed only as the user changed it, and
// lines up with what the user sees at least as well as the original lined
// up with what he saw at Edit. Its regions are keyed by where they were
// written, so a copy is told from its original.
long FaithfulSave::Verify(const QString &result, const QList<PageToken> &view, const QHash<qsizetype, quint64> &written,
                          QString &reason) const
{
    QString difference;
    if (!ScriptGuard::Keeps(Expected(), result, difference, m_copies, Deleted(view))) {
        reason = QStringLiteral("The page's server script would not have come back as it was (%1).").arg(difference);
        return 0;
    }
    QList<ScriptRegion> regions;
    QList<PageToken> tokens = SourceTokens(result, regions);
    for (PageToken &t : tokens) {
        if (t.kind == PageToken::Script)
            t.key = written.value(t.start, t.key);
    }
    tokens = WithoutSpaceBetweenMarkup(tokens);
    const std::vector<int> match = LineUp(WithoutSpaceBetweenMarkup(view), tokens);
    if (Unmatched(match, size_t(tokens.size())) > m_baseline) {
        reason = QStringLiteral("The change could not be placed in the page's source exactly.");
        return 0;
    }
    return 1;
}

// ------------------------------------------------------------ marking

QByteArray FaithfulSave::Marked(const QByteArray &original)
{
    FaithfulSave reader;
    reader.m_charset = CPageEncoding::DeclaredCharset(original);
    const QString source = QString::fromLatin1(original);
    QList<ScriptRegion> regions;
    reader.SourceTokens(source, regions);
    const bool any = std::any_of(regions.cbegin(), regions.cend(), [](const ScriptRegion &r) { return r.marked; });
    return any ? ScriptRegions::Marked(source, regions).toLatin1() : QByteArray();
}
