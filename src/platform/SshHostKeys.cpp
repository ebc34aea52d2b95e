#include "SshHostKeys.h"

#include "LocalFolders.h"

#include <QFile>
#include <QSaveFile>
#include <QStringList>

SshHostKeys::SshHostKeys(QString file)
    : m_file(std::move(file))
{
}

QString SshHostKeys::DefaultFile()
{
    return LocalFolders::configFolder() + QStringLiteral("/known_hosts");
}

QString SshHostKeys::Name(const QString &host, int port)
{
    return host.toLower() + QLatin1Char(':') + QString::number(port);
}

QString SshHostKeys::Trusted(const QString &host, int port) const
{
    QFile file(m_file);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    const QString name = Name(host, port);
    while (!file.atEnd()) {
        const QStringList fields = QString::fromUtf8(file.readLine()).simplified().split(QLatin1Char(' '));
        if (fields.size() == 3 && fields[0] == name)
            return fields[2];
    }
    return QString();
}

bool SshHostKeys::Trust(const QString &host, int port, const QString &type, const QString &fingerprint) const
{
    const QString name = Name(host, port);
    QByteArray kept;
    QFile old(m_file);
    if (old.open(QIODevice::ReadOnly)) {
        while (!old.atEnd()) {
            const QByteArray line = old.readLine();
            if (!line.startsWith((name + QLatin1Char(' ')).toUtf8()))
                kept += line;
        }
    }
    kept += QStringLiteral("%1 %2 %3\n").arg(name, type, fingerprint).toUtf8();
    QSaveFile file(m_file);
    return file.open(QIODevice::WriteOnly) && file.write(kept) == kept.size() && file.commit();
}
