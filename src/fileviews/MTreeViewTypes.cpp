#include "fileviews/MTreeViewTypes.h"

#include "support/MResources.h"

namespace {
constexpr long txtByte = 19805, txtKB = 19806, txtMB = 19807;
}

QString MTreeViewTypes::FormatSizeString(double dblSize_p)
{
    if (dblSize_p < 1001)
        return QString::number(qint64(dblSize_p)) + MResources::LoadResourceString(txtByte);
    if (dblSize_p < 1000001)
        return QString::number(dblSize_p / 1000, 'f', 2) + MResources::LoadResourceString(txtKB);
    return QString::number(dblSize_p / 1000000, 'f', 2) + MResources::LoadResourceString(txtMB);
}
