// Any bytes as an index file: reading never fails, and a key written into
// the file reads back after a round trip through bytes, with every section
// that was there before still there.
#include "history/ProfileFile.h"
#include "history/RevisionList.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    ProfileFile index = ProfileFile::fromBytes(bytes);
    const QStringList before = index.sectionNames();

    // A section named after the first one read, as a page path would be.
    const QString page = before.isEmpty() ? QStringLiteral("/fuzz/page.htm") : before.first();
    RevisionList list;
    list.Fill(index, page);
    QString date;
    long rev = 0;
    long given = 0;
    while (list.Next(date, rev)) {
        if (rev < 1 || rev > list.Dates().size() || ++given > list.Dates().size())
            std::abort();
    }
    const long next = RevisionList::NextRevision(index, page, 5);
    if (next < 1 || next > 5)
        std::abort();

    // What a reader gets back of a written value: line breaks turned to
    // blanks, surrounding blanks and one pair of matching quotes gone.
    const QString value = QString::fromLatin1(bytes.left(16));
    QString expected = value;
    expected.replace(QLatin1Char('\r'), QLatin1Char(' ')).replace(QLatin1Char('\n'), QLatin1Char(' '));
    expected = expected.trimmed();
    if (expected.size() > 1 && (expected.front() == QLatin1Char('"') || expected.front() == QLatin1Char('\''))
        && expected.back() == expected.front())
        expected = expected.mid(1, expected.size() - 2);

    index.setValue(page, QStringLiteral("rev"), value);
    const ProfileFile again = ProfileFile::fromBytes(index.toBytes());
    bool found = false;
    if (again.value(page, QStringLiteral("rev"), &found) != expected || !found)
        std::abort();
    for (const QString &name : before) {
        if (!again.hasSection(name))
            std::abort();
    }
    return 0;
}
