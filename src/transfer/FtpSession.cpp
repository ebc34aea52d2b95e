#include "transfer/FtpSession.h"

#include "transfer/TransferActionScope.h"

#include <QHash>

namespace {
// Weak references: a connection lives as long as a client holds it.
QHash<QString, std::weak_ptr<FtpSession>> &published()
{
    static QHash<QString, std::weak_ptr<FtpSession>> sessions;
    return sessions;
}
} // namespace

FtpSession::FtpSession(QString account) : m_account(std::move(account)) {}

// The last holder ends the connection: a transfer still running is
// aborted, then the session logs off.
FtpSession::~FtpSession()
{
    if (!control.Connected())
        return;
    if (!control.Idle())
        control.Abort();
    control.Logoff();
}

QString FtpSession::AccountKey(const QString &host, const QString &user, const QString &password)
{
    return host.toLower() + QLatin1Char('\n') + user + QLatin1Char('\n') + password;
}

std::shared_ptr<FtpSession> FtpSession::FindConnected(const QString &account, const QString &route)
{
    std::shared_ptr<FtpSession> session = published().value(account).lock();
    if (!session) {
        published().remove(account);
        return nullptr;
    }
    return session->control.Connected() && session->route == route ? session : nullptr;
}

void FtpSession::Publish(const std::shared_ptr<FtpSession> &session)
{
    published().insert(session->Account(), session);
    TransferActionScope::Keep(session);
}
