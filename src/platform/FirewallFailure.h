#pragma once

#include <QString>

// What went wrong between the FTP control and its firewall, told so that a
// user on a company network knows what to ask for. libcurl only says that
// a tunnel or a SOCKS request failed; what the proxy answered, and at which
// connection, is what tells a wrong password from a proxy that won't carry
// FTP at all.
class FirewallFailure
{
public:
    struct Seen
    {
        int firewallType = 0;   // as FtpControl::FirewallType
        QString host;           // the firewall
        int port = 0;
        int serverPort = 21;    // the FTP server's control port
        long connectCode = 0;   // the HTTP status of the last CONNECT, 0 if none
        QString connectReply;   // its status line
        QString connectTarget;  // "host:port" of the last CONNECT
        int socksError = 0;     // libcurl's CURLproxycode, 0 if none
        bool loggedOn = false;  // the control connection stood before
    };

    // A description of the failure when it was the firewall's, else empty.
    static QString Describe(const Seen &seen);

    // Active mode needs the server to connect back to this computer, which
    // no proxy carries: the refusal given before anything is sent.
    static QString ActiveModeRefused();

private:
    static QString Tunnel(const Seen &seen);
    static QString Socks(const Seen &seen);
};
