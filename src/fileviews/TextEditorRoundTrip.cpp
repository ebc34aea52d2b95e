#include "fileviews/TextEditorRoundTrip.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSettings>
#include <QStandardPaths>

bool TextEditorRoundTrip::Open(const QString &strLocalFile_p)
{
    if (!m_watch.files().isEmpty())
        m_watch.removePaths(m_watch.files());
    if (!m_watch.directories().isEmpty())
        m_watch.removePaths(m_watch.directories());
    disconnect(&m_watch, nullptr, this, nullptr);
    m_strFile = strLocalFile_p;
    m_sent = Digest(strLocalFile_p);
    // Editors that save by writing a new file and renaming it over the old
    // one end the watch of the file; the folder's watch catches those.
    m_watch.addPath(strLocalFile_p);
    m_watch.addPath(QFileInfo(strLocalFile_p).absolutePath());
    connect(&m_watch, &QFileSystemWatcher::fileChanged, this, &TextEditorRoundTrip::Check);
    connect(&m_watch, &QFileSystemWatcher::directoryChanged, this, &TextEditorRoundTrip::Check);
    QStringList command = EditorCommand(strLocalFile_p);
    const QString program = command.takeFirst();
    return QProcess::startDetached(program, command);
}

void TextEditorRoundTrip::Check()
{
    if (m_boolSending || m_strFile.isEmpty() || !QFileInfo::exists(m_strFile))
        return;
    if (!m_watch.files().contains(m_strFile))
        m_watch.addPath(m_strFile);
    const QByteArray now = Digest(m_strFile);
    if (now.isEmpty() || now == m_sent || !m_send)
        return;
    m_boolSending = true;
    const QString file = m_strFile;
    if (m_send(file) == 1 && file == m_strFile)
        m_sent = now;
    m_boolSending = false;
}

QByteArray TextEditorRoundTrip::Digest(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(&file);
    return hash.result();
}

// The handler for text/plain is read from its desktop entry, with the
// entry's field codes for a file replaced by the file.
QStringList TextEditorRoundTrip::EditorCommand(const QString &strFile_p)
{
    const QString visual = qEnvironmentVariable("VISUAL");
    if (!visual.isEmpty())
        return QProcess::splitCommand(visual) << strFile_p;
    QProcess query;
    query.start(QStringLiteral("xdg-mime"), {QStringLiteral("query"), QStringLiteral("default"), QStringLiteral("text/plain")});
    const QString entry = query.waitForFinished(5000) ? QString::fromUtf8(query.readAllStandardOutput()).trimmed() : QString();
    const QString desktop = entry.isEmpty() ? QString()
                                            : QStandardPaths::locate(QStandardPaths::ApplicationsLocation, entry);
    if (!desktop.isEmpty()) {
        QSettings read(desktop, QSettings::IniFormat);
        QStringList exec = QProcess::splitCommand(read.value(QStringLiteral("Desktop Entry/Exec")).toString());
        bool placed = false;
        for (QString &part : exec) {
            for (const char *code : {"%f", "%F", "%u", "%U"}) {
                if (part == QLatin1String(code)) {
                    part = strFile_p;
                    placed = true;
                }
            }
        }
        exec.removeIf([](const QString &part) { return part.size() == 2 && part.startsWith(QLatin1Char('%')); });
        if (!exec.isEmpty())
            return placed ? exec : exec << strFile_p;
    }
    return {QStringLiteral("xdg-open"), strFile_p};
}
