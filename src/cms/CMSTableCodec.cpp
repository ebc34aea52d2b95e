#include "cms/CMSTableCodec.h"

#include "cms/CMSDataFile.h"
#include "cms/CMSTables.h"
#include "config/CCrypt.h"

#include <QRegularExpression>

namespace {

// One pass phrase for each kind of field.
const QString PhrasePath = QStringLiteral("fenuqwarte");
const QString PhraseName = QStringLiteral("tralgumpe");
const QString PhrasePassword = QStringLiteral("drosknaple");
const QString PhraseStamp = QStringLiteral("zilbothrun");

QString Decipher(CCrypt &crypt, const std::optional<QByteArray> &bytes, const QString &phrase)
{
    return bytes ? crypt.DeCryptBinary(*bytes, phrase) : QString();
}

CMSDataFile::User EncipherUser(CCrypt &crypt, const CMSUSER &user)
{
    return {crypt.EnCryptBinary(user.strName, PhraseName),
            crypt.EnCryptBinary(user.strPassword, PhrasePassword), user.limits, user.intHidden};
}

CMSDataFile::Page EncipherPage(CCrypt &crypt, const CMSPAGE &page)
{
    CMSDataFile::Page out;
    out.bytPath = crypt.EnCryptBinary(page.strPath, PhrasePath);
    if (!page.sngUsers.isEmpty())
        out.sngUsers = page.sngUsers;
    return out;
}

// A table that was never sized, or sized to nothing, reads as one spare
// entry: the spare-entry rule holds for every table in memory.
std::vector<CMSUSER> DecipherUsers(CCrypt &crypt, const std::optional<std::vector<CMSDataFile::User>> &users)
{
    std::vector<CMSUSER> out;
    if (users)
        for (const CMSDataFile::User &u : *users)
            out.push_back({Decipher(crypt, u.bytName, PhraseName),
                           Decipher(crypt, u.bytPassword, PhrasePassword), u.limits, u.intHidden});
    if (out.empty())
        out.emplace_back();
    return out;
}

// An empty page table gets the spare entry a new page is written into: its
// user list is the single unused -1.
std::vector<CMSPAGE> DecipherPages(CCrypt &crypt, const std::optional<std::vector<CMSDataFile::Page>> &pages)
{
    std::vector<CMSPAGE> out;
    if (pages)
        for (const CMSDataFile::Page &p : *pages)
            out.push_back({Decipher(crypt, p.bytPath, PhrasePath), p.sngUsers.value_or(QList<float>())});
    if (out.empty())
        out.push_back({QString(), {-1.0f}});
    return out;
}

} // namespace

QByteArray CMSTableCodec::Encode(const QDate &today)
{
    CCrypt crypt;
    CMSDataFile::Record record;
    record.strVersion = QByteArray::number(CurrentVersion);
    record.boolAllLocked = g_boolAllFilesLocked ? -1 : 0;
    record.aPages.emplace();
    for (const CMSPAGE &page : g_aCMSPages)
        record.aPages->push_back(EncipherPage(crypt, page));
    record.aUsers.emplace();
    for (const CMSUSER &user : g_aCMSUsers)
        record.aUsers->push_back(EncipherUser(crypt, user));
    record.bytStamp = crypt.EnCryptBinary(StampText(today.addYears(3)), PhraseStamp);
    return CMSDataFile::Write(record);
}

bool CMSTableCodec::Decode(const QByteArray &bytes, const QDate &today, double &dblVersion)
{
    CMSDataFile::Record record;
    if (!CMSDataFile::Read(bytes, record))
        return false;
    CCrypt crypt;
    dblVersion = VersionNumber(record.strVersion);
    // The stored lock state is overruled: every read leaves the site locked
    // until the administrator unlocks it again in the panel.
    g_boolAllFilesLocked = true;
    g_aCMSUsers = DecipherUsers(crypt, record.aUsers);
    g_aCMSPages = DecipherPages(crypt, record.aPages);
    const QDate stamp = StampDate(Decipher(crypt, record.bytStamp, PhraseStamp));
    g_dtCMSStamp = stamp.isValid() ? stamp : today;
    return true;
}

double CMSTableCodec::VersionNumber(const QByteArray &strVersion)
{
    static const QRegularExpression number(QStringLiteral("^\\s*([-+]?\\d*\\.?\\d+)"));
    const QRegularExpressionMatch m = number.match(QString::fromLatin1(strVersion));
    return m.hasMatch() ? m.captured(1).toDouble() : 0.0;
}

QString CMSTableCodec::StampText(const QDate &date)
{
    return date.toString(QStringLiteral("MM/dd/yyyy"));
}

QDate CMSTableCodec::StampDate(const QString &text)
{
    const QString trimmed = text.trimmed();
    for (const QString &form : {QStringLiteral("MM/dd/yyyy"), QStringLiteral("M/d/yyyy")}) {
        const QDate date = QDate::fromString(trimmed, form);
        if (date.isValid())
            return date;
    }
    return QDate();
}
