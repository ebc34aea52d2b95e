#include "config/CCrypt.h"

#include "config/AnsiCodePage.h"
#include "support/MError.h"

#include <utility>

bool CCrypt::InitCrypt(const QString &strPassword_p, const char *position)
{
    if (strPassword_p.isEmpty()) {
        // What Asc of an empty text raised in the classic runtime.
        MError::SetErrorIfClear(5, QStringLiteral("Invalid procedure call or argument"),
                                QString::fromLatin1(position));
        return false;
    }
    const qsizetype length = strPassword_p.size();
    for (int i = 0; i < 256; ++i) {
        m_K[i] = AnsiCodePage::Asc(strPassword_p.at(i % length));
        m_S[i] = i;
    }
    long j = 0;
    for (int i = 0; i < 256; ++i) {
        j = (j + m_S[i] + m_K[i]) % 256;
        std::swap(m_S[i], m_S[j]);
    }
    m_i = 0;
    m_j = 0;
    return true;
}

unsigned char CCrypt::NextKeyByte()
{
    m_i = (m_i + 1) % 256;
    m_j = (m_j + m_S[m_i]) % 256;
    std::swap(m_S[m_i], m_S[m_j]);
    return static_cast<unsigned char>(m_S[(m_S[m_i] + m_S[m_j]) % 256]);
}

QByteArray CCrypt::EnCryptBinary(const QString &strSource_p, const QString &strPassword_p)
{
    QByteArray out;
    if (!strSource_p.isEmpty()) {
        if (!InitCrypt(strPassword_p, "CCrypt.EnCryptBinary"))
            return QByteArray(1, '\0');
        out.reserve(strSource_p.size() + 1);
        for (const QChar c : strSource_p)
            out.append(static_cast<char>(AnsiCodePage::Asc(c) ^ NextKeyByte()));
    }
    out.append('\0');
    return out;
}

QString CCrypt::DeCryptBinary(const QByteArray &bytSource_p, const QString &strPassword_p)
{
    QString out;
    if (bytSource_p.size() < 2 || !InitCrypt(strPassword_p, "CCrypt.DeCryptBinary"))
        return out;
    for (qsizetype p = 0; p + 1 < bytSource_p.size(); ++p)
        out += AnsiCodePage::Chr(static_cast<unsigned char>(bytSource_p.at(p)) ^ NextKeyByte());
    return out;
}

QString CCrypt::EnCryptString(const QString &strSource_p, const QString &strPassword_p)
{
    QString out;
    if (strSource_p.isEmpty() || !InitCrypt(strPassword_p, "CCrypt.EnCryptString"))
        return out;
    for (const QChar c : strSource_p)
        out += AnsiCodePage::Chr(AnsiCodePage::Asc(c) ^ NextKeyByte());
    return out;
}
