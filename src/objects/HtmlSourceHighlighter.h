#pragma once

#include <QColor>
#include <QSyntaxHighlighter>
#include <QTextCharFormat>

class QRegularExpression;

// Colours the HTML source in the source editor: the names of known tags
// dark red with their brackets blue, known attributes red, server script
// red with its VBScript and ASP words blue, comments green.
//
// Colouring works line by line (a text block at a time) and paints only the
// lines the editor says are on screen; every other line only has its state
// worked out (inside a tag, a script block or a comment), which is a few
// searches for '<' and '>'. That is what lets a page of a megabyte open
// and take a replace-all at once: the lines scrolled to later are painted
// when they come into view (PaintLines).
class HtmlSourceHighlighter : public QSyntaxHighlighter
{
    Q_OBJECT

public:
    explicit HtmlSourceHighlighter(QTextDocument *document);

    // The lines on screen, by block number; lines outside are not painted.
    void SetShownLines(int first, int last);
    // Paints the lines on screen that have not been painted yet.
    void PaintLines(int first, int last);
    // Whether the line has had its colours applied.
    static bool IsPainted(const QTextBlock &block);

    static const QColor TagName;
    static const QColor Bracket;
    static const QColor Attribute;
    static const QColor Script;
    static const QColor Keyword;
    static const QColor Comment;

protected:
    void highlightBlock(const QString &text) override;

private:
    qsizetype ScanText(const QString &text, qsizetype from, int &state);
    qsizetype ScanTag(const QString &text, qsizetype from, int &state);
    qsizetype ScanScript(const QString &text, qsizetype from, qsizetype searchFrom, int &state);
    qsizetype ScanComment(const QString &text, qsizetype from, qsizetype searchFrom, int &state);
    void PaintWords(const QString &text, qsizetype from, qsizetype to, const QRegularExpression &words,
                    const QTextCharFormat &format);
    void Paint(qsizetype from, qsizetype length, const QTextCharFormat &format);

    int m_firstShown = 0;
    int m_lastShown = 100;
    bool m_paint = false; // the line under work is on screen
    QTextCharFormat m_tagName, m_bracket, m_attribute, m_script, m_keyword, m_comment;
};
