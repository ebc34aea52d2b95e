// The tables survive a write and a read, spare entries included.

#include "cms/CMSDataFile.h"
#include "cms/CMSTableCodec.h"
#include "cms/CMSTables.h"

#include <gtest/gtest.h>

namespace {

CMSUSER user(const QString &name, const QString &password, std::int32_t admin, std::int16_t hidden = 0)
{
    return {name, password, {CMS_ALL_ENABLED, 0x5, CMS_ALL_ENABLED, 0, admin}, hidden};
}

} // namespace

TEST(CMSTableCodecTest, TablesWrittenAndReadBackAreEqualSpareEntriesIncluded)
{
    ResetCMSTables();
    g_aCMSUsers = {user(QStringLiteral("Anna"), QStringLiteral("pw"), 1),
                   user(QStringLiteral("bo \u00e5\u00e4\u00f6"), QStringLiteral("Pw\u00e9"), 0, 3),
                   user(QStringLiteral("spare"), QStringLiteral("left over"), 0)};
    g_aCMSPages = {{QStringLiteral("http://site.test/index.htm"), {0.0f, 1.0f, -1.0f}},
                   {QStringLiteral("/www/sub/p\u00e5ge.htm"), {}},
                   {QStringLiteral("spare page"), {-1.0f}}};
    g_boolAllFilesLocked = false;
    const auto users = g_aCMSUsers;
    const auto pages = g_aCMSPages;

    const QDate written(2026, 11, 23);
    const QByteArray file = CMSTableCodec::Encode(written);
    ResetCMSTables();
    double version = 0;
    ASSERT_TRUE(CMSTableCodec::Decode(file, QDate(2000, 1, 1), version));
    EXPECT_EQ(version, 13.0);
    EXPECT_EQ(g_aCMSUsers, users);
    EXPECT_EQ(g_aCMSPages, pages);
    EXPECT_TRUE(g_boolAllFilesLocked);
    EXPECT_EQ(g_dtCMSStamp, QDate(2029, 11, 23)) << "three years after writing";

    // The stored flag is the table's, though a read overrules it.
    CMSDataFile::Record record;
    ASSERT_TRUE(CMSDataFile::Read(file, record));
    EXPECT_EQ(record.boolAllLocked, 0);
    EXPECT_EQ(record.aUsers->size(), 3u);
    // Text fields are never in clear in the file.
    EXPECT_FALSE(file.contains("Anna"));
    EXPECT_FALSE(file.contains("index.htm"));
}

TEST(CMSTableCodecTest, EmptyTablesKeepTheirSpareEntry)
{
    ResetCMSTables();
    const QByteArray file = CMSTableCodec::Encode(QDate(2026, 1, 1));
    CMSDataFile::Record record;
    ASSERT_TRUE(CMSDataFile::Read(file, record));
    ASSERT_EQ(record.aUsers->size(), 1u);
    EXPECT_EQ(record.aUsers->at(0).bytName, QByteArray(1, '\0')) << "the spare is enciphered too";
    ASSERT_EQ(record.aPages->size(), 1u);
    EXPECT_EQ(record.aPages->at(0).sngUsers, QList<float>{-1.0f});

    g_aCMSUsers.clear();
    double version = 0;
    ASSERT_TRUE(CMSTableCodec::Decode(file, QDate(2026, 1, 1), version));
    EXPECT_EQ(g_aCMSUsers, std::vector<CMSUSER>(1));
}
