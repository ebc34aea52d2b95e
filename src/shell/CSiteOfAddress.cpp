#include "shell/CSiteOfAddress.h"

#include "config/MGlobalProjectObjects.h"

namespace {
QString withSlash(QString text)
{
    if (!text.endsWith(QLatin1Char('/')))
        text += QLatin1Char('/');
    return text;
}
} // namespace

long CSiteOfAddress::GetCurrentURLIndex(const QString &strURL_p, bool &found)
{
    found = false;
    const auto &records = MGlobalProjectObjects::URLDATA;
    for (long i = long(records.size()) - 1; i >= 0; --i) {
        if (records[size_t(i)].isactive != QLatin1String("1"))
            continue;
        const QString base = withSlash(records[size_t(i)].baseaddress.mid(7));
        QString address = strURL_p.mid(7);
        address = address.size() > base.size() ? address.left(base.size()) : withSlash(address);
        if (address == base) {
            found = true;
            MGlobalProjectObjects::lCurrentURL = i;
            return 1;
        }
    }
    return 1;
}
