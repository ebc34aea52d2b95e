#include "config/CSettingsFile.h"

#include "config/CCrypt.h"
#include "support/MError.h"
#include "support/MResources.h"

#include <QFile>
#include <QSaveFile>
#include <QtEndian>

namespace {
using G = MGlobalProjectObjects;

const QString kPassPhrase = QStringLiteral("tralgumpe");
constexpr qsizetype kBlockHeader = 10;

QString boolText(bool b) { return b ? QStringLiteral("True") : QStringLiteral("False"); }
bool parseBool(const QString &s) { return s.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0; }
} // namespace

QStringList CSettingsFile::FromSite(const SiteRecord &site, const QString &strCMSUserName_p,
                                    const QString &strCMSUserPassword_p)
{
    return {site.userid, site.password, site.baseurl, site.baseaddress, site.indexfile,
            site.ftproot, site.useremotef, site.remotefolder, boolText(site.passivemode),
            QString::number(G::AdvancedUserSettings), boolText(G::UseTidy),
            QString::number(G::TidyCharEncodingType), strCMSUserName_p, strCMSUserPassword_p,
            boolText(site.useabsol)};
}

QByteArray CSettingsFile::Encode(const QStringList &texts)
{
    CCrypt crypt;
    QByteArray out;
    for (int f = 0; f < FieldCount; ++f) {
        const QByteArray bytes = crypt.EnCryptBinary(texts.value(f), kPassPhrase);
        char header[kBlockHeader];
        qToLittleEndian<quint16>(1, header);
        qToLittleEndian<quint32>(static_cast<quint32>(bytes.size()), header + 2);
        qToLittleEndian<quint32>(0, header + 6);
        out.append(header, kBlockHeader);
        out.append(bytes);
    }
    return out;
}

long CSettingsFile::Decode(const QByteArray &bytes, QStringList &texts)
{
    const QString position = QStringLiteral("CSettingsFile.Decode");
    CCrypt crypt;
    QStringList result;
    qsizetype pos = 0;
    for (int f = 0; f < FieldCount; ++f) {
        if (bytes.size() - pos < kBlockHeader)
            return Damaged(position);
        const char *header = bytes.constData() + pos;
        const quint16 dims = qFromLittleEndian<quint16>(header);
        const quint32 count = qFromLittleEndian<quint32>(header + 2);
        const quint32 lower = qFromLittleEndian<quint32>(header + 6);
        pos += kBlockHeader;
        // Every block the program writes is one-dimensional from 0 and ends
        // in the byte 0; anything else is not a settings file.
        if (dims != 1 || lower != 0 || count < 1 || count > static_cast<quint64>(bytes.size() - pos)
            || bytes.at(pos + count - 1) != '\0')
            return Damaged(position);
        result.append(crypt.DeCryptBinary(bytes.mid(pos, count), kPassPhrase));
        pos += count;
    }
    if (pos != bytes.size())
        return Damaged(position);
    texts = result;
    return 1;
}

long CSettingsFile::WriteFile(const QString &strPath_p, const QStringList &texts)
{
    QSaveFile file(strPath_p);
    if (!file.open(QIODevice::WriteOnly) || file.write(Encode(texts)) < 0 || !file.commit()) {
        MError::SetErrorIfClear(75, file.errorString() + QStringLiteral(": ") + strPath_p,
                                QStringLiteral("CSettingsFile.WriteFile"));
        return 0;
    }
    return 1;
}

long CSettingsFile::ReadFile(const QString &strPath_p, QStringList &texts)
{
    QFile file(strPath_p);
    if (!file.open(QIODevice::ReadOnly)) {
        MError::SetErrorIfClear(53, file.errorString() + QStringLiteral(": ") + strPath_p,
                                QStringLiteral("CSettingsFile.ReadFile"));
        return 0;
    }
    return Decode(file.readAll(), texts);
}

void CSettingsFile::ApplyTo(const QStringList &t, SiteRecord &site)
{
    site.userid = t.at(userid);
    site.password = t.at(password);
    site.baseurl = t.at(baseurl);
    site.baseaddress = t.at(baseaddress);
    site.indexfile = t.at(indexfile);
    site.ftproot = t.at(ftproot);
    site.useremotef = t.at(useremotef);
    site.remotefolder = t.at(remotefolder);
    site.passivemode = parseBool(t.at(passivemode));
    G::AdvancedUserSettings = t.at(AdvancedUserSettings).toLong();
    G::UseTidy = parseBool(t.at(UseTidy));
    G::TidyCharEncodingType = t.at(TidyCharEncodingType).toLong();
    G::CMSUserName = t.at(CMSUserName);
    G::CMSUserPassword = t.at(CMSUserPassword);
    site.useabsol = parseBool(t.at(useabsol));
}

long CSettingsFile::Damaged(const QString &position)
{
    // 13010: the file is cut short or is no settings file at all.
    MError::SetErrorIfClear(62, MResources::LoadResourceString(13010), position);
    return 0;
}
