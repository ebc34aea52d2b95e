#include "platform/GlyphTable.h"

#include <QStringList>
#include <QVariantMap>

namespace {

enum Switch { Anchors, AnchorsAndSpans, Layers, Scripts, Spans, Fonts };

struct GlyphRow
{
    Switch when;
    const char *tag;
    int open;
    int close; // 0: the tag has no closing glyph
    int width;
    int height;
};

constexpr GlyphRow Rows[] = {
    {Anchors, "a", 102, 102, 11, 11},
    {AnchorsAndSpans, "h1", 149, 150, 12, 25},
    {AnchorsAndSpans, "h2", 151, 152, 12, 25},
    {AnchorsAndSpans, "h3", 153, 154, 12, 25},
    {AnchorsAndSpans, "h4", 155, 156, 12, 25},
    {AnchorsAndSpans, "h5", 157, 158, 12, 25},
    {AnchorsAndSpans, "h6", 159, 160, 12, 25},
    {Layers, "div", 103, 104, 27, 12},
    {Scripts, "script", 109, 0, 16, 15},
    {Scripts, "form", 129, 130, 12, 41},
    {Spans, "br", 101, 0, 15, 20},
    {Spans, "p", 105, 106, 15, 20},
    {Spans, "span", 107, 108, 12, 41},
    {Fonts, "font", 131, 132, 12, 41},
    {Fonts, "strong", 133, 134, 12, 19},
    {Fonts, "em", 135, 136, 12, 19},
    {Fonts, "u", 137, 138, 12, 19},
    {Fonts, "ul", 139, 140, 12, 25},
    {Fonts, "ol", 141, 142, 12, 25},
    {Fonts, "li", 143, 144, 12, 25},
    {Fonts, "blockquote", 145, 146, 12, 25},
    {Fonts, "pre", 147, 148, 12, 30},
};

bool isOn(Switch when, const GlyphTable::Switches &on)
{
    switch (when) {
    case Anchors: return on.anchors;
    case AnchorsAndSpans: return on.anchors && on.spans;
    case Layers: return on.layers;
    case Scripts: return on.scripts;
    case Spans: return on.spans;
    case Fonts: return on.fonts;
    }
    return false;
}

// "a" and "div" keep a separator between the 4 and the width; the engine
// read both forms alike.
QString row(const GlyphRow &r, int side)
{
    const QString tag = QString::fromLatin1(r.tag);
    const bool spaced = tag == QStringLiteral("a") || tag == QStringLiteral("div");
    const int picture = side == 0 ? r.open : r.close;
    const QString sep = QStringLiteral("^^%%");
    const QString w = QString::number(r.width);
    const QString h = QString::number(r.height);
    return QStringLiteral("%%") + tag + sep + QStringLiteral("res://vindrell.dll/#2/")
           + QString::number(picture) + sep + QString::number(side) + sep + QStringLiteral("3")
           + sep + QStringLiteral("3") + sep + QStringLiteral("4")
           + (spaced ? sep : QStringLiteral("%%")) + w + sep + h + sep + w + sep + h
           + QStringLiteral("^^**");
}

} // namespace

QString GlyphTable::rowsText(const Switches &on)
{
    if (!on.anchors && !on.layers && !on.scripts && !on.spans)
        return {};
    QString text;
    for (const GlyphRow &r : Rows) {
        if (!isOn(r.when, on))
            continue;
        text += row(r, 0);
        if (r.close)
            text += row(r, 1);
    }
    return text;
}

QVariantList GlyphTable::parseRows(const QString &text)
{
    QVariantList out;
    for (const QString &raw : text.split(QStringLiteral("**"), Qt::SkipEmptyParts)) {
        QString flat = raw;
        flat.remove(QStringLiteral("^^"));
        const QStringList f = flat.split(QStringLiteral("%%"), Qt::SkipEmptyParts);
        if (f.size() < 8)
            continue;
        out.append(QVariantMap{{QStringLiteral("tag"), f[0].toLower()},
                               {QStringLiteral("picture"), f[1]},
                               {QStringLiteral("side"), f[2].toInt()},
                               {QStringLiteral("w"), f[6].toInt()},
                               {QStringLiteral("h"), f[7].toInt()}});
    }
    return out;
}
