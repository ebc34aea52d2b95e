#pragma once

#include "config/MGlobalProjectObjects.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

// A .pset file: one site's complete settings, handed from an administrator
// to a user. Fifteen texts, each enciphered under the fixed pass phrase and
// stored as one block: a 2-byte dimension count (1), a 4-byte element count,
// a 4-byte lower bound (0), then the bytes; all numbers little-endian, no
// header and no gaps.
class CSettingsFile
{
public:
    static constexpr int FieldCount = 15;
    enum Field { userid, password, baseurl, baseaddress, indexfile, ftproot, useremotef,
                 remotefolder, passivemode, AdvancedUserSettings, UseTidy,
                 TidyCharEncodingType, CMSUserName, CMSUserPassword, useabsol };

    // The fifteen texts of a site and the current global settings, with the
    // CMS identity given.
    static QStringList FromSite(const SiteRecord &site, const QString &strCMSUserName_p,
                                const QString &strCMSUserPassword_p);

    static QByteArray Encode(const QStringList &texts);
    // Returns 1 and the fifteen texts, or 0 with the pending error set when
    // the bytes are not a whole settings file.
    static long Decode(const QByteArray &bytes, QStringList &texts);

    static long WriteFile(const QString &strPath_p, const QStringList &texts);
    static long ReadFile(const QString &strPath_p, QStringList &texts);

    // Puts the texts into a record and the global settings it carries.
    static void ApplyTo(const QStringList &texts, SiteRecord &site);

private:
    static long Damaged(const QString &position);
};
