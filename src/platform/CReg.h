#pragma once

#include <QString>
#include <QVariant>

// The per-user settings store: a tree of keys, each holding named values of
// three kinds (string, binary, number), kept in one text file under the
// user's configuration folder ("keldacms.ini").
//
// The file is INI-like. Each key is a section headed by its full path below
// the user's hive, e.g. [Software\VB and VBA Program Settings\Vindrell\Proxy].
// A value is one line "name=value", and the value's form gives its kind:
//   "text"        a string, in double quotes;
//   hex:0a,ff,00  binary, the bytes as two hex digits each, comma separated
//                 ("hex:" alone is an empty byte array);
//   dword:42      a number, in decimal.
// Section paths stand as they are. In value names and strings a backslash
// escapes: \\ \" \= \] \n \r \t \0 and \xHH for any other control
// character, and a name that starts with ";" or "[" gets a backslash in
// front. Names and paths are case-sensitive. A value in none of these forms ("name=some text", as a
// hand-written INI file has it) reads as that string, so a file written by
// hand or by a plain INI writer is understood. Lines without "=" or outside
// any section are dropped at the next write: the store rewrites itself whole.
//
// The key "Browser" at the top of the file (beside the application key) is
// the embedded browser's own: its HomePage is where the window starts.
class CReg
{
public:
    enum ValueType : long { REG_SZ = 1, REG_EXPAND_SZ = 2, REG_BINARY = 3, REG_DWORD = 4 };
    static constexpr long HKEY_CURRENT_USER = static_cast<long>(0x80000001L);

    // The application key under which all of the program's sections stand.
    static QString AppKey();
    // The file that holds the store.
    static QString StorePath();

    // Between these two, changes stay in memory and go to the file at once
    // at the end: a save of many values rewrites the file one time. Calls
    // nest. EndUpdate returns 1, or 0 with the pending error set.
    static void BeginUpdate();
    static long EndUpdate();
    // Forgets what was read, so that the next access reads the file again.
    static void Reload();

    long hkey = HKEY_CURRENT_USER; // only the user's own hive exists here
    QString KeyRoot;
    QString Subkey;

    // True when the key KeyRoot\Subkey exists.
    bool KeyExists() const;
    // Creates KeyRoot\Subkey\KeyName (KeyRoot\Subkey when KeyName is empty)
    // and the keys above it. Returns 1, or 0 with the pending error set.
    long CreateKey(const QString &KeyName) const;
    // Deletes KeyRoot\Subkey\KeyName with everything below it; a missing key
    // is no error. Returns 1, or 0 with the pending error set.
    long DeleteKey(const QString &KeyName) const;
    // Deletes one value of KeyRoot\Subkey; a missing value is no error.
    long DeleteValue(const QString &ValueName) const;
    // A QString for REG_SZ/REG_EXPAND_SZ, a QByteArray for REG_BINARY, a
    // qlonglong for REG_DWORD; DefaultValue when the value is absent.
    QVariant GetRegistryValue(const QString &ValueName, const QVariant &DefaultValue) const;
    // Writes a value of the given kind, creating the key when missing.
    long SetRegistryValue(const QString &ValueName, const QVariant &Value, long DType) const;
    // The text up to its first NUL character.
    static QString TrimNull(const QString &Item);

    // What the program needs of the store, on sections below AppKey().
    static QString GetSetting(const QString &Section, const QString &Key,
                              const QString &Default = QString());
    static long SaveSetting(const QString &Section, const QString &Key, const QString &Value);
    static long DeleteSetting(const QString &Section);
    static bool SectionExists(const QString &Section);
    static long CreateSection(const QString &Section);
    static QVariant GetBinarySetting(const QString &Section, const QString &Key);
    static long SaveBinarySetting(const QString &Section, const QString &Key, const QByteArray &Value);

private:
    QString path() const;
    static CReg section(const QString &Section);
};
