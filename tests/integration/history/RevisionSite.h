#pragma once

// The site the revision tests work on: the fixture's FTP server through the
// "demo" account, whose login folder lies above the web root "www".

#include "DemoSite.h"
#include "TestServers.h"
#include "config/MGlobalProjectObjects.h"
#include "history/ProfileFile.h"
#include "platform/CReg.h"
#include "platform/LocalFolders.h"
#include "support/MError.h"

#include <QDir>
#include <QFile>

namespace history_test {

inline TestServers &servers()
{
    return TestServers::shared();
}

inline void useDemoSite()
{
    MGlobalProjectObjects::URLDATA = {demoSiteRecord(servers())};
    MGlobalProjectObjects::lCurrentURL = 0;
}

inline void setHistorySize(long size)
{
    CReg reg;
    reg.KeyRoot = CReg::AppKey();
    reg.Subkey = QStringLiteral("Environment");
    reg.SetRegistryValue(QStringLiteral("HistorySize"), qlonglong(size), CReg::REG_DWORD);
}

inline QString historyDisk()
{
    return servers().webRoot() + QStringLiteral("/_resetp");
}

inline void removeHistory()
{
    QDir(historyDisk()).removeRecursively();
}

inline ProfileFile serverIndex()
{
    ProfileFile index;
    index.load(historyDisk() + QStringLiteral("/_resetp.ini"));
    return index;
}

inline QByteArray revisionFile(const QString &name)
{
    QFile file(historyDisk() + QLatin1Char('/') + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// What the local temporary folder holds; every operation leaves it as it
// found it.
inline QStringList tempFiles()
{
    return QDir(LocalFolders::tempFolder()).entryList(QDir::Files);
}

} // namespace history_test
