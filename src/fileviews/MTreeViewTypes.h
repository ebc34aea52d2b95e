#pragma once

#include <QString>

// Helpers the two file trees share.
class MTreeViewTypes
{
public:
    // A size for the questions before a transfer: up to 1000 in bytes,
    // then in kB up to 1000000, then in MB, with two decimals.
    static QString FormatSizeString(double dblSize_p);
};
