#include "support/SystemInfo.h"

#include <QLocale>
#include <QSysInfo>

QString SystemInfo::GetSystemInfo()
{
    const QString crlf = QStringLiteral("\r\n");
    QString desktop = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
    if (desktop.isEmpty())
        desktop = QStringLiteral("none");
    return QStringLiteral("System: ") + QSysInfo::prettyProductName() + crlf
           + QStringLiteral("Kernel: ") + QSysInfo::kernelType() + QLatin1Char(' ')
           + QSysInfo::kernelVersion() + crlf
           + QStringLiteral("Architecture: ") + QSysInfo::currentCpuArchitecture() + crlf
           + QStringLiteral("Desktop: ") + desktop + crlf
           + QStringLiteral("Qt: ") + QString::fromLatin1(qVersion()) + crlf
           + QStringLiteral("Locale: ") + QLocale::system().name() + crlf;
}
