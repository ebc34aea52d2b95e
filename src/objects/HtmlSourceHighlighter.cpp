#include "objects/HtmlSourceHighlighter.h"

#include <QRegularExpression>
#include <QStringList>
#include <QTextBlockUserData>

// Colours as the editor has always shown them: names dark red, brackets
// blue, attributes and server script red. Script words are blue, as script
// editors have long shown keywords, so they stand out of the red block.
// Comments are green: nothing else is, so a commented-out part reads as
// set aside at a glance, and green is what most source editors use for it.
const QColor HtmlSourceHighlighter::TagName(0x80, 0x00, 0x00);
const QColor HtmlSourceHighlighter::Bracket(0x00, 0x00, 0xFF);
const QColor HtmlSourceHighlighter::Attribute(0xFF, 0x00, 0x00);
const QColor HtmlSourceHighlighter::Script(0xFF, 0x00, 0x00);
const QColor HtmlSourceHighlighter::Keyword(0x00, 0x00, 0xFF);
const QColor HtmlSourceHighlighter::Comment(0x00, 0x80, 0x00);

namespace {

// The state a line hands to the next: what it ends inside of.
enum State : int {
    InText = 0,
    InScript = 1,
    InComment = 2,
    InTag = 3,
    ModeMask = 3,
    BlueClose = 4,    // the tag is a known one: its '>' is blue
    ScriptInTag = 8,  // the script block stands inside a tag
};

// Marks a line whose colours have been applied.
class Painted : public QTextBlockUserData
{
};

const QString kTags = QStringLiteral(
    "A|ABBR|ABOVE|ACRONYM|ADDRESS|APPLET|ARRAY|AREA|B|BASE|BASEFONT|BDO|BGSOUND|BIG|BLOCKQUOTE|BODY|BOX|BR|BLINK|"
    "BUTTON|CAPTION|CENTER|CITE|CODE|COL|COLGROUP|COMMENT|DD|DEL|DFN|DIR|DIV|DL|DT|EM|EMBED|FIELDSET|FIG|FONT|FORM|"
    "FRAME|FRAMESET|H1|H2|H3|H4|H5|H6|HEAD|HR|HTML|I|IFRAME|ILAYER|IMG|INPUT|INS|ISINDEX|KBD|LABEL|LAYER|LEGEND|LI|"
    "LINK|LISTING|MAP|MARQUEE|MENU|META|MULTICOL|NEXTID|NOBR|NOFRAMES|NOLAYER|NOTE|NOSCRIPT|OBJECT|OL|OPTION|"
    "OPTGROUP|P|PARAM|PRE|Q|QUOTE|RANGE|ROOT|S|SAMP|SCRIPT|SELECT|SMALL|SOUND|SPACER|SPAN|SQRT|STRIKE|STRONG|STYLE|"
    "SUB|TABLE|TBODY|TD|TEXT|TEXTAREA|TFOOT|TH|THEAD|TITLE|TR|TT|U|UL|VAR|WBR|XMP");

// Attributes that take a value are known with their '='; the others stand
// alone and end at a word's end.
const QString kAttributes = QStringLiteral(
    "ABBR=|ACCEPT-CHARSET=|ACCEPT=|ACCESSKEY=|ACTION=|ALIGN=|ALINK=|ALT=|ARCHIVE=|AXIS=|BACKGROUND=|BEHAVIOR|BELOW|"
    "BGCOLOR=|BORDER=|CELLPADDING=|CELLSPACING=|CHAR=|CHAROFF=|CHARSET=|CHECKED|CITE=|CLASS=|CLASSID=|CLEAR=|CODE=|"
    "CODEBASE=|CODETYPE=|COLOR=|COLS=|COLSPAN=|COMPACT|CONTENT=|COORDS=|DATA=|DATETIME=|DECLARE|DEFER|DIR=|DISABLED|"
    "ENCTYPE=|FACE=|FOR=|FRAME=|FRAMEBORDER=|FRAMESPACING=|HEADERS=|HEIGHT=|HIDDEN=|HREF=|HREFLANG=|HSPACE=|"
    "HTTP-EQUIV=|ID=|ISMAP|LABEL=|LANG=|LANGUAGE=|LINK=|LOOP=|LONGDESC=|MAILTO=|MARGINHEIGHT=|MARGINWIDTH=|"
    "MAXLENGTH=|MEDIA=|METHOD=|MULTIPLE|NAME=|NOHREF|NORESIZE|NOSHADE|OBJECT=|ONBLUR=|ONCHANGE=|ONFOCUS=|"
    "ONKEYDOWN=|ONKEYPRESS=|ONKEYUP=|ONLOAD=|ONRESET=|ONSELECT=|ONSUBMIT=|ONUNLOAD=|ONCLICK=|ONDBLCLICK=|"
    "ONMOUSEDOWN=|ONMOUSEMOVE=|ONMOUSEOUT=|ONMOUSEOVER=|ONMOUSEUP=|PROFILE=|PROMPT=|READONLY|REL=|REV=|ROWS=|"
    "ROWSPAN=|RULES=|SCHEME=|SCOPE=|SCROLLING=|SELECTED|SHAPE=|SIZE=|SPAN=|SRC=|STANDBY=|START=|STYLE=|SUMMARY=|"
    "TABINDEX=|TARGET=|TEXT=|TITLE=|TOPMARGIN=|TYPE=|URL=|USEMAP=|VALIGN=|VALUE=|VALUETYPE=|VERSION=|VLINK=|"
    "VSPACE=|WIDTH=");

const QString kScriptWords = QStringLiteral(
    "Abs|Array|Asc|Atn|Avg|CBool|CByte|CCur|CDate|CDbl|Chr|CInt|CLng|Cos|CSng|CStr|Date|DateAdd|DateDiff|DatePart|"
    "DateSerial|DateValue|Day|Eval|Exp|Filter|Fix|FormatCurrency|FormatDateTime|FormatNumber|FormatPercent|"
    "GetObject|GetRef|Hex|Hour|InputBox|InStr|InstrRev|Int|IsArray|IsDate|IsEmpty|IsNull|IsNumeric|IsObject|Join|"
    "LBound|LCase|Left|Len|LoadPicture|Log|LTrim|Mid|Minute|Month|MonthName|MsgBox|Now|Oct|Replace|RGB|Right|Rnd|"
    "Round|RTrim|ScriptEngine|ScriptEngineBuildVersion|ScriptEngineMajorVersion|ScriptEngineMinorVersion|Second|"
    "Sgn|Sin|Space|Split|Sqr|StrComp|String|StrReverse|Tan|Time|Timer|TimeSerial|TimeValue|Trim|TypeName|UBound|"
    "UCase|VarType|Weekday|WeekdayName|Year|Call|Case|Class|Const|Dim|Do|Else|ElseIf|End|Erase|Error|Execute|Exit|"
    "Explicit|For|ForEach|Function|Get|If|Let|Loop|Next|On|Option|Private|Property|Public|Set|Randomize|ReDim|Rem|"
    "Resume|Select|Sub|Then|Wend|While|With|Application|Dictionary|Err|FileSystemObject|Match|Matches|"
    "ObjectContext|RegExp|Request|Response|Scripting|Server|Session|Abandon|AddHeader|AppendToLog|BinaryRead|"
    "BinaryWrite|Buffer|CacheControl|Charset|Clear|ClientCertificate|Close|CodePage|Contents|ContentType|Cookies|"
    "CreateObject|Description|Expires|ExpiresAbsolute|Fields|FirstIndex|Flush|Form|Global|HelpContext|HelpFile|"
    "HTMLEncode|IgnoreCase|Initialize|IsClientConnected|LCID|Length|Lock|MapPath|Number|OnEnd|OnStart|"
    "OnTransactionCommit|OnTransactionAbort|Open|Pattern|Pics|QueryString|Raise|Redirect|ScriptTimeout|"
    "ServerVariables|SessionID|SetComplete|SetAbort|Source|StaticObjects|Status|Terminate|Test|Timeout|TotalBytes|"
    "Unlock|URLEncode|Value|Write");

// A known tag's opening: '<' or '</' and the name, which must end there
// ("<TDX" is no TD).
const QRegularExpression &tagPattern()
{
    static const QRegularExpression pattern(QStringLiteral("</?(?:%1)\\b").arg(kTags),
                                            QRegularExpression::CaseInsensitiveOption);
    return pattern;
}

// A word that merely ends in an attribute's name ("data-width=") is not it.
const QRegularExpression &attributePattern()
{
    static const QRegularExpression pattern = [] {
        QStringList entries;
        for (const QString &entry : kAttributes.split(QLatin1Char('|')))
            entries.append(QRegularExpression::escape(entry) + (entry.endsWith(QLatin1Char('=')) ? "" : "\\b"));
        return QRegularExpression(QStringLiteral("(?<![\\w-])(?:%1)").arg(entries.join(QLatin1Char('|'))),
                                  QRegularExpression::CaseInsensitiveOption);
    }();
    return pattern;
}

// Whole words only, so that "Document" shows no "Do".
const QRegularExpression &scriptWordPattern()
{
    static const QRegularExpression pattern(QStringLiteral("\\b(?:%1)\\b").arg(kScriptWords),
                                            QRegularExpression::CaseInsensitiveOption);
    return pattern;
}

QTextCharFormat coloured(const QColor &colour)
{
    QTextCharFormat format;
    format.setForeground(colour);
    return format;
}

} // namespace

HtmlSourceHighlighter::HtmlSourceHighlighter(QTextDocument *document)
    : QSyntaxHighlighter(document)
    , m_tagName(coloured(TagName))
    , m_bracket(coloured(Bracket))
    , m_attribute(coloured(Attribute))
    , m_script(coloured(Script))
    , m_keyword(coloured(Keyword))
    , m_comment(coloured(Comment))
{
    // Built once for every editor: the alternations are long.
    tagPattern();
    attributePattern();
    scriptWordPattern();
}

void HtmlSourceHighlighter::SetShownLines(int first, int last)
{
    m_firstShown = first;
    m_lastShown = last;
}

void HtmlSourceHighlighter::PaintLines(int first, int last)
{
    SetShownLines(first, last);
    for (QTextBlock block = document()->findBlockByNumber(first); block.isValid() && block.blockNumber() <= last;
         block = block.next()) {
        if (!IsPainted(block))
            rehighlightBlock(block);
    }
}

bool HtmlSourceHighlighter::IsPainted(const QTextBlock &block)
{
    return dynamic_cast<Painted *>(block.userData()) != nullptr;
}

void HtmlSourceHighlighter::highlightBlock(const QString &text)
{
    const int number = currentBlock().blockNumber();
    m_paint = number >= m_firstShown && number <= m_lastShown;
    int state = std::max(previousBlockState(), 0);
    qsizetype pos = 0;
    while (pos < text.size()) {
        switch (state & ModeMask) {
        case InScript:
            pos = ScanScript(text, pos, pos, state);
            break;
        case InComment:
            pos = ScanComment(text, pos, pos, state);
            break;
        case InTag:
            pos = ScanTag(text, pos, state);
            break;
        default:
            pos = ScanText(text, pos, state);
        }
    }
    setCurrentBlockState(state);
    if (m_paint != IsPainted(currentBlock()))
        setCurrentBlockUserData(m_paint ? new Painted : nullptr);
}

// Text up to the next '<', and what that '<' opens.
qsizetype HtmlSourceHighlighter::ScanText(const QString &text, qsizetype from, int &state)
{
    const qsizetype lt = text.indexOf(QLatin1Char('<'), from);
    if (lt < 0)
        return text.size();
    const QStringView rest = QStringView(text).mid(lt);
    if (rest.startsWith(QLatin1String("<%"))) {
        state = InScript;
        return ScanScript(text, lt, lt + 2, state);
    }
    if (rest.startsWith(QLatin1String("<!--"))) {
        state = InComment;
        return ScanComment(text, lt, lt + 4, state);
    }
    const QRegularExpressionMatch tag =
        tagPattern().match(QStringView(text), lt, QRegularExpression::NormalMatch, QRegularExpression::AnchorAtOffsetMatchOption);
    if (tag.hasMatch()) {
        const qsizetype open = rest.startsWith(QLatin1String("</")) ? 2 : 1;
        Paint(lt, open, m_bracket);
        Paint(lt + open, tag.capturedLength() - open, m_tagName);
        state = InTag | BlueClose;
        return tag.capturedEnd();
    }
    // Another tag's attributes are coloured all the same; a '<' in the
    // page's words opens nothing.
    if (rest.size() > 1 && (rest.at(1).isLetter() || rest.at(1) == QLatin1Char('/') || rest.at(1) == QLatin1Char('!')))
        state = InTag;
    return lt + 1;
}

// Attributes up to the tag's '>', or up to server script written into it.
qsizetype HtmlSourceHighlighter::ScanTag(const QString &text, qsizetype from, int &state)
{
    const qsizetype gt = text.indexOf(QLatin1Char('>'), from);
    const qsizetype script = text.indexOf(QLatin1String("<%"), from);
    if (script >= 0 && (gt < 0 || script < gt)) {
        PaintWords(text, from, script, attributePattern(), m_attribute);
        state = InScript | ScriptInTag | (state & BlueClose);
        return ScanScript(text, script, script + 2, state);
    }
    const qsizetype end = gt < 0 ? text.size() : gt;
    PaintWords(text, from, end, attributePattern(), m_attribute);
    if (gt < 0)
        return end;
    if (state & BlueClose)
        Paint(gt, 1, m_bracket);
    state = InText;
    return gt + 1;
}

qsizetype HtmlSourceHighlighter::ScanScript(const QString &text, qsizetype from, qsizetype searchFrom, int &state)
{
    const qsizetype close = text.indexOf(QLatin1String("%>"), searchFrom);
    const qsizetype end = close < 0 ? text.size() : close + 2;
    Paint(from, end - from, m_script);
    PaintWords(text, from, end, scriptWordPattern(), m_keyword);
    if (close >= 0)
        state = (state & ScriptInTag) ? (InTag | (state & BlueClose)) : InText;
    return end;
}

qsizetype HtmlSourceHighlighter::ScanComment(const QString &text, qsizetype from, qsizetype searchFrom, int &state)
{
    const qsizetype close = text.indexOf(QLatin1String("-->"), searchFrom);
    const qsizetype end = close < 0 ? text.size() : close + 3;
    Paint(from, end - from, m_comment);
    if (close >= 0)
        state = InText;
    return end;
}

void HtmlSourceHighlighter::PaintWords(const QString &text, qsizetype from, qsizetype to,
                                       const QRegularExpression &words, const QTextCharFormat &format)
{
    if (!m_paint || to <= from)
        return;
    QRegularExpressionMatchIterator it = words.globalMatch(QStringView(text).first(to), from);
    while (it.hasNext()) {
        const QRegularExpressionMatch word = it.next();
        Paint(word.capturedStart(), word.capturedLength(), format);
    }
}

void HtmlSourceHighlighter::Paint(qsizetype from, qsizetype length, const QTextCharFormat &format)
{
    if (m_paint && length > 0)
        setFormat(int(from), int(length), format);
}
