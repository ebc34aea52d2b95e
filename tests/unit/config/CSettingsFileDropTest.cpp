#include "config/CPublicSettings.h"
#include "config/CSettingsFile.h"
#include "config/CSettingsFileDrop.h"
#include "platform/CReg.h"
#include "platform/LocalFolders.h"
#include "support/MError.h"
#include "support/UserQuestions.h"

#include <QFile>
#include <QtEndian>

#include <gtest/gtest.h>

namespace {
using G = MGlobalProjectObjects;

QByteArray storeBytes()
{
    QFile file(CReg::StorePath());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

class CSettingsFileDropTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QFile::remove(CReg::StorePath());
        MError::ClearError();
        G::URLDATA.clear();
        // A store holding one site already.
        SiteRecord first;
        first.baseaddress = QStringLiteral("http://old.example.com");
        first.userid = QStringLiteral("old");
        first.isactive = QStringLiteral("1");
        G::URLDATA = {first};
        ASSERT_EQ(CPublicSettings().SetURLSettings(), 1);

        site.userid = QStringLiteral("demo");
        site.password = QStringLiteral("demo1234");
        site.baseurl = QStringLiteral("127.0.0.1");
        site.baseaddress = QStringLiteral("http://new.example.com");
        site.indexfile = QStringLiteral("index.htm");
        site.ftproot = QStringLiteral("/www");
        site.passivemode = true;
        site.useabsol = true;
        G::AdvancedUserSettings = 8 | 64;
        G::UseTidy = true;
        G::TidyCharEncodingType = 3;
        path = LocalFolders::tempFolder() + QStringLiteral("/new_example.pset");
        QFile::remove(path);
    }
    void TearDown() override
    {
        UserQuestions::EndScript();
        MError::ClearError();
        QFile::remove(path);
        QFile::remove(CReg::StorePath());
    }

    SiteRecord site;
    QString path;
};
} // namespace

TEST_F(CSettingsFileDropTest, BlockLayoutIsDimsCountLowerBoundThenBytes)
{
    QStringList texts = CSettingsFile::FromSite(site, QStringLiteral("cms"), QString());
    ASSERT_EQ(texts.size(), CSettingsFile::FieldCount);
    const QByteArray bytes = CSettingsFile::Encode(texts);
    EXPECT_EQ(qFromLittleEndian<quint16>(bytes.constData()), 1);
    EXPECT_EQ(qFromLittleEndian<quint32>(bytes.constData() + 2), 5u); // "demo" + the byte 0
    EXPECT_EQ(qFromLittleEndian<quint32>(bytes.constData() + 6), 0u);
    EXPECT_EQ(bytes.at(14), '\0');
    QStringList back;
    ASSERT_EQ(CSettingsFile::Decode(bytes, back), 1);
    EXPECT_EQ(back, texts);
    EXPECT_EQ(back.at(CSettingsFile::CMSUserPassword), QString()); // an empty field travels
    EXPECT_EQ(back.at(CSettingsFile::AdvancedUserSettings), QStringLiteral("72"));
}

TEST_F(CSettingsFileDropTest, DroppedFileMakesNewActiveRecordAndOffersToGoThere)
{
    ASSERT_EQ(CSettingsFile::WriteFile(path, CSettingsFile::FromSite(site, QStringLiteral("editor"),
                                                                     QStringLiteral("pw"))), 1);
    G::AdvancedUserSettings = 0;
    G::UseTidy = false;
    UserQuestions::Script({UserQuestions::vbYes});
    QString go;
    EXPECT_EQ(CSettingsFileDrop::Apply(true, {path, QStringLiteral("/other.pset")}, go), CSettingsFileDrop::Added);
    EXPECT_EQ(go, QStringLiteral("http://new.example.com"));
    const auto shown = UserQuestions::ShownSoFar();
    ASSERT_EQ(shown.size(), 1);
    EXPECT_EQ(shown[0].title, QStringLiteral("Vindrell CMS"));
    EXPECT_EQ(shown[0].text, QStringLiteral("Vindrell is now activated at:\r\nhttp://new.example.com\r\n"
                                            "with your CMS user name:\r\neditor\r\nDo you want to navigate there?"));

    // It lasts: a fresh load finds both sites and the carried settings.
    G::URLDATA.clear();
    CReg::Reload();
    ASSERT_EQ(CPublicSettings().GetURLSettings(), 1);
    ASSERT_EQ(G::URLDATA.size(), 2u);
    const SiteRecord &added = G::URLDATA[0];
    EXPECT_EQ(added.baseaddress, QStringLiteral("http://new.example.com"));
    EXPECT_EQ(added.password, QStringLiteral("demo1234"));
    EXPECT_EQ(added.isactive, QStringLiteral("1"));
    EXPECT_TRUE(added.useabsol);
    EXPECT_EQ(G::AdvancedUserSettings, 72);
    EXPECT_TRUE(G::UseTidy);
    EXPECT_EQ(G::CMSUserName, QStringLiteral("editor"));
    EXPECT_EQ(G::CMSUserPassword, QStringLiteral("pw"));

    // A second drop of the same file adds a second record; No stays here.
    UserQuestions::Script({UserQuestions::vbNo});
    EXPECT_EQ(CSettingsFileDrop::Apply(true, {path}, go), CSettingsFileDrop::Added);
    EXPECT_TRUE(go.isEmpty());
    EXPECT_EQ(G::URLDATA.size(), 3u);
}

TEST_F(CSettingsFileDropTest, EmptyStoreRecordIsFilledNotAppended)
{
    G::URLDATA = {SiteRecord()};
    ASSERT_EQ(CSettingsFile::WriteFile(path, CSettingsFile::FromSite(site, QString(), QString())), 1);
    UserQuestions::Script({UserQuestions::vbNo});
    QString go;
    EXPECT_EQ(CSettingsFileDrop::Apply(true, {path}, go), CSettingsFileDrop::Added);
    ASSERT_EQ(G::URLDATA.size(), 1u);
    EXPECT_EQ(G::URLDATA[0].userid, QStringLiteral("demo"));
}

TEST_F(CSettingsFileDropTest, DamagedFilesFailClearlyAndChangeNothing)
{
    const QByteArray good = CSettingsFile::Encode(CSettingsFile::FromSite(site, QStringLiteral("e"), QString()));
    QByteArray hugeCount = good;
    qToLittleEndian<quint32>(0x7fffffff, hugeCount.data() + 2);
    const QList<QByteArray> damaged = {good.left(good.size() - 1), good.left(7), QByteArray(),
                                       QByteArray("GIF89a garbage of no use at all, nothing like blocks"),
                                       hugeCount, good + QByteArray("x")};
    const QByteArray storeBefore = storeBytes();
    const std::size_t recordsBefore = G::URLDATA.size();
    for (const QByteArray &bytes : damaged) {
        writeBytes(path, bytes);
        UserQuestions::Script({});
        QString go;
        EXPECT_EQ(CSettingsFileDrop::Apply(true, {path}, go), CSettingsFileDrop::Failed);
        EXPECT_EQ(MError::ErrorDescription(),
                  QStringLiteral("The settings file is damaged or is not a Vindrell settings file."));
        EXPECT_TRUE(UserQuestions::ShownSoFar().isEmpty());
        MError::ClearError();
    }
    EXPECT_EQ(storeBytes(), storeBefore);
    EXPECT_EQ(G::URLDATA.size(), recordsBefore);
}

TEST_F(CSettingsFileDropTest, NoFileListTellsTheUserAndOtherFilesAreIgnored)
{
    UserQuestions::Script({UserQuestions::vbOK});
    QString go;
    EXPECT_EQ(CSettingsFileDrop::Apply(false, {}, go), CSettingsFileDrop::Ignored);
    ASSERT_EQ(UserQuestions::ShownSoFar().size(), 1);
    EXPECT_TRUE(UserQuestions::ShownSoFar()[0].text.startsWith(
        QStringLiteral("It was no file you dropped on the Vindrell band.")));

    UserQuestions::Script({});
    EXPECT_EQ(CSettingsFileDrop::Apply(true, {QStringLiteral("/tmp/page.htm"), path}, go), CSettingsFileDrop::Ignored);
    EXPECT_TRUE(UserQuestions::ShownSoFar().isEmpty());
}
