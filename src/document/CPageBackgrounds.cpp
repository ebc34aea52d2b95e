#include "document/CPageBackgrounds.h"

#include "document/CSendPath.h"
#include "document/DocumentAddress.h"
#include "platform/LocalPictureScheme.h"
#include "transfer/CFTPS.h"

#include <QStringList>

#include <algorithm>

namespace {

const QString kSrcPath = QStringLiteral("BkndImgSrcPath");
const QString kUploadPath = QStringLiteral("BkndImgUploadPath");
const QString kDocPath = QStringLiteral("BkndImgDocPath");
const QString kReplaced = QStringLiteral("bytad");
const QString kNoFolder = QStringLiteral("|new|");

} // namespace

// The picture goes to the folder the user chose, and the page names it by
// the way from its own folder to that one, so that the page finds it when
// opened from the site. A picture with no chosen folder ("|new|") goes
// beside the page and is named by its file name alone; one that replaces
// the page's picture ("bytad") goes to the folder of the page it belongs to.
long CPageBackgrounds::SaveBodyBackground(HtmlElement &body, const SiteRecord &site, const QString &strPagePath_p)
{
    if (body.getAttribute(kSrcPath).isNull() && body.getAttribute(kUploadPath).isNull())
        return -1;
    const QString local = body.getAttribute(QStringLiteral("background")).toString();
    const QString pageFolder = FolderOf(strPagePath_p);
    const QString folder = BodyUploadFolder(body, site, pageFolder);
    if (Upload(local, folder, site) != 1)
        return 0;
    const QString value = RelativePath(pageFolder, folder, FileName(local));
    body.setAttribute(QStringLiteral("background"), value);
    body.setStyleValue(QStringLiteral("backgroundImage"), QStringLiteral("url(") + value + QLatin1Char(')'));
    for (const QString &name : {kSrcPath, kUploadPath, kDocPath})
        body.removeAttribute(name);
    return 1;
}

QString CPageBackgrounds::BodyUploadFolder(const HtmlElement &body, const SiteRecord &site, const QString &strPageFolder_p)
{
    const QString upload = body.getAttribute(kUploadPath).toString();
    if (upload.isEmpty() || upload == kNoFolder)
        return strPageFolder_p;
    if (upload != kReplaced)
        return upload;
    QString folder = FolderOf(body.getAttribute(kDocPath).toString());
    const long levels = DocumentAddress::SubDomainLevel(site.baseaddress);
    if (levels >= 1)
        DocumentAddress::ShortenDocumentPath(folder, levels);
    folder = CSendPath::JoinRoot(site.ftproot, CSendPath::RemoveTildePart(folder));
    if (site.useremotef == QStringLiteral("1"))
        folder = CSendPath::JoinRoot(site.remotefolder, folder);
    return folder;
}

// The element's picture goes to its upload folder ("/" when none was
// given) and is named by the relative folder the page object worked out.
// With no relative folder the picture lies beside the page.
long CPageBackgrounds::SaveElementBackground(const HtmlDocument::PendingBackground &pending, const SiteRecord &site)
{
    const QString folder = pending.uploadpath.isEmpty() ? QStringLiteral("/") : pending.uploadpath;
    // A picture the page shows from the user's disk is named by the
    // program's own address for it; the file behind it goes up.
    const QString shown = LocalPictureScheme::PathOf(pending.background);
    const QString local = shown.isEmpty() ? pending.background : shown;
    if (Upload(local, folder, site) != 1)
        return 0;
    const QString name = FileName(local);
    QString value = name;
    if (!pending.relativepath.isEmpty()) {
        value = pending.relativepath;
        if (!value.endsWith(QLatin1Char('/')))
            value += QLatin1Char('/');
        value += name;
        if (DocumentAddress::SubDomainLevel(site.baseaddress) >= 1 && !pending.bgbytad.isEmpty()
            && value.startsWith(QLatin1Char('/')))
            value = value.mid(1);
    }
    HtmlElement element = pending.element;
    element.setAttribute(QStringLiteral("background"), value);
    return 1;
}

QString CPageBackgrounds::RelativePath(const QString &strFromFolder_p, const QString &strToFolder_p, const QString &strName_p)
{
    const QStringList from = strFromFolder_p.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    const QStringList to = strToFolder_p.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    qsizetype common = 0;
    while (common < from.size() && common < to.size() && from.at(common) == to.at(common))
        ++common;
    QString path;
    for (qsizetype i = common; i < from.size(); ++i)
        path += QStringLiteral("../");
    for (qsizetype i = common; i < to.size(); ++i)
        path += to.at(i) + QLatin1Char('/');
    return path + strName_p;
}

// A local path may come with either kind of separator.
QString CPageBackgrounds::FileName(const QString &strLocalPath_p)
{
    const qsizetype cut = std::max(strLocalPath_p.lastIndexOf(QLatin1Char('\\')), strLocalPath_p.lastIndexOf(QLatin1Char('/')));
    return strLocalPath_p.mid(cut + 1);
}

QString CPageBackgrounds::FolderOf(const QString &strPath_p)
{
    const qsizetype slash = strPath_p.lastIndexOf(QLatin1Char('/'));
    return slash < 0 ? QStringLiteral("/") : strPath_p.left(slash + 1);
}

long CPageBackgrounds::Upload(const QString &strLocalFile_p, const QString &strFolder_p, const SiteRecord &site)
{
    CFTPS ftp;
    if (ftp.Init(site.baseaddress, site.baseurl, site.userid, site.password) != 1)
        return 0;
    ftp.SetHideTransferDialog(true); // after Init, which shows the window again
    return ftp.SendFile(strLocalFile_p, strFolder_p);
}
