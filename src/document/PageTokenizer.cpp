#include "document/PageTokenizer.h"

#include "document/HtmlEntities.h"

#include <QHash>

#include <algorithm>

namespace {

bool IsSpace(QChar c)
{
    return c == u' ' || c == u'\n' || c == u'\r' || c == u'\t' || c == u'\f';
}

bool IsAscii(QStringView text)
{
    for (const QChar c : text) {
        if (c.unicode() >= 0x80)
            return false;
    }
    return true;
}

bool IsLetter(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

// Elements whose content the parser takes as text up to their end tag.
bool IsRawTextElement(const QString &name)
{
    static const QStringList names = {QStringLiteral("script"),   QStringLiteral("style"),   QStringLiteral("title"),
                                      QStringLiteral("textarea"), QStringLiteral("xmp"),     QStringLiteral("iframe"),
                                      QStringLiteral("noembed"),  QStringLiteral("noframes"), QStringLiteral("noscript"),
                                      QStringLiteral("plaintext")};
    return names.contains(name);
}

// Title and textarea text has its references read; script and style not.
bool ReadsReferences(const QString &name)
{
    return name == QLatin1String("title") || name == QLatin1String("textarea");
}

// Line ends as the parser hands them on.
QString ParserLineEnds(QString text)
{
    if (text.contains(u'\r')) {
        text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        text.replace(u'\r', u'\n');
    }
    return text;
}

} // namespace

quint64 PageTokenizer::TextKey(PageToken::Kind kind, QStringView characters)
{
    return quint64(qHash(characters, size_t(kind) * 0x9E3779B97F4A7C15ULL + 1));
}

// One pass over the text. Positions are indexes into the text; with
// skipBlocks every search steps over server script as a whole.
class PageTokenizer::Reader
{
public:
    Reader(QStringView text, bool skipBlocks, const Decoder &decode)
        : m_text(text)
        , m_skip(skipBlocks)
        , m_decode(decode)
    {
    }

    QList<PageToken> Run()
    {
        m_tokens.reserve(m_text.size() / 6 + 16);
        while (m_pos < m_text.size())
            Step();
        FlushText();
        return m_tokens;
    }

private:
    bool BlockAt(qsizetype i) const
    {
        return m_skip && i + 1 < m_text.size() && m_text[i] == u'<' && m_text[i + 1] == u'%';
    }

    // The end of the block that starts at i (behind its "%>"); a block that
    // never ends runs to the end of the text.
    qsizetype BlockEnd(qsizetype i) const
    {
        const qsizetype close = m_text.indexOf(u"%>", i + 2);
        return close < 0 ? m_text.size() : close + 2;
    }

    // The first place at or after `from` where `needle` starts outside
    // script; -1 when there is none. `held` tells whether script was passed.
    qsizetype Find(QStringView needle, qsizetype from, bool &held, Qt::CaseSensitivity cs = Qt::CaseSensitive) const
    {
        while (true) {
            const qsizetype at = m_text.indexOf(needle, from, cs);
            if (!m_skip)
                return at;
            const qsizetype block = NextBlock(from);
            if (block < 0 || (at >= 0 && at < block))
                return at;
            held = true;
            from = BlockEnd(block);
        }
    }

    // The next "<%" at or after `from`; the answer is kept, so that a page
    // with long stretches without script is not searched to its end again
    // for every tag.
    qsizetype NextBlock(qsizetype from) const
    {
        if (m_nextBlock != -2 && (m_nextBlock < 0 || m_nextBlock >= from) && m_nextBlockFrom <= from)
            return m_nextBlock;
        m_nextBlockFrom = from;
        m_nextBlock = m_text.indexOf(u"<%", from);
        return m_nextBlock;
    }

    QString Characters(qsizetype start, qsizetype end) const
    {
        const QStringView slice = m_text.mid(start, end - start);
        return m_decode ? m_decode(slice) : slice.toString();
    }

    void Emit(PageToken::Kind kind, qsizetype start, qsizetype end, QStringView meaning, bool held = false)
    {
        PageToken token;
        token.kind = kind;
        token.start = start;
        token.end = end;
        token.key = meaning.contains(u'\r') ? TextKey(kind, ParserLineEnds(meaning.toString())) : TextKey(kind, meaning);
        token.holdsBlock = held;
        m_tokens.append(token);
    }

    void FlushText()
    {
        if (m_textStart < 0)
            return;
        const qsizetype end = m_pos;
        qsizetype i = m_textStart;
        m_textStart = -1;
        while (i < end) {
            const bool space = IsSpace(m_text[i]);
            qsizetype j = i;
            while (j < end && IsSpace(m_text[j]) == space)
                ++j;
            const QStringView slice = m_text.mid(i, j - i);
            if (space || (!slice.contains(u'&') && (!m_decode || IsAscii(slice))))
                Emit(space ? PageToken::Space : PageToken::Word, i, j, slice);
            else
                Emit(PageToken::Word, i, j, HtmlEntities::Decode(Characters(i, j)));
            i = j;
        }
    }

    void Step()
    {
        const QChar c = m_text[m_pos];
        if (BlockAt(m_pos)) {
            FlushText();
            const qsizetype end = BlockEnd(m_pos);
            Emit(PageToken::Script, m_pos, end, m_text.mid(m_pos, end - m_pos).toString(), true);
            m_pos = end;
            return;
        }
        if (c == u'<' && Markup())
            return;
        if (m_textStart < 0)
            m_textStart = m_pos;
        ++m_pos;
    }

    // Reads the markup at m_pos; false when the "<" is only text.
    bool Markup()
    {
        const QStringView rest = m_text.mid(m_pos);
        if (rest.startsWith(u"<!--"))
            return Comment();
        if (rest.size() > 1 && (rest[1] == u'!' || rest[1] == u'?'))
            return Declaration();
        if (rest.size() > 2 && rest[1] == u'/' && IsLetter(rest[2]))
            return EndTag();
        if (rest.size() > 1 && IsLetter(rest[1]))
            return StartTag();
        return false;
    }

    bool Comment()
    {
        FlushText();
        bool held = false;
        const qsizetype start = m_pos;
        qsizetype close;
        if (m_text.mid(start + 4).startsWith(u">") || m_text.mid(start + 4).startsWith(u"->"))
            close = m_text.indexOf(u'>', start + 4);
        else
            close = Find(u"-->", start + 4, held);
        const qsizetype end = close < 0 ? m_text.size() : m_text.indexOf(u'>', close) + 1;
        const qsizetype innerEnd = close < 0 ? m_text.size() : close;
        Emit(PageToken::Comment, start, end, m_text.mid(start + 4, std::max<qsizetype>(innerEnd - start - 4, 0)).toString(), held);
        m_pos = end;
        return true;
    }

    bool Declaration()
    {
        FlushText();
        bool held = false;
        const qsizetype close = Find(u">", m_pos + 2, held);
        const qsizetype end = close < 0 ? m_text.size() : close + 1;
        const QString meaning = m_text.mid(m_pos, end - m_pos).toString().toLower().simplified();
        Emit(PageToken::Declaration, m_pos, end, meaning, held);
        m_pos = end;
        return true;
    }

    bool EndTag()
    {
        FlushText();
        bool held = false;
        const qsizetype close = Find(u">", m_pos + 2, held);
        const qsizetype end = close < 0 ? m_text.size() : close + 1;
        qsizetype nameEnd = m_pos + 2;
        while (nameEnd < end && !IsSpace(m_text[nameEnd]) && m_text[nameEnd] != u'>' && m_text[nameEnd] != u'/')
            ++nameEnd;
        Emit(PageToken::EndTag, m_pos, end, m_text.mid(m_pos + 2, nameEnd - m_pos - 2).toString().toLower(), held);
        m_pos = end;
        return true;
    }

    bool StartTag()
    {
        FlushText();
        const qsizetype start = m_pos;
        qsizetype i = start + 1;
        while (i < m_text.size() && !IsSpace(m_text[i]) && m_text[i] != u'>' && m_text[i] != u'/' && !BlockAt(i))
            ++i;
        const QString name = m_text.mid(start + 1, i - start - 1).toString().toLower();
        bool held = false;
        const qsizetype end = TagEnd(i, held);
        QString meaning = name;
        if (!held)
            meaning += AttributeMeaning(m_text.mid(start, end - start));
        Emit(PageToken::StartTag, start, end, meaning, held);
        m_pos = end;
        if (IsRawTextElement(name))
            RawText(name);
        return true;
    }

    // Behind the ">" that closes the tag, quoted values and script passed
    // over; the end of the text for a tag that never closes.
    qsizetype TagEnd(qsizetype i, bool &held) const
    {
        QChar quote;
        while (i < m_text.size()) {
            if (BlockAt(i)) {
                held = true;
                i = BlockEnd(i);
                continue;
            }
            const QChar c = m_text[i];
            if (!quote.isNull()) {
                if (c == quote)
                    quote = QChar();
            } else if (c == u'>') {
                return i + 1;
            } else if ((c == u'"' || c == u'\'') && i > 0 && (m_text[i - 1] == u'=' || IsSpace(m_text[i - 1]))) {
                quote = c;
            }
            ++i;
        }
        return m_text.size();
    }

    // By name: the engine moves an attribute that was taken off and set
    // again to the end of its tag, which means nothing to a browser.
    QString AttributeMeaning(QStringView tag) const
    {
        QList<Attribute> attributes = PageTokenizer::Attributes(tag);
        std::sort(attributes.begin(), attributes.end(), [](const Attribute &x, const Attribute &y) { return x.name < y.name; });
        QString meaning;
        for (const Attribute &a : attributes) {
            meaning += u' ' + a.name + u'=';
            if (a.valueStart >= 0) {
                const QStringView value = tag.mid(a.valueStart, a.valueEnd - a.valueStart);
                meaning += HtmlEntities::Decode(m_decode ? m_decode(value) : value.toString());
            }
        }
        return meaning;
    }

    void RawText(const QString &name)
    {
        bool held = false;
        qsizetype from = m_pos;
        qsizetype close = -1;
        while (name != QLatin1String("plaintext")) {
            close = Find(QString(QStringLiteral("</") + name), from, held, Qt::CaseInsensitive);
            const qsizetype behind = close < 0 ? -1 : close + 2 + name.size();
            if (close < 0 || behind >= m_text.size() || IsSpace(m_text[behind]) || m_text[behind] == u'>'
                || m_text[behind] == u'/')
                break;
            from = behind;
        }
        const qsizetype end = close < 0 ? m_text.size() : close;
        if (end > m_pos) {
            const QString content = ReadsReferences(name) ? HtmlEntities::Decode(Characters(m_pos, end))
                                                          : Characters(m_pos, end);
            Emit(PageToken::RawText, m_pos, end, content, held);
        }
        m_pos = end;
    }

    QStringView m_text;
    bool m_skip;
    const Decoder &m_decode;
    QList<PageToken> m_tokens;
    qsizetype m_pos = 0;
    qsizetype m_textStart = -1;
    mutable qsizetype m_nextBlock = -2; // -2: not searched yet
    mutable qsizetype m_nextBlockFrom = 0;
};

QList<PageToken> PageTokenizer::Tokenize(QStringView text, bool skipBlocks, const Decoder &decode)
{
    return Reader(text, skipBlocks, decode).Run();
}

QString PageTokenizer::TagName(QStringView text, const PageToken &token)
{
    qsizetype i = token.start + (token.kind == PageToken::EndTag ? 2 : 1);
    const qsizetype from = i;
    while (i < token.end && !IsSpace(text[i]) && text[i] != u'>' && text[i] != u'/')
        ++i;
    return text.mid(from, i - from).toString().toLower();
}

QList<PageTokenizer::Attribute> PageTokenizer::Attributes(QStringView tag)
{
    QList<Attribute> list;
    qsizetype i = 1;
    while (i < tag.size() && !IsSpace(tag[i]) && tag[i] != u'>' && tag[i] != u'/')
        ++i;
    const qsizetype end = tag.endsWith(u'>') ? tag.size() - 1 : tag.size();
    while (i < end) {
        while (i < end && (IsSpace(tag[i]) || tag[i] == u'/'))
            ++i;
        if (i >= end)
            break;
        Attribute a;
        a.nameStart = i;
        ++i; // a name may start with "=" or a quote; it never is empty
        while (i < end && !IsSpace(tag[i]) && tag[i] != u'=' && tag[i] != u'/')
            ++i;
        a.name = tag.mid(a.nameStart, i - a.nameStart).toString().toLower();
        qsizetype j = i;
        while (j < end && IsSpace(tag[j]))
            ++j;
        if (j < end && tag[j] == u'=') {
            ++j;
            while (j < end && IsSpace(tag[j]))
                ++j;
            if (j < end && (tag[j] == u'"' || tag[j] == u'\'')) {
                a.quote = tag[j];
                a.valueStart = j + 1;
                const qsizetype close = tag.indexOf(a.quote, j + 1);
                a.valueEnd = close < 0 || close > end ? end : close;
                i = std::min(a.valueEnd + 1, end);
            } else {
                a.valueStart = j;
                while (j < end && !IsSpace(tag[j]))
                    ++j;
                a.valueEnd = j;
                i = j;
            }
        }
        const bool seen = std::any_of(list.cbegin(), list.cend(), [&](const Attribute &b) { return b.name == a.name; });
        if (!seen)
            list.append(a);
    }
    return list;
}
