#include "config/CSettingsFileDrop.h"

#include "config/CPublicSettings.h"
#include "config/CSettingsFile.h"
#include "platform/CReg.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QMimeData>
#include <QUrl>

namespace {
using G = MGlobalProjectObjects;

bool hasContent(const SiteRecord &r)
{
    return !r.baseaddress.isEmpty() || !r.userid.isEmpty() || !r.baseurl.isEmpty()
        || !r.ftproot.isEmpty();
}
} // namespace

bool CSettingsFileDrop::Acceptable(const QMimeData *data_p)
{
    return data_p && (data_p->hasUrls() || data_p->hasText());
}

bool CSettingsFileDrop::CarriesSettingsFile(const QMimeData *data_p)
{
    if (!data_p || !data_p->hasUrls() || data_p->urls().isEmpty())
        return false;
    const QUrl first = data_p->urls().constFirst();
    return first.isLocalFile() && IsSettingsFile(first.toLocalFile());
}

long CSettingsFileDrop::ApplyMime(const QMimeData *data_p, QString &strNavigate_p)
{
    QStringList files;
    if (data_p)
        for (const QUrl &url : data_p->urls())
            if (url.isLocalFile())
                files.append(url.toLocalFile());
    return Apply(!files.isEmpty(), files, strNavigate_p);
}

bool CSettingsFileDrop::IsSettingsFile(const QString &strPath_p)
{
    return strPath_p.endsWith(QLatin1String(".pset"), Qt::CaseInsensitive);
}

long CSettingsFileDrop::Apply(bool hasFileList_p, const QStringList &files_p, QString &strNavigate_p)
{
    strNavigate_p.clear();
    if (!hasFileList_p || files_p.isEmpty()) {
        UserQuestions::MsgBox(MResources::LoadResourceString(13001), UserQuestions::vbExclamation,
                              MResources::LoadResourceString(13005));
        return Ignored;
    }
    // Only the first of several files counts, and only a settings file.
    const QString file = files_p.first();
    if (!IsSettingsFile(file))
        return Ignored;
    QStringList texts;
    if (!CSettingsFile::ReadFile(file, texts))
        return Failed;

    // The empty record of a store without sites is used; otherwise a new
    // one is added. A second drop of the same file adds a second record.
    if (G::URLDATA.empty() || hasContent(G::URLDATA.back()))
        G::URLDATA.emplace_back();
    SiteRecord &site = G::URLDATA.back();
    CSettingsFile::ApplyTo(texts, site);
    site.isactive = QStringLiteral("1");
    if (!CPublicSettings().SetURLSettings() || !SaveAdvanced())
        return Failed;

    const QString crlf = QStringLiteral("\r\n");
    const QString question = MResources::LoadResourceString(13002) + crlf + site.baseaddress + crlf
                           + MResources::LoadResourceString(13003) + crlf + G::CMSUserName + crlf
                           + MResources::LoadResourceString(13004);
    if (UserQuestions::MsgBox(question, UserQuestions::vbYesNo | UserQuestions::vbQuestion,
                              MResources::LoadResourceString(13005))
        == UserQuestions::vbYes)
        strNavigate_p = site.baseaddress;
    return Added;
}

long CSettingsFileDrop::SaveAdvanced()
{
    const QString section = QStringLiteral("Advanced");
    const bool ok =
        CReg::SaveSetting(section, QStringLiteral("AdvancedUserSettings"), QString::number(G::AdvancedUserSettings))
        && CReg::SaveSetting(section, QStringLiteral("UseTidy"),
                             G::UseTidy ? QStringLiteral("True") : QStringLiteral("False"))
        && CReg::SaveSetting(section, QStringLiteral("TidyCharEncodingType"), QString::number(G::TidyCharEncodingType))
        && CReg::SaveSetting(section, QStringLiteral("TidyIndentScheme"), QString::number(G::TidyIndentScheme))
        && CReg::SaveSetting(section, QStringLiteral("CMSUserName"), G::CMSUserName)
        && CReg::SaveSetting(section, QStringLiteral("CMSUserPassword"), G::CMSUserPassword);
    return ok ? 1 : 0; // a refusal leaves the store's own error pending
}
