#include "platform/CReg.h"

#include "platform/LocalFolders.h"
#include "support/MError.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <vector>

namespace {

struct Value
{
    QString name;
    QVariant data; // QString, QByteArray or qlonglong
};

struct Key
{
    QString path;
    std::vector<Value> values;
};

// The whole file in memory. It is read again when the file changed behind
// our back (another process, or a test that removed it) and written through
// at every change, so that a crash never loses a saved setting.
struct Model
{
    QString file;
    QDateTime stamp;
    qint64 size = -1;
    std::vector<Key> keys;
    int held = 0;       // BeginUpdate depth: writes wait while above 0
    bool dirty = false; // a held change not yet in the file
};

Model &model()
{
    static Model m;
    return m;
}

QString escape(const QString &text, bool inName)
{
    QString out;
    // A name must not look like a comment or a section header.
    if (inName && (text.startsWith(QLatin1Char(';')) || text.startsWith(QLatin1Char('['))))
        out += QLatin1Char('\\');
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        if (u == u'\\') out += QStringLiteral("\\\\");
        else if (u == u'"') out += QStringLiteral("\\\"");
        else if (u == u'\n') out += QStringLiteral("\\n");
        else if (u == u'\r') out += QStringLiteral("\\r");
        else if (u == u'\t') out += QStringLiteral("\\t");
        else if (u == 0) out += QStringLiteral("\\0");
        else if (inName && (u == u'=' || u == u']')) out += QLatin1Char('\\') + c;
        else if (u < 0x20 || u == 0x7f)
            out += QStringLiteral("\\x%1").arg(u, 2, 16, QLatin1Char('0'));
        else out += c;
    }
    return out;
}

// Reads an escaped text from pos up to an unescaped stop character (or the
// end); pos is left on the stop character.
QString unescape(const QString &line, qsizetype &pos, QChar stop)
{
    QString out;
    while (pos < line.size() && line.at(pos) != stop) {
        QChar c = line.at(pos++);
        if (c != QLatin1Char('\\') || pos >= line.size()) {
            out += c;
            continue;
        }
        const QChar e = line.at(pos++);
        switch (e.unicode()) {
        case u'n': out += QLatin1Char('\n'); break;
        case u'r': out += QLatin1Char('\r'); break;
        case u't': out += QLatin1Char('\t'); break;
        case u'0': out += QChar(0); break;
        case u'x':
            out += QChar(line.mid(pos, 2).toUShort(nullptr, 16));
            pos += 2;
            break;
        default: out += e;
        }
    }
    return out;
}

QString formatValue(const QVariant &data)
{
    if (data.typeId() == QMetaType::QByteArray) {
        const QByteArray bytes = data.toByteArray();
        return QStringLiteral("hex:") + QString::fromLatin1(bytes.toHex(','));
    }
    if (data.typeId() == QMetaType::LongLong)
        return QStringLiteral("dword:") + QString::number(data.toLongLong());
    return QLatin1Char('"') + escape(data.toString(), false) + QLatin1Char('"');
}

bool parseValue(const QString &text, QVariant &data)
{
    if (text.startsWith(QLatin1Char('"'))) {
        qsizetype pos = 1;
        data = unescape(text, pos, QLatin1Char('"'));
        return pos < text.size();
    }
    if (text.startsWith(QLatin1String("hex:"))) {
        const QString digits = text.mid(4).remove(QLatin1Char(','));
        data = QByteArray::fromHex(digits.toLatin1());
        return true;
    }
    if (text.startsWith(QLatin1String("dword:"))) {
        bool ok = false;
        data = text.mid(6).toLongLong(&ok);
        if (ok)
            return true;
    }
    // A plain "name=value" line, as a hand-written or older INI file has
    // it, is a string taken as it stands.
    data = text.trimmed();
    return true;
}

void parse(const QString &content, std::vector<Key> &keys)
{
    Key *current = nullptr;
    for (const QString &line : content.split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1Char('[')) && line.endsWith(QLatin1Char(']'))) {
            keys.push_back({line.mid(1, line.size() - 2), {}});
            current = &keys.back();
            continue;
        }
        if (!current || line.isEmpty() || line.startsWith(QLatin1Char(';')))
            continue;
        qsizetype pos = 0;
        const QString name = unescape(line, pos, QLatin1Char('='));
        QVariant data;
        if (pos < line.size() && parseValue(line.mid(pos + 1), data))
            current->values.push_back({name, data});
    }
}

Model &loaded()
{
    Model &m = model();
    const QString file = CReg::StorePath();
    const QFileInfo info(file);
    const QDateTime stamp = info.exists() ? info.lastModified() : QDateTime();
    const qint64 size = info.exists() ? info.size() : -1;
    if (m.file == file && (m.dirty || (m.stamp == stamp && m.size == size)))
        return m;
    m.file = file;
    m.stamp = stamp;
    m.size = size;
    m.keys.clear();
    QFile in(file);
    if (in.open(QIODevice::ReadOnly))
        parse(QString::fromUtf8(in.readAll()), m.keys);
    return m;
}

bool save(Model &m)
{
    if (m.held > 0) {
        m.dirty = true;
        return true;
    }
    m.dirty = false;
    QString text = QStringLiteral("; keldacms settings store\n");
    for (const Key &key : m.keys) {
        text += QLatin1Char('[') + key.path + QStringLiteral("]\n");
        for (const Value &v : key.values)
            text += escape(v.name, true) + QLatin1Char('=') + formatValue(v.data) + QLatin1Char('\n');
        text += QLatin1Char('\n');
    }
    QSaveFile out(m.file);
    if (!out.open(QIODevice::WriteOnly))
        return false;
    out.write(text.toUtf8());
    if (!out.commit())
        return false;
    const QFileInfo info(m.file);
    m.stamp = info.lastModified();
    m.size = info.size();
    return true;
}

Key *findKey(Model &m, const QString &path)
{
    for (Key &key : m.keys)
        if (key.path == path)
            return &key;
    return nullptr;
}

Key &ensureKey(Model &m, const QString &path)
{
    if (Key *key = findKey(m, path))
        return *key;
    m.keys.push_back({path, {}});
    return m.keys.back();
}

long failed(const QString &what, const QString &position)
{
    MError::SetErrorIfClear(75, QStringLiteral("The settings store could not be written: ") + what,
                            position);
    return 0;
}

} // namespace

void CReg::BeginUpdate()
{
    ++loaded().held;
}

long CReg::EndUpdate()
{
    Model &m = model();
    if (m.held > 0 && --m.held == 0 && m.dirty && !save(m))
        return failed(m.file, QStringLiteral("CReg.EndUpdate"));
    return 1;
}

void CReg::Reload()
{
    Model &m = model();
    if (m.held == 0)
        m.file.clear();
}

QString CReg::AppKey()
{
    return QStringLiteral("Software\\VB and VBA Program Settings\\Vindrell");
}

QString CReg::StorePath()
{
    return LocalFolders::configFolder() + QStringLiteral("/keldacms.ini");
}

QString CReg::path() const
{
    if (Subkey.isEmpty())
        return KeyRoot;
    return KeyRoot.isEmpty() ? Subkey : KeyRoot + QLatin1Char('\\') + Subkey;
}

bool CReg::KeyExists() const
{
    return findKey(loaded(), path()) != nullptr;
}

long CReg::CreateKey(const QString &KeyName) const
{
    Model &m = loaded();
    const QString target = KeyName.isEmpty() ? path() : path() + QLatin1Char('\\') + KeyName;
    if (findKey(m, target))
        return 1;
    ensureKey(m, target);
    return save(m) ? 1 : failed(m.file, QStringLiteral("CReg.CreateKey"));
}

long CReg::DeleteKey(const QString &KeyName) const
{
    Model &m = loaded();
    const QString target = KeyName.isEmpty() ? path() : path() + QLatin1Char('\\') + KeyName;
    const QString below = target + QLatin1Char('\\');
    const auto before = m.keys.size();
    std::erase_if(m.keys, [&](const Key &k) { return k.path == target || k.path.startsWith(below); });
    if (m.keys.size() == before)
        return 1;
    return save(m) ? 1 : failed(m.file, QStringLiteral("CReg.DeleteKey"));
}

long CReg::DeleteValue(const QString &ValueName) const
{
    Model &m = loaded();
    Key *key = findKey(m, path());
    if (!key)
        return 1;
    const auto before = key->values.size();
    std::erase_if(key->values, [&](const Value &v) { return v.name == ValueName; });
    if (key->values.size() == before)
        return 1;
    return save(m) ? 1 : failed(m.file, QStringLiteral("CReg.DeleteValue"));
}

QVariant CReg::GetRegistryValue(const QString &ValueName, const QVariant &DefaultValue) const
{
    Key *key = findKey(loaded(), path());
    if (!key)
        return DefaultValue;
    for (const Value &v : key->values)
        if (v.name == ValueName)
            return v.data;
    return DefaultValue;
}

long CReg::SetRegistryValue(const QString &ValueName, const QVariant &Value, long DType) const
{
    Model &m = loaded();
    QVariant data;
    if (DType == REG_BINARY)
        data = Value.toByteArray();
    else if (DType == REG_DWORD)
        data = Value.toLongLong();
    else
        data = Value.toString();
    Key &key = ensureKey(m, path());
    auto it = std::find_if(key.values.begin(), key.values.end(),
                           [&](const ::Value &v) { return v.name == ValueName; });
    if (it == key.values.end())
        key.values.push_back({ValueName, data});
    else
        it->data = data;
    return save(m) ? 1 : failed(m.file, QStringLiteral("CReg.SetRegistryValue"));
}

QString CReg::TrimNull(const QString &Item)
{
    const qsizetype nul = Item.indexOf(QChar(0));
    return nul < 0 ? Item : Item.left(nul);
}

CReg CReg::section(const QString &Section)
{
    CReg reg;
    reg.KeyRoot = AppKey();
    reg.Subkey = Section;
    return reg;
}

QString CReg::GetSetting(const QString &Section, const QString &Key, const QString &Default)
{
    const QVariant value = section(Section).GetRegistryValue(Key, QVariant());
    if (!value.isValid())
        return Default;
    // A number read as text gives its decimal form, as the classic store did.
    return value.typeId() == QMetaType::QByteArray ? QString::fromLatin1(value.toByteArray())
                                                   : value.toString();
}

long CReg::SaveSetting(const QString &Section, const QString &Key, const QString &Value)
{
    return section(Section).SetRegistryValue(Key, Value, REG_SZ);
}

long CReg::DeleteSetting(const QString &Section)
{
    return section(Section).DeleteKey(QString());
}

bool CReg::SectionExists(const QString &Section)
{
    return section(Section).KeyExists();
}

long CReg::CreateSection(const QString &Section)
{
    return section(Section).CreateKey(QString());
}

QVariant CReg::GetBinarySetting(const QString &Section, const QString &Key)
{
    return section(Section).GetRegistryValue(Key, QVariant());
}

long CReg::SaveBinarySetting(const QString &Section, const QString &Key, const QByteArray &Value)
{
    return section(Section).SetRegistryValue(Key, Value, REG_BINARY);
}
