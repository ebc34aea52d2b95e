#pragma once

// What the save tests share: a page put on the demo site and opened for
// editing the way an edit session opens it, and what a save left on the
// server.

#include "DocumentWindow.h"
#include "aspfilter/CASPFilter.h"
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
        QString marked = CPageEncoding::Decode(original);
        filter.LetURL(QStringLiteral("/") + path);
        ASSERT_EQ(filter.FilterIn(marked), 1) << MError::ErrorDescription().toStdString();
        servers.writeWebFile(path, CPageEncoding::Encode(marked));
        document_test::load(screen.browser, servers.httpBase() + QStringLiteral("/") + path);
        QString back;
        ASSERT_EQ(filter.FilterOut(back, true), 1);
        servers.writeWebFile(path, CPageEncoding::Encode(back));
        ASSERT_EQ(servers.readWebFile(path), original);
        doc = std::make_unique<CDocument>();
        ASSERT_EQ(doc->Init(&screen.window), 1) << MError::ErrorDescription().toStdString();
        doc->SetOriginalASPDoc(CPageEncoding::Decode(original));
        ASSERT_EQ(doc->IsEditable(filter), 1) << MError::ErrorDescription().toStdString();
        ASSERT_EQ(doc->SetASPFilter(&filter), 1);
        ASSERT_EQ(doc->EditOn(true), 1) << MError::ErrorDescription().toStdString();
    }

    // Each script block of the original, byte for byte, in its order.
    QStringList blocks() const
    {
        const QString source = CPageEncoding::Decode(original);
        CASPFilter reader;
        QList<long> at;
        reader.GetASPPos(source, at);
        QStringList out;
        for (qsizetype i = 0; i + 1 < at.size(); i += 2)
            out.append(source.mid(at[i], at[i + 1] - at[i] + 1));
        return out;
    }
};

} // namespace save_test
