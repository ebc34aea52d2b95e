#include "platform/FreshLoadInterceptor.h"

#include <QMutexLocker>

QString FreshLoadInterceptor::key(const QUrl &url)
{
    return url.adjusted(QUrl::RemoveFragment).toString();
}

void FreshLoadInterceptor::mark(const QUrl &url)
{
    QMutexLocker hold(&m_lock);
    m_marked.insert(key(url));
}

bool FreshLoadInterceptor::isMarked(const QUrl &url) const
{
    QMutexLocker hold(&m_lock);
    return m_marked.contains(key(url));
}

void FreshLoadInterceptor::interceptRequest(QWebEngineUrlRequestInfo &info)
{
    QMutexLocker hold(&m_lock);
    if (!m_marked.remove(key(info.requestUrl())))
        return;
    info.setHttpHeader("Cache-Control", "no-cache");
    info.setHttpHeader("Pragma", "no-cache");
}
