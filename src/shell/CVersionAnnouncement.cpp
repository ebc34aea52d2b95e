#include "shell/CVersionAnnouncement.h"

#include "platform/CReg.h"
#include "support/MError.h"
#include "support/MResources.h"

#include <QStringList>

namespace {
const QString kSection = QStringLiteral("settings");

enum : long {
    idNewVersion = 19910,
    idLatestVersion = 19911,
    idGetIt = 19912,
    idNewVersionTitle = 19913,
};

// The error number of a version text that is not one, as a failed
// conversion of a number reports it.
constexpr long kTypeMismatch = 13;

long pieceAsNumber(const QStringList &pieces, int index, long &value)
{
    if (index >= pieces.size()) {
        MError::SetErrorIfClear(9, QStringLiteral("Subscript out of range: the version text has no piece %1")
                                       .arg(index + 1),
                                CVersionAnnouncement::Position());
        return 0;
    }
    bool ok = false;
    value = pieces.at(index).trimmed().toLong(&ok);
    if (!ok) {
        MError::SetErrorIfClear(kTypeMismatch,
                                QStringLiteral("Type mismatch: \"%1\" is no version number").arg(pieces.at(index)),
                                CVersionAnnouncement::Position());
        return 0;
    }
    return 1;
}
} // namespace

QString CVersionAnnouncement::VersionServer()
{
    QString server = CReg::GetSetting(kSection, QStringLiteral("versionserver")).trimmed();
    while (server.endsWith(QLatin1Char('/')))
        server.chop(1);
    return server;
}

QString CVersionAnnouncement::DownloadPage()
{
    const QString page = CReg::GetSetting(kSection, QStringLiteral("downloadpage")).trimmed();
    return page.isEmpty() ? VersionServer() + QStringLiteral("/download.htm") : page;
}

long CVersionAnnouncement::AppMajor() { return KELDA_APP_MAJOR; }
long CVersionAnnouncement::AppMinor() { return KELDA_APP_MINOR; }
long CVersionAnnouncement::AppRevision() { return KELDA_APP_REVISION; }

long CVersionAnnouncement::Parse(const QString &strReply_p, long &lMajor_p, long &lMinor_p)
{
    const QStringList pieces = strReply_p.split(QLatin1Char('.'));
    if (!pieceAsNumber(pieces, 0, lMajor_p))
        return 0;
    return pieceAsNumber(pieces, 1, lMinor_p);
}

bool CVersionAnnouncement::IsNewer(long lMajor_p, long lMinor_p, long lAppMajor_p, long lAppMinor_p)
{
    return lMajor_p > lAppMajor_p || (lMajor_p == lAppMajor_p && lMinor_p > lAppMinor_p);
}

QString CVersionAnnouncement::Message(const QString &strReply_p)
{
    const QString ours = QStringLiteral("%1.%2.%3")
                             .arg(AppMajor())
                             .arg(AppMinor(), 2, 10, QLatin1Char('0'))
                             .arg(AppRevision(), 4, 10, QLatin1Char('0'));
    return MResources::LoadResourceString(idNewVersion) + QLatin1Char(' ') + ours + QStringLiteral(". ")
           + MResources::LoadResourceString(idLatestVersion) + QLatin1Char(' ') + strReply_p.trimmed()
           + QLatin1Char(' ') + MResources::LoadResourceString(idGetIt);
}

QString CVersionAnnouncement::Title()
{
    return MResources::LoadResourceString(idNewVersionTitle);
}

QString CVersionAnnouncement::MessageName(long lMajor_p, long lMinor_p)
{
    return QStringLiteral("ShowVerMessAdmin%1.%2").arg(lMajor_p).arg(lMinor_p);
}
