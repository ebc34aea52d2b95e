#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <QString>

// One running program per user and engine profile: the engine's profile on
// disk must not be shared by two processes. The first start holds a lock
// file and listens on a local socket, both in the user's runtime folder; a
// second start finds the lock taken, asks the first to come forward through
// the socket, and ends. A lock left by a program that crashed is stale (its
// process is gone) and is taken over.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    // key: what one instance owns (the profile's folder); runtimeFolder:
    // where the lock and the socket stand ($XDG_RUNTIME_DIR as a rule).
    SingleInstance(const QString &key, const QString &runtimeFolder);

    // True when this process is the first and now holds the lock. False when
    // another one runs: it has been asked to bring its window forward.
    bool Claim();

    // $XDG_RUNTIME_DIR, or the program's private temporary folder.
    static QString RuntimeFolder();

signals:
    // A second start asked this instance to come forward.
    void Activated();

private:
    bool AskTheFirst();
    void Listen();

    QString m_name;
    QLockFile m_lock;
    QLocalServer m_server;
};
