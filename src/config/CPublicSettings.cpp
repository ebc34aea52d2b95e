#include "config/CPublicSettings.h"

#include "config/CCrypt.h"
#include "platform/CReg.h"
#include "platform/LocalFolders.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace {

using G = MGlobalProjectObjects;

// The thirteen binary fields of a record in stored order: the tag that names
// the value and the stem of the key that enciphers it. The stems are fixed
// for ever: changing one makes every stored password unreadable.
struct FieldName
{
    const char *tag;
    const char *stem;
};
constexpr std::array<FieldName, CPublicSettings::FieldCount> kFields = {{
    {"userid______", "qUv7#Lm2pXa9"},
    {"password____", "Zr4!hT8wKe1s"},
    {"baseurl_____", "m9Ds@Fy3NbQ6"},
    {"baseaddress_", "Wc5$Jg0uRt2v"},
    {"indexfile___", "pH8&Ek4xLo7z"},
    {"ftproot_____", "Bn1*Va6qYm3d"},
    {"remotefolder", "tG2%Ui9sCw5r"},
    {"useremotef__", "Xe7(Pk0jMh4a"},
    {"usesubindex_", "fS3)Ob8nQl6y"},
    {"isactive____", "Kd6-Ir1gZu9c"},
    {"passivemode_", "oT0+Hy5bDx2w"},
    {"automode____", "Rj4=Nf7mAe8k"},
    {"useabsol____", "vL9?Gc3tSp1i"},
}};

enum Field { fUserid, fPassword, fBaseurl, fBaseaddress, fIndexfile, fFtproot, fRemotefolder,
             fUseremotef, fUsesubindex, fIsactive, fPassivemode, fAutomode, fUseabsol };

const QString kSettings = QStringLiteral("settings");
const QString kProxy = QStringLiteral("Proxy");
const QString kAdvanced = QStringLiteral("Advanced");

QString boolText(bool b) { return b ? QStringLiteral("True") : QStringLiteral("False"); }
bool parseBool(const QString &s) { return s.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0; }

std::array<QString, CPublicSettings::FieldCount> fieldTexts(const SiteRecord &r)
{
    return {r.userid, r.password, r.baseurl, r.baseaddress, r.indexfile, r.ftproot,
            r.remotefolder, r.useremotef, r.usesubindex, r.isactive, boolText(r.passivemode),
            r.automode, boolText(r.useabsol)};
}

// One field as stored: present or not, and its text.
struct Stored
{
    bool present = false;
    QString text;
};

// The current format: a binary value per field under a plain name.
Stored readCurrent(int field, long index)
{
    const QVariant v = CReg::GetBinarySetting(kSettings, CPublicSettings::FieldValueName(field, index));
    if (v.typeId() != QMetaType::QByteArray)
        return {};
    return {true, CCrypt().DeCryptBinary(v.toByteArray(), CPublicSettings::FieldKey(field, index))};
}

// The older format: the value name is itself enciphered and the value is
// an enciphered string.
Stored readOlder(int field, long index)
{
    CCrypt crypt;
    const QString name = CPublicSettings::FieldValueName(field, index);
    const QString text = CReg::GetSetting(kSettings, crypt.EnCryptString(name, name));
    return {!text.isEmpty(), crypt.EnCryptString(text, CPublicSettings::FieldKey(field, index))};
}

long readNumber(const QString &key)
{
    return CReg::GetSetting(kAdvanced, key).toLong();
}

} // namespace

QString CPublicSettings::FieldValueName(int field, long index)
{
    return QString::fromLatin1(kFields.at(field).tag) + QString::number(index);
}

QString CPublicSettings::FieldKey(int field, long index)
{
    return QString::fromLatin1(kFields.at(field).stem) + QString::number(index);
}

long CPublicSettings::GetURLSettings()
{
    G::URLDATA.assign(1, SiteRecord());
    const QString version = CReg::GetSetting(QStringLiteral("Krypto"), QStringLiteral("ver"));
    for (long n = 0;; ++n) {
        SiteRecord record;
        if (!ReadRecord(version, n, record))
            break;
        if (n > 0)
            G::URLDATA.emplace_back();
        G::URLDATA[n] = record;
    }
    ReadGlobals();
    // Reading can't fail: a missing or unreadable store reads as empty.
    return SortURLData();
}

// Reads record index; false when the list ends there. In the current format
// the presence of the first value continues the list, in the older one its
// text must be non-empty.
bool CPublicSettings::ReadRecord(const QString &version, long index, SiteRecord &r)
{
    const bool current = version == QLatin1String("1");
    auto read = [&](int field) { return current ? readCurrent(field, index) : readOlder(field, index); };
    const Stored first = read(fUserid);
    if (!first.present)
        return false;
    r.userid = first.text;
    r.password = read(fPassword).text;
    r.baseurl = read(fBaseurl).text;
    r.baseaddress = read(fBaseaddress).text;
    r.indexfile = read(fIndexfile).text;
    r.ftproot = read(fFtproot).text;
    r.remotefolder = read(fRemotefolder).text;
    r.useremotef = read(fUseremotef).text;
    r.usesubindex = read(fUsesubindex).text;
    r.isactive = read(fIsactive).text;
    r.passivemode = parseBool(read(fPassivemode).text);
    if (current) {
        const Stored automode = read(fAutomode);
        r.automode = automode.present ? automode.text : QStringLiteral("1");
        r.useabsol = parseBool(read(fUseabsol).text);
        r.isnew = parseBool(CReg::GetSetting(kSettings, QStringLiteral("isnew%1").arg(index),
                                             QStringLiteral("False")));
        r.wwwalias = parseBool(CReg::GetSetting(kSettings, QStringLiteral("wwwalias%1").arg(index),
                                                QStringLiteral("False")));
        r.tlsfingerprint = CReg::GetSetting(kSettings, QStringLiteral("tlscert%1").arg(index));
        r.tlskeypin = CReg::GetSetting(kSettings, QStringLiteral("tlspin%1").arg(index));
        r.sshkey = CReg::GetSetting(kSettings, QStringLiteral("sshkey%1").arg(index));
    } else {
        r.automode.clear(); // the older format has no such value
    }
    r.subindex = {QString()};
    for (long m = 0;; ++m) {
        const QString entry = CReg::GetSetting(kSettings, QStringLiteral("subindex%1,%2").arg(index).arg(m));
        if (entry.isEmpty())
            break;
        if (m == 0)
            r.subindex[0] = entry;
        else
            r.subindex.append(entry);
    }
    return true;
}

void CPublicSettings::ReadGlobals()
{
    auto flag = [](const QString &section, const QString &key) {
        return parseBool(CReg::GetSetting(section, key));
    };
    auto text = [](const QString &key) { return CReg::GetSetting(kProxy, key); };
    ProxySettings &p = G::Proxy;
    p.use = flag(kProxy, QStringLiteral("use"));
    p.useFTP = flag(kProxy, QStringLiteral("useFTP"));
    p.usesockspassword = flag(kProxy, QStringLiteral("usesockspassword"));
    p.useHTTPpassword = flag(kProxy, QStringLiteral("useHTTPpassword"));
    p.serverHTTPname = text(QStringLiteral("serverHTTPname"));
    p.serverHTTPPort = text(QStringLiteral("serverHTTPPort"));
    p.serverHTTPUser = text(QStringLiteral("serverHTTPUser"));
    p.serverHTTPPassword = text(QStringLiteral("serverHTTPPassword"));
    p.serverFTPname = text(QStringLiteral("serverFTPname"));
    p.serverFTPPort = text(QStringLiteral("serverFTPPort"));
    p.serverSOCKSname = text(QStringLiteral("serverSOCKSname"));
    p.serverSOCKSPort = text(QStringLiteral("serverSOCKSPort"));
    p.serverSOCKSUser = text(QStringLiteral("serverSOCKSUser"));
    p.serverSOCKSPassWord = text(QStringLiteral("serverSOCKSPassWord"));
    p.serverSOCKSServerType = text(QStringLiteral("serverSOCKSServerType"));
    MGlobalProjectObjects::ApplyEngineProxy();

    G::useSpellCheck = flag(QStringLiteral("Spell"), QStringLiteral("useSpellCheck"));
    G::AdvancedUserSettings = readNumber(QStringLiteral("AdvancedUserSettings"));
    // Anything but an empty text or "False" turns the formatter on.
    const QString tidy = CReg::GetSetting(kAdvanced, QStringLiteral("UseTidy"));
    G::UseTidy = !tidy.isEmpty() && tidy != QLatin1String("False");
    G::TidyCharEncodingType = readNumber(QStringLiteral("TidyCharEncodingType"));
    G::TidyIndentScheme = readNumber(QStringLiteral("TidyIndentScheme"));
    G::CMSUserName = CReg::GetSetting(kAdvanced, QStringLiteral("CMSUserName"));
    G::CMSUserPassword = CReg::GetSetting(kAdvanced, QStringLiteral("CMSUserPassword"));

    CReg app;
    app.KeyRoot = CReg::AppKey();
    G::g_strAppPath = CReg::TrimNull(app.GetRegistryValue(QStringLiteral("AppPath"), QString()).toString());
    if (G::g_strAppPath.isEmpty())
        G::g_strAppPath = QCoreApplication::applicationDirPath();
    // The temporary folder is the program's own private one, not the
    // shared system folder, so that work files of two users never meet.
    G::g_strTempFolder = LocalFolders::tempFolder();
}

long CPublicSettings::SetURLSettings()
{
    // The whole save reaches the file in one write, so a failure leaves the
    // stored list as it was.
    CReg::BeginUpdate();
    const long written = WriteAll();
    const long flushed = CReg::EndUpdate();
    // On failure the store's own position (where the file was refused) is
    // the pending error.
    return written && flushed ? 1 : 0;
}

long CPublicSettings::WriteAll()
{
    if (!CReg::DeleteSetting(kSettings))
        return 0;
    if (G::URLDATA.empty() || G::URLDATA.front().baseaddress != EmptyAddress()) {
        if (!CReg::CreateSection(kSettings))
            return 0;
        for (std::size_t n = 0; n < G::URLDATA.size(); ++n)
            if (!WriteRecord(G::URLDATA[n], static_cast<long>(n)))
                return 0;
    }
    if (!WriteProxy())
        return 0;
    return CReg::SaveSetting(QStringLiteral("Krypto"), QStringLiteral("ver"), QStringLiteral("1"));
}

long CPublicSettings::WriteRecord(const SiteRecord &record, long index)
{
    CCrypt crypt;
    const auto texts = fieldTexts(record);
    for (int f = 0; f < FieldCount; ++f) {
        const QByteArray bytes = crypt.EnCryptBinary(texts[f], FieldKey(f, index));
        if (!CReg::SaveBinarySetting(kSettings, FieldValueName(f, index), bytes))
            return 0;
    }
    for (qsizetype m = 0; m < record.subindex.size() && !record.subindex.at(m).isEmpty(); ++m)
        if (!CReg::SaveSetting(kSettings, QStringLiteral("subindex%1,%2").arg(index).arg(m),
                               record.subindex.at(m)))
            return 0;
    return CReg::SaveSetting(kSettings, QStringLiteral("isnew%1").arg(index), boolText(record.isnew))
        && CReg::SaveSetting(kSettings, QStringLiteral("wwwalias%1").arg(index), boolText(record.wwwalias))
        && (record.sshkey.isEmpty() || CReg::SaveSetting(kSettings, QStringLiteral("sshkey%1").arg(index), record.sshkey))
        && WriteTrustedCertificate(record, index);
}

// Written only for a site that has one: the section was emptied before.
long CPublicSettings::WriteTrustedCertificate(const SiteRecord &record, long index)
{
    if (record.tlskeypin.isEmpty())
        return 1;
    return CReg::SaveSetting(kSettings, QStringLiteral("tlscert%1").arg(index), record.tlsfingerprint)
        && CReg::SaveSetting(kSettings, QStringLiteral("tlspin%1").arg(index), record.tlskeypin);
}

long CPublicSettings::SaveTrustedCertificate(long index)
{
    if (index < 0 || index >= static_cast<long>(G::URLDATA.size()))
        return 0;
    CReg::BeginUpdate();
    const long written = WriteTrustedCertificate(G::URLDATA[static_cast<size_t>(index)], index);
    return CReg::EndUpdate() && written ? 1 : 0;
}

long CPublicSettings::WriteProxy()
{
    const ProxySettings &p = G::Proxy;
    const std::array<std::pair<const char *, QString>, 15> values = {{
        {"use", boolText(p.use)},
        {"useFTP", boolText(p.useFTP)},
        {"usesockspassword", boolText(p.usesockspassword)},
        {"useHTTPpassword", boolText(p.useHTTPpassword)},
        {"serverHTTPname", p.serverHTTPname},
        {"serverHTTPPort", p.serverHTTPPort},
        {"serverHTTPUser", p.serverHTTPUser},
        {"serverHTTPPassword", p.serverHTTPPassword},
        {"serverFTPname", p.serverFTPname},
        {"serverFTPPort", p.serverFTPPort},
        {"serverSOCKSname", p.serverSOCKSname},
        {"serverSOCKSPort", p.serverSOCKSPort},
        {"serverSOCKSUser", p.serverSOCKSUser},
        {"serverSOCKSPassWord", p.serverSOCKSPassWord},
        {"serverSOCKSServerType", p.serverSOCKSServerType},
    }};
    for (const auto &[key, value] : values)
        if (!CReg::SaveSetting(kProxy, QString::fromLatin1(key), value))
            return 0;
    return 1;
}

long CPublicSettings::SortURLData()
{
    // Stable, so records with the same address keep their order; the
    // comparison is by character codes, case-sensitive.
    std::stable_sort(G::URLDATA.begin(), G::URLDATA.end(),
                     [](const SiteRecord &a, const SiteRecord &b) {
                         return QString::compare(a.baseaddress, b.baseaddress, Qt::CaseSensitive) < 0;
                     });
    return 1;
}
