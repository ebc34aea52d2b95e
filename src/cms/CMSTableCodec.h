#pragma once

#include <QByteArray>
#include <QDate>

// Turns the CMS tables into the bytes of cms.dat and back: each text field
// enciphered under the pass phrase of its kind, the rest in clear.
class CMSTableCodec
{
public:
    static constexpr int CurrentVersion = 13;

    // The file for the tables as they stand; the stamp is today plus three years.
    static QByteArray Encode(const QDate &today);

    // Fills the tables from the bytes. False when the bytes hold no whole
    // record; the tables are then left untouched. On success the lock flag is
    // True whatever the file said, and the version text's number is given.
    static bool Decode(const QByteArray &bytes, const QDate &today, double &dblVersion);

    // The number at the start of a text, as the classic Val reads it: 0 when
    // there is none.
    static double VersionNumber(const QByteArray &strVersion);

    // The stamp's text form and the lenient read of it.
    static QString StampText(const QDate &date);
    static QDate StampDate(const QString &text);
};
