#include "document/FolderIndexSearch.h"

#include "config/MGlobalProjectObjects.h"
#include "document/DocumentAddress.h"
#include "platform/HttpControl.h"
#include "transfer/CFTPS.h"

#include <QDateTime>
#include <QStringList>

namespace {

QString CurrentBaseAddress()
{
    const auto &sites = MGlobalProjectObjects::URLDATA;
    const long i = MGlobalProjectObjects::lCurrentURL;
    return i >= 0 && i < long(sites.size()) ? sites[i].baseaddress : QString();
}

QString Joined(const QString &base, const QString &path)
{
    const bool baseSlash = base.endsWith(QLatin1Char('/'));
    const bool pathSlash = path.startsWith(QLatin1Char('/'));
    if (baseSlash && pathSlash)
        return base + path.mid(1);
    return baseSlash || pathSlash ? base + path : base + QLatin1Char('/') + path;
}

} // namespace

// The page types that a web server may give for a folder.
bool FolderIndexSearch::IsPage(const QString &name)
{
    bool noEdit = false;
    return DocumentAddress::CheckExtension(DocumentAddress::ExtensionOf(name), noEdit) == 1;
}

QByteArray FolderIndexSearch::Fetch(const QString &address)
{
    HttpControl http;
    QByteArray body;
    QObject::connect(&http, &HttpControl::Transfer, [&body](int direction, qint64, const QByteArray &text) {
        if (direction == 1)
            body += text;
    });
    http.Get(address);
    return body;
}

// The mark is a comment of 19 characters, so the page is put back from the
// copy kept here rather than by cutting it off again.
long FolderIndexSearch::Probe(const QString &page, const QString &folderAddress, long mark, bool &found)
{
    CFTPS ftp;
    QByteArray original;
    if (ftp.GetASCIIFile(page, original) != 1)
        return 0;
    const QByteArray comment = "<!--preID##" + QByteArray::number(mark).rightJustified(5, '0') + "-->";
    if (ftp.SendPage(comment + original, page) != 1)
        return 0;
    found = Fetch(folderAddress).contains(comment);
    return ftp.SendPage(original, page) == 1 ? 1 : 0;
}

long FolderIndexSearch::GetSpecificIndexFile(const QString &strPath_p, QString &strIndex_p)
{
    strIndex_p.clear();
    const QString folder = strPath_p.endsWith(QLatin1Char('/')) ? strPath_p : strPath_p + QLatin1Char('/');
    QStringList names;
    {
        CFTPS ftp;
        if (ftp.ListFolderFiles(folder, names) != 1)
            return 0;
    }
    const QString address = Joined(CurrentBaseAddress(), folder);
    long mark = QDateTime::currentSecsSinceEpoch() % 100000;
    for (const QString &name : names) {
        if (!IsPage(name))
            continue;
        bool found = false;
        if (Probe(folder + name, address, mark++ % 100000, found) != 1)
            return 0;
        if (found) {
            strIndex_p = name;
            return 1;
        }
    }
    return -1;
}
