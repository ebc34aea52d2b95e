#pragma once

#include <QString>

#include <curl/curl.h>

// What the FTP control's callers say in FTP, said over SFTP: the raw
// commands that have an SFTP meaning become libcurl's SFTP quote lines, and
// SFTP's failures become the FTP replies the callers compare ("550" for a
// missing file or a refused permission, and so on).
class SftpCommands
{
public:
    // The quote line for an FTP command whose names are taken from `folder`
    // (absolute), or an empty string with `refusal` set to the reply that
    // says why it is not sent.
    static QString Translate(const QString &command, const QString &folder, QString &refusal);
    // The quote line of a rename.
    static QString Rename(const QString &from, const QString &to, const QString &folder);
    // A path from the root for a name taken from `folder`.
    static QString Absolute(const QString &name, const QString &folder);
    // The FTP reply for a failed SFTP call, from libcurl's result and its
    // detail; empty for a failure that is not the server's answer (the
    // network, a time-out, the host key).
    static QString Reply(CURLcode code, const QString &detail);

private:
    static QString Quoted(const QString &path);
};
