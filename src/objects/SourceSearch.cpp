#include "objects/SourceSearch.h"

SourceSearch::SourceSearch(const QString &word, Options options)
    : m_regularExpression(options.regularExpression)
    , m_empty(word.isEmpty())
{
    QString pattern = options.regularExpression ? word : QRegularExpression::escape(word);
    // A whole word has no word character on either side; "\b" would demand
    // one inside, and so never find "<TD>" as a whole word.
    if (options.wholeWord)
        pattern = QStringLiteral("(?<!\\w)(?:%1)(?!\\w)").arg(pattern);
    QRegularExpression::PatternOptions flags = QRegularExpression::MultilineOption;
    if (!options.matchCase)
        flags |= QRegularExpression::CaseInsensitiveOption;
    m_pattern = QRegularExpression(pattern, flags);
}

bool SourceSearch::IsValid() const
{
    return !m_empty && m_pattern.isValid();
}

QString SourceSearch::Error() const
{
    return m_pattern.isValid() ? QString() : m_pattern.errorString();
}

std::vector<SourceSearch::Hit> SourceSearch::Hits(const QString &text) const
{
    std::vector<Hit> hits;
    if (!IsValid())
        return hits;
    QRegularExpressionMatchIterator it = m_pattern.globalMatch(text);
    while (it.hasNext()) {
        QRegularExpressionMatch match = it.next();
        if (match.capturedLength() > 0)
            hits.push_back({match.capturedStart(), match.capturedLength(), match});
    }
    return hits;
}

QString SourceSearch::Replacement(const Hit &hit, const QString &replaceWith) const
{
    if (!m_regularExpression)
        return replaceWith;
    QString result;
    for (qsizetype i = 0; i < replaceWith.size(); ++i) {
        const QChar c = replaceWith.at(i);
        const QChar next = i + 1 < replaceWith.size() ? replaceWith.at(i + 1) : QChar();
        if (c == QLatin1Char('$') && next == QLatin1Char('$')) {
            result += c;
            ++i;
        } else if (c == QLatin1Char('$') && next.isDigit() && next != QLatin1Char('0')) {
            result += hit.match.captured(next.digitValue());
            ++i;
        } else {
            result += c;
        }
    }
    return result;
}
