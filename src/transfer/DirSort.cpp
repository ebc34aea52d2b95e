#include "transfer/DirSort.h"

#include <algorithm>

// Both sorts were bubble passes over the buffer. A stable sort by the same
// comparison gives the same order, in n log n rather than n squared, so a
// folder of ten thousand entries sorts at once and the window needs no
// yielding in the middle of it.

long DirSort::SortDIR(DIRDATA &dirData_p)
{
    QList<DIRENTRY> &entries = dirData_p.Entries;
    entries.removeIf([](const DIRENTRY &entry) {
        bool content = false;
        HaveContent(entry, content);
        return !content;
    });
    dirData_p.lCount = long(entries.size());
    const auto key = [](const DIRENTRY &entry) {
        long priority = 0;
        GetDIRPriority(entry, priority);
        return priority == 0 ? 4 : priority;
    };
    std::stable_sort(entries.begin(), entries.end(), [&key](const DIRENTRY &a, const DIRENTRY &b) {
        const long ka = key(a), kb = key(b);
        if (ka != kb)
            return ka < kb;
        return a.strName.compare(b.strName, Qt::CaseSensitive) < 0;
    });
    return 1;
}

long DirSort::SortDIR2(DIRDATA &dirData_p)
{
    std::stable_sort(dirData_p.Entries.begin(), dirData_p.Entries.end(),
                     [](const DIRENTRY &a, const DIRENTRY &b) { return DisplayClass(a) < DisplayClass(b); });
    return 1;
}

// 0 a folder (whatever its name), 1 a file that is not HTML, 2 an HTML file.
int DirSort::DisplayClass(const DIRENTRY &entry)
{
    if (entry.lType != 0)
        return 0;
    const qsizetype dot = entry.strName.lastIndexOf(QLatin1Char('.'));
    const QString extension = dot < 0 ? QString() : entry.strName.mid(dot + 1);
    return extension == QLatin1String("htm") || extension == QLatin1String("html") ? 2 : 1;
}

long DirSort::GetDIRPriority(const DIRENTRY &entry_p, long &lPriority_p)
{
    const QString name = entry_p.strName.toLower();
    lPriority_p = name.contains(QLatin1String("index"))     ? 1
                  : name.contains(QLatin1String("default")) ? 2
                  : name.contains(QLatin1String("main"))    ? 3
                                                            : 0;
    return 1;
}

long DirSort::Swap(DIRENTRY &first_p, DIRENTRY &second_p, bool &boolChanged_p)
{
    std::swap(first_p, second_p);
    boolChanged_p = true;
    return 1;
}

long DirSort::HaveContent(const DIRENTRY &entry_p, bool &boolResult_p)
{
    boolResult_p = !(entry_p.strEntry.isEmpty() && entry_p.strName.isEmpty() && entry_p.lType == 0
                     && entry_p.strPath.isEmpty() && entry_p.lLevel == 0 && entry_p.strTime.isEmpty()
                     && !entry_p.bPage);
    return 1;
}
