#pragma once

#include "platform/FtpControl.h"

#include <QSet>
#include <QString>

#include <memory>

// One FTP connection and what its logon found, shared by every CFTPS that
// works on the same account while any of them lives: the main window's
// client, the dialogs' and those that saves make for a moment all ride on
// one logged-in connection, so an action of the user costs one login at
// most. A connection is found by its account (host, user, password) and
// the way it went out (the firewall of the proxy settings); a connection
// that is no longer logged on is never handed out.
class FtpSession
{
public:
    explicit FtpSession(QString account);
    ~FtpSession();
    FtpSession(const FtpSession &) = delete;
    FtpSession &operator=(const FtpSession &) = delete;

    static QString AccountKey(const QString &host, const QString &user, const QString &password);

    // A logged-on session of that account that went out by `route`, or null.
    static std::shared_ptr<FtpSession> FindConnected(const QString &account, const QString &route);
    // Offers this session to other clients of the same account.
    static void Publish(const std::shared_ptr<FtpSession> &session);

    const QString &Account() const { return m_account; }

    FtpControl control;
    // "#" + the folder the server put the session in at logon.
    QString loginFolderMark;
    // The firewall the connection logs on through, as the proxy settings
    // named it then (empty: straight to the server).
    QString route;
    // The server refused a rename onto an existing file once: the safe
    // replace goes the way of two renames from then on.
    bool renameOverRefused = false;

private:
    QString m_account;
};
