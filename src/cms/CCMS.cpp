#include "cms/CCMS.h"

#include "cms/CMSTableCodec.h"
#include "cms/CMSTables.h"
#include "config/MGlobalProjectObjects.h"
#include "history/HistoryFolderGuard.h"
#include "platform/LocalFolders.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"
#include "transfer/CFTPS.h"

#include <QFile>

namespace {

enum : long {
    txtNewerVersion = 17950,
    txtFileCheckTitle = 17951,
    txtCannotRead = 17952,
    txtLocallyLocked = 17953,
    txtAdminTitle = 17954,
    txtOverwriteNewer = 20455
};

// The runtime's numbers for a file that ends early and one that can't be opened.
constexpr long errInputPastEnd = 62;
constexpr long errFileNotFound = 53;
// Stands in when a step failed without leaving an error of its own.
constexpr long errInternal = 51;
constexpr long errPathFileAccess = 75;

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

// A step that failed without an error of its own still leaves one pending.
long Fail(const QString &position)
{
    MError::SetErrorIfClear(errInternal, QStringLiteral("Internal error"), position);
    return 0;
}

// What this client last saw of the file of one site: the bytes read or
// written, and the version read.
struct KnownFile
{
    QString folder; // FileKey()
    bool present = false;
    QByteArray bytes;
    double version = 0;
    bool newerAllowed = false;
};

KnownFile &Known()
{
    static KnownFile known;
    return known;
}

void Remember(const QString &folder, bool present, const QByteArray &bytes, double version)
{
    Known() = KnownFile{folder, present, bytes, version, false};
}

SiteRecord CurrentSite()
{
    const auto &sites = MGlobalProjectObjects::URLDATA;
    const long index = MGlobalProjectObjects::lCurrentURL;
    if (index >= 0 && index < static_cast<long>(sites.size()))
        return sites[static_cast<size_t>(index)];
    return SiteRecord();
}

// The file of one site: its FTP account and the folder on it.
QString FileKey()
{
    const SiteRecord site = CurrentSite();
    return site.baseurl + QLatin1Char('|') + site.userid + QLatin1Char('|') + CCMS::CMSFolder();
}

} // namespace

QString CCMS::CMSFolder()
{
    QString folder = CurrentSite().ftproot + QStringLiteral("/_resetp");
    while (folder.contains(QStringLiteral("//")))
        folder.replace(QStringLiteral("//"), QStringLiteral("/"));
    return folder;
}

QString CCMS::LocalFile()
{
    return LocalFolders::tempFolder() + QStringLiteral("/cms.dat");
}

long CCMS::GetCMSData()
{
    const QString position = QStringLiteral("CCMS.GetCMSData{line: %1}");
    CFTPS ftp;
    const QString folder = CMSFolder();
    if (HistoryFolderGuard::MakeFolder(ftp, CurrentSite(), folder) != 1)
        return Fail(position.arg(1));
    const long got = ftp.SaveFile(folder + QStringLiteral("/cms.dat"), LocalFile(), true);
    if (got == CFTPS::ExpectedFailure) {
        QFile::remove(LocalFile());
        Remember(FileKey(), false, {}, 0);
        return -1;
    }
    if (got != 1)
        return Fail(position.arg(2));

    QFile file(LocalFile());
    if (!file.open(QIODevice::ReadOnly)) {
        MError::SetErrorIfClear(errFileNotFound, file.errorString(), position.arg(4));
        return 0;
    }
    const QByteArray bytes = file.readAll();
    file.close();
    QFile::remove(LocalFile());

    double dblVersion = 0;
    const bool decoded = CMSTableCodec::Decode(bytes, QDate::currentDate(), dblVersion);
    Remember(FileKey(), true, bytes, decoded ? dblVersion : 0);
    if (!decoded) {
        // The bytes are no valid record: the user is told once and the
        // tables stay as the edit session reset them.
        UserQuestions::MsgBox(L(txtCannotRead), UserQuestions::vbExclamation);
        MError::SetError(errInputPastEnd, QStringLiteral("Input past end of file"), position.arg(4));
        MError::LogError();
        return -2;
    }
    // A newer file is still used as far as this version understands it.
    if (dblVersion > CMSTableCodec::CurrentVersion)
        UserQuestions::MsgBox(L(txtNewerVersion), UserQuestions::vbInformation, L(txtFileCheckTitle));
    return 1;
}

long CCMS::SetCMSData()
{
    const QString position = QStringLiteral("CCMS.SetCMSData");
    if (!MayWriteOverNewer())
        return -3;
    CFTPS ftp;
    const QString folder = CMSFolder();
    if (HistoryFolderGuard::MakeFolder(ftp, CurrentSite(), folder) != 1)
        return Fail(position);
    const QString local = LocalFile();
    if (QFile::exists(local) && !QFile::remove(local)) {
        UserQuestions::MsgBox(L(txtLocallyLocked), UserQuestions::vbExclamation, L(txtAdminTitle));
        MError::SetErrorIfClear(errPathFileAccess, QStringLiteral("Path/File access error"), position);
        return 0;
    }

    QFile file(local);
    const QByteArray bytes = CMSTableCodec::Encode(QDate::currentDate());
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        MError::SetErrorIfClear(errPathFileAccess, file.errorString(), position);
        return 0;
    }
    file.close();

    const long sent = ftp.SendFile(local, folder);
    QFile::remove(local);
    if (sent == CFTPS::ExpectedFailure)
        return -1;
    if (sent != 1)
        return Fail(position);
    Remember(FileKey(), true, bytes, CMSTableCodec::CurrentVersion);
    g_boolCMSTablesChanged = false;
    return 1;
}

long CCMS::ServerChanged(bool &boolChanged_p)
{
    const QString position = QStringLiteral("CCMS.ServerChanged");
    const QString folder = CMSFolder();
    const QString local = LocalFolders::tempFolder() + QStringLiteral("/cms-check.dat");
    CFTPS ftp;
    const long got = ftp.SaveFile(folder + QStringLiteral("/cms.dat"), local, true);
    if (got == CFTPS::ExpectedFailure) {
        QFile::remove(local);
        boolChanged_p = Known().present;
        return 1;
    }
    if (got != 1)
        return Fail(position);
    QFile file(local);
    if (!file.open(QIODevice::ReadOnly)) {
        MError::SetErrorIfClear(errFileNotFound, file.errorString(), position);
        return 0;
    }
    const QByteArray bytes = file.readAll();
    file.close();
    QFile::remove(local);
    boolChanged_p = !Known().present || bytes != Known().bytes;
    return 1;
}

bool CCMS::KnownForCurrentSite()
{
    return !Known().folder.isEmpty() && Known().folder == FileKey();
}

void CCMS::ForgetFile()
{
    Known() = KnownFile();
}

bool CCMS::MayWriteOverNewer()
{
    KnownFile &known = Known();
    if (!KnownForCurrentSite() || known.version <= CMSTableCodec::CurrentVersion || known.newerAllowed)
        return true;
    known.newerAllowed = UserQuestions::MsgBox(L(txtOverwriteNewer).arg(known.version),
                                               UserQuestions::vbYesNo | UserQuestions::vbQuestion
                                                   | UserQuestions::vbDefaultButton2,
                                               L(txtAdminTitle))
                         == UserQuestions::vbYes;
    return known.newerAllowed;
}
