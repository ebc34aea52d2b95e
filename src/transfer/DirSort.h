#pragma once

#include "transfer/DIRDATA.h"

// The two orders of a listing buffer: the order in which the index search
// tries files, and the order of display.
class DirSort
{
public:
    // Names with "index", then "default", then "main" (anywhere in the
    // name, any case), then the rest; each group by name, binary ascending.
    // Entries without content are dropped, and lCount follows.
    static long SortDIR(DIRDATA &dirData_p);
    // Folders, then files that are not HTML, then .htm and .html files (the
    // extension compared exactly: ".HTM" is not HTML); the listing's order
    // stays within each class.
    static long SortDIR2(DIRDATA &dirData_p);
    // 1 "index", 2 "default", 3 "main", 0 none.
    static long GetDIRPriority(const DIRENTRY &entry_p, long &lPriority_p);
    static long Swap(DIRENTRY &first_p, DIRENTRY &second_p, bool &boolChanged_p);
    static long HaveContent(const DIRENTRY &entry_p, bool &boolResult_p);

private:
    static int DisplayClass(const DIRENTRY &entry);
};
