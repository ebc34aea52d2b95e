#include "document/DocumentAddress.h"

#include "config/MGlobalProjectObjects.h"
#include "document/AddressPath.h"
#include "document/SiteAddressMatch.h"
#include "transfer/RemotePathMapper.h"

namespace {
const QString kSlash = QStringLiteral("/");
}

QString DocumentAddress::FilePart(const QString &path)
{
    return path.mid(path.lastIndexOf(kSlash) + 1);
}

bool DocumentAddress::GetCurrentURLIndex(const QString &strURL, bool &found)
{
    found = false;
    const auto &sites = MGlobalProjectObjects::URLDATA;
    // From the last record down, so that the last match wins.
    for (long i = long(sites.size()) - 1; i >= 0; --i) {
        if (sites[i].isactive != QStringLiteral("1"))
            continue;
        if (SiteAddressMatch::Holds(sites[i].baseaddress, strURL, sites[i].wwwalias)) {
            found = true;
            MGlobalProjectObjects::lCurrentURL = i;
            break;
        }
    }
    return found;
}

long DocumentAddress::SubDomainLevel(const QString &baseaddress)
{
    return SiteAddressMatch::FolderLevels(baseaddress);
}

long DocumentAddress::CalculateNumberSubDomainLevel()
{
    const auto &sites = MGlobalProjectObjects::URLDATA;
    const long i = MGlobalProjectObjects::lCurrentURL;
    if (i < 0 || i >= long(sites.size()))
        return 0;
    return SubDomainLevel(sites[i].baseaddress);
}

// A path without a further "/" has no segment left to drop and is kept as
// it was, so the file name never loses its only slash.
void DocumentAddress::ShortenDocumentPath(QString &strPath, long n)
{
    for (long i = 0; i < n; ++i) {
        const QString rest = strPath.startsWith(kSlash) ? strPath.mid(1) : strPath;
        const qsizetype next = rest.indexOf(kSlash);
        if (next < 0)
            return;
        strPath = rest.mid(next);
    }
}

long DocumentAddress::ShortenServerPath(const QString &strPath, QString &strOut, long n,
                                        const QString &strMode)
{
    strOut = strPath;
    if (strMode == QStringLiteral("absolute")) {
        ShortenDocumentPath(strOut, n);
        return 1;
    }
    strOut = strPath.mid(n * 3);
    if (strOut == QStringLiteral(".."))
        strOut = QStringLiteral(".");
    return 1;
}

QString DocumentAddress::FolderPath(const QString &pathname, long n, const QString &ftproot,
                                    const QString &charset)
{
    QString path = AddressPath::Decode(pathname, charset);
    if (n > 0)
        ShortenDocumentPath(path, n);
    return AddressPath::WithoutRoot(path, ftproot);
}

bool DocumentAddress::IsSiteHome(const QString &documentURL, const QString &baseaddress)
{
    // The address has already been matched to the site, host and all.
    return SiteAddressMatch::IsHome(baseaddress, documentURL, true);
}

QString DocumentAddress::FindSubIndex(const QStringList &subindex, const QString &folderPath)
{
    for (const QString &entry : subindex) {
        if (entry.isEmpty())
            break;
        if (entry.startsWith(folderPath))
            return entry;
    }
    return QString();
}

void DocumentAddress::AddSubIndex(QStringList &subindex, const QString &entry)
{
    if (!subindex.isEmpty() && subindex.first().isEmpty())
        subindex.first() = entry;
    else
        subindex.append(entry);
}

long DocumentAddress::ServerPathOf(const QString &pathname, const QString &documentURL, const SiteRecord &site,
                                   long n, QString &strURL, const QString &charset)
{
    strURL.clear();
    // The blank page has "/blank" in some engines and "blank" in this one.
    if (pathname.compare(QStringLiteral("/blank"), Qt::CaseInsensitive) == 0
        || pathname.compare(QStringLiteral("blank"), Qt::CaseInsensitive) == 0)
        return -1;
    if (!FilePart(AddressPath::Decode(pathname, charset)).isEmpty())
        return 1;
    const QString folder = FolderPath(pathname, n, site.ftproot, charset);
    if (IsSiteHome(documentURL, site.baseaddress)) {
        strURL = site.indexfile;
        return 1;
    }
    strURL = FindSubIndex(site.subindex, folder);
    if (!strURL.isEmpty())
        return 1;
    strURL = folder;
    return kAskServer;
}

QString DocumentAddress::ExtensionOf(const QString &strPath)
{
    const qsizetype dot = strPath.lastIndexOf(QLatin1Char('.'));
    return dot < 0 ? QString() : strPath.mid(dot);
}

long DocumentAddress::CheckExtension(const QString &ext, bool &noEdit)
{
    const QString e = ext.toLower();
    static const QStringList edited = {QStringLiteral(".htm"), QStringLiteral(".html"), QStringLiteral(".shtm"),
                                       QStringLiteral(".shtml"), QStringLiteral(".asp")};
    if (edited.contains(e))
        return 1;
    if (e == QStringLiteral(".php") || e == QStringLiteral(".aspx")) {
        noEdit = true;
        return 1;
    }
    // ".asp?id=3" and the like: a classic server page with its query.
    return e.startsWith(QStringLiteral(".asp")) ? 1 : -1;
}

QString DocumentAddress::DocumentFullAddress(const QString &href, const QString &strURL)
{
    if (strURL.isEmpty())
        return href;
    return RemotePathMapper::TrimSlashes(href) + kSlash + AddressPath::Encode(FilePart(strURL));
}

QString DocumentAddress::FullPath(const QString &href, const QString &strURL)
{
    if (strURL.isEmpty())
        return href;
    const QString file = AddressPath::Encode(FilePart(strURL));
    if (strURL.contains(kSlash))
        return href + file;
    return href.contains(kSlash) ? href + file : href + kSlash + file;
}
