// Pages whose addresses real sites have, edited and saved through the real
// servers: capitals on a server that tells the cases apart, a file name in
// UTF-8, a folder beside the FTP root whose name begins like it, and a site
// recorded as http whose host sends the browser on to https.

#include "SessionWindow.h"

#include <QDir>

using namespace session_test;

namespace {

QByteArray page(const QByteArray &text)
{
    return "<HTML><HEAD><TITLE>Path</TITLE></HEAD><BODY><P id=\"text\">" + text + "</P></BODY></HTML>";
}

QByteArray readFtpFile(const QString &relativePath)
{
    QFile file(servers().ftpRoot() + QLatin1Char('/') + relativePath);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class ServerPathsGui : public ::testing::Test
{
protected:
    void SetUp() override
    {
        writeStore();
        MError::ClearError();
    }
    void TearDown() override
    {
        servers().clearHttpBehaviour();
        UserQuestions::EndScript();
    }

    // Edits the page at the address path, types "zq" and saves, with the
    // answers given to the questions on the way.
    void editAndSave(const QString &addressPath, const QList<long> &answers = {OK})
    {
        UserQuestions::Script(answers);
        Window w;
        ASSERT_TRUE(w.editAndType(addressPath, QStringLiteral("text"), QStringLiteral("zq"))) << addressPath.toStdString()
            << " shown at " << w.form.browser()->LocationURL().toStdString();
        w.pressSave();
        EXPECT_EQ(errorDialogs(), 0) << firstError();
        EXPECT_FALSE(w.editing());
    }
};

} // namespace

// The server holds "/Products/Index.htm" and, to tell them apart, a
// "/products/index.htm" that must stay as it was.
TEST_F(ServerPathsGui, CapitalsReachTheFileWithThem)
{
    servers().writeWebFile(QStringLiteral("Products/Index.htm"), page("upper"));
    servers().writeWebFile(QStringLiteral("products/index.htm"), page("lower"));
    editAndSave(QStringLiteral("Products/Index.htm"));
    EXPECT_TRUE(servers().readWebFile(QStringLiteral("Products/Index.htm")).contains(">zq</"));
    EXPECT_EQ(servers().readWebFile(QStringLiteral("products/index.htm")), page("lower"));
}

TEST_F(ServerPathsGui, Utf8FileNameIsSavedUnderItsOwnName)
{
    const QString name = QStringLiteral("Mat/äta & dricka.htm");
    servers().writeWebFile(name, page("old"));
    editAndSave(QStringLiteral("Mat/%C3%A4ta%20%26%20dricka.htm"));
    EXPECT_TRUE(servers().readWebFile(name).contains(">zq</"));
    EXPECT_TRUE(QDir(servers().webRoot() + QStringLiteral("/Mat")).entryList(QDir::Files).contains(QStringLiteral("äta & dricka.htm")));
}

// The FTP root is "/www"; the page lies in the web root's folder "www2",
// and a folder "/www2" stands beside "/www" on the FTP server.
TEST_F(ServerPathsGui, FolderNamedLikeTheFtpRootIsAFolderOfItsOwn)
{
    servers().writeWebFile(QStringLiteral("www2/a.htm"), page("web"));
    QDir().mkpath(servers().ftpRoot() + QStringLiteral("/www2"));
    QFile beside(servers().ftpRoot() + QStringLiteral("/www2/a.htm"));
    ASSERT_TRUE(beside.open(QIODevice::WriteOnly));
    beside.write(page("beside"));
    beside.close();
    editAndSave(QStringLiteral("www2/a.htm"));
    EXPECT_TRUE(servers().readWebFile(QStringLiteral("www2/a.htm")).contains(">zq</"));
    EXPECT_EQ(readFtpFile(QStringLiteral("www2/a.htm")), page("beside"));
    EXPECT_FALSE(QFile::exists(servers().webRoot() + QStringLiteral("/2/a.htm")));
}

// The record says http; the host answers the page with a redirect to the
// same page over https. The page is the site's all the same.
TEST_F(ServerPathsGui, HttpsRedirectOfAnHttpRecordIsTheSameSite)
{
    servers().writeWebFile(QStringLiteral("moved/a.htm"), page("old"));
    servers().setHttpBehaviour(QJsonObject{{QStringLiteral("redirect"),
                                            QJsonObject{{QStringLiteral("/moved/a.htm"),
                                                         servers().httpsBase() + QStringLiteral("/moved/a.htm")}}}});
    editAndSave(QStringLiteral("moved/a.htm"));
    EXPECT_TRUE(servers().readWebFile(QStringLiteral("moved/a.htm")).contains(">zq</"));
}
