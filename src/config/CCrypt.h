#pragma once

#include <QByteArray>
#include <QString>

#include <array>

// The one cipher of the program: RC4, with characters turned into bytes by
// the Western Windows code page. The state is rebuilt at every call, so one
// object enciphers under any number of keys.
class CCrypt
{
public:
    // n enciphered bytes followed by one byte 0; "" gives the single byte 0.
    QByteArray EnCryptBinary(const QString &strSource_p, const QString &strPassword_p);
    // The text of an array from EnCryptBinary; its last byte is ignored, and
    // an array of fewer than two bytes gives "".
    QString DeCryptBinary(const QByteArray &bytSource_p, const QString &strPassword_p);
    // Character for character; applied twice under one key it gives the
    // source back.
    QString EnCryptString(const QString &strSource_p, const QString &strPassword_p);

private:
    bool InitCrypt(const QString &strPassword_p, const char *position);
    unsigned char NextKeyByte();

    std::array<long, 256> m_S{};
    std::array<long, 256> m_K{};
    long m_i = 0;
    long m_j = 0;
};
