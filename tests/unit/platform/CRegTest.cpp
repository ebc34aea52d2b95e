#include "platform/CReg.h"

#include <QFile>

#include <gtest/gtest.h>

namespace {
class CRegTest : public ::testing::Test
{
protected:
    void SetUp() override { QFile::remove(CReg::StorePath()); }
    void TearDown() override { QFile::remove(CReg::StorePath()); }
};

QString readStoreText()
{
    QFile file(CReg::StorePath());
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QString::fromUtf8(file.readAll());
}
} // namespace

TEST_F(CRegTest, ValuesKeepTheirKindAndAwkwardTextsSurvive)
{
    CReg reg;
    reg.KeyRoot = CReg::AppKey();
    reg.Subkey = QStringLiteral("settings");
    const QString awkward = QStringLiteral("a=b\\c\"d]\n\r\t") + QChar(0) + QChar(1) + QStringLiteral("å€");
    const QByteArray bytes("\x00\xff\x10", 3);
    ASSERT_EQ(reg.SetRegistryValue(QStringLiteral("text"), awkward, CReg::REG_SZ), 1);
    ASSERT_EQ(reg.SetRegistryValue(awkward, QStringLiteral("named"), CReg::REG_SZ), 1);
    ASSERT_EQ(reg.SetRegistryValue(QStringLiteral(";semi"), QStringLiteral("s"), CReg::REG_SZ), 1);
    ASSERT_EQ(reg.SetRegistryValue(QStringLiteral("[head]"), QStringLiteral("h]"), CReg::REG_SZ), 1);
    ASSERT_EQ(reg.SetRegistryValue(QStringLiteral("bin"), bytes, CReg::REG_BINARY), 1);
    ASSERT_EQ(reg.SetRegistryValue(QStringLiteral("empty"), QByteArray(), CReg::REG_BINARY), 1);
    ASSERT_EQ(reg.SetRegistryValue(QStringLiteral("num"), 42, CReg::REG_DWORD), 1);

    CReg::Reload();
    const QString text = readStoreText();
    EXPECT_TRUE(text.contains(QStringLiteral("bin=hex:00,ff,10")));
    EXPECT_TRUE(text.contains(QStringLiteral("num=dword:42")));

    EXPECT_EQ(reg.GetRegistryValue(QStringLiteral("text"), QVariant()).toString(), awkward);
    EXPECT_EQ(reg.GetRegistryValue(awkward, QVariant()).toString(), QStringLiteral("named"));
    EXPECT_EQ(reg.GetRegistryValue(QStringLiteral(";semi"), QVariant()).toString(), QStringLiteral("s"));
    EXPECT_EQ(reg.GetRegistryValue(QStringLiteral("[head]"), QVariant()).toString(), QStringLiteral("h]"));
    EXPECT_EQ(reg.GetRegistryValue(QStringLiteral("bin"), QVariant()).toByteArray(), bytes);
    const QVariant empty = reg.GetRegistryValue(QStringLiteral("empty"), QVariant());
    EXPECT_EQ(empty.typeId(), QMetaType::QByteArray);
    EXPECT_TRUE(empty.toByteArray().isEmpty());
    EXPECT_EQ(reg.GetRegistryValue(QStringLiteral("num"), QVariant()).toLongLong(), 42);
    EXPECT_EQ(reg.GetRegistryValue(QStringLiteral("none"), QStringLiteral("dflt")).toString(),
              QStringLiteral("dflt"));
}

TEST_F(CRegTest, StoreIsReadFromTheFileWrittenByAnotherHand)
{
    QFile file(CReg::StorePath());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[Software\\VB and VBA Program Settings\\Vindrell\\Browser]\n"
               "HomePage=\"http://127.0.0.1:8080/\"\n"
               "junk line\n"
               "[Browser]\n"
               "HomePage=http://plain.example.com/\n");
    file.close();
    EXPECT_EQ(CReg::GetSetting(QStringLiteral("Browser"), QStringLiteral("HomePage")),
              QStringLiteral("http://127.0.0.1:8080/"));
    CReg browser;
    browser.Subkey = QStringLiteral("Browser");
    EXPECT_EQ(browser.GetRegistryValue(QStringLiteral("HomePage"), QVariant()).toString(),
              QStringLiteral("http://plain.example.com/"));
    EXPECT_FALSE(browser.GetRegistryValue(QStringLiteral("junk line"), QVariant()).isValid());
}

TEST_F(CRegTest, SectionsAreCaseSensitiveAndDeleteTakesSubkeys)
{
    ASSERT_EQ(CReg::SaveSetting(QStringLiteral("Environment"), QStringLiteral("Lang"), QStringLiteral("1053")), 1);
    ASSERT_EQ(CReg::SaveSetting(QStringLiteral("environment"), QStringLiteral("setw"), QStringLiteral("1")), 1);
    EXPECT_EQ(CReg::GetSetting(QStringLiteral("environment"), QStringLiteral("Lang"), QStringLiteral("1033")),
              QStringLiteral("1033"));

    CReg reg;
    reg.KeyRoot = CReg::AppKey();
    reg.Subkey = QStringLiteral("settings");
    ASSERT_EQ(reg.CreateKey(QStringLiteral("inner")), 1);
    ASSERT_EQ(CReg::SaveSetting(QStringLiteral("settings"), QStringLiteral("a"), QStringLiteral("1")), 1);
    EXPECT_TRUE(CReg::SectionExists(QStringLiteral("settings\\inner")));
    ASSERT_EQ(CReg::DeleteSetting(QStringLiteral("settings")), 1);
    EXPECT_FALSE(CReg::SectionExists(QStringLiteral("settings")));
    EXPECT_FALSE(CReg::SectionExists(QStringLiteral("settings\\inner")));
    // Deleting what isn't there is no error; the other sections stay.
    EXPECT_EQ(CReg::DeleteSetting(QStringLiteral("settings")), 1);
    EXPECT_EQ(CReg::GetSetting(QStringLiteral("Environment"), QStringLiteral("Lang")), QStringLiteral("1053"));

    ASSERT_EQ(CReg::SaveSetting(QStringLiteral("Environment"), QStringLiteral("HT"), QStringLiteral("5")), 1);
    CReg env;
    env.KeyRoot = CReg::AppKey();
    env.Subkey = QStringLiteral("Environment");
    ASSERT_EQ(env.DeleteValue(QStringLiteral("HT")), 1);
    EXPECT_EQ(CReg::GetSetting(QStringLiteral("Environment"), QStringLiteral("HT"), QStringLiteral("-1")),
              QStringLiteral("-1"));
    EXPECT_EQ(CReg::TrimNull(QStringLiteral("ab") + QChar(0) + QStringLiteral("cd")), QStringLiteral("ab"));
}
