#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include <atomic>
#include <functional>

// The HTTP control: Get and Post block the caller while its event loop keeps
// running; the body arrives through Transfer events as it comes. Results are
// 1 for success and 0 for failure, described by the Error members.
class HttpControl : public QObject
{
    Q_OBJECT

public:
    explicit HttpControl(QObject *parent = nullptr);

    QString ProxyServer;
    int ProxyPort = 0;
    QString ProxyUser;
    QString ProxyPassword;
    QString User;
    QString Password;
    QString ContentType; // of the body of a Post
    QByteArray PostData; // the body of the next Post
    int Timeout = 0;     // seconds; 0 waits as long as the server takes

    long Get(const QString &url);
    long Post(const QString &url);
    void Abort();

    bool Idle() const { return !m_busy; }
    long StatusCode() const { return m_status; }
    long ErrorNumber() const { return m_errorNumber; }
    QString ErrorDescription() const { return m_errorDescription; }
    QString ErrorSource() const { return QStringLiteral("HttpControl"); }

signals:
    void StartTransfer();
    // Direction 1: data received.
    void Transfer(int Direction, qint64 BytesTransferred, const QByteArray &Text);

private:
    friend struct HttpCallbacks;
    struct Call;

    long perform(const QString &url, bool post);
    long fail(long number, const QString &description);
    void post(std::function<void()> event);

    // Abort may come from another thread than the call's.
    std::atomic<bool> m_busy{false};
    std::atomic<bool> m_abort{false};
    long m_status = 0;
    long m_errorNumber = 0;
    QString m_errorDescription;
};
