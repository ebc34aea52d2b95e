#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

class CFTPS;

// Whether an HTTP cache on the road between the user and the site answers
// in the server's place. A page put on the server under a new name is asked
// for with a query string no cache has seen, which gets past any cache, and
// then without one: a page seen the first way and not the second lies
// behind a cache that holds an older copy of the address.
class CacheServerCheck
{
public:
    static constexpr int kAttempts = 20;
    static constexpr int kPauseMs = 100;

    explicit CacheServerCheck(CFTPS &ftp);

    // 1 no cache in the way; -1 a cache was seen, or no folder of the site
    // showed the test page at all. 0 failure, error pending.
    long CheckForCacheServers(long lCurrentURL_p);
    long CheckCacheInOneFolder(const QString &strFolder_p, const QString &strCurrentBaseUrl);

    // The test page: the no-cache marks of the activation's test and a
    // comment with the time, so no two tests share a page.
    static QByteArray TestPage(const QDateTime &now);

private:
    long Upload(const QString &folder, const QString &name, const QString &local);
    long Probe(const QString &address, const QByteArray &page);
    void RemoveTestFile(const QString &folder, const QString &name);

    CFTPS &m_ftp;
};
