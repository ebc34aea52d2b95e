// The texts the edit session makes itself: the save date and the way back
// from a marked script page.

#include "aspfilter/CASPFilter.h"
#include "shell/ASPTagging.h"
#include "shell/HttpDate.h"
#include "shell/MarkedPageRepair.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTimeZone>

#include <gtest/gtest.h>

TEST(HttpDate, EnglishNamesInUtcWhateverTheZone)
{
    const QDateTime local(QDate(1994, 11, 6), QTime(9, 49, 37), QTimeZone(3600));
    EXPECT_EQ(HttpDate::Format(local), QStringLiteral("Sun, 06 Nov 1994 08:49:37 GMT"));
    const QDateTime newYear(QDate(2027, 1, 1), QTime(0, 30, 5), QTimeZone(3600));
    EXPECT_EQ(HttpDate::Format(newYear), QStringLiteral("Thu, 31 Dec 2026 23:30:05 GMT"));
}

TEST(ASPTagging, CopyBesideThePageKeepsTheNameUpToItsLastDot)
{
    EXPECT_EQ(ASPTagging::BackupName(QStringLiteral("/a/b.c/page.asp")), QStringLiteral("page.keldabak"));
    EXPECT_EQ(ASPTagging::BackupName(QStringLiteral("/a/my.page.asp")), QStringLiteral("my.page.keldabak"));
}

// A script page comes back byte for byte when the markers are cut out of
// its marked version, unless the marking took lines out (directives,
// Option Explicit, empty blocks): those only the copy beside the page has.
TEST(MarkedPageRepair, CuttingTheMarkersOutGivesTheOriginalBack)
{
    const QDir corpus(QFileInfo(QStringLiteral(__FILE__)).absolutePath() + QStringLiteral("/../aspfilter/corpus"));
    int pages = 0;
    for (const QString &name : corpus.entryList({QStringLiteral("*.asp")}, QDir::Files)) {
        QFile file(corpus.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray original = file.readAll();
        if (original.contains("<%@") || original.contains("Option Explicit") || original.contains("<% %>"))
            continue;
        CASPFilter filter;
        filter.LetURL(QStringLiteral("/") + name);
        QString marked = QString::fromLatin1(original);
        if (filter.FilterIn(marked) != 1)
            continue;
        ++pages;
        EXPECT_TRUE(MarkedPageRepair::IsMarked(marked.toLatin1())) << name.toStdString();
        EXPECT_EQ(MarkedPageRepair::StripMarkers(marked.toLatin1()), original) << name.toStdString();
        EXPECT_FALSE(MarkedPageRepair::IsMarked(original));
    }
    EXPECT_GT(pages, 0);
}
