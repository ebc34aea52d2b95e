// F7 on a selection in a page being edited, in the real page engine with
// the machine's Hunspell dictionaries: the spelling dialog driven as a
// user drives it, each of its answers, the corrected words back in the
// page and in the file saved on the fixture server, the clipboard left as
// it was; and every case where nothing may happen.

#include "../fileviews/SiteTreeDriver.h"
#include "ModalDriver.h"
#include "SavedPage.h"
#include "platform/PageEvent.h"
#include "platform/PageScriptCall.h"
#include "platform/SpellEngine.h"
#include "support/UserQuestions.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QImage>
#include <QListWidget>
#include <QTest>
#include <QTextEdit>

#include <gtest/gtest.h>

namespace {

using fileviews_test::click;
using fileviews_test::onModal;
using fileviews_test::type;
using G = MGlobalProjectObjects;

// The page as a save writes it: the words changed, and the three tags a
// save puts into every head.
std::string AsSaved(QByteArray page, const char *from, const char *to)
{
    const QByteArray metas = "<meta http-equiv=\"Expires\" content=\"-1\"><meta http-equiv=\"Pragma\" content=\"no-cache\">"
                             "<meta http-equiv=\"Last-Modified\" content=\"" + save_test::SaveDate.toUtf8() + "\">";
    return page.replace(from, to).replace("</head>", metas + "</head>").toStdString();
}

class SpellCheck : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        save_test::setSaveDate();
        UserQuestions::Script({});
        G::useSpellCheck = true;
        QApplication::clipboard()->setText(QStringLiteral("what the user copied"));
    }
    void TearDown() override
    {
        G::useSpellCheck = false;
        UserQuestions::EndScript();
    }

    // The page in edit mode, its events going to the document as the edit
    // session sends them.
    void open(const QString &path, const QByteArray &body)
    {
        doc = save_test::editPage(screen, path, body);
        QObject::connect(&screen.browser, &WebBrowser::pageEvent, &screen.browser, [this](const PageEvent &e) {
            const bool f7 = e.type == QLatin1String("keydown") && e.keyCode == 118;
            EXPECT_EQ(doc->OnPageEvent(e), 1) << MError::ErrorDescription().toStdString();
            f7Handled += f7 ? 1 : 0;
        });
    }
    QVariant run(const QString &script) { return PageScriptCall::run(screen.browser.page(), script, QString()); }
    QString html(const QString &id) { return run(QStringLiteral("document.getElementById('%1').innerHTML").arg(id)).toString(); }
    void select(const QString &id)
    {
        run(QStringLiteral("getSelection().selectAllChildren(document.getElementById('%1')), true").arg(id));
    }
    // F7 as typed, until the document has dealt with it (the dialog, when
    // one comes, is answered inside).
    void pressF7()
    {
        const int before = f7Handled;
        screen.browser.activateWindow();
        screen.browser.setFocus();
        QTest::keyClick(screen.browser.focusProxy(), Qt::Key_F7);
        ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return f7Handled > before; }, 20000));
    }
    static QString sentence(QWidget *dialog)
    {
        return dialog->findChild<QTextEdit *>(QStringLiteral("txtSentence"))->textCursor().document()->toPlainText();
    }
    static QStringList suggestions(QWidget *dialog)
    {
        QStringList texts;
        auto *list = dialog->findChild<QListWidget *>(QStringLiteral("lstSuggestions"));
        for (int i = 0; i < list->count(); ++i)
            texts << list->item(i)->text();
        return texts;
    }
    QStringList dialogsShown() const
    {
        QStringList texts;
        for (const UserQuestions::Shown &s : UserQuestions::ShownSoFar())
            texts << s.text;
        return texts;
    }

    document_test::Screen screen;
    std::unique_ptr<CDocument> doc;
    int f7Handled = 0;
};

TEST_F(SpellCheck, EachAnswerOfTheDialogEndsInThePageAndTheSavedFile)
{
    QFile::remove(SpellEngine::PersonalListPath());
    const QByteArray body = "<html><head><title>Spelling</title></head><body>\n"
                            "<p id=\"en\">Teh <b>wrold</b> is round. Teh end is neer, Kelvindra said; "
                            "tehm all, tehm all.</p>\n<p id=\"other\">Untouched tehh.</p>\n</body></html>";
    open(QStringLiteral("spelling/english.htm"), body);
    select(QStringLiteral("en"));
    QStringList stops;
    onModal(QStringLiteral("frmSpelling"), [&](QWidget *dialog) {
        auto answer = [&](const char *button, const QString &to = {}) {
            stops << sentence(dialog);
            if (!to.isEmpty())
                type(dialog, "txtChangeTo", to);
            click(dialog, button);
        };
        EXPECT_TRUE(suggestions(dialog).contains(QStringLiteral("The")));
        answer("cmdChangeAll", QStringLiteral("The"));
        answer("cmdChange", QStringLiteral("world"));
        answer("cmdIgnore");     // neer
        answer("cmdAdd");        // Kelvindra
        answer("cmdIgnoreAll");  // tehm, both
    });
    pressF7();
    // One stop for each word the user was asked about, in its sentence.
    ASSERT_EQ(stops.size(), 5);
    EXPECT_EQ(stops.at(0), QStringLiteral("Teh wrold is round."));
    EXPECT_EQ(stops.at(2), QStringLiteral("The end is neer, Kelvindra said; tehm all, tehm all."));
    EXPECT_EQ(html(QStringLiteral("en")),
              QStringLiteral("The <b>world</b> is round. The end is neer, Kelvindra said; tehm all, tehm all."));
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("what the user copied"));

    EXPECT_EQ(doc->Save(), 1) << MError::ErrorDescription().toStdString();
    EXPECT_EQ(save_test::serverFile(QStringLiteral("spelling/english.htm")).toStdString(),
              AsSaved(QByteArray(body).replace("Teh end", "The end"), "Teh <b>wrold</b>", "The <b>world</b>"));

    // The added word is the user's for good: the list a later start reads.
    QFile list(SpellEngine::PersonalListPath());
    ASSERT_TRUE(list.open(QIODevice::ReadOnly));
    EXPECT_EQ(list.readAll(), QByteArray("Kelvindra\n"));
}

TEST_F(SpellCheck, ASwedishPageIsCheckedWithTheSwedishDictionary)
{
    const QByteArray body = "<html lang=\"sv\"><head><title>Stavning</title></head><body>\n"
                            "<p id=\"sv\">Jag har en hundd och en katt.</p>\n</body></html>";
    open(QStringLiteral("spelling/svenska.htm"), body);
    select(QStringLiteral("sv"));
    QStringList offered;
    onModal(QStringLiteral("frmSpelling"), [&](QWidget *dialog) {
        offered = suggestions(dialog);
        type(dialog, "txtChangeTo", QStringLiteral("hund"));
        click(dialog, "cmdChange");
    });
    pressF7();
    EXPECT_TRUE(offered.contains(QStringLiteral("hund"))) << offered.join(QLatin1Char(',')).toStdString();
    EXPECT_EQ(doc->Save(), 1) << MError::ErrorDescription().toStdString();
    EXPECT_EQ(save_test::serverFile(QStringLiteral("spelling/svenska.htm")).toStdString(), AsSaved(body, "hundd", "hund"));
}

TEST_F(SpellCheck, NothingHappensWithoutASelectionOrTheSettingOrAnErrorAndCancelKeepsTheText)
{
    open(QStringLiteral("spelling/quiet.htm"),
         "<html><head><title>Quiet</title></head><body>\n<p id=\"bad\">Teh wrold.</p>\n"
         "<p id=\"good\">All words right.</p>\n</body></html>");
    {
        ModalDriver unexpected(QStringLiteral("frmSpelling"), [](QWidget *dialog) { click(dialog, "cmdCancel"); });
        run(QStringLiteral("getSelection().collapse(document.getElementById('bad').firstChild, 2), true"));
        pressF7();
        select(QStringLiteral("good"));
        pressF7();
        G::useSpellCheck = false;
        select(QStringLiteral("bad"));
        pressF7();
        EXPECT_EQ(unexpected.seen, 0);
    }
    EXPECT_TRUE(dialogsShown().isEmpty());
    EXPECT_EQ(html(QStringLiteral("good")), QStringLiteral("All words right."));

    // Cancel after a change: the change is not made, and the user is told.
    G::useSpellCheck = true;
    onModal(QStringLiteral("frmSpelling"), [&](QWidget *dialog) {
        type(dialog, "txtChangeTo", QStringLiteral("The"));
        click(dialog, "cmdChange");
        click(dialog, "cmdCancel");
    });
    pressF7();
    EXPECT_EQ(html(QStringLiteral("bad")), QStringLiteral("Teh wrold."));
    EXPECT_EQ(dialogsShown(), QStringList({"Spelling Corrections Have Been Canceled!"}));
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("what the user copied"));
}

// The engine's own checker, with the dictionaries made at build time:
// misspelt words typed in edit mode get the red underline, which goes when
// the setting is off. The screenshot is left in the test's output folder.
TEST_F(SpellCheck, TypedWordsAreUnderlinedInEditModeAndNotWithTheSettingOff)
{
    open(QStringLiteral("spelling/underline.htm"),
         "<html><head><title>Underline</title></head><body style=\"font-size: 32px\">\n"
         "<p id=\"typed\">Start</p>\n</body></html>");
    run(QStringLiteral("document.body.focus(); getSelection().collapse(document.getElementById('typed').firstChild, 5), true"));
    screen.browser.activateWindow();
    screen.browser.setFocus();
    QTest::keyClicks(screen.browser.focusProxy(), QStringLiteral(" thiss wrongg wurds here "));
    const auto redPixels = [this] {
        const QImage shot = screen.browser.grab().toImage();
        int red = 0;
        for (int y = 0; y < shot.height(); ++y)
            for (int x = 0; x < shot.width(); ++x) {
                const QColor c = shot.pixelColor(x, y);
                red += c.red() > 180 && c.green() < 90 && c.blue() < 90 ? 1 : 0;
            }
        return red;
    };
    const bool underlined = PageScriptCall::pumpUntil([&] { return redPixels() > 20; }, 20000);
    QDir().mkpath(QStringLiteral("screenshots"));
    screen.browser.grab().save(QStringLiteral("screenshots/spelling-underlined.png"));
    EXPECT_TRUE(underlined);

    G::useSpellCheck = false;
    ASSERT_EQ(doc->EditOn(false), 1);
    ASSERT_EQ(doc->EditOn(true), 1);
    EXPECT_TRUE(PageScriptCall::pumpUntil([&] { return redPixels() == 0; }, 20000));
    screen.browser.grab().save(QStringLiteral("screenshots/spelling-off.png"));
}

} // namespace
