#include "objects/ImageUpload.h"

#include "config/MGlobalProjectObjects.h"
#include "document/CSendPath.h"
#include "platform/LocalFolders.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"
#include "transfer/CCacheManager.h"
#include "transfer/CFTPS.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

namespace {

enum Text : long { txtNameTaken = 17841, txtTitle = 17842, txtGone = 17845, txtNotSaved = 17847, txtNotOnServer = 17848 };

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

const QString kPosition = QStringLiteral("CHTMLImg.CIHTMLObject_Save");

SiteRecord CurrentSite()
{
    const auto &sites = MGlobalProjectObjects::URLDATA;
    const long current = MGlobalProjectObjects::lCurrentURL;
    return current >= 0 && current < long(sites.size()) ? sites[size_t(current)] : SiteRecord();
}

} // namespace

QString ImageUpload::WorkFolder()
{
    const QString folder = LocalFolders::tempFolder() + QStringLiteral("/pictures");
    QDir().mkpath(folder);
    return folder;
}

QString ImageUpload::ServerName(const QString &strLocalName_p)
{
    QString name = strLocalName_p;
    for (QChar &c : name) {
        const bool plain = (c >= QLatin1Char('a') && c <= QLatin1Char('z')) || (c >= QLatin1Char('A') && c <= QLatin1Char('Z'))
                           || (c >= QLatin1Char('0') && c <= QLatin1Char('9')) || c == QLatin1Char('.')
                           || c == QLatin1Char('-') || c == QLatin1Char('_');
        if (!plain)
            c = QLatin1Char('_');
    }
    return name;
}

QString ImageUpload::FreeName(const QString &strName_p, const QStringList &names_p)
{
    const qsizetype dot = strName_p.lastIndexOf(QLatin1Char('.'));
    const QString base = dot > 0 ? strName_p.left(dot) : strName_p;
    const QString extension = dot > 0 ? strName_p.mid(dot) : QString();
    for (int n = 2;; ++n) {
        const QString name = base + QLatin1Char('_') + QString::number(n) + extension;
        if (!names_p.contains(name, Qt::CaseInsensitive))
            return name;
    }
}

// 1 go on (with the name to use and whether it replaces a file), 0 the
// user stopped the save.
long ImageUpload::Ask(const QString &strName_p, const QString &strFolder_p, const QStringList &names_p,
                      QString &strUseName_p, bool &boolReplace_p)
{
    strUseName_p = strName_p;
    boolReplace_p = false;
    if (!names_p.contains(strName_p, Qt::CaseInsensitive))
        return 1;
    const QString free = FreeName(strName_p, names_p);
    const long answer = UserQuestions::MsgBox(L(txtNameTaken).arg(strName_p, strFolder_p, free),
                                              UserQuestions::vbYesNoCancel | UserQuestions::vbQuestion
                                                  | UserQuestions::vbDefaultButton2,
                                              L(txtTitle));
    if (answer == UserQuestions::vbCancel)
        return 0;
    boolReplace_p = answer == UserQuestions::vbYes;
    if (!boolReplace_p)
        strUseName_p = free;
    return 1;
}

// The file's path on the FTP server, by the rule that finds a page's own
// file from its address.
QString ImageUpload::ServerPathOf(const HtmlDocument &page, const QString &strSrc_p)
{
    const QUrl address = QUrl(page.URL()).resolved(QUrl(strSrc_p));
    QString serverPath;
    CSendPath::GetPreparedSendPath(CurrentSite(), QString(), address.path(QUrl::FullyEncoded), serverPath,
                                   page.characterSet());
    return serverPath;
}

long ImageUpload::FetchCopy(const HtmlDocument &page, const QString &strSrc_p, QString &strLocalFile_p)
{
    const QUrl address = QUrl(page.URL()).resolved(QUrl(strSrc_p));
    CCacheManager().GetCachePathFromURL(address.toString(), strLocalFile_p);
    QDir().mkpath(QFileInfo(strLocalFile_p).absolutePath());
    const SiteRecord site = CurrentSite();
    CFTPS ftp;
    if (ftp.Init(site.baseaddress, site.baseurl, site.userid, site.password) != 1)
        return 0;
    ftp.SetHideTransferDialog(true);
    if (ftp.SaveFile(ServerPathOf(page, strSrc_p), strLocalFile_p, true) == 1)
        return 1;
    MError::SetErrorIfClear(53, L(txtNotOnServer).arg(address.toString()), QStringLiteral("frmImageProperties.init"));
    return 0;
}

long ImageUpload::Send(const HtmlDocument &page, const QString &strLocalFile_p, const QString &strFolder_p,
                       QString &strName_p)
{
    const QFileInfo local(strLocalFile_p);
    if (!local.isFile()) {
        MError::SetErrorIfClear(53, L(txtGone).arg(strLocalFile_p), kPosition);
        return 0;
    }
    // The server folder is the one the page reaches by the path: found by
    // the rule that finds a page's own file.
    const SiteRecord site = CurrentSite();
    const QString name = ServerName(local.fileName());
    const QString serverPath = ServerPathOf(page, strFolder_p + name);
    const QString folder = serverPath.left(serverPath.lastIndexOf(QLatin1Char('/')) + 1);

    CFTPS ftp;
    if (ftp.Init(site.baseaddress, site.baseurl, site.userid, site.password) != 1)
        return 0;
    ftp.SetHideTransferDialog(true); // the save shows its own wait, with its Cancel
    QStringList names;
    if (ftp.ListFolderFiles(folder, names) != 1)
        return 0;
    bool replace = false;
    if (Ask(name, folder, names, strName_p, replace) != 1) {
        MError::SetErrorIfClear(-1, L(txtNotSaved).arg(local.fileName()), kPosition);
        return 0;
    }
    // The copy bears the server's name: the transfer names the file by it.
    const QString copyFolder = WorkFolder() + QStringLiteral("/upload");
    QDir(copyFolder).removeRecursively();
    QDir().mkpath(copyFolder);
    const QString copy = copyFolder + QLatin1Char('/') + strName_p;
    if (!QFile::copy(strLocalFile_p, copy)) {
        MError::SetErrorIfClear(75, QStringLiteral("Path/File access error: ") + copy, kPosition);
        return 0;
    }
    const long sent = ftp.SendFile(copy, folder, !replace);
    QFile::remove(copy);
    return sent == 1 ? 1 : 0;
}
