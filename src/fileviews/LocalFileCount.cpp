#include "fileviews/LocalFileCount.h"

#include <QDir>
#include <QFileInfo>

namespace {
// A folder linked into itself would be walked for ever.
constexpr int kDeepestLevel = 100;
}

void LocalFileCount::CountFiles(const QStringList &astrPaths_p)
{
    for (const QString &path : astrPaths_p) {
        const QFileInfo info(path);
        m_tops.append(m_items.size());
        if (info.isDir()) {
            m_items.append({info.absoluteFilePath(), info.fileName(), 0, 0});
            ++m_lFolders;
            CountOneFolder(info.absoluteFilePath(), 0);
        } else if (info.isFile()) {
            AddFile(info.absoluteFilePath(), info.size());
        }
    }
}

// Links to folders are not followed: they may lead out of what the user
// dragged, or back into it.
void LocalFileCount::CountOneFolder(const QString &strFolder_p, int depth_p)
{
    if (depth_p >= kDeepestLevel)
        return;
    const QFileInfoList entries =
        QDir(strFolder_p).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Name);
    for (const QFileInfo &entry : entries) {
        if (entry.isFile())
            AddFile(entry.absoluteFilePath(), entry.size());
    }
    for (const QFileInfo &entry : entries) {
        if (!entry.isDir() || entry.isSymLink())
            continue;
        m_items.append({entry.absoluteFilePath(), entry.fileName(), 0, 0});
        ++m_lFolders;
        CountOneFolder(entry.absoluteFilePath(), depth_p + 1);
    }
}

void LocalFileCount::AddFile(const QString &strPath_p, qint64 size_p)
{
    m_items.append({strPath_p, QFileInfo(strPath_p).fileName(), size_p, 1});
    ++m_lFiles;
    m_dblBytes += double(size_p);
}

QList<QList<FILEITEM>> LocalFileCount::Batches() const
{
    QList<QList<FILEITEM>> batches;
    QString parent;
    for (qsizetype t = 0; t < m_tops.size(); ++t) {
        const qsizetype end = t + 1 < m_tops.size() ? m_tops.at(t + 1) : m_items.size();
        if (m_tops.at(t) == end)
            continue;
        const QString itemParent = QFileInfo(m_items.at(m_tops.at(t)).strPath).path();
        if (batches.isEmpty() || itemParent != parent)
            batches.append(QList<FILEITEM>());
        parent = itemParent;
        batches.last().append(m_items.mid(m_tops.at(t), end - m_tops.at(t)));
    }
    return batches;
}
