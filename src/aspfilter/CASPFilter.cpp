#include "aspfilter/CASPFilter.h"

#include "aspfilter/ASPMarkers.h"
#include "support/MError.h"
#include "support/MResources.h"

#include <QHash>
#include <QRegularExpression>

#include <algorithm>

namespace {

// Script patterns are matched as the server's script engine would: ignoring
// case, many lines, and with \s meaning exactly [ \f\n\r\t\v] (no Unicode
// spaces), which is why the class is spelled out.
constexpr QRegularExpression::PatternOptions PatternFlags =
    QRegularExpression::CaseInsensitiveOption | QRegularExpression::MultilineOption;
constexpr const char *Space = "[ \\f\\n\\r\\t\\v]";

QRegularExpression Pattern(const QString &pattern)
{
    QString spelled = pattern;
    spelled.replace(QStringLiteral("\\s"), QLatin1String(Space));
    return QRegularExpression(spelled, PatternFlags);
}

constexpr long ErrUnexpected = -2147418113L;
constexpr long ErrBadASP = -26060;
constexpr long ErrNoSuchBlock = 9; // subscript out of range
constexpr long StrUnexpected = 12000;
constexpr long StrNoSuchBlock = 12001;
constexpr long StrMovedOutput = 12002;
constexpr long ErrMovedOutput = -26061;

unsigned char GetASPPlacement(qsizetype htmlOpen, qsizetype htmlClose, qsizetype position)
{
    if (htmlOpen < 0) {
        return CASPFilter::InsidePage;
    }
    if (position < htmlOpen) {
        return CASPFilter::BeforeHtml;
    }
    if (htmlClose >= 0 && position > htmlClose) {
        return CASPFilter::AfterHtml;
    }
    return CASPFilter::InsidePage;
}

bool OpensBlock(const QString &text, qsizetype position)
{
    return position >= 0 && QStringView(text).mid(position, 2) == QLatin1String("<%");
}

bool SameNumber(const QString &a, const QString &b)
{
    bool okA = false;
    bool okB = false;
    const long na = a.toLong(&okA);
    const long nb = b.toLong(&okB);
    return okA && okB && na == nb;
}

} // namespace

CASPFilter::CASPFilter()
{
    m_OverrideTable.push_back(ASPEntry{QString(), QString(), InsidePage});
}

long CASPFilter::LetURL(const QString &strURL_p)
{
    m_strURL = strURL_p;
    return 1;
}

long CASPFilter::GetURL(QString &strURL_p) const
{
    strURL_p = m_strURL;
    return 1;
}

long CASPFilter::SetFilterState(long lFilterState_p)
{
    m_lFilterState = lFilterState_p;
    return 1;
}

long CASPFilter::SetOriginalStream(const QString &strHTMLStream_p)
{
    m_strOriginalStream = strHTMLStream_p;
    return 1;
}

// ---------------------------------------------------------------- FilterIn

long CASPFilter::FilterIn(QString &strASP_p)
{
    if (m_lFilterState == StateFilteredIn) {
        return 0;
    }
    if (CheckSpecialCaseTable(strASP_p) == 0) {
        MError::SetErrorIfClear(
            ErrBadASP,
            QStringLiteral("Vindrell kan inte redigera denna sidan på grund av felaktig ASP."),
            QStringLiteral("CASPFilter.FilterIn"));
        return 0;
    }
    QString text = strASP_p;
    m_strDirective.clear();
    m_boolOptionExplicit = false;
    m_Removals.clear();
    FixSpecialTags(text);

    QList<long> positions;
    const long found = GetASPPos(text, positions);
    m_lFilterState = StateFilteredIn;
    if (found != 1) {
        // Nothing is uploaded for such a page, so the caller keeps its text
        // exactly as it came, directive and all.
        m_boolHasASP = false;
        return -1;
    }
    WriteFilterInASPTags(text, positions);
    m_strOriginalStream = text;
    m_boolHasASP = true;
    strASP_p = text;
    return 1;
}

long CASPFilter::CheckSpecialCaseTable(const QString &text)
{
    static const QRegularExpression table = Pattern(QStringLiteral("<\\s*table"));
    return ScanForScript(text, table, false);
}

// For each tag the pattern finds outside comments, looks at the `<` that
// follow: behind a table tag the first ones after its end, inside another
// tag those before its first `>`. A `<%` there that no comment hides gives 0;
// a commented one lets the look go on to the next `<`.
long CASPFilter::ScanForScript(const QString &text, const QRegularExpression &tag, bool insideTag)
{
    m_boolCommentsReady = false;
    long result = 1;
    auto it = tag.globalMatch(text);
    while (result == 1 && it.hasNext()) {
        const QRegularExpressionMatch match = it.next();
        if (IsCommented(match.capturedStart(), text)) {
            continue;
        }
        const qsizetype close = text.indexOf(QLatin1Char('>'), match.capturedEnd());
        qsizetype next = insideTag ? text.indexOf(QLatin1Char('<'), match.capturedStart() + 1)
                                   : (close < 0 ? -1 : text.indexOf(QLatin1Char('<'), close + 1));
        const qsizetype limit = insideTag ? close : text.size();
        while (next >= 0 && next < limit && OpensBlock(text, next)) {
            if (!IsCommented(next, text)) {
                result = 0;
                break;
            }
            next = text.indexOf(QLatin1Char('<'), next + 1);
        }
    }
    m_boolCommentsReady = false;
    return result;
}

// The directive and "Option Explicit" may not run twice in the marked page's
// output, so they leave it and come back at the top on the way out. The
// pieces taken are remembered with their places, so that the source can be
// rebuilt exactly right after the page has loaded.
void CASPFilter::FixSpecialTags(QString &text)
{
    m_boolCommentsReady = false;
    qsizetype from = 0;
    while (m_strDirective.isEmpty() || !m_boolOptionExplicit) {
        const qsizetype start = text.indexOf(QLatin1String("<%"), from);
        const qsizetype end = start < 0 ? -1 : text.indexOf(QLatin1String("%>"), start);
        if (end < 0) {
            break;
        }
        if (IsCommented(start, text)) {
            from = start + 2;
            continue;
        }
        const QString block = text.mid(start, end + 2 - start);
        const bool removed = m_strDirective.isEmpty() && TakeDirective(text, block);
        bool cut = false;
        if (!m_boolOptionExplicit) {
            qsizetype blockStart = start;
            QString candidate = block;
            if (removed) {
                blockStart = text.indexOf(QLatin1String("<%"));
                const qsizetype blockEnd =
                    blockStart < 0 ? -1 : text.indexOf(QLatin1String("%>"), blockStart);
                candidate = blockEnd < 0 ? QString() : text.mid(blockStart, blockEnd + 2 - blockStart);
            }
            const qsizetype before = text.size();
            TakeOptionExplicit(text, blockStart, candidate);
            cut = text.size() != before;
        }
        // Removals shift every position, so the comments are read again and
        // the walk starts over; the flags keep it from taking anything twice.
        if (removed || cut) {
            m_boolCommentsReady = false;
            from = 0;
        } else {
            from = start + 2;
        }
    }
    m_boolCommentsReady = false;
}

bool CASPFilter::TakeDirective(QString &text, const QString &block)
{
    static const QRegularExpression language = Pattern(QStringLiteral("@\\s*language"));
    static const QRegularExpression session = Pattern(QStringLiteral("@\\s*enablesessionstate"));
    if (!language.match(block).hasMatch() && !session.match(block).hasMatch()) {
        return false;
    }
    m_strDirective = block;
    RemoveAll(text, block);
    return true;
}

void CASPFilter::TakeOptionExplicit(QString &text, qsizetype blockStart, const QString &block)
{
    static const QString words = QStringLiteral("Option Explicit");
    const qsizetype at = block.indexOf(words, 0, Qt::CaseInsensitive);
    if (at < 0) {
        return;
    }
    m_boolOptionExplicit = true;
    const qsizetype position = blockStart + at;
    m_Removals.push_back({Removal{position, text.mid(position, words.size())}});
    text.remove(position, words.size());
    RemoveEmptyBlocks(text);
}

void CASPFilter::RemoveAll(QString &text, const QString &exact)
{
    std::vector<Removal> step;
    QString kept;
    qsizetype cursor = 0;
    for (qsizetype at = text.indexOf(exact); at >= 0; at = text.indexOf(exact, at + exact.size())) {
        step.push_back(Removal{at, exact});
        kept += QStringView(text).mid(cursor, at - cursor);
        cursor = at + exact.size();
    }
    kept += QStringView(text).mid(cursor);
    text = kept;
    m_Removals.push_back(std::move(step));
}

void CASPFilter::RemoveEmptyBlocks(QString &text)
{
    static const QRegularExpression empty = Pattern(QStringLiteral("<%\\s*%>"));
    std::vector<Removal> step;
    QString kept;
    qsizetype cursor = 0;
    auto it = empty.globalMatch(text);
    while (it.hasNext()) {
        const QRegularExpressionMatch match = it.next();
        step.push_back(Removal{match.capturedStart(), match.captured()});
        kept += QStringView(text).mid(cursor, match.capturedStart() - cursor);
        cursor = match.capturedEnd();
    }
    kept += QStringView(text).mid(cursor);
    text = kept;
    m_Removals.push_back(std::move(step));
}

void CASPFilter::PutBackRemovals(QString &text) const
{
    for (auto step = m_Removals.rbegin(); step != m_Removals.rend(); ++step) {
        for (const Removal &removal : *step) {
            text.insert(std::min(removal.position, text.size()), removal.text);
        }
    }
}

long CASPFilter::GetASPPos(const QString &strASP_p, QList<long> &aPositions_p)
{
    aPositions_p.clear();
    m_boolCommentsReady = false;
    long result = 0;
    qsizetype from = 0;
    while (result == 0) {
        qsizetype start = strASP_p.indexOf(QLatin1String("<%"), from);
        if (start < 0) {
            result = aPositions_p.isEmpty() ? 2 : 1;
            break;
        }
        if (IsCommented(start, strASP_p)) {
            from = start + 2;
            continue;
        }
        qsizetype end = strASP_p.indexOf(QLatin1String("%>"), start);
        if (end < 0) {
            result = -1;
            break;
        }
        ++end;
        if (start >= 3) {
            IsInsideTag(strASP_p, start, end);
        }
        aPositions_p << long(start) << long(end);
        from = end;
    }
    m_boolCommentsReady = false;
    return result;
}

// A block inside a tag, as in <TD width="<%=w%>">, takes the whole tag: the
// server's rendering of the tag then stands between the markers.
void CASPFilter::IsInsideTag(const QString &text, qsizetype &blockStart, qsizetype &blockEnd) const
{
    const qsizetype lastClose = text.lastIndexOf(QLatin1Char('>'), blockStart - 1);
    const qsizetype lastOpen = text.lastIndexOf(QLatin1Char('<'), blockStart - 1);
    if (lastOpen < 0 || lastOpen < lastClose) {
        return;
    }
    const qsizetype close = text.indexOf(QLatin1Char('>'), blockEnd + 1);
    if (close >= 0) {
        blockStart = lastOpen;
        blockEnd = close;
    }
}

// Starts and ends pair by index, not by nesting; a stray start or end shifts
// the pairs, and only indexes present in both lists count.
bool CASPFilter::IsCommented(qsizetype position, const QString &text)
{
    if (!m_boolCommentsReady) {
        InitCommentPositions(text);
    }
    const auto below = std::lower_bound(m_CommentStarts.begin(), m_CommentStarts.end(), position);
    const size_t candidates =
        std::min(size_t(below - m_CommentStarts.begin()), m_CommentEnds.size());
    // Ends rise with the index, so the last candidate has the furthest end.
    return candidates > 0 && m_CommentEnds[candidates - 1] > position;
}

void CASPFilter::InitCommentPositions(const QString &text)
{
    m_CommentStarts.clear();
    m_CommentEnds.clear();
    for (qsizetype at = text.indexOf(QLatin1String("<!--")); at >= 0;
         at = text.indexOf(QLatin1String("<!--"), at + 3)) {
        m_CommentStarts.push_back(at);
    }
    for (qsizetype at = text.indexOf(QLatin1String("-->")); at >= 0;
         at = text.indexOf(QLatin1String("-->"), at + 3)) {
        m_CommentEnds.push_back(at);
    }
    m_boolCommentsReady = true;
}

// ---------------------------------------------------------------- wrapping

namespace {

struct Span
{
    qsizetype begin; // first character of the start wrapper
    qsizetype end;   // one past the end wrapper
};

// Where the five digits of a pair's markers stand in the text being built.
struct DigitPlaces
{
    qsizetype in;
    qsizetype out;
};

const QString &BlankStart()
{
    static const QString wrapper = ASPMarkers::StartWrapper(QStringLiteral("00000"));
    return wrapper;
}

const QString &BlankEnd()
{
    static const QString wrapper = ASPMarkers::EndWrapper(QStringLiteral("00000"));
    return wrapper;
}

qsizetype InDigits()
{
    return BlankStart().indexOf(QLatin1String(ASPMarkers::StartMarker)) + 10;
}

qsizetype OutDigits()
{
    return BlankEnd().indexOf(QLatin1Char('#')) + 1;
}

// Appends text[from, to) wrapped in a blank pair; gives where it went.
Span AppendWrapped(QString &out, QStringView piece, std::vector<DigitPlaces> &places)
{
    const qsizetype begin = out.size();
    const qsizetype in = begin + InDigits();
    out += BlankStart();
    out += piece;
    places.push_back({in, out.size() + OutDigits()});
    out += BlankEnd();
    return {begin, out.size()};
}

bool OverlapsAny(const std::vector<Span> &spans, qsizetype begin, qsizetype end)
{
    const auto first = std::upper_bound(spans.begin(), spans.end(), begin,
                                        [](qsizetype at, const Span &s) { return at < s.end; });
    return first != spans.end() && first->begin < end;
}

} // namespace

// Wraps every block, then every include comment, and numbers the pairs in
// document order. The text is built once from its pieces rather than by
// inserting into it, which would cost the whole text per block.
void CASPFilter::WriteFilterInASPTags(QString &text, const QList<long> &positions)
{
    QString blocksWrapped;
    blocksWrapped.reserve(text.size() + positions.size() * 64);
    std::vector<Span> blockSpans;
    std::vector<DigitPlaces> blockPlaces;
    qsizetype cursor = 0;
    for (qsizetype k = 0; k + 1 < positions.size(); k += 2) {
        blocksWrapped += QStringView(text).mid(cursor, positions[k] - cursor);
        blockSpans.push_back(AppendWrapped(
            blocksWrapped, QStringView(text).mid(positions[k], positions[k + 1] + 1 - positions[k]),
            blockPlaces));
        cursor = positions[k + 1] + 1;
    }
    blocksWrapped += QStringView(text).mid(cursor);

    // Includes are script too: a whole <!--#include ...--> comment becomes a
    // block. One that overlaps a block or an earlier include is left alone,
    // since wrapping it would cut through the other.
    InitCommentPositions(blocksWrapped);
    QString out;
    out.reserve(blocksWrapped.size() + 1024);
    std::vector<DigitPlaces> places;
    size_t nextBlock = 0;
    cursor = 0;
    auto flushBlocksBefore = [&](qsizetype limit) {
        const qsizetype shift = out.size() - cursor;
        for (; nextBlock < blockSpans.size() && blockSpans[nextBlock].begin < limit; ++nextBlock) {
            places.push_back({blockPlaces[nextBlock].in + shift, blockPlaces[nextBlock].out + shift});
        }
    };
    const size_t pairs = std::min(m_CommentStarts.size(), m_CommentEnds.size());
    for (size_t i = 0; i < pairs; ++i) {
        const qsizetype begin = m_CommentStarts[i];
        const qsizetype end = m_CommentEnds[i] + 3;
        if (begin < cursor || end <= begin + 4 || OverlapsAny(blockSpans, begin, end)
            || !QStringView(blocksWrapped).mid(begin, end - begin).contains(QLatin1String("#include"), Qt::CaseInsensitive)) {
            continue;
        }
        flushBlocksBefore(begin);
        out += QStringView(blocksWrapped).mid(cursor, begin - cursor);
        AppendWrapped(out, QStringView(blocksWrapped).mid(begin, end - begin), places);
        cursor = end;
    }
    flushBlocksBefore(blocksWrapped.size() + 1);
    out += QStringView(blocksWrapped).mid(cursor);
    m_boolCommentsReady = false;

    QChar *data = out.data();
    long id = 0;
    for (const DigitPlaces &place : places) {
        const QString digits = ASPMarkers::FormatID(id);
        std::copy(digits.begin(), digits.end(), data + place.in);
        std::copy(digits.begin(), digits.end(), data + place.out);
        id += 2;
    }
    text = out;
}

// ---------------------------------------------------------------- IsEditable

long CASPFilter::IsEditable(const QString &strASP_p)
{
    static const QStringList tags = {
        QStringLiteral("<\\s*IMG"),  QStringLiteral("<\\s*A"),       QStringLiteral("<\\s*FRAME"),
        QStringLiteral("<\\s*FRAMESET"), QStringLiteral("<\\s*BODY"), QStringLiteral("<\\s*BASE"),
        QStringLiteral("<\\s*FORM"), QStringLiteral("<\\s*MARQUEE"), QStringLiteral("<\\s*LINK"),
        QStringLiteral("<\\s*META")};
    long result = 1;
    for (const QString &tag : tags) {
        result = CheckSpecialCaseTags(strASP_p, tag);
        if (result == 0) {
            break;
        }
    }
    return result;
}

long CASPFilter::CheckSpecialCaseTags(const QString &text, const QString &pattern)
{
    return ScanForScript(text, Pattern(pattern), true);
}

// ---------------------------------------------------------------- FilterOut

long CASPFilter::FilterOut(QString &strASP_p, bool boolUseLastStream_p)
{
    if (m_lFilterState != StateFilteredIn) {
        MError::SetErrorIfClear(ErrUnexpected, MResources::LoadResourceString(StrUnexpected),
                                QStringLiteral("CASPFilter.FilterOut"));
        return 0;
    }
    if (!m_boolHasASP) {
        return 2;
    }
    if (!boolUseLastStream_p && !WrappersIntact(strASP_p)) {
        MError::SetErrorIfClear(ErrMovedOutput, MResources::LoadResourceString(StrMovedOutput),
                                QStringLiteral("CASPFilter.FilterOut"));
        return 0;
    }
    ReadBlockTable(boolUseLastStream_p);
    QString text = RestoreBlocks(boolUseLastStream_p ? m_strOriginalStream : strASP_p,
                                 boolUseLastStream_p);
    if (boolUseLastStream_p) {
        // Right after the page has loaded the file goes back to the server
        // as it was, byte for byte, so what left it goes back to its place.
        PutBackRemovals(text);
    } else {
        m_lFilterState = StateFilteredOut;
        RemoveGeneratorTag(text);
        PutBackHeader(text);
    }
    strASP_p = text;
    return 1;
}

// First pass: learn each pair's block (when rebuilding) and its placement
// from the stream as the filter wrote it.
void CASPFilter::ReadBlockTable(bool rebuild)
{
    if (rebuild) {
        m_BlockTable.clear();
    }
    const QString &stream = m_strOriginalStream;
    const qsizetype htmlOpen = stream.indexOf(QLatin1String("<HTML>"), 0, Qt::CaseInsensitive);
    const qsizetype htmlClose = stream.indexOf(QLatin1String("</HTML>"), 0, Qt::CaseInsensitive);
    qsizetype from = 0;
    for (;;) {
        const qsizetype marker =
            stream.indexOf(QLatin1String(ASPMarkers::StartMarker), from, Qt::CaseInsensitive);
        const qsizetype end = marker < 0 ? -1
            : stream.indexOf(QLatin1String(ASPMarkers::EndComment), marker, Qt::CaseInsensitive);
        if (end < 0) {
            break;
        }
        const QString id = stream.mid(marker + 10, 5);
        const unsigned char placement = GetASPPlacement(htmlOpen, htmlClose, marker);
        ASPEntry *entry = rebuild ? nullptr : BlockEntry(id);
        if (const ASPEntry *override = OverrideEntry(id)) {
            entry = entry ? entry : BlockEntry(id);
            if (entry) {
                entry->strASP = override->strASP;
            } else {
                m_BlockTable.push_back(ASPEntry{id, override->strASP, placement});
            }
        } else if (rebuild) {
            const qsizetype first = marker + ASPMarkers::BlockOffset;
            m_BlockTable.push_back(ASPEntry{id, stream.mid(first, std::max<qsizetype>(0, end - first)), placement});
        } else if (entry) {
            entry->bytPlacement = placement;
        }
        from = end;
    }
}

// The page engine keeps each end comment right in front of its span's end,
// unless the block's output could not stand inside a span: a table cell or
// an element left open is moved, and the span closes elsewhere. Cutting such
// a page by the wrappers would tear out the tags between, so it is refused
// and the page on the server stays as it is.
bool CASPFilter::WrappersIntact(const QString &text)
{
    const qsizetype commentLength = ASPMarkers::EndCommentLength;
    for (qsizetype at = text.indexOf(QLatin1String(ASPMarkers::EndComment), 0, Qt::CaseInsensitive); at >= 0;
         at = text.indexOf(QLatin1String(ASPMarkers::EndComment), at + commentLength, Qt::CaseInsensitive)) {
        if (QStringView(text).mid(at + commentLength, ASPMarkers::CloseSpanLength)
                .compare(QLatin1String("</SPAN>"), Qt::CaseInsensitive) != 0) {
            return false;
        }
    }
    return true;
}

// Second pass: each marked stretch, wrapper and all, gives way to its block.
QString CASPFilter::RestoreBlocks(const QString &text, bool useLastStream) const
{
    QHash<QString, const ASPEntry *> byID;
    for (const ASPEntry &entry : m_BlockTable) {
        if (!byID.contains(entry.strID)) {
            byID.insert(entry.strID, &entry);
        }
    }
    QString out;
    out.reserve(text.size());
    QString beforeHtml;
    QString afterHtml;
    qsizetype cursor = 0;
    for (;;) {
        const qsizetype marker =
            text.indexOf(QLatin1String(ASPMarkers::StartMarker), cursor, Qt::CaseInsensitive);
        if (marker < 0) {
            break;
        }
        // The outer span opens two tags before the marker: in the filtered
        // source the tag before the response.write block, in the page
        // engine's text the tag before the hidden span.
        qsizetype open = useLastStream ? text.lastIndexOf(QLatin1String("<%"), marker) : marker;
        open = open > 0 ? text.lastIndexOf(QLatin1Char('<'), open - 1) : -1;
        if (!useLastStream && open > 0) {
            open = text.lastIndexOf(QLatin1Char('<'), open - 1);
        }
        open = open < 0 ? marker : std::max(open, cursor);
        out += QStringView(text).mid(cursor, open - cursor);
        const qsizetype end =
            text.indexOf(QLatin1String(ASPMarkers::EndComment), marker, Qt::CaseInsensitive);
        if (end < 0) {
            cursor = marker;
            break;
        }
        const ASPEntry *entry = byID.value(text.mid(marker + 10, 5), nullptr);
        const QString code = entry ? entry->strASP : QString();
        const unsigned char placement = entry && !useLastStream ? entry->bytPlacement : static_cast<unsigned char>(InsidePage);
        if (placement == BeforeHtml) {
            const qsizetype html = out.indexOf(QLatin1String("<HTML>"), 0, Qt::CaseInsensitive);
            if (html >= 0) {
                out.insert(html, code);
            } else {
                beforeHtml += code;
            }
        } else if (placement == AfterHtml) {
            afterHtml += code;
        } else {
            out += code;
        }
        cursor = std::min(text.size(), end + ASPMarkers::EndCommentLength + ASPMarkers::CloseSpanLength);
    }
    out += QStringView(text).mid(cursor);
    out += afterHtml;
    if (!beforeHtml.isEmpty()) {
        // No <HTML> ahead of the block: it goes where such a tag would be,
        // at the top.
        const qsizetype html = out.indexOf(QLatin1String("<HTML>"), 0, Qt::CaseInsensitive);
        out.insert(std::max<qsizetype>(0, html), beforeHtml);
    }
    return out;
}

// The page engine writes a generator tag of its own; it doesn't belong in
// the saved page. A longer META of the same start is someone's own.
void CASPFilter::RemoveGeneratorTag(QString &text)
{
    const qsizetype start = text.indexOf(QLatin1String("<META content=\"MSHTML"), 0, Qt::CaseSensitive);
    const qsizetype close = start < 0 ? -1 : text.indexOf(QLatin1Char('>'), start);
    if (close < 0) {
        return;
    }
    const QString tag = text.mid(start, close + 1 - start);
    if (tag.contains(QLatin1String("name=GENERATOR"), Qt::CaseInsensitive) && tag.size() < 70) {
        text.remove(tag, Qt::CaseSensitive);
    }
}

void CASPFilter::PutBackHeader(QString &text) const
{
    if (m_boolOptionExplicit) {
        text.prepend(QStringLiteral("<% Option Explicit %>"));
    }
    if (!m_strDirective.isEmpty()) {
        text.prepend(m_strDirective);
    }
}

// ---------------------------------------------------------------- tables

ASPEntry *CASPFilter::BlockEntry(const QString &strID)
{
    for (ASPEntry &entry : m_BlockTable) {
        if (entry.strID == strID) {
            return &entry;
        }
    }
    return nullptr;
}

const ASPEntry *CASPFilter::OverrideEntry(const QString &strID) const
{
    const ASPEntry *found = nullptr;
    for (const ASPEntry &entry : m_OverrideTable) {
        if (!entry.strID.isEmpty() && entry.strID == strID) {
            found = &entry;
        }
    }
    return found;
}

long CASPFilter::GetASP(const QString &strID_p, QString &strASP_p) const
{
    strASP_p.clear();
    const ASPEntry *found = nullptr;
    for (const ASPEntry &entry : m_OverrideTable) {
        if (SameNumber(entry.strID, strID_p) && !entry.strASP.isEmpty()) {
            found = &entry;
        }
    }
    if (!found) {
        for (const ASPEntry &entry : m_BlockTable) {
            if (SameNumber(entry.strID, strID_p)) {
                found = &entry;
            }
        }
    }
    if (!found) {
        return -1;
    }
    strASP_p = found->strASP;
    return 1;
}

long CASPFilter::SetASP(const QString &strID_p, const QString &strASP_p)
{
    for (ASPEntry &entry : m_OverrideTable) {
        if (entry.strID == strID_p) {
            entry.strASP = strASP_p;
            return 2;
        }
    }
    m_OverrideTable.push_back(ASPEntry{strID_p, strASP_p, InsidePage});
    return 1;
}

// With an empty table the answer is -2, so that the next free ID, two
// above it, is 00000.
long CASPFilter::GetLastASPPos() const
{
    return 2 * (long(m_BlockTable.size()) - 1);
}

long CASPFilter::LetBlocks(const QStringList &astrSources_p)
{
    m_BlockTable.clear();
    for (qsizetype k = 0; k < astrSources_p.size(); ++k)
        m_BlockTable.push_back(ASPEntry{ASPMarkers::FormatID(long(2 * k)), astrSources_p[k], InsidePage});
    m_OverrideTable.assign(1, ASPEntry{});
    m_boolHasASP = !astrSources_p.isEmpty();
    return 1;
}

long CASPFilter::CopyASPObject(long lSourceID_p, long lDestID_p)
{
    const QString source = ASPMarkers::FormatID(lSourceID_p);
    const ASPEntry *original = nullptr;
    for (const ASPEntry &entry : m_BlockTable) {
        if (entry.strID == source) {
            original = &entry;
            break;
        }
    }
    if (!original) {
        MError::SetErrorIfClear(ErrNoSuchBlock, MResources::LoadResourceString(StrNoSuchBlock),
                                QStringLiteral("CASPFilter.PasteASPObject"));
        return 0;
    }
    const ASPEntry copy{ASPMarkers::FormatID(lDestID_p), original->strASP, original->bytPlacement};
    m_BlockTable.push_back(copy);
    SetASP(copy.strID, copy.strASP);
    return 1;
}
