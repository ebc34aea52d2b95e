#include "history/ProfileFile.h"

#include "config/AnsiCodePage.h"

#include <QFile>
#include <QSaveFile>

namespace {
const QByteArray kBom("\xEF\xBB\xBF");

QString decodeAnsi(const QByteArray &bytes)
{
    QString text;
    text.reserve(bytes.size());
    for (const char b : bytes)
        text.append(AnsiCodePage::Chr(static_cast<unsigned char>(b)));
    return text;
}

// False when a character has no byte in the code page.
bool encodeAnsi(const QString &text, QByteArray &bytes)
{
    bytes.clear();
    bytes.reserve(text.size());
    for (const QChar c : text) {
        const unsigned char b = AnsiCodePage::Asc(c);
        if (AnsiCodePage::Chr(b) != c)
            return false;
        bytes.append(static_cast<char>(b));
    }
    return true;
}

} // namespace

ProfileFile::ProfileFile()
    : m_sections(1)
{
}

QString ProfileFile::trimmedName(const QString &name)
{
    return name.trimmed();
}

QString ProfileFile::clean(const QString &text)
{
    QString result = text;
    result.replace(QLatin1Char('\r'), QLatin1Char(' '));
    result.replace(QLatin1Char('\n'), QLatin1Char(' '));
    return result;
}

ProfileFile::Line ProfileFile::parseLine(const QString &text)
{
    Line line;
    line.text = text;
    const qsizetype eq = text.indexOf(QLatin1Char('='));
    if (eq >= 0) {
        line.key = trimmedName(text.left(eq));
        line.isKey = !line.key.isEmpty();
    }
    return line;
}

QString ProfileFile::valueOf(const Line &line)
{
    QString value = line.text.mid(line.text.indexOf(QLatin1Char('=')) + 1).trimmed();
    if (value.size() > 1 && (value.front() == QLatin1Char('"') || value.front() == QLatin1Char('\''))
        && value.back() == value.front())
        value = value.mid(1, value.size() - 2);
    return value;
}

ProfileFile ProfileFile::fromBytes(const QByteArray &bytes)
{
    ProfileFile file;
    QByteArray body = bytes;
    file.m_bom = body.startsWith(kBom);
    if (file.m_bom)
        body.remove(0, kBom.size());
    const QString text = file.m_bom ? QString::fromUtf8(body) : decodeAnsi(body);

    const QStringList lines = text.split(QLatin1Char('\n'));
    for (qsizetype i = 0; i < lines.size(); ++i) {
        QString raw = lines[i];
        if (raw.endsWith(QLatin1Char('\r')))
            raw.chop(1);
        if (i == lines.size() - 1 && raw.isEmpty())
            break; // the line end of the last line, not a line of its own
        const QString lead = raw.trimmed();
        const qsizetype close = lead.lastIndexOf(QLatin1Char(']'));
        if (lead.startsWith(QLatin1Char('[')) && close > 0) {
            file.m_sections.push_back(Section{trimmedName(lead.mid(1, close - 1)), true, {}});
            file.m_sections.back().lines.push_back(Line{raw, {}, false});
            continue;
        }
        file.m_sections.back().lines.push_back(parseLine(raw));
    }
    return file;
}

QByteArray ProfileFile::toBytes() const
{
    QString text;
    for (const Section &section : m_sections) {
        for (const Line &line : section.lines) {
            text += line.text;
            text += QStringLiteral("\r\n");
        }
    }
    QByteArray bytes;
    if (!m_bom && encodeAnsi(text, bytes))
        return bytes;
    return kBom + text.toUtf8();
}

bool ProfileFile::load(const QString &path)
{
    QFile file(path);
    if (!file.exists()) {
        *this = fromBytes(QByteArray());
        return true;
    }
    if (!file.open(QIODevice::ReadOnly))
        return false;
    *this = fromBytes(file.readAll());
    return true;
}

bool ProfileFile::save(const QString &path) const
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(toBytes());
    return file.commit();
}

const ProfileFile::Section *ProfileFile::findSection(const QString &name) const
{
    const QString wanted = trimmedName(name);
    for (const Section &section : m_sections) {
        if (section.hasHeader && section.name.compare(wanted, Qt::CaseInsensitive) == 0)
            return &section;
    }
    return nullptr;
}

ProfileFile::Section *ProfileFile::findSection(const QString &name)
{
    return const_cast<Section *>(std::as_const(*this).findSection(name));
}

bool ProfileFile::hasSection(const QString &section) const
{
    return findSection(section) != nullptr;
}

QString ProfileFile::value(const QString &section, const QString &key, bool *found) const
{
    if (found)
        *found = false;
    const Section *s = findSection(section);
    if (!s)
        return QString();
    const QString wanted = trimmedName(key);
    for (const Line &line : s->lines) {
        if (line.isKey && line.key.compare(wanted, Qt::CaseInsensitive) == 0) {
            if (found)
                *found = true;
            return valueOf(line);
        }
    }
    return QString();
}

void ProfileFile::setValue(const QString &section, const QString &key, const QString &value)
{
    const QString name = trimmedName(clean(key));
    const QString text = name + QLatin1Char('=') + clean(value);
    Section *s = findSection(section);
    if (!s) {
        // A blank line keeps the new section apart from the one before it.
        if (!m_sections.back().lines.empty())
            m_sections.back().lines.push_back(Line{});
        const QString header = trimmedName(clean(section));
        m_sections.push_back(Section{header, true, {Line{QLatin1Char('[') + header + QLatin1Char(']'), {}, false}}});
        s = &m_sections.back();
    }
    qsizetype after = 0; // behind the header, or behind the section's last key
    for (qsizetype i = 0; i < qsizetype(s->lines.size()); ++i) {
        Line &line = s->lines[i];
        if (line.isKey && line.key.compare(name, Qt::CaseInsensitive) == 0) {
            line.text = text;
            return;
        }
        if (line.isKey)
            after = i;
    }
    s->lines.insert(s->lines.begin() + after + 1, Line{text, name, !name.isEmpty()});
}

QStringList ProfileFile::sectionNames() const
{
    QStringList names;
    for (const Section &section : m_sections) {
        if (section.hasHeader)
            names.append(section.name);
    }
    return names;
}
