#pragma once

#include <QString>
#include <QVariantList>

// The table of little pictures drawn at the opening and closing of tags
// while editing, in the engine's row text: one row per tag and side,
// "%%tag^^%%picture^^%%side^^%%3^^%%3^^%%4^^%%W^^%%H^^%%W^^%%H^^**".
class GlyphTable
{
public:
    struct Switches
    {
        bool anchors = false;
        bool layers = false;
        bool scripts = false;
        bool spans = false;
        bool fonts = false;
    };

    // The rows of the switched-on tags, in the table's fixed order. Empty
    // when the first four switches are off: fonts alone add nothing.
    static QString rowsText(const Switches &on);

    // Rows as the page runtime takes them: {tag, side, w, h, picture}.
    static QVariantList parseRows(const QString &text);
};
