#include "shell/CSiteOfAddress.h"

#include "document/DocumentAddress.h"

long CSiteOfAddress::GetCurrentURLIndex(const QString &strURL_p, bool &found)
{
    DocumentAddress::GetCurrentURLIndex(strURL_p, found);
    return 1;
}
