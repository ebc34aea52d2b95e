#include "shell/ASPTagging.h"

#include "aspfilter/CASPFilter.h"
#include "config/MGlobalProjectObjects.h"
#include "document/CSendPath.h"
#include "document/FaithfulSave.h"
#include "platform/LocalFolders.h"
#include "shell/MarkedPageRepair.h"
#include "support/MError.h"
#include "transfer/CFTPS.h"

#include <QFile>

namespace {
const QString kPosition = QStringLiteral("frmVindrell.SetASPTags");

QString SiteFtpRoot()
{
    const auto &sites = MGlobalProjectObjects::URLDATA;
    const long current = MGlobalProjectObjects::lCurrentURL;
    return current >= 0 && current < long(sites.size()) ? sites[current].ftproot : QString();
}
} // namespace

ASPTagging::ASPTagging() = default;
ASPTagging::~ASPTagging() = default;

void ASPTagging::ResetOriginals()
{
    m_aOriginalSources.clear();
}

QString ASPTagging::FullServerPath(const QString &strURL)
{
    QString path = strURL.startsWith(QLatin1Char('/')) ? strURL : QLatin1Char('/') + strURL;
    const QString root = SiteFtpRoot();
    if (root.isEmpty() || root == QStringLiteral("/"))
        return path;
    if (root.endsWith(QLatin1Char('/')))
        path.remove(0, 1);
    return root + path;
}

QString ASPTagging::BackupName(const QString &strURL)
{
    const QString name = strURL.mid(strURL.lastIndexOf(QLatin1Char('/')) + 1);
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    return (dot < 0 ? name + QLatin1Char('.') : name.left(dot + 1)) + QStringLiteral("keldabak");
}

// The page's bytes are kept as they were read: they are what every save
// of the session writes into, and what goes back when the marks come off.
long ASPTagging::SetASPTags(const QString &strURL)
{
    CFTPS ftp;
    QByteArray source;
    // A page that can't be read is untouched on the server: it gets no
    // filter, so nothing is put back or cleared away for it.
    if (ftp.GetASCIIFile(strURL, source) != 1) {
        MError::SetErrorIfClear(MError::ErrorNumber(), MError::ErrorDescription(), kPosition);
        return 0;
    }
    auto filter = std::make_shared<CASPFilter>();
    m_ASPFilters.push_back(filter);
    m_aMarkedOriginals.append(QByteArray());
    if (MarkedPageRepair::Repair(ftp, strURL, source) != 1) {
        MError::SetErrorIfClear(MError::ErrorNumber(), MError::ErrorDescription(), kPosition);
        return 0;
    }
    AddSource(source);
    if (LeaveCopyBeside(strURL, source) != 1)
        return 0;
    filter->LetURL(strURL);
    const QByteArray marked = FaithfulSave::Marked(source);
    if (marked.isEmpty())
        return 1;
    m_aMarkedOriginals.last() = source;
    if (ftp.SendPage(marked, FullServerPath(strURL)) != 1) {
        MError::SetErrorIfClear(MError::ErrorNumber(), MError::ErrorDescription(), kPosition);
        return 0;
    }
    return 1;
}

// The copy goes up from a local file of the same name, which is deleted
// again whatever the upload gave.
long ASPTagging::LeaveCopyBeside(const QString &strURL, const QByteArray &source)
{
    const QString local = LocalFolders::tempFolder() + QLatin1Char('/') + BackupName(strURL);
    QFile file(local);
    if (!file.open(QIODevice::WriteOnly) || file.write(source) != source.size()) {
        MError::SetErrorIfClear(75, file.errorString(), kPosition + QStringLiteral(" file: ") + local);
        return 0;
    }
    file.close();
    const QString full = FullServerPath(strURL);
    CFTPS ftp;
    const long sent = ftp.SendFile(local, full.left(full.lastIndexOf(QLatin1Char('/')) + 1));
    QFile::remove(local);
    return sent == 1 ? 1 : 0;
}

// Once an original is back the copy beside it has served: it goes, so that
// a copy left on the server always means a session that did not finish.
// A copy that can't be removed is only logged; the page itself is whole.
long ASPTagging::RemoveASPTags()
{
    long status = 1;
    for (size_t i = 0; i < m_ASPFilters.size(); ++i) {
        const auto &filter = m_ASPFilters[i];
        const QByteArray original = qsizetype(i) < m_aMarkedOriginals.size() ? m_aMarkedOriginals[qsizetype(i)] : QByteArray();
        QString strURL;
        filter->GetURL(strURL);
        CFTPS ftp;
        if (!original.isEmpty() && ftp.SendPage(original, FullServerPath(strURL)) != 1) {
            MError::SetErrorIfClear(MError::ErrorNumber(), MError::ErrorDescription(),
                                    QStringLiteral("frmVindrell.RemoveASPTags"));
            status = 0;
            continue;
        }
        const QString full = FullServerPath(strURL);
        if (ftp.RemoveFile(full.left(full.lastIndexOf(QLatin1Char('/')) + 1) + BackupName(strURL)) != 1)
            MError::LogError();
    }
    return status;
}
