#include "platform/LocalPictureScheme.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QWebEngineProfile>
#include <QWebEngineUrlRequestJob>
#include <QWebEngineUrlScheme>

const QByteArray &LocalPictureScheme::Name()
{
    static const QByteArray name("kelda-picture");
    return name;
}

// Secure, so that a page served over HTTPS shows it without a warning of
// mixed content; the page's own content policy has no say over it.
void LocalPictureScheme::Register()
{
    QWebEngineUrlScheme scheme(Name());
    scheme.setSyntax(QWebEngineUrlScheme::Syntax::Path);
    scheme.setFlags(QWebEngineUrlScheme::SecureScheme | QWebEngineUrlScheme::ContentSecurityPolicyIgnored
                    | QWebEngineUrlScheme::CorsEnabled);
    QWebEngineUrlScheme::registerScheme(scheme);
}

void LocalPictureScheme::InstallIn(QWebEngineProfile *profile)
{
    if (!profile->urlSchemeHandler(Name()))
        profile->installUrlSchemeHandler(Name(), new LocalPictureScheme(profile));
}

QSet<QString> &LocalPictureScheme::Allowed()
{
    static QSet<QString> allowed;
    return allowed;
}

QString LocalPictureScheme::AddressOf(const QString &strLocalPath_p)
{
    const QString path = QFileInfo(strLocalPath_p).absoluteFilePath();
    Allowed().insert(path);
    QUrl url;
    url.setScheme(QString::fromLatin1(Name()));
    url.setPath(path);
    return url.toString(QUrl::FullyEncoded);
}

QString LocalPictureScheme::PathOf(const QString &strSrc_p)
{
    if (strSrc_p.startsWith(QString::fromLatin1(Name()) + QLatin1Char(':')) || strSrc_p.startsWith(QLatin1String("file:")))
        return QUrl(strSrc_p).path();
    return {};
}

bool LocalPictureScheme::IsLocalAddress(const QString &strSrc_p)
{
    return !PathOf(strSrc_p).isEmpty();
}

void LocalPictureScheme::requestStarted(QWebEngineUrlRequestJob *job)
{
    const QString path = job->requestUrl().path();
    if (!Allowed().contains(path)) {
        job->fail(QWebEngineUrlRequestJob::RequestDenied);
        return;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        job->fail(QWebEngineUrlRequestJob::UrlNotFound);
        return;
    }
    auto *buffer = new QBuffer(job);
    buffer->setData(file.readAll());
    const QByteArray type = QMimeDatabase().mimeTypeForFile(path).name().toLatin1();
    job->reply(type, buffer);
}
