#pragma once

#include <QString>

class QAuthenticator;

// The page engine goes out through the same HTTP proxy as the transfer
// controls. The proxy is the application's (the engine follows it, even
// when it changes while pages are shown); its password is not part of it
// but given when the engine asks, once a page, so that a wrong one shows
// the proxy's own refusal instead of asking for ever.
class EngineProxy
{
public:
    // An empty host: straight to the sites.
    static void Use(const QString &host, int port, const QString &user, const QString &password);
    // Counts the changes of the proxy's address, for the browsers to see
    // one happened since their last page.
    static int Changes();

    // Fills in the password for the engine's question about proxyHost;
    // false (and nothing filled in) when none is set or it was given
    // before in this page.
    static bool Answer(const QString &proxyHost, QAuthenticator *authenticator, int &answeredInPage);
};
