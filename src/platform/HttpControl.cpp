#include "HttpControl.h"

#include "BlockingCall.h"
#include "CurlErrorMap.h"

#include <QCoreApplication>
#include <QPointer>

#include <curl/curl.h>

struct HttpControl::Call
{
    HttpControl *self = nullptr;
    qint64 bytes = 0;
    bool started = false;
    QString statusLine; // of the last response (a proxy's CONNECT answer comes first)
    char detail[CURL_ERROR_SIZE] = {0};
};

struct HttpCallbacks
{
    static size_t write(char *data, size_t, size_t size, void *user)
    {
        auto &call = *static_cast<HttpControl::Call *>(user);
        HttpControl *self = call.self;
        if (self->m_abort)
            return 0;
        if (!call.started) {
            call.started = true;
            self->post([self] { emit self->StartTransfer(); });
        }
        call.bytes += qint64(size);
        const qint64 total = call.bytes;
        const QByteArray text(data, qsizetype(size));
        self->post([self, total, text] { emit self->Transfer(1, total, text); });
        return size;
    }

    static size_t header(char *data, size_t, size_t size, void *user)
    {
        auto &call = *static_cast<HttpControl::Call *>(user);
        QByteArray line(data, qsizetype(size));
        if (line.startsWith("HTTP/"))
            call.statusLine = QString::fromLatin1(line.trimmed());
        return size;
    }

    static int progress(void *user, curl_off_t, curl_off_t, curl_off_t, curl_off_t)
    {
        return static_cast<HttpControl::Call *>(user)->self->m_abort ? 1 : 0;
    }
};

HttpControl::HttpControl(QObject *parent)
    : QObject(parent)
{
}

void HttpControl::post(std::function<void()> event)
{
    QPointer<HttpControl> guard(this);
    QMetaObject::invokeMethod(
        this, [guard, event] { if (guard) event(); }, Qt::QueuedConnection);
}

long HttpControl::Get(const QString &url)
{
    return perform(url, false);
}

long HttpControl::Post(const QString &url)
{
    return perform(url, true);
}

void HttpControl::Abort()
{
    if (m_busy)
        m_abort = true;
}

long HttpControl::fail(long number, const QString &description)
{
    m_errorNumber = number;
    m_errorDescription = description;
    return 0;
}

long HttpControl::perform(const QString &url, bool post)
{
    if (m_busy)
        return fail(ControlError::Busy, QStringLiteral("Another call is running."));
    m_busy = true;
    m_abort = false;
    m_status = 0;
    m_errorNumber = 0;
    m_errorDescription.clear();
    Call call;
    call.self = this;
    CURL *h = curl_easy_init();
    curl_easy_setopt(h, CURLOPT_URL, url.toUtf8().constData());
    curl_easy_setopt(h, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(h, CURLOPT_ERRORBUFFER, call.detail);
    curl_easy_setopt(h, CURLOPT_WRITEFUNCTION, &HttpCallbacks::write);
    curl_easy_setopt(h, CURLOPT_WRITEDATA, &call);
    curl_easy_setopt(h, CURLOPT_HEADERFUNCTION, &HttpCallbacks::header);
    curl_easy_setopt(h, CURLOPT_HEADERDATA, &call);
    curl_easy_setopt(h, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(h, CURLOPT_XFERINFOFUNCTION, &HttpCallbacks::progress);
    curl_easy_setopt(h, CURLOPT_XFERINFODATA, &call);
    // A redirect is the caller's to judge (it tells a moved site), so it is
    // not followed but reported like any other status that is not 2xx.
    curl_easy_setopt(h, CURLOPT_FOLLOWLOCATION, 0L);
    if (Timeout > 0)
        curl_easy_setopt(h, CURLOPT_TIMEOUT, long(Timeout));
    if (!User.isEmpty()) {
        curl_easy_setopt(h, CURLOPT_USERNAME, User.toUtf8().constData());
        curl_easy_setopt(h, CURLOPT_PASSWORD, Password.toUtf8().constData());
    }
    if (!ProxyServer.isEmpty()) {
        curl_easy_setopt(h, CURLOPT_PROXY, ProxyServer.toUtf8().constData());
        curl_easy_setopt(h, CURLOPT_PROXYPORT, long(ProxyPort));
        // The proxy set here holds for every host, whatever no_proxy says.
        curl_easy_setopt(h, CURLOPT_NOPROXY, "");
        if (!ProxyUser.isEmpty()) {
            curl_easy_setopt(h, CURLOPT_PROXYUSERNAME, ProxyUser.toUtf8().constData());
            curl_easy_setopt(h, CURLOPT_PROXYPASSWORD, ProxyPassword.toUtf8().constData());
        }
    } else {
        curl_easy_setopt(h, CURLOPT_PROXY, "");
    }
    const QByteArray body = PostData;
    curl_slist *headers = nullptr;
    if (post) {
        curl_easy_setopt(h, CURLOPT_POSTFIELDS, body.constData());
        curl_easy_setopt(h, CURLOPT_POSTFIELDSIZE_LARGE, curl_off_t(body.size()));
        if (!ContentType.isEmpty())
            headers = curl_slist_append(headers, ("Content-Type: " + ContentType).toUtf8().constData());
        curl_easy_setopt(h, CURLOPT_HTTPHEADER, headers);
    }
    CURLcode code = CURLE_OK;
    BlockingCall::run([h, &code] { code = curl_easy_perform(h); });
    curl_easy_getinfo(h, CURLINFO_RESPONSE_CODE, &m_status);
    long osErrno = 0;
    curl_easy_getinfo(h, CURLINFO_OS_ERRNO, &osErrno);
    curl_easy_cleanup(h);
    curl_slist_free_all(headers);
    m_busy = false;
    QCoreApplication::sendPostedEvents(this);
    if (m_abort)
        return fail(ControlError::DataConnection, QStringLiteral("Aborted by the caller."));
    if (code == CURLE_OK) {
        if (m_status >= 200 && m_status < 300)
            return 1;
        return fail(ControlError::HttpStatus, call.statusLine);
    }
    const QString description = CurlErrorMap::describe(code, call.detail);
    if (const long network = CurlErrorMap::networkError(code, osErrno))
        return fail(network, description);
    return fail(ControlError::HttpStatus, call.statusLine.isEmpty() ? description : call.statusLine);
}
