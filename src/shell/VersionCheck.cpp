#include "shell/VersionCheck.h"

#include "config/MGlobalProjectObjects.h"
#include "platform/HttpControl.h"
#include "shell/CVersionAnnouncement.h"

#include <QThread>

namespace {
constexpr int kTimeoutSeconds = 10;
// How often a close asks the request under way to stop, until it has.
constexpr unsigned long kAbortPollMs = 50;
} // namespace

VersionCheck::VersionCheck(QObject *parent)
    : QObject(parent)
{
}

VersionCheck::~VersionCheck()
{
    if (!m_thread)
        return;
    while (!m_thread->wait(kAbortPollMs))
        m_http->Abort();
    delete m_thread;
}

QString VersionCheck::Address()
{
    const QString server = CVersionAnnouncement::VersionServer();
    return server.isEmpty() ? QString() : server + CVersionAnnouncement::VersionPath();
}

VersionCheck::Reply VersionCheck::Fetch(HttpControl &http, const QString &url)
{
    Reply reply;
    QByteArray body;
    // The control's events come on the thread that called it: no queue.
    const QMetaObject::Connection connection =
        QObject::connect(&http, &HttpControl::Transfer, &http, [&body](int direction, qint64, const QByteArray &text) {
            if (direction == 1)
                body += text;
        });
    if (!http.Get(url)) {
        reply.status = 0;
        reply.errorNumber = http.ErrorNumber();
        reply.errorDescription = http.ErrorDescription();
    }
    QObject::disconnect(connection);
    reply.text = QString::fromUtf8(body);
    return reply;
}

// The control is set up here, where the settings live, and then handed to
// the request's thread; it is deleted only once that thread has ended.
bool VersionCheck::Start()
{
    const QString url = Address();
    if (Running() || url.isEmpty())
        return false;
    delete m_thread;
    m_http = std::make_unique<HttpControl>();
    m_http->Timeout = kTimeoutSeconds;
    MGlobalProjectObjects::ApplyHttpProxy(*m_http);
    HttpControl *http = m_http.get();
    m_thread = QThread::create([this, http, url] {
        const Reply reply = Fetch(*http, url);
        QMetaObject::invokeMethod(this, [this, reply] { emit Finished(reply); }, Qt::QueuedConnection);
    });
    m_http->moveToThread(m_thread);
    m_thread->start();
    return true;
}

bool VersionCheck::Running() const
{
    return m_thread && !m_thread->isFinished();
}
