// The transfer status window: shown for a transfer from 2000 bytes, not for
// a smaller one, and its Cancel asks first and then stops the upload.

#include "TransferSite.h"
#include "support/UserQuestions.h"
#include "transfer/CFTPS.h"
#include "transfer/frmTransferStatusEx.h"

#include <QEvent>
#include <QPushButton>
#include <QTimer>

#include <gtest/gtest.h>

using namespace transfer_test;

namespace {

// Counts the times the window came up, and presses its Cancel when told to.
class WindowWatch : public QObject
{
public:
    int shown = 0;
    bool pressCancel = false;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show) {
            ++shown;
            auto *window = static_cast<frmTransferStatusEx *>(watched);
            if (pressCancel)
                QTimer::singleShot(0, window->CancelButton(), &QPushButton::click);
        }
        return false;
    }
};

class CFTPSStatusWindow : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        useSites({demoSite()});
        TransferStatusWindow::InstallFactory([this] {
            auto window = std::make_unique<frmTransferStatusEx>();
            window->installEventFilter(&watch);
            return window;
        });
        servers().writeWebFile(QStringLiteral("status.htm"), "old\r\n");
    }
    void TearDown() override
    {
        TransferStatusWindow::InstallFactory(nullptr);
        UserQuestions::EndScript();
        servers().clearFtpFaults();
        MError::ClearError();
    }

    WindowWatch watch;
};

} // namespace

TEST_F(CFTPSStatusWindow, ShownFromTwoThousandBytesOn)
{
    CFTPS client;
    EXPECT_EQ(client.SendPage(pageOf(1999, 's'), QStringLiteral("/status.htm")), 1);
    EXPECT_EQ(watch.shown, 0);
    EXPECT_EQ(client.SendPage(pageOf(2000, 's'), QStringLiteral("/status.htm")), 1);
    EXPECT_EQ(watch.shown, 1);

    client.SetHideTransferDialog(true);
    EXPECT_EQ(client.SendPage(pageOf(5000, 's'), QStringLiteral("/status.htm")), 1);
    EXPECT_EQ(watch.shown, 1);
}

TEST_F(CFTPSStatusWindow, CancelAsksAndYesAbortsTheUpload)
{
    CFTPS client;
    const QByteArray page = pageOf(300000, 'c');
    servers().setFtpFaults({{QStringLiteral("delay_ms"), 100}});
    watch.pressCancel = true;

    const auto expectTheQuestion = [] {
        const QList<UserQuestions::Shown> shown = UserQuestions::ShownSoFar();
        ASSERT_EQ(shown.size(), 1);
        EXPECT_EQ(shown[0].text, QStringLiteral("Would you like to abort?"));
        EXPECT_EQ(shown[0].title, QStringLiteral("Abort file transfer"));
        EXPECT_EQ(UserQuestions::DefaultAnswer(shown[0].style), UserQuestions::vbNo);
    };

    // No: the upload goes on to its end.
    UserQuestions::Script({UserQuestions::vbNo});
    EXPECT_EQ(client.SendPage(page, QStringLiteral("/status.htm")), 1);
    expectTheQuestion();
    EXPECT_EQ(servers().readWebFile(QStringLiteral("status.htm")), page);

    // Yes: the upload stops and the page stays as it was.
    UserQuestions::Script({UserQuestions::vbYes});
    EXPECT_EQ(client.SendPage(pageOf(300000, 'd'), QStringLiteral("/status.htm")), 0);
    expectTheQuestion();
    EXPECT_EQ(servers().readWebFile(QStringLiteral("status.htm")), page);
}
