#pragma once

#include "cms/CMSTables.h"

#include <QByteArray>
#include <QList>

#include <cstdint>
#include <optional>
#include <vector>

// The byte layout of cms.dat: one record, little-endian, no padding. A
// dynamic array is a 16-bit count of dimensions (0 for an array that was
// never sized, and then nothing more), a 32-bit element count, a 32-bit lower
// bound and the elements. std::nullopt stands for a never-sized array.
// Text fields are held here as the enciphered bytes they are in the file.
class CMSDataFile
{
public:
    struct User
    {
        std::optional<QByteArray> bytName;
        std::optional<QByteArray> bytPassword;
        CMS_LIMITS limits;
        std::int16_t intHidden = 0;

        bool operator==(const User &) const = default;
    };

    struct Page
    {
        std::optional<QByteArray> bytPath;
        std::optional<QList<float>> sngUsers;

        bool operator==(const Page &) const = default;
    };

    struct Record
    {
        QByteArray strVersion;          // up to 10 bytes, blank-padded on write
        std::int16_t boolAllLocked = 0; // -1 true, 0 false
        std::optional<std::vector<Page>> aPages;
        std::optional<std::vector<User>> aUsers;
        std::optional<QByteArray> bytStamp;

        bool operator==(const Record &) const = default;
    };

    static constexpr int VersionSize = 10;

    static QByteArray Write(const Record &record);

    // False when the bytes hold no whole record: too short, a descriptor that
    // makes no sense, or a count larger than the bytes left could hold. Bytes
    // after the record are ignored. Nothing is allocated beyond what the
    // bytes can fill.
    static bool Read(const QByteArray &bytes, Record &record);
};
