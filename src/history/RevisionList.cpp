#include "history/RevisionList.h"

namespace {
// No client writes more than single-digit numbers; the bound keeps a damaged
// index with endless date keys from costing more than a glance.
constexpr long kMostDates = 99;

// "rev" as the original clients read it: one character, a digit.
long singleDigit(const QString &text)
{
    if (text.size() != 1 || !text.front().isDigit() || text.front().unicode() > '9')
        return -1;
    return text.front().unicode() - '0';
}
} // namespace

QString RevisionList::DateKey(long nRev)
{
    return QString::number(nRev) + QStringLiteral("date");
}

long RevisionList::EffectiveHistorySize(long stored)
{
    if (stored <= 0)
        return DefaultHistorySize;
    return qMin(stored, MaxHistorySize);
}

long RevisionList::NextRevision(const ProfileFile &index, const QString &section, long historySize)
{
    const long size = EffectiveHistorySize(historySize);
    bool hasId = false;
    index.value(section, QStringLiteral("ID"), &hasId);
    if (!hasId)
        return 1;
    const long rev = singleDigit(index.value(section, QStringLiteral("rev")));
    if (rev >= 0)
        return rev + 1 > size ? 1 : rev + 1;
    for (long n = 1; n <= size; ++n) {
        if (index.value(section, DateKey(n)).isEmpty())
            return n;
    }
    return 1;
}

void RevisionList::Fill(const ProfileFile &index, const QString &section)
{
    m_dates.clear();
    bool ok = false;
    m_nRevision = index.value(section, QStringLiteral("rev")).toLong(&ok);
    if (!ok)
        m_nRevision = 0;
    for (long n = 1; n <= kMostDates; ++n) {
        const QString date = index.value(section, DateKey(n)).trimmed();
        if (date.isEmpty())
            break;
        m_dates.append(date);
    }
    // A "rev" that names no listed date (damaged, or lost behind a gap)
    // starts the list at the last date that can be read.
    const long count = static_cast<long>(m_dates.size());
    m_nCursor = (m_nRevision >= 1 && m_nRevision <= count) ? m_nRevision : count;
    m_nGiven = 0;
}

bool RevisionList::Next(QString &strDate, long &nRev)
{
    const long count = static_cast<long>(m_dates.size());
    if (m_nGiven >= count)
        return false;
    strDate = m_dates.at(m_nCursor - 1);
    nRev = m_nCursor;
    if (--m_nCursor < 1)
        m_nCursor = count;
    ++m_nGiven;
    return true;
}
