#include "objects/FPHooverApplet.h"

#include <QRegularExpression>
#include <QSet>

namespace {

// Attributes that mean nothing with these values and are left out.
bool SaysNothing(const QString &name, const QString &value)
{
    static const QSet<QString> flags = {QStringLiteral("declare"), QStringLiteral("hidefocus"), QStringLiteral("disabled")};
    const QString lower = value.toLower();
    if (flags.contains(name))
        return lower == QLatin1String("false");
    if (name == QLatin1String("contenteditable"))
        return lower == QLatin1String("inherit");
    if (name == QLatin1String("implementation") || name.startsWith(QLatin1String("on")))
        return lower == QLatin1String("null");
    return false;
}

// The applet's own attributes, which mean nothing without a value.
bool NeedsValue(const QString &name)
{
    static const QSet<QString> names = {
        QStringLiteral("codebase"), QStringLiteral("type"), QStringLiteral("height"), QStringLiteral("alt"),
        QStringLiteral("language"), QStringLiteral("datafld"), QStringLiteral("class"), QStringLiteral("lang"),
        QStringLiteral("dir"), QStringLiteral("title"), QStringLiteral("dataformatas"), QStringLiteral("accesskey"),
        QStringLiteral("datasrc"), QStringLiteral("tabindex"), QStringLiteral("hspace"), QStringLiteral("archive"),
        QStringLiteral("standby"), QStringLiteral("width"), QStringLiteral("data"), QStringLiteral("align"),
        QStringLiteral("usemap"), QStringLiteral("code"), QStringLiteral("vspace"), QStringLiteral("border"),
        QStringLiteral("classid"), QStringLiteral("name"), QStringLiteral("codetype"), QStringLiteral("style")};
    return names.contains(name);
}

// The editor's own mark for the label of the applet's placeholder.
const QString kLabelMark = QStringLiteral("keldalabel");

} // namespace

const QStringList &FPHooverApplet::ParamNames()
{
    static const QStringList names = {
        QStringLiteral("bgColor"), QStringLiteral("Color"), QStringLiteral("effect"), QStringLiteral("Font"),
        QStringLiteral("FontSize"), QStringLiteral("fontStyle"), QStringLiteral("HoverColor"),
        QStringLiteral("hoverimage"), QStringLiteral("hoversound"), QStringLiteral("Image"), QStringLiteral("sound"),
        QStringLiteral("Target"), QStringLiteral("text"), QStringLiteral("textColor"), QStringLiteral("URL")};
    return names;
}

const QStringList &FPHooverApplet::EffectValues()
{
    static const QStringList values = {QStringLiteral("fill"),        QStringLiteral("average"),
                                       QStringLiteral("glow"),        QStringLiteral("reverseGlow"),
                                       QStringLiteral("lightGlow"),   QStringLiteral("bevelOut"),
                                       QStringLiteral("bevelIn")};
    return values;
}

int FPHooverApplet::EffectIndex(const QString &value)
{
    const QString lower = value.toLower();
    for (int i = 0; i < EffectValues().size(); ++i) {
        if (EffectValues()[i].toLower() == lower)
            return i;
    }
    return -1;
}

int FPHooverApplet::TargetOption(const QString &target)
{
    static const QStringList fixed = {QStringLiteral("_new"), QStringLiteral("_top"), QStringLiteral("_parent")};
    const int option = int(fixed.indexOf(target));
    return option < 0 ? 3 : option;
}

QString FPHooverApplet::TargetValue(int option, const QString &frameName)
{
    switch (option) {
    case 0:
        return QStringLiteral("_new");
    case 1:
        return QStringLiteral("_top");
    case 2:
        return QStringLiteral("_parent");
    default:
        return frameName;
    }
}

// PARAM names are compared in lower case; a name met twice keeps the last
// value, as the applet itself reads them.
void FPHooverApplet::Read(const QList<Named> &params_p, const QList<std::pair<QString, QString>> &attributes_p)
{
    m_params = {};
    m_others.clear();
    m_astrAttributes.clear();
    m_strOldId.clear();
    for (const Named &param : params_p) {
        int index = -1;
        for (int i = 0; index < 0 && i < ParamNames().size(); ++i) {
            if (ParamNames()[i].toLower() == param.name.toLower())
                index = i;
        }
        if (index >= 0)
            m_params[size_t(index)] = Value{param.value, param.valuetype};
        else if (!param.name.isEmpty() && !param.value.isEmpty())
            m_others.append(param);
    }
    bool hadId = false;
    for (const auto &[name, value] : attributes_p) {
        hadId = hadId || name.toLower() == QLatin1String("id");
        ReadAttribute(name.toLower(), value);
    }
    // The new element must be found once it stands in the page, also when
    // the old one had no id; the id goes again after the replacement.
    if (!hadId)
        m_astrAttributes.prepend(QStringLiteral("id=\"%1\"").arg(NewId()));
}

// Unlike the other attributes the style is written too: a button that was
// floated keeps its place through the dialog.
void FPHooverApplet::ReadAttribute(const QString &name, const QString &value)
{
    if (name == QLatin1String("id")) {
        m_strOldId = value;
        m_astrAttributes.append(QStringLiteral("id=\"%1\"").arg(NewId()));
        return;
    }
    if (name == kLabelMark || SaysNothing(name, value))
        return;
    if (value.isEmpty()) {
        // A bare attribute of the page's own (mayscript) stays bare.
        if (!NeedsValue(name))
            m_astrAttributes.append(name);
        return;
    }
    m_astrAttributes.append(name + QStringLiteral("=") + Quoted(value));
}

QString FPHooverApplet::Quoted(const QString &value)
{
    QString text = value;
    text.replace(QLatin1Char('&'), QLatin1String("&amp;")).replace(QLatin1Char('"'), QLatin1String("&quot;"));
    return QLatin1Char('"') + text + QLatin1Char('"');
}

// A valuetype is written unquoted, as the applet's own pages have it, but
// one that an unquoted value can't carry is quoted so that it comes back.
QString FPHooverApplet::ParamTag(const QString &name, const Value &value)
{
    QString tag = QStringLiteral("<PARAM name=%1 value=%2").arg(Quoted(name), Quoted(value.value));
    if (!value.valuetype.isEmpty()) {
        static const QRegularExpression plain(QStringLiteral("^[^\\s\"'=<>`&]+$"));
        tag += QStringLiteral(" valuetype=")
               + (plain.match(value.valuetype).hasMatch() ? value.valuetype : Quoted(value.valuetype));
    }
    return tag + QLatin1Char('>');
}

// Parameters without a value are left out; those of other names follow the
// fifteen in their own order, so that nothing the author put in is lost.
QString FPHooverApplet::Text() const
{
    QString text = (QStringLiteral("<APPLET ") + m_astrAttributes.join(QLatin1Char(' '))).trimmed() + QLatin1Char('>');
    for (int i = 0; i < ParamCount; ++i) {
        if (!m_params[size_t(i)].value.isEmpty())
            text += ParamTag(ParamNames()[i], m_params[size_t(i)]);
    }
    for (const Named &other : m_others)
        text += ParamTag(other.name, Value{other.value, other.valuetype});
    return text + QStringLiteral("</APPLET>");
}
