#include "SingleInstance.h"

#include "LocalFolders.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QLocalSocket>
#include <QThread>

namespace {
QString nameFor(const QString &key, const QString &folder)
{
    const QByteArray digest = QCryptographicHash::hash(key.toUtf8(), QCryptographicHash::Sha256).toHex().left(12);
    return folder + QStringLiteral("/keldacms-") + QString::fromLatin1(digest);
}

const QByteArray kComeForward = "come-forward\n";
} // namespace

SingleInstance::SingleInstance(const QString &key, const QString &runtimeFolder)
    : m_name(nameFor(key, runtimeFolder))
    , m_lock(m_name + QStringLiteral(".lock"))
{
    // Only a lock whose process is gone is stale, however old it is.
    m_lock.setStaleLockTime(0);
}

QString SingleInstance::RuntimeFolder()
{
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return runtime.isEmpty() ? LocalFolders::tempFolder() : runtime;
}

bool SingleInstance::Claim()
{
    if (m_lock.tryLock(0)) {
        Listen();
        return true;
    }
    AskTheFirst();
    return false;
}

// The first instance may be starting and not listen yet: tried for a while.
bool SingleInstance::AskTheFirst()
{
    const QDeadlineTimer deadline(5000);
    while (!deadline.hasExpired()) {
        QLocalSocket socket;
        socket.connectToServer(m_name + QStringLiteral(".socket"));
        if (socket.waitForConnected(500)) {
            socket.write(kComeForward);
            return socket.waitForBytesWritten(2000);
        }
        QThread::msleep(100);
    }
    return false;
}

void SingleInstance::Listen()
{
    const QString socketName = m_name + QStringLiteral(".socket");
    // A socket file left by a crash would refuse the listen.
    QLocalServer::removeServer(socketName);
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    m_server.listen(socketName);
    connect(&m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *socket = m_server.nextPendingConnection()) {
            connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
                if (socket->readAll().contains(kComeForward.trimmed()))
                    emit Activated();
                socket->disconnectFromServer();
            });
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
}
