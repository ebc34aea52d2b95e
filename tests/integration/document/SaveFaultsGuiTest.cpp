// A save whose FTP connection is cut at each command in turn: the page on
// the server is always whole, the old one or the new one, and a save after
// the fault goes through.

#include "SavedPage.h"
#include "support/UserQuestions.h"

#include <QJsonObject>

#include <gtest/gtest.h>

namespace {

using namespace save_test;

const QString kPath = QStringLiteral("save/drop.htm");
const QByteArray kOld = "<html><head><meta http-equiv=\"Content-Type\" content=\"text/html; charset=iso-8859-1\">"
                        "<title>Drop</title></head><body><p id=\"text\">Old words.</p></body></html>";

std::unique_ptr<CDocument> editedPage(document_test::Screen &screen)
{
    auto doc = editPage(screen, kPath, kOld);
    screen.browser.Document().getElementById(QStringLiteral("text")).setInnerText(QStringLiteral("New words."));
    doc->SetDirty();
    return doc;
}

} // namespace

TEST(SaveFaults, DroppedConnectionLeavesThePageWhole)
{
    TestServers &servers = TestServers::shared();
    document_test::Screen screen;
    MGlobalProjectObjects::UseTidy = false;
    setSaveDate();
    // Questions from the revision store would wait for a user: none answers.
    UserQuestions::Script({});
    MError::ClearError();
    ASSERT_EQ(editedPage(screen)->Save(), 1) << MError::ErrorDescription().toStdString();
    servers.clearFtpLog();
    ASSERT_EQ(editedPage(screen)->Save(), 1) << MError::ErrorDescription().toStdString();
    const QByteArray fresh = serverFile(kPath);
    // A cut connection costs a new login: a few more commands than a save
    // on a live connection.
    const int commands = int(servers.ftpLog().size()) + 4;

    int failed = 0;
    for (int n = 1; n <= commands; ++n) {
        SCOPED_TRACE(n);
        auto doc = editedPage(screen);
        servers.setFtpFaults({{QStringLiteral("drop_before_n"), n}});
        MError::ClearError();
        const long result = doc->Save();
        const QByteArray after = serverFile(kPath);
        EXPECT_TRUE(after == kOld || after == fresh) << after.toStdString();
        servers.clearFtpFaults();
        if (result == 1) {
            EXPECT_EQ(after, fresh);
            continue;
        }
        ++failed;
        EXPECT_EQ(result, 0);
        EXPECT_NE(MError::ErrorNumber(), 0);
        MError::ClearError();
        EXPECT_EQ(doc->Save(), 1) << MError::ErrorDescription().toStdString();
        EXPECT_EQ(serverFile(kPath), fresh);
    }
    // The client logs on again inside the replace, but not for every cut.
    EXPECT_GT(failed, 0);
    UserQuestions::EndScript();
}
