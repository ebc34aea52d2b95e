#include "history/CRollback.h"
#include "platform/CReg.h"

#include <gtest/gtest.h>

TEST(HistorySize, MissingOrZeroIsWrittenBackAsFiveAndTenOrMoreStaysOneDigit)
{
    CReg environment;
    environment.KeyRoot = CReg::AppKey();
    environment.Subkey = QStringLiteral("Environment");
    environment.DeleteKey(QString());
    const QString key = QStringLiteral("HistorySize");
    CRollback rollback;
    long size = 0;
    for (const qlonglong stored : {-1LL, 0LL}) {
        if (stored == 0)
            environment.SetRegistryValue(key, stored, CReg::REG_DWORD);
        ASSERT_EQ(rollback.GetHistorySize(size), 1);
        EXPECT_EQ(size, 5);
        EXPECT_EQ(environment.GetRegistryValue(key, QVariant()), QVariant(qlonglong(5)));
    }
    environment.SetRegistryValue(key, qlonglong(25), CReg::REG_DWORD);
    ASSERT_EQ(rollback.GetHistorySize(size), 1);
    EXPECT_EQ(size, 9);
    EXPECT_EQ(environment.GetRegistryValue(key, QVariant()), QVariant(qlonglong(25))); // the user's setting stays
}
