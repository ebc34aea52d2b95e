#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

// A Windows profile file ("[section]" lines, then "key=value" lines), read
// and written the way Windows programs do, so that the file stays readable
// by every client that shares it:
// - section and key names are found regardless of case, and the first of
//   two equal names wins;
// - a section name is whatever stands between "[" and the last "]" of its
//   line, so names may hold "/" and any other character;
// - names and values lose their surrounding blanks, and a value quoted at
//   both ends with the same quote loses the quotes;
// - lines the reader does not understand (comments, garbage, keys outside
//   any section) are kept as they are when the file is written back;
// - the file is in the Windows code page, with CRLF line ends, and is read
//   as such whatever its bytes, as a Windows client reads it. Only a file
//   that starts with the UTF-8 byte order mark is UTF-8; a file that gets a
//   character the code page lacks is written that way, mark included, so
//   that the next reader can't take it for code-page text.
class ProfileFile
{
public:
    ProfileFile();

    static ProfileFile fromBytes(const QByteArray &bytes);
    QByteArray toBytes() const;

    // A missing file reads as an empty one. False only when a file that is
    // there can't be read.
    bool load(const QString &path);
    // Writes the whole file anew; false when it can't be written.
    bool save(const QString &path) const;

    // The value of key in section; "" when either is missing. found tells
    // the two apart.
    QString value(const QString &section, const QString &key, bool *found = nullptr) const;
    bool hasSection(const QString &section) const;

    // Sets key in section, adding either at the end when missing. Line
    // breaks in names or values would break the file; they become blanks.
    void setValue(const QString &section, const QString &key, const QString &value);

    QStringList sectionNames() const;

private:
    struct Line
    {
        QString text;       // the line as read, or as last written
        QString key;        // trimmed name before "="; empty for other lines
        bool isKey = false; // a line with "=" and a name
    };
    struct Section
    {
        QString name;       // empty for the lines before the first header
        bool hasHeader = false;
        std::vector<Line> lines;
    };

    static QString trimmedName(const QString &name);
    static QString valueOf(const Line &line);
    static Line parseLine(const QString &text);
    static QString clean(const QString &text);
    const Section *findSection(const QString &name) const;
    Section *findSection(const QString &name);

    // The first section holds the lines before any header; it never goes.
    std::vector<Section> m_sections;
    bool m_bom = false;
};
