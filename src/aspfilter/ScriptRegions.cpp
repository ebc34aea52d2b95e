#include "aspfilter/ScriptRegions.h"

#include "document/PageTokenizer.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

const QString kIn = QStringLiteral("keldaspIN#");
const QString kOut = QStringLiteral("keldaspOUT#");

struct Span
{
    int first;
    int last;
};

bool IsInclude(QStringView source, const PageToken &t)
{
    static const QRegularExpression include(QStringLiteral("^<!--\\s*#include\\b"),
                                            QRegularExpression::CaseInsensitiveOption);
    return t.kind == PageToken::Comment && include.match(source.mid(t.start, t.end - t.start)).hasMatch();
}

bool RunsAtServer(QStringView source, const PageToken &t)
{
    for (const PageTokenizer::Attribute &a : PageTokenizer::Attributes(source.mid(t.start, t.end - t.start))) {
        if (a.name == QLatin1String("runat") && a.valueStart >= 0)
            return source.mid(t.start + a.valueStart, a.valueEnd - a.valueStart).compare(u"server", Qt::CaseInsensitive) == 0;
    }
    return false;
}

// The end tag of the element a start tag opens, or the start tag itself.
int ElementEnd(QStringView source, const QList<PageToken> &tokens, int start)
{
    const QString name = PageTokenizer::TagName(source, tokens[start]);
    for (int i = start + 1; i < tokens.size(); ++i) {
        if (tokens[i].kind == PageToken::EndTag && PageTokenizer::TagName(source, tokens[i]) == name)
            return i;
    }
    return start;
}

// The tokens each piece of script covers, before nesting is looked at.
QList<Span> Seeds(QStringView source, const QList<PageToken> &tokens)
{
    QList<Span> seeds;
    for (int i = 0; i < tokens.size(); ++i) {
        const PageToken &t = tokens[i];
        if (t.kind == PageToken::RawText && t.holdsBlock) {
            const int first = i > 0 && tokens[i - 1].kind == PageToken::StartTag ? i - 1 : i;
            const int last = i + 1 < tokens.size() && tokens[i + 1].kind == PageToken::EndTag ? i + 1 : i;
            seeds.append({first, last});
            i = last;
        } else if (t.kind == PageToken::StartTag && !t.holdsBlock && RunsAtServer(source, t)) {
            const QString name = PageTokenizer::TagName(source, t);
            const int last = name == QLatin1String("script") || name == QLatin1String("object")
                                 ? ElementEnd(source, tokens, i) : i;
            seeds.append({i, last});
            i = last;
        } else if (t.holdsBlock || IsInclude(source, t)) {
            seeds.append({i, i});
        }
    }
    return seeds;
}

// The code of every block within the tokens of a span.
QList<QStringView> BlocksIn(QStringView source, qsizetype start, qsizetype end)
{
    QList<QStringView> blocks;
    qsizetype at = source.indexOf(u"<%", start);
    while (at >= 0 && at < end) {
        const qsizetype close = source.indexOf(u"%>", at + 2);
        const qsizetype stop = close < 0 ? source.size() : close + 2;
        blocks.append(source.mid(at, stop - at));
        at = source.indexOf(u"<%", stop);
    }
    return blocks;
}

bool IsJScriptPage(QStringView source)
{
    static const QRegularExpression directive(QStringLiteral("<%\\s*@[^%]*language\\s*=\\s*\"?\\s*j(ava)?script"),
                                              QRegularExpression::CaseInsensitiveOption);
    return directive.match(source.left(4096)).hasMatch();
}

// Seeds joined by open nesting become one span that covers all between.
QList<Span> Grouped(QStringView source, const QList<PageToken> &tokens, const QList<Span> &seeds)
{
    const bool jscript = IsJScriptPage(source);
    QList<Span> groups;
    int depth = 0;
    for (const Span &seed : seeds) {
        int change = 0;
        for (QStringView block : BlocksIn(source, tokens[seed.first].start, tokens[seed.last].end))
            change += ScriptRegions::NestingChange(block, jscript);
        if (depth > 0)
            groups.last().last = std::max(groups.last().last, seed.last);
        else
            groups.append(seed);
        depth = std::max(0, depth + change);
    }
    return groups;
}

// Spans that overlap or touch inside one tag become one.
QList<Span> Merged(QList<Span> spans)
{
    std::sort(spans.begin(), spans.end(), [](const Span &a, const Span &b) { return a.first < b.first; });
    QList<Span> merged;
    for (const Span &s : spans) {
        if (!merged.isEmpty() && s.first <= merged.last().last)
            merged.last().last = std::max(merged.last().last, s.last);
        else
            merged.append(s);
    }
    return merged;
}

// Script that must stay the first thing the server reads.
bool MustStayFirst(QStringView text)
{
    static const QRegularExpression first(QStringLiteral("<%\\s*@|\\boption\\s+explicit\\b"),
                                          QRegularExpression::CaseInsensitiveOption);
    return first.match(text).hasMatch();
}

// One statement of VBScript, lower case, comments gone: how it changes the
// nesting.
int StatementChange(const QString &s)
{
    static const QRegularExpression opens(QStringLiteral(
        "^(?:(?:public|private|friend)\\s+)?(?:default\\s+)?(?:sub|function|class|property\\s+(?:get|let|set))\\b"
        "|^(?:for|do|while|with)\\b|^select\\s+case\\b"));
    static const QRegularExpression closes(QStringLiteral(
        "^(?:next|loop|wend)\\b|^end\\s+(?:if|sub|function|class|property|select|with)\\b"));
    static const QRegularExpression blockIf(QStringLiteral("^if\\b.*\\bthen$"));
    if (closes.match(s).hasMatch())
        return -1;
    if (opens.match(s).hasMatch() || blockIf.match(s).hasMatch())
        return 1;
    return 0;
}

// The statements of a VBScript block: strings blanked, comments dropped,
// continued lines joined, split at line ends and colons.
QStringList VBStatements(QStringView block)
{
    static const QRegularExpression continued(QStringLiteral("_[ \\t]*(\\r\\n|\\n|\\r)"));
    const QString code = block.toString().replace(continued, QStringLiteral(" "));
    QStringList statements;
    QString current;
    bool inString = false;
    for (qsizetype i = 0; i < code.size(); ++i) {
        const QChar c = code[i];
        if (inString) {
            inString = c != u'"';
        } else if (c == u'"') {
            inString = true;
            current += QStringLiteral("\"\"");
        } else if (c == u'\'') {
            while (i + 1 < code.size() && code[i + 1] != u'\n' && code[i + 1] != u'\r')
                ++i;
        } else if (c == u'\n' || c == u'\r' || c == u':') {
            statements.append(current.simplified().toLower());
            current.clear();
        } else {
            current += c;
        }
    }
    statements.append(current.simplified().toLower());
    statements.removeIf([](const QString &s) { return s == QLatin1String("rem") || s.startsWith(QLatin1String("rem ")); });
    return statements;
}

int BraceChange(QStringView code)
{
    int change = 0;
    QChar quote;
    for (qsizetype i = 0; i < code.size(); ++i) {
        const QChar c = code[i];
        if (!quote.isNull()) {
            if (c == u'\\')
                ++i;
            else if (c == quote)
                quote = QChar();
        } else if (c == u'"' || c == u'\'') {
            quote = c;
        } else if (c == u'/' && i + 1 < code.size() && code[i + 1] == u'/') {
            while (i + 1 < code.size() && code[i + 1] != u'\n')
                ++i;
        } else if (c == u'{') {
            ++change;
        } else if (c == u'}') {
            --change;
        }
    }
    return change;
}

} // namespace

int ScriptRegions::NestingChange(QStringView block, bool jscript)
{
    QStringView code = block;
    if (code.startsWith(u"<%"))
        code = code.mid(2);
    if (code.endsWith(u"%>"))
        code.chop(2);
    if (code.startsWith(u'=') || code.startsWith(u'@'))
        return 0;
    if (jscript)
        return BraceChange(code);
    int change = 0;
    for (const QString &statement : VBStatements(code))
        change += StatementChange(statement);
    return change;
}

QList<ScriptRegion> ScriptRegions::Find(QStringView source, const QList<PageToken> &tokens)
{
    const QList<Span> spans = Merged(Grouped(source, tokens, Seeds(source, tokens)));
    QList<ScriptRegion> regions;
    int lastFirst = -1;
    for (const Span &s : spans) {
        ScriptRegion r;
        r.firstToken = s.first;
        r.lastToken = s.last;
        r.start = tokens[s.first].start;
        r.end = tokens[s.last].end;
        if (MustStayFirst(source.mid(r.start, r.end - r.start)))
            lastFirst = int(regions.size());
        regions.append(r);
    }
    for (int k = 0; k <= lastFirst; ++k)
        regions[k].marked = false;
    return regions;
}

QString ScriptRegions::MarkerIn(int index)
{
    return QStringLiteral("<!--") + kIn + QStringLiteral("%1-->").arg(2 * index, 5, 10, QLatin1Char('0'));
}

QString ScriptRegions::MarkerOut(int index)
{
    return QStringLiteral("<!--") + kOut + QStringLiteral("%1-->").arg(2 * index, 5, 10, QLatin1Char('0'));
}

int ScriptRegions::MarkerIndex(QStringView commentText, bool &opening)
{
    QStringView inner = commentText;
    if (inner.startsWith(u"<!--"))
        inner = inner.mid(4);
    if (inner.endsWith(u"-->"))
        inner.chop(3);
    opening = inner.startsWith(kIn);
    if (!opening && !inner.startsWith(kOut))
        return -1;
    const QStringView digits = inner.mid(opening ? kIn.size() : kOut.size());
    bool ok = false;
    const int id = digits.toInt(&ok);
    return ok && digits.size() == 5 && id % 2 == 0 ? id / 2 : -1;
}

QString ScriptRegions::Marked(QStringView source, const QList<ScriptRegion> &regions)
{
    QString out;
    out.reserve(source.size() + regions.size() * 48);
    qsizetype at = 0;
    for (int k = 0; k < regions.size(); ++k) {
        const ScriptRegion &r = regions[k];
        if (!r.marked)
            continue;
        out += source.mid(at, r.start - at);
        out += MarkerIn(k);
        out += source.mid(r.start, r.end - r.start);
        out += MarkerOut(k);
        at = r.end;
    }
    out += source.mid(at);
    return out;
}
