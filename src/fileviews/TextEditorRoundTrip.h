#pragma once

#include <QByteArray>
#include <QFileSystemWatcher>
#include <QObject>
#include <QString>

#include <functional>

// A file of the site out in the desktop's text editor: the program starts
// the editor on a local copy and watches the copy. Each time it is saved
// changed, the sender runs (it sends the file back to its folder); a save
// that leaves the bytes as they were sends nothing. The copy stays watched
// until the next file goes out, whether the editor is still open or not,
// since an editor may hand the file to a window of its own and end at once.
class TextEditorRoundTrip : public QObject
{
    Q_OBJECT

public:
    // Gives 1 when the file went back; anything else keeps the bytes as
    // not sent, so the next save tries again.
    using Sender = std::function<long(const QString &strLocalFile_p)>;

    void SetSender(Sender send) { m_send = std::move(send); }
    // Starts watching the file as it stands now and opens it in the editor.
    // False when no editor could be started.
    bool Open(const QString &strLocalFile_p);
    QString File() const { return m_strFile; }

    // The editor's command: $VISUAL when set, else the desktop's handler
    // for plain text, else xdg-open.
    static QStringList EditorCommand(const QString &strFile_p);

private:
    void Check();
    static QByteArray Digest(const QString &path);

    QFileSystemWatcher m_watch;
    QString m_strFile;
    QByteArray m_sent; // digest of the bytes the server holds
    Sender m_send;
    bool m_boolSending = false;
};
