#pragma once

#include <QString>

// What the listings need of a tree of the site's files: nodes added under a
// parent by key, removed by key, and counted. The site tree implements it
// on its widget; the transfer client knows nothing of the display.
class DirTreeNodes
{
public:
    static constexpr int tvwChild = 4;
    // The failures a tree gives, as numbers the listings know.
    static constexpr long errElementNotFound = 35601;
    static constexpr long errKeyNotUnique = 35602;

    virtual ~DirTreeNodes() = default;

    // An empty parentKey adds a root. 1, or one of the numbers above.
    virtual long Add(const QString &parentKey, int relation, const QString &key, const QString &text,
                     int image, int expandedImage) = 0;
    // 1, or errElementNotFound.
    virtual long Remove(const QString &key) = 0;
    virtual long Count() const = 0;
};
