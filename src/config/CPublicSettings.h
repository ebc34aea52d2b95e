#pragma once

#include "config/MGlobalProjectObjects.h"

// Loads and saves the site records and the global settings in the settings
// store, and keeps URLDATA sorted by address. Holds no state of its own.
class CPublicSettings
{
public:
    // Writes URLDATA and the Proxy section, and marks the store as the
    // current format. Returns 1, or 0 with the pending error set.
    long SetURLSettings();
    // Fills URLDATA and all global settings, then sorts. Returns 1 or 0.
    long GetURLSettings();
    // Stores the certificate the user trusted for URLDATA[index] beside its
    // record, without writing the rest. Returns 1 or 0.
    static long SaveTrustedCertificate(long index);
    // Stable sort of URLDATA by baseaddress, binary comparison. Returns 1.
    long SortURLData();

    // The value name of a binary record field: its twelve-character tag
    // followed by the record's index.
    static QString FieldValueName(int field, long index);
    // The key under which a field of a record is enciphered.
    static QString FieldKey(int field, long index);
    static constexpr int FieldCount = 13;

    // Reserved addresses: a placeholder record, and "write no records".
    static QString NotInUseAddress() { return QStringLiteral("|NOTINUSE|"); }
    static QString EmptyAddress() { return QStringLiteral("#empty#"); }

private:
    long WriteAll();
    long WriteRecord(const SiteRecord &record, long index);
    static long WriteTrustedCertificate(const SiteRecord &record, long index);
    bool ReadRecord(const QString &version, long index, SiteRecord &record);
    void ReadGlobals();
    long WriteProxy();
};
