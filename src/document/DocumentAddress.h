#pragma once

#include <QString>
#include <QStringList>

struct SiteRecord;

// How a browser address maps to the file on the server that a document is
// bound to. Pure text work on the site records; no display, no network.
class DocumentAddress
{
public:
    // Selects the last active site that holds the address (see
    // SiteAddressMatch); sets MGlobalProjectObjects::lCurrentURL and answers
    // whether one did.
    static bool GetCurrentURLIndex(const QString &strURL, bool &found);

    // How many folders the current site's baseaddress lies below its host.
    static long CalculateNumberSubDomainLevel();
    static long SubDomainLevel(const QString &baseaddress);

    // Drops the first n path segments, keeping a leading "/".
    static void ShortenDocumentPath(QString &strPath, long n);

    // "absolute" shortens like ShortenDocumentPath; anything else drops n
    // leading "../" groups.
    static long ShortenServerPath(const QString &strPath, QString &strOut, long n,
                                  const QString &strMode = QStringLiteral("relative"));

    // The folder path a folder address stands for on the FTP server: the
    // pathname decoded (see AddressPath::Decode; charset is the page's), its
    // first n segments dropped and the ftproot taken off its front by whole
    // segments. The case stays as it is.
    static QString FolderPath(const QString &pathname, long n, const QString &ftproot,
                              const QString &charset = QString());

    // The address is the site's home when it is the same place as
    // baseaddress, scheme and final "/" aside.
    static bool IsSiteHome(const QString &documentURL, const QString &baseaddress);

    // The first subindex entry that begins with the folder path; an empty
    // entry ends the list. Empty when none does.
    static QString FindSubIndex(const QStringList &subindex, const QString &folderPath);

    // Appends an entry, taking the place of an empty first element.
    static void AddSubIndex(QStringList &subindex, const QString &entry);

    // Steps from a page's pathname to its server path. Answers -1 for the
    // blank page, 1 when settled (strURL empty for an address that names
    // its file, else the site's indexfile or a subindex entry), and
    // kAskServer when the folder's file must be searched for on the server;
    // strURL then holds the folder path to search.
    static constexpr long kAskServer = 2;
    static long ServerPathOf(const QString &pathname, const QString &documentURL, const SiteRecord &site,
                             long n, QString &strURL, const QString &charset = QString());

    // From the last "." on, or "" without one.
    static QString ExtensionOf(const QString &strPath);

    // 1 for a page that is edited, 1 with noEdit set for a server page that
    // is only shown, -1 for a type that isn't supported.
    static long CheckExtension(const QString &ext, bool &noEdit);

    // The document's full address: href itself, or href joined to the file
    // part of the server path found for a folder address.
    static QString DocumentFullAddress(const QString &href, const QString &strURL);

    // GetURL_FullPath of a document with this href and server path.
    static QString FullPath(const QString &href, const QString &strURL);

private:
    static QString FilePart(const QString &path);
};
