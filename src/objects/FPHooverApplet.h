#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <array>

// What a hover button applet (code "fphover.class") holds: its fifteen
// parameters, each a value and a valuetype, and its own attributes. Read
// from the element as the engine gives it, and written as a whole new
// <APPLET> text that puts back everything that was read: reader and writer
// are counterparts, so an applet read and written unchanged reads the same
// again.
class FPHooverApplet
{
public:
    // The parameters in the order and spelling the writer uses.
    enum Param {
        bgColor, Color, effect, Font, FontSize, fontStyle, HoverColor, hoverimage,
        hoversound, Image, sound, Target, text, textColor, URL, ParamCount
    };
    struct Value
    {
        QString value;
        QString valuetype;
        bool operator==(const Value &) const = default;
    };
    struct Named
    {
        QString name;
        QString value;
        QString valuetype;
        bool operator==(const Named &) const = default;
    };
    // The id the new text carries, so that the new element can be found
    // once it stands in the page.
    static QString NewId() { return QStringLiteral("new_a"); }

    static const QStringList &ParamNames();
    // The effects by their index in the dialog: captions' string ids and
    // the values written.
    static const QStringList &EffectValues();
    static int EffectIndex(const QString &value); // -1 for a value not known
    // The targets of the link by option: 0 "_new", 1 "_top", 2 "_parent",
    // 3 a frame by its name.
    static int TargetOption(const QString &target);
    static QString TargetValue(int option, const QString &frameName);

    // params_p: name, value and valuetype of each PARAM child in order;
    // attributes_p: the element's attributes, name and value, in order.
    void Read(const QList<Named> &params_p, const QList<std::pair<QString, QString>> &attributes_p);
    // <APPLET attributes><PARAM ...>...</APPLET>
    QString Text() const;

    const Value &param(Param which) const { return m_params[size_t(which)]; }
    void setValue(Param which, const QString &value) { m_params[size_t(which)].value = value; }
    // The id the element had, empty for none.
    const QString &OldId() const { return m_strOldId; }
    const QStringList &Attributes() const { return m_astrAttributes; }
    const QList<Named> &Others() const { return m_others; }

private:
    void ReadAttribute(const QString &name, const QString &value);
    static QString Quoted(const QString &value);
    static QString ParamTag(const QString &name, const Value &value);

    std::array<Value, ParamCount> m_params;
    // PARAMs of other names, kept in their order.
    QList<Named> m_others;
    // name="value" (or a bare name), in the order met.
    QStringList m_astrAttributes;
    QString m_strOldId;
};
