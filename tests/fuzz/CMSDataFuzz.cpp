// Any bytes as cms.dat: refused, or a record that the writer puts back the
// same way, and tables that keep their spare entry. Never a crash, a read
// outside the data or an allocation beyond what the bytes can fill.

#include "cms/CMSDataFile.h"
#include "cms/CMSTableCodec.h"
#include "cms/CMSTables.h"
#include "support/MError.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    CMSDataFile::Record record;
    const bool read = CMSDataFile::Read(bytes, record);
    if (read) {
        CMSDataFile::Record again;
        if (!CMSDataFile::Read(CMSDataFile::Write(record), again) || !(again == record))
            __builtin_trap();
    }
    ResetCMSTables();
    g_dtCMSStamp = QDate();
    double version = 0;
    if (CMSTableCodec::Decode(bytes, QDate(2026, 1, 1), version) != read)
        __builtin_trap();
    if (g_aCMSUsers.empty() || g_aCMSPages.empty())
        __builtin_trap();
    if (read && (!g_boolAllFilesLocked || !g_dtCMSStamp.isValid()))
        __builtin_trap();
    MError::ClearError();
    return 0;
}
