#include "transfer/DirTreeIndex.h"

long DirTreeIndex::Add(const QString &parentKey, int, const QString &key, const QString &text, int image,
                       int expandedImage)
{
    if (m_nodes.contains(key))
        return errKeyNotUnique;
    if (!parentKey.isEmpty() && !m_nodes.contains(parentKey))
        return errElementNotFound;
    m_nodes.insert(key, Node{parentKey, text, image, expandedImage, {}});
    if (!parentKey.isEmpty())
        m_nodes[parentKey].children.append(key);
    return 1;
}

long DirTreeIndex::Remove(const QString &key)
{
    if (!m_nodes.contains(key))
        return errElementNotFound;
    const QString parent = m_nodes.value(key).parent;
    if (m_nodes.contains(parent))
        m_nodes[parent].children.removeOne(key);
    RemoveBranch(key);
    return 1;
}

// A node goes with everything under it, as in a tree widget.
void DirTreeIndex::RemoveBranch(const QString &key)
{
    for (const QString &child : m_nodes.value(key).children)
        RemoveBranch(child);
    m_nodes.remove(key);
}
