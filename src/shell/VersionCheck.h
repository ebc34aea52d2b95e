#pragma once

#include <QObject>
#include <QString>

#include <memory>

class HttpControl;
class QThread;

// The request to the maker's server for the latest version. At start it runs
// on a thread of its own, so that a slow or silent server never holds the
// window: the reply comes back on the window's thread through Finished.
class VersionCheck : public QObject
{
    Q_OBJECT

public:
    struct Reply
    {
        long status = 1; // 1, or 0 when the request failed
        long errorNumber = 0;
        QString errorDescription;
        QString text; // the body; empty when the server sent none
    };

    explicit VersionCheck(QObject *parent = nullptr);
    // A request still under way is aborted and waited for.
    ~VersionCheck() override;

    // Where the version text lies; empty when no version server is set.
    static QString Address();
    // The request itself, blocking, on whichever thread calls it.
    static Reply Fetch(HttpControl &http, const QString &url);

    // Starts the request in the background. False when there is nothing to
    // ask (no version server is set) or a request is under way.
    bool Start();
    bool Running() const;

signals:
    void Finished(const VersionCheck::Reply &reply);

private:
    std::unique_ptr<HttpControl> m_http;
    QThread *m_thread = nullptr;
};
