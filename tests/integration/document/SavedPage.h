#pragma once

// What the save tests share: a page put on the demo site and opened for
// editing the way an edit session opens it, and what a save left on the
// server.

#include "DocumentWindow.h"
#include "aspfilter/CASPFilter.h"
#include "aspfilter/ScriptGuard.h"
#include "document/FaithfulSave.h"
#include "config/MGlobalProjectObjects.h"
#include "document/CDocument.h"
#include "document/CPageEncoding.h"
#include "support/MError.h"

#include <QDir>

#include <memory>

namespace save_test {

inline const QString SaveDate = QStringLiteral("Mon, 23 Nov 2026 01:02:03 GMT");

// The date a save under way writes into its pages, as the session sets it.
inline void setSaveDate()
{
    MGlobalProjectObjects::g_strSaveDate = SaveDate;
    MGlobalProjectObjects::g_boolSaveDateValid = true;
}

inline QByteArray serverFile(const QString &path)
{
    return TestServers::shared().readWebFile(path);
}

// The revisions kept for the demo site, by file name.
inline QStringList revisionFiles()
{
    return QDir(TestServers::shared().webRoot() + QStringLiteral("/_resetp"))
        .entryList({QStringLiteral("*.*")}, QDir::Files, QDir::Name)
        .filter(QRegularExpression(QStringLiteral("\\.\\d+$")));
}

inline bool hasRevisionWith(const QByteArray &bytes)
{
    const QString folder = TestServers::shared().webRoot() + QStringLiteral("/_resetp/");
    for (const QString &name : revisionFiles()) {
        QFile file(folder + name);
        if (file.open(QIODevice::ReadOnly) && file.readAll() == bytes)
            return true;
    }
    return false;
}

// A plain page: put on the server, shown, bound and in edit mode.
inline std::unique_ptr<CDocument> editPage(document_test::Screen &screen, const QString &path, const QByteArray &body)
{
    screen.open(path, body);
    auto doc = std::make_unique<CDocument>();
    EXPECT_EQ(doc->Init(&screen.window), 1) << MError::ErrorDescription().toStdString();
    EXPECT_EQ(doc->KeepSource(TestServers::shared().readWebFile(path)), 1) << doc->RefusalReason().toStdString();
    EXPECT_EQ(doc->EditOn(true), 1) << MError::ErrorDescription().toStdString();
    return doc;
}

// A page with server script, entered as the session enters it: the marked
// page goes up and is shown through the web server, the original goes back
// at once, and the document gets the filter once the markers check out.
struct ScriptPage
{
    CASPFilter filter;
    QByteArray original;
    std::unique_ptr<CDocument> doc;

    void enter(document_test::Screen &screen, const QString &path)
    {
        TestServers &servers = TestServers::shared();
        document_test::useDemoSite();
        original = servers.readWebFile(path);
        filter.LetURL(QStringLiteral("/") + path);
        servers.writeWebFile(path, FaithfulSave::Marked(original));
        document_test::load(screen.browser, servers.httpBase() + QStringLiteral("/") + path);
        servers.writeWebFile(path, original);
        doc = std::make_unique<CDocument>();
        ASSERT_EQ(doc->Init(&screen.window), 1) << MError::ErrorDescription().toStdString();
        doc->KeepSource(original);
        ASSERT_EQ(doc->IsEditable(filter), 1) << doc->RefusalReason().toStdString();
        ASSERT_EQ(doc->SetASPFilter(&filter), 1);
        ASSERT_EQ(doc->EditOn(true), 1) << MError::ErrorDescription().toStdString();
    }

    // Each piece of script of the original, byte for byte, in its order.
    QStringList blocks() const { return ScriptGuard::Pieces(QString::fromLatin1(original)); }
};

} // namespace save_test
