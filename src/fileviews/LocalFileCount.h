#pragma once

#include "transfer/FILEITEM.h"

#include <QList>
#include <QString>
#include <QStringList>

// The local files and folders of a transfer to the server, counted for the
// question before it and listed, parents before children, for the batch.
class LocalFileCount
{
public:
    // Walks each path (a file, or a folder with all below it).
    void CountFiles(const QStringList &astrPaths_p);

    long Files() const { return m_lFiles; }
    long Folders() const { return m_lFolders; }
    double Bytes() const { return m_dblBytes; }
    const QList<FILEITEM> &Items() const { return m_items; }
    // The items in groups of one parent folder each: a batch takes its
    // paths relative to the folder of its first item.
    QList<QList<FILEITEM>> Batches() const;

private:
    void CountOneFolder(const QString &strFolder_p, int depth_p);
    void AddFile(const QString &strPath_p, qint64 size_p);

    long m_lFiles = 0;
    long m_lFolders = 0;
    double m_dblBytes = 0;
    QList<FILEITEM> m_items;
    QList<qsizetype> m_tops; // where each path given begins in m_items
};
