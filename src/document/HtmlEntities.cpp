#include "document/HtmlEntities.h"

#include <QHash>

#include <algorithm>

namespace {

struct Named
{
    const char *name;
    char32_t code;
};

// The entities of HTML 4 (and &apos;): what real pages use. The rarer names
// of HTML 5 stay as they are written, which costs at worst a token that
// does not line up with the engine's text.
const Named kNamed[] = {
    {"AElig", 0xC6}, {"Aacute", 0xC1}, {"Acirc", 0xC2}, {"Agrave", 0xC0}, {"Alpha", 0x391}, {"Aring", 0xC5},
    {"Atilde", 0xC3}, {"Auml", 0xC4}, {"Beta", 0x392}, {"Ccedil", 0xC7}, {"Chi", 0x3A7}, {"Dagger", 0x2021},
    {"Delta", 0x394}, {"ETH", 0xD0}, {"Eacute", 0xC9}, {"Ecirc", 0xCA}, {"Egrave", 0xC8}, {"Epsilon", 0x395},
    {"Eta", 0x397}, {"Euml", 0xCB}, {"Gamma", 0x393}, {"Iacute", 0xCD}, {"Icirc", 0xCE}, {"Igrave", 0xCC},
    {"Iota", 0x399}, {"Iuml", 0xCF}, {"Kappa", 0x39A}, {"Lambda", 0x39B}, {"Mu", 0x39C}, {"Ntilde", 0xD1},
    {"Nu", 0x39D}, {"OElig", 0x152}, {"Oacute", 0xD3}, {"Ocirc", 0xD4}, {"Ograve", 0xD2}, {"Omega", 0x3A9},
    {"Omicron", 0x39F}, {"Oslash", 0xD8}, {"Otilde", 0xD5}, {"Ouml", 0xD6}, {"Phi", 0x3A6}, {"Pi", 0x3A0},
    {"Prime", 0x2033}, {"Psi", 0x3A8}, {"Rho", 0x3A1}, {"Scaron", 0x160}, {"Sigma", 0x3A3}, {"THORN", 0xDE},
    {"Tau", 0x3A4}, {"Theta", 0x398}, {"Uacute", 0xDA}, {"Ucirc", 0xDB}, {"Ugrave", 0xD9}, {"Upsilon", 0x3A5},
    {"Uuml", 0xDC}, {"Xi", 0x39E}, {"Yacute", 0xDD}, {"Yuml", 0x178}, {"Zeta", 0x396}, {"aacute", 0xE1},
    {"acirc", 0xE2}, {"acute", 0xB4}, {"aelig", 0xE6}, {"agrave", 0xE0}, {"alefsym", 0x2135}, {"alpha", 0x3B1},
    {"amp", 0x26}, {"and", 0x2227}, {"ang", 0x2220}, {"aring", 0xE5}, {"asymp", 0x2248}, {"atilde", 0xE3},
    {"auml", 0xE4}, {"bdquo", 0x201E}, {"beta", 0x3B2}, {"brvbar", 0xA6}, {"bull", 0x2022}, {"cap", 0x2229},
    {"ccedil", 0xE7}, {"cedil", 0xB8}, {"cent", 0xA2}, {"chi", 0x3C7}, {"circ", 0x2C6}, {"clubs", 0x2663},
    {"cong", 0x2245}, {"copy", 0xA9}, {"crarr", 0x21B5}, {"cup", 0x222A}, {"curren", 0xA4}, {"dArr", 0x21D3},
    {"dagger", 0x2020}, {"darr", 0x2193}, {"deg", 0xB0}, {"delta", 0x3B4}, {"diams", 0x2666}, {"divide", 0xF7},
    {"eacute", 0xE9}, {"ecirc", 0xEA}, {"egrave", 0xE8}, {"empty", 0x2205}, {"emsp", 0x2003}, {"ensp", 0x2002},
    {"epsilon", 0x3B5}, {"equiv", 0x2261}, {"eta", 0x3B7}, {"eth", 0xF0}, {"euml", 0xEB}, {"euro", 0x20AC},
    {"exist", 0x2203}, {"fnof", 0x192}, {"forall", 0x2200}, {"frac12", 0xBD}, {"frac14", 0xBC}, {"frac34", 0xBE},
    {"frasl", 0x2044}, {"gamma", 0x3B3}, {"ge", 0x2265}, {"gt", 0x3E}, {"hArr", 0x21D4}, {"harr", 0x2194},
    {"hearts", 0x2665}, {"hellip", 0x2026}, {"iacute", 0xED}, {"icirc", 0xEE}, {"iexcl", 0xA1}, {"igrave", 0xEC},
    {"image", 0x2111}, {"infin", 0x221E}, {"int", 0x222B}, {"iota", 0x3B9}, {"iquest", 0xBF}, {"isin", 0x2208},
    {"iuml", 0xEF}, {"kappa", 0x3BA}, {"lArr", 0x21D0}, {"lambda", 0x3BB}, {"lang", 0x2329}, {"laquo", 0xAB},
    {"larr", 0x2190}, {"lceil", 0x2308}, {"ldquo", 0x201C}, {"le", 0x2264}, {"lfloor", 0x230A}, {"lowast", 0x2217},
    {"loz", 0x25CA}, {"lrm", 0x200E}, {"lsaquo", 0x2039}, {"lsquo", 0x2018}, {"lt", 0x3C}, {"macr", 0xAF},
    {"mdash", 0x2014}, {"micro", 0xB5}, {"middot", 0xB7}, {"minus", 0x2212}, {"mu", 0x3BC}, {"nabla", 0x2207},
    {"nbsp", 0xA0}, {"ndash", 0x2013}, {"ne", 0x2260}, {"ni", 0x220B}, {"not", 0xAC}, {"notin", 0x2209},
    {"nsub", 0x2284}, {"ntilde", 0xF1}, {"nu", 0x3BD}, {"oacute", 0xF3}, {"ocirc", 0xF4}, {"oelig", 0x153},
    {"ograve", 0xF2}, {"oline", 0x203E}, {"omega", 0x3C9}, {"omicron", 0x3BF}, {"oplus", 0x2295}, {"or", 0x2228},
    {"ordf", 0xAA}, {"ordm", 0xBA}, {"oslash", 0xF8}, {"otilde", 0xF5}, {"otimes", 0x2297}, {"ouml", 0xF6},
    {"para", 0xB6}, {"part", 0x2202}, {"permil", 0x2030}, {"perp", 0x22A5}, {"phi", 0x3C6}, {"pi", 0x3C0},
    {"piv", 0x3D6}, {"plusmn", 0xB1}, {"pound", 0xA3}, {"prime", 0x2032}, {"prod", 0x220F}, {"prop", 0x221D},
    {"psi", 0x3C8}, {"quot", 0x22}, {"rArr", 0x21D2}, {"radic", 0x221A}, {"rang", 0x232A}, {"raquo", 0xBB},
    {"rarr", 0x2192}, {"rceil", 0x2309}, {"rdquo", 0x201D}, {"real", 0x211C}, {"reg", 0xAE}, {"rfloor", 0x230B},
    {"rho", 0x3C1}, {"rlm", 0x200F}, {"rsaquo", 0x203A}, {"rsquo", 0x2019}, {"sbquo", 0x201A}, {"scaron", 0x161},
    {"sdot", 0x22C5}, {"sect", 0xA7}, {"shy", 0xAD}, {"sigma", 0x3C3}, {"sigmaf", 0x3C2}, {"sim", 0x223C},
    {"spades", 0x2660}, {"sub", 0x2282}, {"sube", 0x2286}, {"sum", 0x2211}, {"sup", 0x2283}, {"sup1", 0xB9},
    {"sup2", 0xB2}, {"sup3", 0xB3}, {"supe", 0x2287}, {"szlig", 0xDF}, {"tau", 0x3C4}, {"there4", 0x2234},
    {"theta", 0x3B8}, {"thetasym", 0x3D1}, {"thinsp", 0x2009}, {"thorn", 0xFE}, {"tilde", 0x2DC}, {"times", 0xD7},
    {"trade", 0x2122}, {"uArr", 0x21D1}, {"uacute", 0xFA}, {"uarr", 0x2191}, {"ucirc", 0xFB}, {"ugrave", 0xF9},
    {"uml", 0xA8}, {"upsih", 0x3D2}, {"upsilon", 0x3C5}, {"uuml", 0xFC}, {"weierp", 0x2118}, {"xi", 0x3BE},
    {"yacute", 0xFD}, {"yen", 0xA5}, {"yuml", 0xFF}, {"zeta", 0x3B6}, {"zwj", 0x200D}, {"zwnj", 0x200C},
    {"apos", 0x27}};

const QHash<QString, char32_t> &Table()
{
    static const QHash<QString, char32_t> table = [] {
        QHash<QString, char32_t> t;
        for (const Named &n : kNamed)
            t.insert(QString::fromLatin1(n.name), n.code);
        return t;
    }();
    return table;
}

// What a browser makes of the numbers 128-159: windows-1252's characters.
constexpr char16_t kCp1252High[32] = {
    0x20AC, 0x81, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D, 0x017D, 0x8F,
    0x90, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D, 0x017E, 0x0178};

bool IsAlnum(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9');
}

int DigitValue(QChar c, bool hex)
{
    if (c >= u'0' && c <= u'9')
        return c.unicode() - u'0';
    const char16_t lower = c.toLower().unicode();
    return hex && lower >= u'a' && lower <= u'f' ? lower - u'a' + 10 : -1;
}

// The character of "&..." at i, and its length; 0 when it is no reference.
qsizetype Reference(QStringView text, qsizetype i, char32_t &code)
{
    qsizetype j = i + 1;
    if (j < text.size() && text[j] == u'#') {
        ++j;
        const bool hex = j < text.size() && (text[j] == u'x' || text[j] == u'X');
        if (hex)
            ++j;
        const qsizetype digits = j;
        quint64 value = 0;
        for (int d = 0; j < text.size() && (d = DigitValue(text[j], hex)) >= 0; ++j)
            value = std::min<quint64>(value * (hex ? 16 : 10) + quint64(d), 0x110000);
        if (j == digits)
            return 0;
        if (j < text.size() && text[j] == u';')
            ++j;
        if (value >= 0x80 && value < 0xA0)
            value = kCp1252High[value - 0x80];
        code = value == 0 || value > 0x10FFFF ? 0xFFFD : char32_t(value);
        return j - i;
    }
    while (j < text.size() && IsAlnum(text[j]) && j - i < 32)
        ++j;
    if (j == i + 1)
        return 0;
    const auto it = Table().constFind(text.mid(i + 1, j - i - 1).toString());
    if (it == Table().constEnd())
        return 0;
    if (j < text.size() && text[j] == u';')
        ++j;
    code = it.value();
    return j - i;
}

} // namespace

QString HtmlEntities::Decode(QStringView text)
{
    if (!text.contains(u'&'))
        return text.toString();
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size();) {
        char32_t code = 0;
        const qsizetype length = text[i] == u'&' ? Reference(text, i, code) : 0;
        if (length == 0) {
            out.append(text[i++]);
            continue;
        }
        out.append(QString::fromUcs4(&code, 1));
        i += length;
    }
    return out;
}
