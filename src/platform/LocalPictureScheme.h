#pragma once

#include <QSet>
#include <QString>
#include <QUrl>
#include <QWebEngineUrlSchemeHandler>

class QWebEngineProfile;

// Pictures from the user's own disk shown in a page of his site while he
// edits it. The engine never lets a page from the web load a file:
// address, so such a picture is addressed by a scheme of the program's
// own, and served only when the editor has put that very file into a page:
// a page on the web can't read anything else of the disk through it.
class LocalPictureScheme : public QWebEngineUrlSchemeHandler
{
    Q_OBJECT

public:
    static const QByteArray &Name();
    // Before the application object exists (the engine reads its schemes
    // once, at its start).
    static void Register();
    // Serves the scheme in the profile; once per profile.
    static void InstallIn(QWebEngineProfile *profile);

    // The address a page shows the local file by; the file is allowed from
    // now on.
    static QString AddressOf(const QString &strLocalPath_p);
    // The local path behind such an address, also behind a file: address;
    // empty for an address of the web or a path of the site.
    static QString PathOf(const QString &strSrc_p);
    static bool IsLocalAddress(const QString &strSrc_p);

    void requestStarted(QWebEngineUrlRequestJob *job) override;

private:
    using QWebEngineUrlSchemeHandler::QWebEngineUrlSchemeHandler;
    static QSet<QString> &Allowed();
};
