#pragma once

#include <QMutex>
#include <QSet>
#include <QWebEngineUrlRequestInterceptor>

// Makes the next request for a marked address bypass the engine's HTTP
// cache. The engine offers no way to drop one address from its cache, and
// clearing the whole cache would also throw away every other site's files;
// a request that carries "no-cache" is answered by the server and replaces
// the cached copy, which is what dropping the entry was for.
class FreshLoadInterceptor : public QWebEngineUrlRequestInterceptor
{
    Q_OBJECT

public:
    using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;

    void mark(const QUrl &url);
    bool isMarked(const QUrl &url) const;

    void interceptRequest(QWebEngineUrlRequestInfo &info) override;

private:
    static QString key(const QUrl &url);

    mutable QMutex m_lock; // requests are intercepted on the engine's IO thread
    QSet<QString> m_marked;
};
