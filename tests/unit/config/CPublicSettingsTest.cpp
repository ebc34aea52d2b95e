#include "config/CCrypt.h"
#include "config/CPublicSettings.h"
#include "platform/CReg.h"
#include "support/MError.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace {
using G = MGlobalProjectObjects;

SiteRecord site(const QString &address, const QString &user)
{
    SiteRecord r;
    r.userid = user;
    r.password = QStringLiteral("pw-") + user;
    r.baseurl = QStringLiteral("ftp.example.com");
    r.baseaddress = address;
    r.indexfile = QStringLiteral("index.htm");
    r.ftproot = QStringLiteral("/www");
    r.isactive = QStringLiteral("1");
    r.useremotef = QStringLiteral("0");
    r.usesubindex = QStringLiteral("1");
    r.remotefolder = QStringLiteral("/home/site");
    r.subindex = {QStringLiteral("default.asp"), QStringLiteral("start.htm")};
    r.passivemode = true;
    r.automode = QStringLiteral("0");
    r.isnew = true;
    r.useabsol = true;
    return r;
}

void expectSame(const SiteRecord &a, const SiteRecord &b)
{
    EXPECT_EQ(a.userid, b.userid);
    EXPECT_EQ(a.password, b.password);
    EXPECT_EQ(a.baseurl, b.baseurl);
    EXPECT_EQ(a.baseaddress, b.baseaddress);
    EXPECT_EQ(a.indexfile, b.indexfile);
    EXPECT_EQ(a.ftproot, b.ftproot);
    EXPECT_EQ(a.isactive, b.isactive);
    EXPECT_EQ(a.useremotef, b.useremotef);
    EXPECT_EQ(a.usesubindex, b.usesubindex);
    EXPECT_EQ(a.remotefolder, b.remotefolder);
    EXPECT_EQ(a.subindex, b.subindex);
    EXPECT_EQ(a.passivemode, b.passivemode);
    EXPECT_EQ(a.automode, b.automode);
    EXPECT_EQ(a.isnew, b.isnew);
    EXPECT_EQ(a.useabsol, b.useabsol);
}

class CPublicSettingsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QFile::remove(CReg::StorePath());
        G::URLDATA.clear();
        G::Proxy = ProxySettings();
    }
    void TearDown() override { QFile::remove(CReg::StorePath()); }
};
} // namespace

TEST_F(CPublicSettingsTest, EmptyStoreGivesOneEmptyRecordAndNoVersion)
{
    ASSERT_EQ(CPublicSettings().GetURLSettings(), 1);
    ASSERT_EQ(G::URLDATA.size(), 1u);
    expectSame(G::URLDATA[0], SiteRecord());
    EXPECT_EQ(G::URLDATA[0].subindex, QStringList{QString()});
    EXPECT_FALSE(G::useSpellCheck);
    EXPECT_EQ(G::AdvancedUserSettings, 0);
    EXPECT_EQ(CReg::GetSetting(QStringLiteral("Krypto"), QStringLiteral("ver"), QStringLiteral("unset")),
              QStringLiteral("unset"));
}

TEST_F(CPublicSettingsTest, StoreRoundTripsRecordsProxyAndEmptyUserInTheMiddle)
{
    SiteRecord middle = site(QStringLiteral("http://b.example.com"), QString());
    middle.subindex = {QString()};
    middle.passivemode = false;
    middle.useabsol = false;
    middle.isnew = false;
    middle.automode = QStringLiteral("1");
    G::URLDATA = {site(QStringLiteral("http://a.example.com"), QStringLiteral("anna")), middle,
                  site(QStringLiteral("http://c.example.com"), QStringLiteral("carl"))};
    G::Proxy.use = true;
    G::Proxy.serverHTTPname = QStringLiteral("proxy.lan");
    G::Proxy.serverHTTPPort = QStringLiteral("3128");
    G::Proxy.serverSOCKSServerType = QStringLiteral("5");
    const auto saved = G::URLDATA;
    ASSERT_EQ(CPublicSettings().SetURLSettings(), 1);

    // The password is not in the store as clear text, and the empty userid
    // is the single byte 0.
    QFile file(CReg::StorePath());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    EXPECT_FALSE(text.contains("pw-anna"));
    EXPECT_TRUE(text.contains("userid______1=hex:00\n"));

    G::URLDATA.clear();
    G::Proxy = ProxySettings();
    CReg::Reload();
    ASSERT_EQ(CPublicSettings().GetURLSettings(), 1);
    ASSERT_EQ(G::URLDATA.size(), saved.size());
    for (std::size_t i = 0; i < saved.size(); ++i)
        expectSame(G::URLDATA[i], saved[i]);
    EXPECT_TRUE(G::Proxy.use);
    EXPECT_EQ(G::Proxy.serverHTTPPort, QStringLiteral("3128"));
    EXPECT_EQ(G::Proxy.serverSOCKSServerType, QStringLiteral("5"));
    EXPECT_EQ(CReg::GetSetting(QStringLiteral("Krypto"), QStringLiteral("ver")), QStringLiteral("1"));
}

TEST_F(CPublicSettingsTest, FewerRecordsLeaveNoStaleOnesAndEmptyMarkWritesNone)
{
    G::URLDATA = {site(QStringLiteral("http://a"), QStringLiteral("a")), site(QStringLiteral("http://b"), QStringLiteral("b"))};
    ASSERT_EQ(CPublicSettings().SetURLSettings(), 1);
    G::URLDATA.pop_back();
    ASSERT_EQ(CPublicSettings().SetURLSettings(), 1);
    ASSERT_EQ(CPublicSettings().GetURLSettings(), 1);
    EXPECT_EQ(G::URLDATA.size(), 1u);

    G::URLDATA = {SiteRecord()};
    G::URLDATA[0].baseaddress = CPublicSettings::EmptyAddress();
    G::Proxy.useFTP = true;
    ASSERT_EQ(CPublicSettings().SetURLSettings(), 1);
    EXPECT_FALSE(CReg::SectionExists(QStringLiteral("settings")));
    EXPECT_EQ(CReg::GetSetting(QStringLiteral("Proxy"), QStringLiteral("useFTP")), QStringLiteral("True"));
}

TEST_F(CPublicSettingsTest, OlderFormatIsReadAndUpgradedAtFirstSave)
{
    // An older store: enciphered value names, enciphered string values, no
    // version mark, no automode/useabsol/isnew.
    CCrypt crypt;
    auto put = [&](int field, long n, const QString &value) {
        const QString name = CPublicSettings::FieldValueName(field, n);
        CReg::SaveSetting(QStringLiteral("settings"), crypt.EnCryptString(name, name),
                          crypt.EnCryptString(value, CPublicSettings::FieldKey(field, n)));
    };
    const QStringList users = {QStringLiteral("zed"), QStringLiteral("amy")};
    const QStringList addresses = {QStringLiteral("http://z.example.com"), QStringLiteral("http://a.example.com")};
    for (long n = 0; n < 2; ++n) {
        put(0, n, users[n]);
        put(1, n, QStringLiteral("secret") + QString::number(n));
        put(3, n, addresses[n]);
        put(9, n, QStringLiteral("1"));
        put(10, n, QStringLiteral("True"));
    }
    // Record 2 has an empty userid: in this format that ends the list.
    put(3, 2, QStringLiteral("http://hidden.example.com"));
    CReg::SaveSetting(QStringLiteral("settings"), QStringLiteral("subindex1,0"), QStringLiteral("home.asp"));

    ASSERT_EQ(CPublicSettings().GetURLSettings(), 1);
    ASSERT_EQ(G::URLDATA.size(), 2u);
    // Sorted by address: amy's site first.
    EXPECT_EQ(G::URLDATA[0].userid, QStringLiteral("amy"));
    EXPECT_EQ(G::URLDATA[0].password, QStringLiteral("secret1"));
    EXPECT_EQ(G::URLDATA[0].subindex, QStringList{QStringLiteral("home.asp")});
    EXPECT_TRUE(G::URLDATA[0].passivemode);
    EXPECT_TRUE(G::URLDATA[0].automode.isEmpty());
    EXPECT_FALSE(G::URLDATA[0].useabsol);

    ASSERT_EQ(CPublicSettings().SetURLSettings(), 1);
    EXPECT_EQ(CReg::GetSetting(QStringLiteral("Krypto"), QStringLiteral("ver")), QStringLiteral("1"));
    EXPECT_EQ(CReg::GetBinarySetting(QStringLiteral("settings"), QStringLiteral("userid______1")).typeId(),
              QMetaType::QByteArray);
    const auto before = G::URLDATA;
    CReg::Reload();
    ASSERT_EQ(CPublicSettings().GetURLSettings(), 1);
    ASSERT_EQ(G::URLDATA.size(), 2u);
    for (std::size_t i = 0; i < before.size(); ++i)
        expectSame(G::URLDATA[i], before[i]);
}

TEST_F(CPublicSettingsTest, SortIsStableAndCaseSensitive)
{
    G::URLDATA = {site(QStringLiteral("http://b"), QStringLiteral("1")), site(QStringLiteral("http://B"), QStringLiteral("2")),
                  site(QStringLiteral("http://b"), QStringLiteral("3")), site(QStringLiteral("http://a"), QStringLiteral("4"))};
    EXPECT_EQ(CPublicSettings().SortURLData(), 1);
    QStringList order;
    for (const SiteRecord &r : G::URLDATA)
        order << r.userid;
    EXPECT_EQ(order, (QStringList{QStringLiteral("2"), QStringLiteral("4"), QStringLiteral("1"), QStringLiteral("3")}));
}

TEST_F(CPublicSettingsTest, AdvancedAndSpellValuesAreRead)
{
    CReg::SaveSetting(QStringLiteral("Advanced"), QStringLiteral("AdvancedUserSettings"), QStringLiteral("73"));
    CReg::SaveSetting(QStringLiteral("Advanced"), QStringLiteral("UseTidy"), QStringLiteral("yes"));
    CReg::SaveSetting(QStringLiteral("Advanced"), QStringLiteral("TidyCharEncodingType"), QStringLiteral("3"));
    CReg::SaveSetting(QStringLiteral("Advanced"), QStringLiteral("CMSUserName"), QStringLiteral("editor"));
    CReg::SaveSetting(QStringLiteral("Spell"), QStringLiteral("useSpellCheck"), QStringLiteral("True"));
    ASSERT_EQ(CPublicSettings().GetURLSettings(), 1);
    EXPECT_EQ(G::AdvancedUserSettings, 73);
    EXPECT_TRUE(G::UseTidy); // anything but "" or "False"
    EXPECT_EQ(G::TidyCharEncodingType, 3);
    EXPECT_EQ(G::TidyIndentScheme, 0);
    EXPECT_EQ(G::CMSUserName, QStringLiteral("editor"));
    EXPECT_TRUE(G::useSpellCheck);
    EXPECT_FALSE(G::g_strTempFolder.isEmpty());
}

TEST_F(CPublicSettingsTest, UnwritableStoreFailsWithThePendingErrorAndKeepsMemory)
{
    // A folder where the file should be: nothing can be written there.
    ASSERT_TRUE(QDir().mkpath(CReg::StorePath()));
    G::URLDATA = {site(QStringLiteral("http://a"), QStringLiteral("a"))};
    MError::ClearError();
    EXPECT_EQ(CPublicSettings().SetURLSettings(), 0);
    EXPECT_NE(MError::ErrorNumber(), 0);
    EXPECT_EQ(MError::ErrorSource(), QStringLiteral("CReg.EndUpdate"));
    EXPECT_EQ(G::URLDATA.size(), 1u);
    MError::ClearError();
    ASSERT_TRUE(QDir(CReg::StorePath()).removeRecursively());
    // The next save succeeds and stores the list.
    EXPECT_EQ(CPublicSettings().SetURLSettings(), 1);
    ASSERT_EQ(CPublicSettings().GetURLSettings(), 1);
    EXPECT_EQ(G::URLDATA[0].userid, QStringLiteral("a"));
}
