#include "SftpCommands.h"

#include <QStringList>

namespace {
// FTP verbs and the SFTP quote commands that do the same.
struct Verb
{
    const char *ftp;
    const char *sftp;
};
constexpr Verb kVerbs[] = {{"DELE", "rm"}, {"MKD", "mkdir"}, {"XMKD", "mkdir"}, {"RMD", "rmdir"}, {"XRMD", "rmdir"}};
} // namespace

QString SftpCommands::Absolute(const QString &name, const QString &folder)
{
    if (name.startsWith(QLatin1Char('/')))
        return name;
    QString path = folder.isEmpty() ? QStringLiteral("/") : folder;
    if (!path.endsWith(QLatin1Char('/')))
        path += QLatin1Char('/');
    return path + name;
}

// libcurl reads a quoted path with backslash escapes, so names with blanks
// or quotes reach the server whole.
QString SftpCommands::Quoted(const QString &path)
{
    QString escaped = path;
    escaped.replace(QLatin1Char('\\'), QStringLiteral("\\\\")).replace(QLatin1Char('"'), QStringLiteral("\\\""));
    return QLatin1Char('"') + escaped + QLatin1Char('"');
}

QString SftpCommands::Translate(const QString &command, const QString &folder, QString &refusal)
{
    const QString verb = command.section(QLatin1Char(' '), 0, 0).toUpper();
    const QString argument = command.section(QLatin1Char(' '), 1);
    for (const Verb &v : kVerbs)
        if (verb == QLatin1String(v.ftp) && !argument.isEmpty())
            return QLatin1String(v.sftp) + QLatin1Char(' ') + Quoted(Absolute(argument, folder));
    // SITE CHMOD 644 name: the one SITE command with an SFTP meaning.
    const QStringList site = argument.split(QLatin1Char(' '));
    if (verb == QLatin1String("SITE") && site.size() >= 3 && site[0].toUpper() == QLatin1String("CHMOD"))
        return QStringLiteral("chmod %1 %2").arg(site[1], Quoted(Absolute(site.mid(2).join(QLatin1Char(' ')), folder)));
    // Sending the text anyway would make the server run something the
    // caller never meant, or fail in a way the caller can't read.
    refusal = QStringLiteral("502 %1 has no meaning over SFTP; it was not sent.").arg(verb);
    return QString();
}

QString SftpCommands::Rename(const QString &from, const QString &to, const QString &folder)
{
    return QStringLiteral("rename %1 %2").arg(Quoted(Absolute(from, folder)), Quoted(Absolute(to, folder)));
}

// SFTP status texts as libcurl words them, and the FTP replies callers
// test: 452 where the disk is full, 553 where an upload's name is refused,
// and 550 for the rest, as FTP servers answer a missing file, a refused
// permission and an action not taken (a rename onto an existing file, a
// folder not empty).
QString SftpCommands::Reply(CURLcode code, const QString &detail)
{
    switch (code) {
    case CURLE_REMOTE_FILE_NOT_FOUND:
    case CURLE_REMOTE_ACCESS_DENIED:
        return QStringLiteral("550 ") + detail;
    case CURLE_REMOTE_DISK_FULL:
        return QStringLiteral("452 ") + detail;
    case CURLE_REMOTE_FILE_EXISTS:
    case CURLE_UPLOAD_FAILED:
        return QStringLiteral("553 ") + detail;
    case CURLE_LOGIN_DENIED:
        return QStringLiteral("530 ") + detail;
    case CURLE_QUOTE_ERROR:
        break;
    case CURLE_SSH:
        // libcurl's word for any other SFTP status; without one of them
        // the session itself failed.
        if (detail.contains(QLatin1String("Operation failed")) || detail.contains(QLatin1String("File already exists")))
            break;
        return QString();
    default:
        return QString();
    }
    if (detail.contains(QLatin1String("No space"), Qt::CaseInsensitive) || detail.contains(QLatin1String("Quota"), Qt::CaseInsensitive))
        return QStringLiteral("452 ") + detail;
    return QStringLiteral("550 ") + detail;
}
