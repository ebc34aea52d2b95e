#include "history/RevisionList.h"

#include <gtest/gtest.h>

namespace {
const QString kPage = QStringLiteral("/www/page.htm");

ProfileFile indexWith(const QString &rev, int dates)
{
    ProfileFile index;
    index.setValue(kPage, QStringLiteral("ID"), QStringLiteral("4711"));
    if (!rev.isNull())
        index.setValue(kPage, QStringLiteral("rev"), rev);
    for (int n = 1; n <= dates; ++n)
        index.setValue(kPage, RevisionList::DateKey(n), QStringLiteral(" date %1 ").arg(n));
    return index;
}

QList<long> walk(const ProfileFile &index, QStringList *dates = nullptr)
{
    RevisionList list;
    list.Fill(index, kPage);
    QList<long> order;
    QString date;
    long rev = 0;
    while (list.Next(date, rev)) {
        order.append(rev);
        if (dates)
            dates->append(date);
    }
    return order;
}
} // namespace

TEST(RevisionList, NumbersRotateWithinTheHistorySize)
{
    ProfileFile none;
    EXPECT_EQ(RevisionList::NextRevision(none, kPage, 5), 1);
    EXPECT_EQ(RevisionList::NextRevision(indexWith(QStringLiteral("1"), 1), kPage, 5), 2);
    EXPECT_EQ(RevisionList::NextRevision(indexWith(QStringLiteral("5"), 5), kPage, 5), 1);
    // Lowered from 5 to 3 with rev at 5: restart at 1.
    EXPECT_EQ(RevisionList::NextRevision(indexWith(QStringLiteral("5"), 5), kPage, 3), 1);
    // A size of 10 or more stays within one digit.
    EXPECT_EQ(RevisionList::NextRevision(indexWith(QStringLiteral("9"), 9), kPage, 12), 1);
    EXPECT_EQ(RevisionList::NextRevision(indexWith(QStringLiteral("8"), 8), kPage, 12), 9);
    EXPECT_EQ(RevisionList::EffectiveHistorySize(0), 5);
    EXPECT_EQ(RevisionList::EffectiveHistorySize(-3), 5);
    EXPECT_EQ(RevisionList::EffectiveHistorySize(40), 9);
}

// A damaged rev never sends the next revision to a number the list can't
// show, nor over a listed one while a free number is left.
TEST(RevisionList, DamagedRevTakesTheFirstFreeNumber)
{
    EXPECT_EQ(RevisionList::NextRevision(indexWith(QStringLiteral("x"), 2), kPage, 5), 3);
    EXPECT_EQ(RevisionList::NextRevision(indexWith(QStringLiteral("12"), 3), kPage, 5), 4);
    EXPECT_EQ(RevisionList::NextRevision(indexWith(QString(), 1), kPage, 5), 2);
    EXPECT_EQ(RevisionList::NextRevision(indexWith(QStringLiteral(""), 5), kPage, 5), 1);
    ProfileFile noId;
    noId.setValue(kPage, QStringLiteral("rev"), QStringLiteral("3"));
    EXPECT_EQ(RevisionList::NextRevision(noId, kPage, 5), 1);
}

TEST(RevisionList, WalksNewestFirstAcrossTheWrap)
{
    QStringList dates;
    EXPECT_EQ(walk(indexWith(QStringLiteral("2"), 5), &dates), QList<long>({2, 1, 5, 4, 3}));
    EXPECT_EQ(dates.first(), QStringLiteral("date 2")); // trimmed
    EXPECT_EQ(walk(indexWith(QStringLiteral("5"), 5)), QList<long>({5, 4, 3, 2, 1}));
    // Lowered to 3 after rev 5, then one save: 4 and 5 stay listed.
    ProfileFile lowered = indexWith(QStringLiteral("1"), 5);
    EXPECT_EQ(walk(lowered), QList<long>({1, 5, 4, 3, 2}));
}

TEST(RevisionList, ShowsWhatCanBeReadOfADamagedSection)
{
    EXPECT_TRUE(walk(ProfileFile()).isEmpty());
    // A gap hides what lies behind it; rev beyond the readable dates or
    // unreadable starts at the last readable one.
    ProfileFile gap = indexWith(QStringLiteral("4"), 2);
    gap.setValue(kPage, QStringLiteral("4date"), QStringLiteral("d4"));
    EXPECT_EQ(walk(gap), QList<long>({2, 1}));
    EXPECT_EQ(walk(indexWith(QStringLiteral("garbage"), 3)), QList<long>({3, 2, 1}));
    EXPECT_EQ(walk(indexWith(QStringLiteral("0"), 2)), QList<long>({2, 1}));
    EXPECT_EQ(walk(indexWith(QStringLiteral("-1"), 2)), QList<long>({2, 1}));
}
