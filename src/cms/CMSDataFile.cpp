#include "cms/CMSDataFile.h"

#include <QtEndian>

#include <cstring>

namespace {

// Smallest size in the file of one element of each array, so that a count
// can be checked against the bytes left before anything is allocated.
constexpr qsizetype MinPageSize = 2 + 2;              // two never-sized arrays
constexpr qsizetype MinUserSize = 2 + 2 + 20 + 2;     // two never-sized arrays, limits, intHidden

class Writer
{
public:
    QByteArray out;

    template<typename T> void Put(T value)
    {
        char buffer[sizeof(T)];
        qToLittleEndian(value, buffer);
        out.append(buffer, sizeof(T));
    }

    void Descriptor(std::optional<qsizetype> count)
    {
        if (!count) {
            Put<std::int16_t>(0);
            return;
        }
        Put<std::int16_t>(1);
        Put<std::int32_t>(static_cast<std::int32_t>(*count));
        Put<std::int32_t>(0);
    }

    void Bytes(const std::optional<QByteArray> &bytes)
    {
        Descriptor(bytes ? std::optional<qsizetype>(bytes->size()) : std::nullopt);
        if (bytes)
            out.append(*bytes);
    }

    void Singles(const std::optional<QList<float>> &values)
    {
        Descriptor(values ? std::optional<qsizetype>(values->size()) : std::nullopt);
        if (values)
            for (float v : *values)
                Put<float>(v);
    }

    void Limits(const CMS_LIMITS &l)
    {
        for (std::int32_t v : {l.lRightClick, l.lBand, l.lSiteTree, l.lOther, l.lIsAdmin})
            Put<std::int32_t>(v);
    }
};

class Reader
{
public:
    explicit Reader(const QByteArray &bytes) : m_bytes(bytes) {}

    qsizetype Left() const { return m_bytes.size() - m_pos; }

    template<typename T> bool Get(T &value)
    {
        if (Left() < static_cast<qsizetype>(sizeof(T)))
            return false;
        value = qFromLittleEndian<T>(m_bytes.constData() + m_pos);
        m_pos += sizeof(T);
        return true;
    }

    bool Raw(qsizetype n, QByteArray &out)
    {
        if (n < 0 || Left() < n)
            return false;
        out = m_bytes.mid(m_pos, n);
        m_pos += n;
        return true;
    }

    // The element count of an array descriptor, or nullopt when never sized.
    // The count must fit in the bytes left at minSize bytes an element. The
    // lower bound is read and not used: the tables always start at 0.
    bool Descriptor(qsizetype minSize, std::optional<qsizetype> &count)
    {
        std::int16_t dims = 0;
        if (!Get(dims))
            return false;
        count.reset();
        if (dims == 0)
            return true;
        std::int32_t n = 0, lower = 0;
        if (dims != 1 || !Get(n) || !Get(lower) || n < 0 || n > Left() / minSize)
            return false;
        count = n;
        return true;
    }

    bool Bytes(std::optional<QByteArray> &bytes)
    {
        std::optional<qsizetype> count;
        if (!Descriptor(1, count))
            return false;
        bytes.reset();
        if (!count)
            return true;
        bytes.emplace();
        return Raw(*count, *bytes);
    }

    bool Limits(CMS_LIMITS &l)
    {
        return Get(l.lRightClick) && Get(l.lBand) && Get(l.lSiteTree) && Get(l.lOther)
               && Get(l.lIsAdmin);
    }

private:
    const QByteArray &m_bytes;
    qsizetype m_pos = 0;
};

template<typename Container, typename F>
bool ReadArray(Reader &in, qsizetype minSize, std::optional<Container> &array, F readOne)
{
    std::optional<qsizetype> count;
    if (!in.Descriptor(minSize, count))
        return false;
    array.reset();
    if (!count)
        return true;
    array.emplace();
    array->reserve(*count);
    for (qsizetype i = 0; i < *count; ++i) {
        typename Container::value_type element{};
        if (!readOne(in, element))
            return false;
        array->push_back(std::move(element));
    }
    return true;
}

bool ReadPage(Reader &in, CMSDataFile::Page &page)
{
    return in.Bytes(page.bytPath)
           && ReadArray(in, qsizetype(sizeof(float)), page.sngUsers,
                        [](Reader &r, float &v) { return r.Get(v); });
}

bool ReadUser(Reader &in, CMSDataFile::User &user)
{
    return in.Bytes(user.bytName) && in.Bytes(user.bytPassword) && in.Limits(user.limits)
           && in.Get(user.intHidden);
}

} // namespace

QByteArray CMSDataFile::Write(const Record &record)
{
    Writer w;
    QByteArray version = record.strVersion.left(VersionSize);
    version.append(QByteArray(VersionSize - version.size(), ' '));
    w.out.append(version);
    w.Put<std::int16_t>(record.boolAllLocked);
    w.Descriptor(record.aPages ? std::optional<qsizetype>(record.aPages->size()) : std::nullopt);
    if (record.aPages)
        for (const Page &page : *record.aPages) {
            w.Bytes(page.bytPath);
            w.Singles(page.sngUsers);
        }
    w.Descriptor(record.aUsers ? std::optional<qsizetype>(record.aUsers->size()) : std::nullopt);
    if (record.aUsers)
        for (const User &user : *record.aUsers) {
            w.Bytes(user.bytName);
            w.Bytes(user.bytPassword);
            w.Limits(user.limits);
            w.Put<std::int16_t>(user.intHidden);
        }
    w.Bytes(record.bytStamp);
    return w.out;
}

bool CMSDataFile::Read(const QByteArray &bytes, Record &record)
{
    Reader in(bytes);
    record = Record();
    return in.Raw(VersionSize, record.strVersion) && in.Get(record.boolAllLocked)
           && ReadArray(in, MinPageSize, record.aPages, ReadPage)
           && ReadArray(in, MinUserSize, record.aUsers, ReadUser) && in.Bytes(record.bytStamp);
}
