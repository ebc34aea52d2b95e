#include "config/CCrypt.h"
#include "support/MError.h"

#include <gtest/gtest.h>

namespace {
QByteArray rc4Then0(const char *hex)
{
    return QByteArray::fromHex(hex) + QByteArray(1, '\0');
}
} // namespace

TEST(CCrypt, BinaryIsStandardRc4FollowedByZero)
{
    CCrypt crypt;
    EXPECT_EQ(crypt.EnCryptBinary(QStringLiteral("Plaintext"), QStringLiteral("Key")), rc4Then0("BBF316E8D940AF0AD3"));
    EXPECT_EQ(crypt.EnCryptBinary(QStringLiteral("pedia"), QStringLiteral("Wiki")), rc4Then0("1021BF0420"));
    EXPECT_EQ(crypt.EnCryptBinary(QStringLiteral("Attack at dawn"), QStringLiteral("Secret")),
              rc4Then0("45A01F645FC35B383552544B9BF5"));
    // The same object under another key starts afresh.
    EXPECT_EQ(crypt.EnCryptBinary(QStringLiteral("Plaintext"), QStringLiteral("Key")), rc4Then0("BBF316E8D940AF0AD3"));
}

TEST(CCrypt, BinaryRoundTripsAndShortArraysGiveEmpty)
{
    CCrypt crypt;
    const QString key = QStringLiteral("k3y");
    const QByteArray one = crypt.EnCryptBinary(QStringLiteral("x"), key);
    EXPECT_EQ(one.size(), 2);
    EXPECT_EQ(crypt.DeCryptBinary(one, key), QStringLiteral("x"));
    EXPECT_EQ(crypt.EnCryptBinary(QString(), key), QByteArray(1, '\0'));
    EXPECT_EQ(crypt.DeCryptBinary(QByteArray(1, '\x7f'), key), QString());
    const QString western = QStringLiteral("Åsa €5 “quoted”");
    EXPECT_EQ(crypt.DeCryptBinary(crypt.EnCryptBinary(western, key), key), western);
    // Outside the code page: the replacement goes in and comes back.
    EXPECT_EQ(crypt.DeCryptBinary(crypt.EnCryptBinary(QStringLiteral("a\u0416b"), key), key), QStringLiteral("a?b"));
}

TEST(CCrypt, StringIsItsOwnInverseAndEmptyPasswordFails)
{
    CCrypt crypt;
    const QString source = QStringLiteral("userid______0");
    const QString once = crypt.EnCryptString(source, source);
    EXPECT_EQ(once.size(), source.size());
    EXPECT_NE(once, source);
    EXPECT_EQ(crypt.EnCryptString(once, source), source);
    EXPECT_EQ(crypt.EnCryptString(QString(), QString()), QString());

    MError::ClearError();
    crypt.EnCryptBinary(QStringLiteral("abc"), QString());
    EXPECT_EQ(MError::ErrorNumber(), 5);
    EXPECT_EQ(MError::ErrorSource(), QStringLiteral("CCrypt.EnCryptBinary"));
    MError::ClearError();
}
