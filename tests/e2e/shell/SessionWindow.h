#pragma once

// A main window on the fixture site, driven as a user drives it: press
// Edit, type into the page, press Save, with the answers to the program's
// questions given in advance through UserQuestions.

#include "DemoSite.h"
#include "TestServers.h"
#include "config/CPublicSettings.h"
#include "config/MGlobalProjectObjects.h"
#include "platform/CReg.h"
#include "platform/HtmlTextRange.h"
#include "platform/PageScriptCall.h"
#include "shell/EditSession.h"
#include "shell/frmVindrell.h"
#include "support/MError.h"
#include "support/UserQuestions.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QFile>
#include <QKeyEvent>
#include <QPushButton>

#include <gtest/gtest.h>

namespace session_test {

inline TestServers &servers()
{
    return TestServers::shared();
}

inline QString address(const QString &path)
{
    return servers().httpBase() + QStringLiteral("/") + path;
}

// The store holds the demo site, active, and a home page on it.
inline void writeStore()
{
    QFile::remove(CReg::StorePath());
    CReg::Reload();
    MGlobalProjectObjects::URLDATA = {demoSiteRecord(servers())};
    ASSERT_EQ(CPublicSettings().SetURLSettings(), 1);
    CReg browser;
    browser.Subkey = QStringLiteral("Browser");
    browser.SetRegistryValue(QStringLiteral("HomePage"), QStringLiteral("about:blank"), CReg::REG_SZ);
    frmVindrell::g_boolVersionChecked = true;
}

// A page of one paragraph, whose id is "text".
inline QByteArray plainPage(const QByteArray &text)
{
    return "<HTML><HEAD><TITLE>Plain</TITLE></HEAD><BODY><P id=\"text\">" + text + "</P></BODY></HTML>";
}

// The tests of a window on the demo site: a fresh store, no faults armed,
// nothing pending, and no script left behind.
class SessionTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        writeStore();
        servers().clearFtpFaults();
        MError::ClearError();
    }
    void TearDown() override
    {
        servers().clearFtpFaults();
        UserQuestions::EndScript();
    }
};

// The answer a message box of one button gets.
inline constexpr long OK = UserQuestions::vbOK;
inline const QString kNoCMSFile = QStringLiteral("Vindrell couldn't find the settings file for CMS");

class Window
{
public:
    Window()
    {
        form.resize(1000, 700);
        form.show();
    }

    void open(const QString &path)
    {
        form.browser()->Navigate2(address(path), WebBrowser::NavNoReadFromCache);
        settle();
    }

    void settle()
    {
        WebBrowser *ie = form.browser();
        PageScriptCall::pumpUntil([ie] { return ie->ReadyState() != WebBrowser::ReadyStateComplete; }, 1000);
        EXPECT_TRUE(ie->waitUntilComplete());
    }

    // Opens the page and presses Edit; true when the session stands.
    bool edit(const QString &path)
    {
        open(path);
        pressEdit();
        return editing();
    }
    bool editAndType(const QString &path, const QString &id, const QString &text)
    {
        return edit(path) && typeInto(page(), id, text);
    }

    // The press returns once the entry is over, as the click runs it.
    void pressEdit() { form.EditButton()->click(); }
    void pressSave() { form.SaveButton()->click(); }

    HtmlDocument page() const { return form.browser()->Document(); }
    bool editing() const { return form.EditButton()->isChecked(); }
    bool addressRowEnabled() const { return form.findChild<QComboBox *>(QStringLiteral("cmbAddress"))->isEnabled(); }

    // Types into the element as a user does: its text selected, keys sent
    // until the page has taken them (the engine takes the keyboard late on
    // a busy machine).
    bool typeInto(HtmlDocument doc, const QString &id, const QString &text)
    {
        WebBrowser *ie = form.browser();
        form.activateWindow();
        ie->setFocus();
        PageScriptCall::pumpUntil([this] { return form.isActiveWindow(); }, 5000);
        QString frame = QStringLiteral("window");
        for (int index : doc.framePath())
            frame += QStringLiteral(".frames[%1]").arg(index);
        for (int attempt = 0; attempt < 5; ++attempt) {
            // Keys go to the frame that has the focus, as a click gives it.
            PageScriptCall::run(ie->page(), frame + QStringLiteral(".focus(); true"), QString());
            HtmlTextRange::aroundElement(doc.getElementById(id)).select();
            PageScriptCall::pumpUntil([&] {
                return PageScriptCall::run(ie->page(), frame + QStringLiteral(".document.hasFocus()"), QString()).toBool();
            }, 3000);
            for (const QChar c : text) {
                QKeyEvent press(QEvent::KeyPress, Qt::Key_A + (c.toUpper().unicode() - 'A'), Qt::NoModifier, c);
                QKeyEvent release(QEvent::KeyRelease, Qt::Key_A + (c.toUpper().unicode() - 'A'), Qt::NoModifier, c);
                QCoreApplication::sendEvent(ie->focusProxy(), &press);
                QCoreApplication::sendEvent(ie->focusProxy(), &release);
            }
            if (PageScriptCall::pumpUntil([&] { return doc.getElementById(id).innerText() == text; }, 2000)) {
                // The key-up events reach the session after the text.
                PageScriptCall::pumpUntil([] { return false; }, 200);
                return true;
            }
        }
        return false;
    }

    frmVindrell form;
};

// The texts the program has shown so far, message boxes and dialogs.
inline QStringList shownTexts()
{
    QStringList texts;
    for (const UserQuestions::Shown &shown : UserQuestions::ShownSoFar())
        texts.append(shown.text);
    return texts;
}

inline int countStartingWith(const QStringList &texts, const QString &start)
{
    int n = 0;
    for (const QString &t : texts)
        n += t.startsWith(start) ? 1 : 0;
    return n;
}

// The error dialogs shown so far (under a script they are recorded, not
// shown).
inline int errorDialogs()
{
    int n = 0;
    for (const UserQuestions::Shown &shown : UserQuestions::ShownSoFar())
        n += shown.kind == QStringLiteral("frmErrorDialog") ? 1 : 0;
    return n;
}

inline std::string firstError()
{
    for (const UserQuestions::Shown &shown : UserQuestions::ShownSoFar())
        if (shown.kind == QStringLiteral("frmErrorDialog"))
            return shown.text.toStdString();
    return {};
}

} // namespace session_test
