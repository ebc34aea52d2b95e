#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class CASPFilter;

// The server side of an edit session on script pages. Each script page of
// the session is replaced on the server, for the moment of one reload, by a
// marked version whose output carries markers around every script block;
// after the reload the originals go back. Meanwhile a copy of each original
// lies beside its page under the name "<name>.keldabak".
class ASPTagging
{
public:
    ASPTagging();
    ~ASPTagging();

    // Marks the script page with the document path strURL: reads it, leaves
    // the copy beside it, sends the marked page. A page found already marked
    // (a session cut off before it could put the original back) is repaired
    // first. 1, or 0 with the pending error set.
    long SetASPTags(const QString &strURL);
    // Sends every original back and takes the copies away. 1 or 0.
    long RemoveASPTags();

    // The filters of the marked pages, in the order of marking.
    const std::vector<std::shared_ptr<CASPFilter>> &Filters() const { return m_ASPFilters; }
    void ResetOriginals();
    // The files' bytes as the server holds them, parallel to the documents;
    // empty for a document whose file could not be read.
    const QList<QByteArray> &OriginalSources() const { return m_aOriginalSources; }
    void AddSource(const QByteArray &bytes) { m_aOriginalSources.append(bytes); }
    // Forgets the filters; the documents keep those they were given.
    void ReleaseFilters()
    {
        m_ASPFilters.clear();
        m_aMarkedOriginals.clear();
    }

    // The page's path on the FTP server, below the login folder.
    static QString FullServerPath(const QString &strURL);
    // "/a/page.asp" gives "page.keldabak": the name up to its last "." and
    // "keldabak".
    static QString BackupName(const QString &strURL);

private:
    long LeaveCopyBeside(const QString &strURL, const QByteArray &source);

    std::vector<std::shared_ptr<CASPFilter>> m_ASPFilters;
    // Per filter: the bytes that go back when the marks come off; empty for
    // a page that had nothing to mark.
    QList<QByteArray> m_aMarkedOriginals;
    QList<QByteArray> m_aOriginalSources;
};
