#include "cms/CMSNameRules.h"

#include "cms/CMSTables.h"
#include "config/AnsiCodePage.h"
#include "support/MResources.h"

namespace {
enum : long { txtUnfitCharacter = 20452, txtDuplicateUser = 20453 };
}

QChar CMSNameRules::UnfitCharacter(const QString &strText_p)
{
    for (const QChar c : strText_p) {
        if (c.unicode() < 0x20 || c.unicode() == 0x7F)
            return c;
        // A character outside the code page goes into the file as '?'.
        if (c != QLatin1Char('?') && AnsiCodePage::Asc(c) == '?')
            return c;
    }
    return QChar();
}

QString CMSNameRules::Refusal(const QString &strName_p, const QString &strPassword_p,
                              const std::vector<CMSUSER> &aUsers_p, long lSkip_p)
{
    for (const QString &text : {strName_p, strPassword_p}) {
        const QChar bad = UnfitCharacter(text);
        if (!bad.isNull()) {
            const QString shown = bad.unicode() < 0x20 ? QStringLiteral("U+%1").arg(bad.unicode(), 4, 16, QLatin1Char('0'))
                                                       : QString(bad);
            return MResources::LoadResourceString(txtUnfitCharacter).arg(shown);
        }
    }
    for (std::size_t i = 0; i + 1 < aUsers_p.size(); ++i)
        if (long(i) != lSkip_p && aUsers_p[i].strName == strName_p)
            return MResources::LoadResourceString(txtDuplicateUser).arg(strName_p);
    return QString();
}
