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
} // namespace

void EngineProxy::Use(const QString &host, int port, const QString &user, const QString &password)
{
    current() = {host, user, password};
    if (host.isEmpty())
        QNetworkProxy::setApplicationProxy(QNetworkProxy(QNetworkProxy::NoProxy));
    else
        QNetworkProxy::setApplicationProxy(QNetworkProxy(QNetworkProxy::HttpProxy, host, quint16(port)));
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
