// The byte layout of cms.dat: a file put together by hand, and files that
// hold no whole record.

#include "cms/CMSDataFile.h"
#include "cms/CMSTableCodec.h"
#include "cms/CMSTables.h"
#include "config/CCrypt.h"

#include <QtEndian>

#include <gtest/gtest.h>

namespace {

class Bytes
{
public:
    QByteArray out;
    Bytes &i16(qint16 v) { return raw(&v, 2); }
    Bytes &i32(qint32 v) { return raw(&v, 4); }
    Bytes &f32(float v) { return raw(&v, 4); }
    Bytes &text(const QByteArray &b) { out.append(b); return *this; }
    Bytes &array(const QByteArray &b) { return i16(1).i32(static_cast<qint32>(b.size())).i32(0).text(b); }

private:
    // The test machine is little-endian like the file; checked below.
    Bytes &raw(const void *p, int n) { out.append(static_cast<const char *>(p), n); return *this; }
};

QByteArray cipher(const QString &text, const char *phrase)
{
    return CCrypt().EnCryptBinary(text, QString::fromLatin1(phrase));
}

// One page with users {0, -1}, one user "Anna"/"Secret" who is an administrator.
QByteArray handMadeFile(const QByteArray &version, const QByteArray &stamp)
{
    Bytes b;
    b.text(version).i16(0);
    b.i16(1).i32(1).i32(0);
    b.array(cipher(QStringLiteral("http://example.test/a.htm"), "fenuqwarte"));
    b.i16(1).i32(2).i32(0).f32(0.0f).f32(-1.0f);
    b.i16(1).i32(1).i32(0);
    b.array(cipher(QStringLiteral("Anna"), "tralgumpe"));
    b.array(cipher(QStringLiteral("Secret"), "drosknaple"));
    b.i32(1).i32(2).i32(3).i32(4).i32(1).i16(0);
    b.array(stamp);
    return b.out;
}

class CMSDataFileTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(QSysInfo::ByteOrder, QSysInfo::LittleEndian);
        ResetCMSTables();
    }
    const QDate today{2026, 11, 23};
};

} // namespace

TEST_F(CMSDataFileTest, HandMadeFileReadsAsExpectedAndIsWrittenBackByteForByte)
{
    const QByteArray stamp = cipher(QStringLiteral("02/28/2029"), "zilbothrun");
    const QByteArray file = handMadeFile("13        ", stamp);

    double version = 0;
    g_boolAllFilesLocked = false;
    ASSERT_TRUE(CMSTableCodec::Decode(file, today, version));
    EXPECT_EQ(version, 13.0);
    EXPECT_TRUE(g_boolAllFilesLocked) << "a stored False still reads as locked";
    ASSERT_EQ(g_aCMSPages.size(), 1u);
    EXPECT_EQ(g_aCMSPages[0].strPath, QStringLiteral("http://example.test/a.htm"));
    EXPECT_EQ(g_aCMSPages[0].sngUsers, (QList<float>{0.0f, -1.0f}));
    ASSERT_EQ(g_aCMSUsers.size(), 1u);
    EXPECT_EQ(g_aCMSUsers[0].strName, QStringLiteral("Anna"));
    EXPECT_EQ(g_aCMSUsers[0].strPassword, QStringLiteral("Secret"));
    EXPECT_EQ(g_aCMSUsers[0].limits, (CMS_LIMITS{1, 2, 3, 4, 1}));
    EXPECT_EQ(g_dtCMSStamp, QDate(2029, 2, 28));

    // The writer gives the same bytes apart from the stamp and the lock flag,
    // which a read always leaves True.
    g_boolAllFilesLocked = false;
    const QByteArray written = CMSTableCodec::Encode(QDate(2026, 2, 28));
    EXPECT_EQ(written, file);

    // A stamp that is no date gives today.
    ASSERT_TRUE(CMSTableCodec::Decode(handMadeFile("13        ", cipher(QStringLiteral("31/31/2029"), "zilbothrun")),
                                      today, version));
    EXPECT_EQ(g_dtCMSStamp, today);
}

TEST_F(CMSDataFileTest, NeverSizedArraysHaveTheShortDescriptorAndStayNeverSized)
{
    CMSDataFile::Record record;
    record.strVersion = "13";
    record.boolAllLocked = -1;
    record.aPages = std::vector<CMSDataFile::Page>{CMSDataFile::Page{}};
    const QByteArray bytes = CMSDataFile::Write(record);
    // Version, flag, page descriptor, two short page arrays, short users, short stamp.
    EXPECT_EQ(bytes, Bytes().text("13        ").i16(-1).i16(1).i32(1).i32(0).i16(0).i16(0).i16(0).i16(0).out);

    CMSDataFile::Record back;
    ASSERT_TRUE(CMSDataFile::Read(bytes, back));
    EXPECT_EQ(back.strVersion, QByteArray("13        "));
    back.strVersion = "13";
    EXPECT_EQ(back, record);

    // In the tables a never-sized table is one spare entry.
    double version = 0;
    ASSERT_TRUE(CMSTableCodec::Decode(bytes, today, version));
    EXPECT_EQ(g_aCMSUsers.size(), 1u);
    EXPECT_EQ(g_aCMSUsers[0], CMSUSER{});
    EXPECT_EQ(g_dtCMSStamp, today) << "no stamp gives today";
}

TEST_F(CMSDataFileTest, EveryCutOfAWholeFileIsRefusedAndLeavesTheTablesAlone)
{
    const QByteArray file = handMadeFile("13        ", cipher(QStringLiteral("01/01/2030"), "zilbothrun"));
    for (qsizetype n = 0; n < file.size(); ++n) {
        double version = 0;
        EXPECT_FALSE(CMSTableCodec::Decode(file.left(n), today, version)) << n;
    }
    EXPECT_EQ(g_aCMSUsers, std::vector<CMSUSER>(1));
    ASSERT_EQ(g_aCMSPages.size(), 1u);
    EXPECT_EQ(g_aCMSPages[0].sngUsers, QList<float>{-1.0f});
}

TEST_F(CMSDataFileTest, BadDescriptorsAreRefusedWithoutReadingPastTheBytes)
{
    const QByteArray head = Bytes().text("13        ").i16(0).out;
    CMSDataFile::Record record;
    // Counts far beyond the file, negative counts, two dimensions, garbage.
    EXPECT_FALSE(CMSDataFile::Read(head + Bytes().i16(1).i32(0x7fffffff).i32(0).out, record));
    EXPECT_FALSE(CMSDataFile::Read(head + Bytes().i16(1).i32(-5).i32(0).out, record));
    EXPECT_FALSE(CMSDataFile::Read(head + Bytes().i16(2).i32(1).i32(0).out + QByteArray(64, '\0'), record));
    EXPECT_FALSE(CMSDataFile::Read(head + Bytes().i16(1).i32(1).i32(0).i16(1).i32(0x10000000).i32(0).out
                                       + QByteArray(100, 'x'),
                                   record));
    EXPECT_FALSE(CMSDataFile::Read(QByteArray(3000, '\xff'), record));
    // A user count that would need 26 bytes an element but the file has fewer.
    const QByteArray users = Bytes().i16(0).i16(1).i32(4).i32(0).out + QByteArray(4 * 26 - 1, '\0');
    EXPECT_FALSE(CMSDataFile::Read(head + users, record));
    EXPECT_TRUE(CMSDataFile::Read(head + users + QByteArray(1, '\0') + Bytes().i16(0).out, record));
}

TEST_F(CMSDataFileTest, VersionTextAndStampAreReadLeniently)
{
    EXPECT_EQ(CMSTableCodec::VersionNumber("13        "), 13.0);
    EXPECT_EQ(CMSTableCodec::VersionNumber("  14.5abc "), 14.5);
    EXPECT_EQ(CMSTableCodec::VersionNumber("garbage   "), 0.0);
    EXPECT_EQ(CMSTableCodec::StampDate(QStringLiteral("1/2/2030")), QDate(2030, 1, 2));
    EXPECT_FALSE(CMSTableCodec::StampDate(QStringLiteral("13/45/2030")).isValid());
    EXPECT_EQ(CMSTableCodec::StampText(QDate(2029, 3, 4)), QStringLiteral("03/04/2029"));
}
