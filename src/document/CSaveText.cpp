#include "document/CSaveText.h"

#include "config/MGlobalProjectObjects.h"
#include "support/MError.h"

#include <QRegularExpression>
#include <QStringDecoder>
#include <QStringEncoder>

#include <tidy/tidy.h>
#include <tidy/tidybuffio.h>

namespace {

using G = MGlobalProjectObjects;

const long kTidyFailed = 10010; // our own number for a page Tidy refused
const QString kTidyPosition = QStringLiteral("CDocument.TidyUpHTML");

// Tidy's name of the output encoding for a TidyCharEncodingType. ASCII and
// Latin-1 let Tidy turn what they lack into references; every other type
// is written as UTF-8 here, since the text stays Unicode until the upload
// encodes it by the page's declared charset (windows-1252 included).
const char *TidyEncodingName(long type)
{
    switch (type) {
    case 0: return "ascii";
    case 1: return "latin1";
    default: return "utf8";
    }
}

// The codec that reads Tidy's output bytes back, matching TidyEncodingName.
QStringConverter::Encoding OutputEncoding(long type)
{
    return (type == 0 || type == 1) ? QStringConverter::Latin1 : QStringConverter::Utf8;
}

// Indent of the settings: 0 NOINDENT, 1 INDENTBLOCKS, 2 AUTOINDENT.
TidyTriState IndentOf(long scheme)
{
    switch (scheme) {
    case 1: return TidyYesState;
    case 2: return TidyAutoState;
    default: return TidyNoState;
    }
}

// The fixed options: a whole HTML document (never body only, never XHTML),
// no wrapping so scripts and long attribute values keep their lines, empty
// elements kept because a page author may rely on them, and no generator
// tag of Tidy's own in the head.
void SetFixedOptions(TidyDoc doc, long indentScheme)
{
    tidyOptSetBool(doc, TidyXhtmlOut, no);
    tidyOptSetBool(doc, TidyHtmlOut, yes);
    tidyOptSetInt(doc, TidyBodyOnly, TidyNoState);
    tidyOptSetInt(doc, TidyIndentContent, IndentOf(indentScheme));
    tidyOptSetInt(doc, TidyIndentSpaces, 4);
    tidyOptSetInt(doc, TidyTabSize, 4);
    tidyOptSetInt(doc, TidyWrapLen, 0);
    tidyOptSetBool(doc, TidyMark, no);
    tidyOptSetBool(doc, TidyDropEmptyElems, no);
    tidyOptSetBool(doc, TidyDropEmptyParas, no);
    tidyOptSetBool(doc, TidyQuiet, yes);
    tidyOptSetBool(doc, TidyShowWarnings, no);
    tidyOptSetInt(doc, TidyNewline, TidyLF);
}

} // namespace

long CSaveText::ReArrangeMetaNames(const QString &strIn, QString &strOut)
{
    const qsizetype head = strIn.indexOf(QLatin1String("<head"), 0, Qt::CaseInsensitive);
    const qsizetype headEnd = strIn.indexOf(QLatin1String("</head>"), 0, Qt::CaseInsensitive);
    if (headEnd < 6 || head < 1) {
        strOut = strIn;
        return 1;
    }
    static const QRegularExpression meta(QStringLiteral("(<META)(.|\\n).*?>"),
                                         QRegularExpression::CaseInsensitiveOption);
    const QString part = strIn.mid(head);
    QString result;
    result.reserve(part.size());
    qsizetype copied = 0;
    for (auto it = meta.globalMatch(part); it.hasNext();) {
        const QRegularExpressionMatch m = it.next();
        const QString tag = m.captured(0);
        // The blank in front keeps a "name=" inside another attribute's
        // value ("username=") from being taken for the attribute.
        const qsizetype name = tag.indexOf(QLatin1String(" name="), 0, Qt::CaseInsensitive);
        if (name <= 5)
            continue; // no name, or the name is already first
        QString namePart = tag.mid(name + 1, tag.size() - name - 2);
        QString before = tag.mid(6, name - 6);
        if (before.trimmed().isEmpty())
            continue;
        QString close = QStringLiteral(">");
        if (namePart.endsWith(QLatin1Char('/'))) { // "<meta ... />" keeps its slash at the end
            namePart = namePart.chopped(1).trimmed();
            close = QStringLiteral(" />");
        }
        result += part.mid(copied, m.capturedStart() - copied);
        result += m.captured(1) + QLatin1Char(' ') + namePart + QLatin1Char(' ') + before + close;
        copied = m.capturedEnd();
    }
    result += part.mid(copied);
    strOut = strIn.left(head) + result;
    return 1;
}

long CSaveText::TidyUpHTML(const QString &strIn, QString &strOut)
{
    QString text;
    if (ReArrangeMetaNames(strIn, text) != 1) {
        MError::LogError();
        text = strIn;
    }
    bool ok = false;
    const QString tidied = RunTidy(text, G::TidyCharEncodingType, G::TidyIndentScheme, ok);
    if (!ok) {
        // The save goes on with the untidied text; the reason only goes to
        // error.log, since the user can do nothing about it.
        MError::LogError();
        strOut = strIn;
        return 0;
    }
    strOut = CollapseBlankLines(tidied);
    return 1;
}

QString CSaveText::CharsetOfType(long type)
{
    switch (type) {
    case 0: return QStringLiteral("us-ascii");
    case 1: return QStringLiteral("iso-8859-1");
    case 3: return QStringLiteral("utf-8");
    case 6: return QStringLiteral("windows-1252");
    default: return QString();
    }
}

// Tidy always reads UTF-8 from memory (the text is Unicode here, so no
// character can be lost on the way in) and writes the encoding of the
// settings, turning what that encoding lacks into character references.
QString CSaveText::RunTidy(const QString &text, long encodingType, long indentScheme, bool &ok)
{
    TidyDoc doc = tidyCreate();
    TidyBuffer output;
    TidyBuffer errors;
    tidyBufInit(&output);
    tidyBufInit(&errors);
    tidySetErrorBuffer(doc, &errors);
    tidySetInCharEncoding(doc, "utf8");
    tidySetOutCharEncoding(doc, TidyEncodingName(encodingType));
    SetFixedOptions(doc, indentScheme);

    const QByteArray bytes = text.toUtf8();
    int rc = tidyParseString(doc, bytes.constData());
    if (rc >= 0 && rc < 2)
        rc = tidyCleanAndRepair(doc);
    if (rc >= 0 && rc < 2)
        rc = tidySaveBuffer(doc, &output);
    ok = rc >= 0 && rc < 2 && output.size > 0;
    QString result;
    if (ok) {
        QStringDecoder decode(OutputEncoding(encodingType));
        result = decode(QByteArrayView(reinterpret_cast<const char *>(output.bp), output.size));
    } else {
        const QString why = errors.bp ? QString::fromUtf8(reinterpret_cast<const char *>(errors.bp),
                                                          errors.size).trimmed()
                                       : QString();
        MError::SetError(kTidyFailed, QStringLiteral("HTML Tidy could not clean the page (%1): %2")
                                   .arg(rc).arg(why.left(300)),
                         kTidyPosition);
    }
    tidyBufFree(&output);
    tidyBufFree(&errors);
    tidyRelease(doc);
    return result;
}

// Tidy's blank lines between blocks go, and its four-blank indent steps
// become tabs: the file the author gets back is compact.
QString CSaveText::CollapseBlankLines(const QString &text)
{
    QString out = text;
    out.replace(QLatin1String("\n\n"), QLatin1String("\n"));
    out.replace(QLatin1String("    "), QLatin1String("\t"));
    return out;
}
