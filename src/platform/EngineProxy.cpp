#include "EngineProxy.h"

#include <QAuthenticator>
#include <QNetworkProxy>

namespace {
struct Credentials
{
    QString host;
    QString user;
    QString password;
};

Credentials &current()
{
    static Credentials credentials;
    return credentials;
}

int &changes()
{
    static int count = 0;
    return count;
}
} // namespace

void EngineProxy::Use(const QString &host, int port, const QString &user, const QString &password)
{
    current() = {host, user, password};
    const QNetworkProxy proxy = host.isEmpty() ? QNetworkProxy(QNetworkProxy::NoProxy)
                                               : QNetworkProxy(QNetworkProxy::HttpProxy, host, quint16(port));
    if (proxy == QNetworkProxy::applicationProxy())
        return;
    QNetworkProxy::setApplicationProxy(proxy);
    ++changes();
}

int EngineProxy::Changes()
{
    return changes();
}

bool EngineProxy::Answer(const QString &proxyHost, QAuthenticator *authenticator, int &answeredInPage)
{
    const Credentials &c = current();
    if (c.user.isEmpty() || proxyHost.compare(c.host, Qt::CaseInsensitive) != 0 || answeredInPage > 0)
        return false;
    ++answeredInPage;
    authenticator->setUser(c.user);
    authenticator->setPassword(c.password);
    return true;
}
