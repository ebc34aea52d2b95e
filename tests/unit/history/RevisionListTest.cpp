#include "history/RevisionList.h"

#include <gtest/gtest.h>

// The rotation and the order of a sound index are shown against the server;
// here the damaged and hand-edited cases, which the server tests can't reach
// one by one.
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

QList<long> walk(const ProfileFile &index)
{
    RevisionList list;
    list.Fill(index, kPage);
    QList<long> order;
    QString date;
    long rev = 0;
    while (list.Next(date, rev))
        order.append(rev);
    return order;
}
} // namespace

// A damaged rev never sends the next revision to a number the list can't
// show, nor over a listed one while a free number is left; a size of 10 or
// more stays within one digit.
TEST(RevisionList, NextNumberOfDamagedOrOversizedHistories)
{
    EXPECT_EQ(RevisionList::NextRevision(indexWith(QStringLiteral("x"), 2), kPage, 5), 3);
    EXPECT_EQ(RevisionList::NextRevision(indexWith(QStringLiteral("12"), 3), kPage, 5), 4);
    EXPECT_EQ(RevisionList::NextRevision(indexWith(QString(), 5), kPage, 5), 1);
    EXPECT_EQ(RevisionList::NextRevision(indexWith(QStringLiteral("8"), 8), kPage, 12), 9);
    EXPECT_EQ(RevisionList::NextRevision(indexWith(QStringLiteral("9"), 9), kPage, 12), 1);
    ProfileFile noId;
    noId.setValue(kPage, QStringLiteral("rev"), QStringLiteral("3"));
    EXPECT_EQ(RevisionList::NextRevision(noId, kPage, 5), 1);
}

TEST(RevisionList, ShowsWhatCanBeReadOfADamagedSection)
{
    // A gap hides what lies behind it; a rev beyond the readable dates, or
    // unreadable, starts at the last readable one.
    ProfileFile gap = indexWith(QStringLiteral("4"), 2);
    gap.setValue(kPage, QStringLiteral("4date"), QStringLiteral("d4"));
    EXPECT_EQ(walk(gap), QList<long>({2, 1}));
    EXPECT_EQ(walk(indexWith(QStringLiteral("garbage"), 3)), QList<long>({3, 2, 1}));
    EXPECT_EQ(walk(indexWith(QStringLiteral("0"), 2)), QList<long>({2, 1}));
    EXPECT_EQ(walk(indexWith(QStringLiteral("2"), 5)), QList<long>({2, 1, 5, 4, 3}));
}
