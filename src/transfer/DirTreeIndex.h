#pragma once

#include "transfer/DirTreeNodes.h"

#include <QHash>
#include <QStringList>

// The nodes of a site tree by key, without a display: what a tree widget
// mirrors, and what programs without one fill.
class DirTreeIndex : public DirTreeNodes
{
public:
    struct Node
    {
        QString parent;
        QString text;
        int image = 0;
        int expandedImage = 0;
        QStringList children; // keys, in the order added
    };

    long Add(const QString &parentKey, int relation, const QString &key, const QString &text, int image,
             int expandedImage) override;
    long Remove(const QString &key) override;
    long Count() const override { return long(m_nodes.size()); }

    bool Contains(const QString &key) const { return m_nodes.contains(key); }
    Node NodeOf(const QString &key) const { return m_nodes.value(key); }
    QStringList Children(const QString &key) const { return m_nodes.value(key).children; }

private:
    void RemoveBranch(const QString &key);

    QHash<QString, Node> m_nodes;
};
