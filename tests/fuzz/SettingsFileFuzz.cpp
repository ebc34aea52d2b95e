// Any bytes as a dropped settings file: a clear failure or fifteen texts,
// never a crash or a read outside the data.

#include "config/CSettingsFile.h"
#include "support/MError.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QStringList texts;
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    if (CSettingsFile::Decode(bytes, texts) == 1) {
        if (texts.size() != CSettingsFile::FieldCount)
            __builtin_trap();
        SiteRecord site;
        CSettingsFile::ApplyTo(texts, site);
    }
    MError::ClearError();
    return 0;
}
