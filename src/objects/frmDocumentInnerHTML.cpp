#include "objects/frmDocumentInnerHTML.h"

#include "objects/HtmlSourceHighlighter.h"
#include "objects/SourceSearch.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTextBlock>
#include <QVBoxLayout>

#include <algorithm>
#include <vector>

namespace {

using Q = UserQuestions;

enum Text : long {
    txtOK = 13011,
    txtCancel = 13012,
    txtSearchNext = 18600,
    txtSearchWord = 18601,
    txtNoHits = 18602,
    txtSearchResult = 18603,
    txtReplaceQuestion = 18604,
    txtReplaceWord = 18605,
    txtSaveChanges = 18606,
    txtHTMLEditor = 18607,
    txtLine = 18608,
    txtPosition = 18609,
    txtHits = 18610,
    txtFind = 18611,
    txtReplace = 18612,
    txtReplaceAll = 18613,
    txtMatchCase = 18614,
    txtWholeWord = 18615,
    txtRegularExpression = 18616,
    txtGoToLine = 18617,
    txtLineNumber = 18618,
    txtBadExpression = 18619,
    txtFindWhat = 18620,
    txtReplaceWith = 18621,
};

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

QStringList &scriptedEdits()
{
    static QStringList edits;
    return edits;
}

bool &runUnderScript()
{
    static bool on = false;
    return on;
}

// Courier New where it is installed, else the system's own fixed font of
// the same size: tags line up either way.
QFont sourceFont()
{
    QFont font(QStringLiteral("Courier New"), 10);
    font.setStyleHint(QFont::TypeWriter);
    font.setFixedPitch(true);
    return font;
}

} // namespace

frmDocumentInnerHTML::frmDocumentInnerHTML(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmDocumentInnerHTML"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    auto *column = new QVBoxLayout(this);
    m_rtfInnerHTML = new QPlainTextEdit(this);
    m_rtfInnerHTML->setObjectName(QStringLiteral("rtfInnerHTML"));
    m_rtfInnerHTML->setFont(sourceFont());
    m_rtfInnerHTML->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_rtfInnerHTML->setTabStopDistance(m_rtfInnerHTML->fontMetrics().horizontalAdvance(QLatin1Char(' ')) * 4);
    m_highlighter = new HtmlSourceHighlighter(m_rtfInnerHTML->document());
    column->addWidget(m_rtfInnerHTML, 1);
    m_lblStatus = new QLabel(this);
    m_lblStatus->setObjectName(QStringLiteral("lblStatus"));
    column->addWidget(m_lblStatus);
    BuildSearchRow(column);
    BuildButtonRow(column);
    connect(m_rtfInnerHTML, &QPlainTextEdit::cursorPositionChanged, this, &frmDocumentInnerHTML::UpdateStatus);
    connect(m_rtfInnerHTML, &QPlainTextEdit::updateRequest, this, &frmDocumentInnerHTML::PaintShownLines);
    auto *goTo = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_G), this);
    connect(goTo, &QShortcut::activated, this, &frmDocumentInnerHTML::GoToLine);
    auto *find = new QShortcut(QKeySequence::Find, this);
    connect(find, &QShortcut::activated, this, [this] {
        m_txtWordToFind->setFocus();
        m_txtWordToFind->selectAll();
    });
    resize(900, 650);
    UpdateStatus();
}

frmDocumentInnerHTML::~frmDocumentInnerHTML() = default;

void frmDocumentInnerHTML::BuildSearchRow(QVBoxLayout *column)
{
    auto *row = new QHBoxLayout;
    auto field = [&](const char *name, long label) {
        auto *edit = new QLineEdit(this);
        edit->setObjectName(QLatin1String(name));
        auto *caption = new QLabel(L(label), this);
        caption->setBuddy(edit);
        row->addWidget(caption);
        row->addWidget(edit, 1);
        return edit;
    };
    m_txtWordToFind = field("txtWordToFind", txtFindWhat);
    m_txtReplace = field("txtReplace", txtReplaceWith);
    // Enter in the search box searches, as in any find box.
    connect(m_txtWordToFind, &QLineEdit::returnPressed, this, &frmDocumentInnerHTML::cmdFindWord_Click);
    column->addLayout(row);

    auto *options = new QHBoxLayout;
    auto check = [&](const char *name, long label) {
        auto *box = new QCheckBox(L(label), this);
        box->setObjectName(QLatin1String(name));
        options->addWidget(box);
        return box;
    };
    m_chkMatchCase = check("chkMatchCase", txtMatchCase);
    m_chkWholeWord = check("chkWholeWord", txtWholeWord);
    m_chkRegularExpression = check("chkRegularExpression", txtRegularExpression);
    options->addStretch(1);
    auto button = [&](const char *name, long label, long (frmDocumentInnerHTML::*click)()) {
        auto *b = new QPushButton(L(label), this);
        b->setObjectName(QLatin1String(name));
        b->setAutoDefault(false);
        connect(b, &QPushButton::clicked, this, [this, click] { (this->*click)(); });
        options->addWidget(b);
    };
    button("cmdFindWord", txtFind, &frmDocumentInnerHTML::cmdFindWord_Click);
    button("cmdReplace", txtReplace, &frmDocumentInnerHTML::cmdReplace_Click);
    button("cmdReplaceAll", txtReplaceAll, &frmDocumentInnerHTML::cmdReplaceAll_Click);
    column->addLayout(options);
}

void frmDocumentInnerHTML::BuildButtonRow(QVBoxLayout *column)
{
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    auto *ok = new QPushButton(L(txtOK), this);
    ok->setObjectName(QStringLiteral("cmdOK"));
    auto *cancel = new QPushButton(L(txtCancel), this);
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    // Enter belongs to the text: no button takes it.
    ok->setAutoDefault(false);
    cancel->setAutoDefault(false);
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    column->addLayout(buttons);
    connect(ok, &QPushButton::clicked, this, &frmDocumentInnerHTML::cmdOK_Click);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

// The source is shown as the file has it, without line breaks put in for
// reading: whatever the user leaves alone goes back byte for byte.
long frmDocumentInnerHTML::Init(const QString &HTMLCode_p, bool IsASP_p, const QString &strCaption_p)
{
    m_boolIsASP = IsASP_p;
    // The box works in plain line feeds; a source written with CR LF gets
    // them back in Text, so an unchanged line stays byte for byte.
    m_boolCRLF = HTMLCode_p.contains(QLatin1String("\r\n"));
    m_strResult = HTMLCode_p;
    m_rtfInnerHTML->setPlainText(QString(HTMLCode_p).replace(QLatin1String("\r\n"), QLatin1String("\n")));
    setWindowTitle(strCaption_p);
    return 1;
}

// Closing the window any other way than by OK leaves the text unused.
long frmDocumentInnerHTML::Show()
{
    m_boolCancelled = true;
    const auto run = [this]() -> long { return exec() == QDialog::Accepted ? Q::vbOK : Q::vbCancel; };
    const long answer = Q::Scripted() && runUnderScript() ? run() : Q::RunDialog(objectName(), Text(), run);
    if (answer != Q::vbOK)
        return -1;
    if (Q::Scripted() && !runUnderScript()) {
        if (!scriptedEdits().isEmpty())
            m_rtfInnerHTML->setPlainText(scriptedEdits().takeFirst().replace(QLatin1String("\r\n"), QLatin1String("\n")));
        cmdOK_Click();
    }
    m_boolCancelled = false;
    return 1;
}

QString frmDocumentInnerHTML::Text() const
{
    return m_strResult;
}

void frmDocumentInnerHTML::ScriptEdits(const QStringList &texts)
{
    scriptedEdits() = texts;
}

void frmDocumentInnerHTML::RunUnderScript(bool on)
{
    runUnderScript() = on;
}

QString frmDocumentInnerHTML::SaveStep(const QString &text, bool IsASP_p)
{
    if (IsASP_p)
        return text;
    constexpr qsizetype kWithin = 9; // the opening starts among the first characters
    for (const QLatin1String opening : {QLatin1String("<SCRIPT language=javascript"), QLatin1String("<STYLE>")}) {
        const QStringView start = QStringView(text).first(std::min(text.size(), kWithin - 1 + opening.size()));
        if (start.contains(opening, Qt::CaseInsensitive))
            return QStringLiteral("<P style=\"DISPLAY: none; LEFT: -100px; POSITION: relative; TOP: -100px\">_</P>")
                + text;
    }
    return text;
}

void frmDocumentInnerHTML::cmdOK_Click()
{
    QString text = BoxText();
    if (m_boolCRLF)
        text.replace(QLatin1Char('\n'), QLatin1String("\r\n"));
    m_strResult = SaveStep(text, m_boolIsASP);
    accept();
}

void frmDocumentInnerHTML::done(int result)
{
    m_boolCancelled = result != QDialog::Accepted;
    QDialog::done(result);
}

// Only the close box asks, and only about a text the user changed.
void frmDocumentInnerHTML::closeEvent(QCloseEvent *event)
{
    if (!m_rtfInnerHTML->document()->isModified()) {
        QDialog::closeEvent(event);
        return;
    }
    const long answer = Q::MsgBox(L(txtSaveChanges), Q::vbYesNoCancel | Q::vbQuestion, L(txtHTMLEditor));
    if (answer == Q::vbNo) {
        QDialog::closeEvent(event);
        return;
    }
    event->ignore();
    if (answer == Q::vbYes)
        cmdOK_Click();
}

void frmDocumentInnerHTML::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    m_rtfInnerHTML->setFocus();
    PaintShownLines();
}

void frmDocumentInnerHTML::UpdateStatus()
{
    const QTextCursor cursor = m_rtfInnerHTML->textCursor();
    m_lblStatus->setText(L(txtLine) + QString::number(cursor.blockNumber() + 1) + L(txtPosition)
                         + QString::number(cursor.positionInBlock()));
}

// The lines in the box's window get their colours; the rest wait until
// they are scrolled to.
void frmDocumentInnerHTML::PaintShownLines()
{
    if (m_boolPainting)
        return;
    m_boolPainting = true;
    const int first = m_rtfInnerHTML->cursorForPosition(QPoint(0, 0)).blockNumber();
    const int lineHeight = std::max(1, m_rtfInnerHTML->fontMetrics().lineSpacing());
    m_highlighter->PaintLines(first, first + m_rtfInnerHTML->viewport()->height() / lineHeight + 1);
    m_boolPainting = false;
}

QString frmDocumentInnerHTML::BoxText() const
{
    QString text = m_rtfInnerHTML->document()->toRawText();
    text.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
    return text;
}

void frmDocumentInnerHTML::Select(qsizetype start, qsizetype length)
{
    QTextCursor cursor(m_rtfInnerHTML->document());
    cursor.setPosition(int(start));
    cursor.setPosition(int(start + length), QTextCursor::KeepAnchor);
    m_rtfInnerHTML->setTextCursor(cursor);
    m_rtfInnerHTML->ensureCursorVisible();
}

bool frmDocumentInnerHTML::Usable(const SourceSearch &search)
{
    if (search.IsValid())
        return true;
    if (!search.Error().isEmpty())
        Q::MsgBox(L(txtBadExpression).arg(search.Error()), Q::vbExclamation, L(txtSearchWord));
    return false;
}

void frmDocumentInnerHTML::TellHits(long hits)
{
    Q::MsgBox(hits == 0 ? L(txtNoHits) : QString::number(hits) + QLatin1Char(' ') + L(txtHits), Q::vbInformation,
              L(txtSearchResult));
}

namespace {

SourceSearch searchOf(const QLineEdit *word, const QCheckBox *matchCase, const QCheckBox *wholeWord,
                      const QCheckBox *regularExpression)
{
    return SourceSearch(word->text(), {matchCase->isChecked(), wholeWord->isChecked(), regularExpression->isChecked()});
}

} // namespace

long frmDocumentInnerHTML::cmdFindWord_Click()
{
    const SourceSearch search = searchOf(m_txtWordToFind, m_chkMatchCase, m_chkWholeWord, m_chkRegularExpression);
    if (!Usable(search))
        return -1;
    long hits = 0;
    for (const SourceSearch::Hit &hit : search.Hits(BoxText())) {
        ++hits;
        Select(hit.start, hit.length);
        if (Q::MsgBox(L(txtSearchNext), Q::vbYesNo | Q::vbQuestion, L(txtSearchWord)) != Q::vbYes)
            break;
    }
    TellHits(hits);
    return hits;
}

// The hits are those of the text as it was when the button was pressed;
// every replacement lies before the hit under question, so the box's
// position of a hit is its position in that text moved by what the
// replacements so far added or took away.
long frmDocumentInnerHTML::cmdReplace_Click()
{
    const SourceSearch search = searchOf(m_txtWordToFind, m_chkMatchCase, m_chkWholeWord, m_chkRegularExpression);
    if (!Usable(search))
        return -1;
    long hits = 0;
    qsizetype shift = 0;
    for (const SourceSearch::Hit &hit : search.Hits(BoxText())) {
        ++hits;
        Select(hit.start + shift, hit.length);
        const long answer = Q::MsgBox(L(txtReplaceQuestion), Q::vbYesNoCancel | Q::vbQuestion, L(txtReplaceWord));
        if (answer == Q::vbCancel)
            break;
        if (answer != Q::vbYes)
            continue;
        const QString with = search.Replacement(hit, m_txtReplace->text());
        m_rtfInnerHTML->textCursor().insertText(with);
        shift += with.size() - hit.length;
    }
    TellHits(hits);
    return hits;
}

// From the last hit to the first, so that no replacement moves a hit still
// to come; one edit block makes it one step of Undo.
long frmDocumentInnerHTML::cmdReplaceAll_Click()
{
    const SourceSearch search = searchOf(m_txtWordToFind, m_chkMatchCase, m_chkWholeWord, m_chkRegularExpression);
    if (!Usable(search))
        return -1;
    const std::vector<SourceSearch::Hit> hits = search.Hits(BoxText());
    const QString replaceWith = m_txtReplace->text();
    QTextCursor cursor(m_rtfInnerHTML->document());
    cursor.beginEditBlock();
    for (auto hit = hits.rbegin(); hit != hits.rend(); ++hit) {
        cursor.setPosition(int(hit->start));
        cursor.setPosition(int(hit->start + hit->length), QTextCursor::KeepAnchor);
        cursor.insertText(search.Replacement(*hit, replaceWith));
    }
    cursor.endEditBlock();
    TellHits(long(hits.size()));
    return long(hits.size());
}

// A number past the last line goes to the last line.
long frmDocumentInnerHTML::GoToLine()
{
    QString entry = QString::number(m_rtfInnerHTML->textCursor().blockNumber() + 1);
    if (Q::InputBox(L(txtLineNumber), L(txtGoToLine), false, entry) != Q::vbOK)
        return -1;
    bool number = false;
    const int line = entry.trimmed().toInt(&number);
    if (!number || line < 1)
        return -1;
    QTextDocument *document = m_rtfInnerHTML->document();
    const QTextBlock block = document->findBlockByNumber(std::min(line, document->blockCount()) - 1);
    QTextCursor cursor(block);
    m_rtfInnerHTML->setTextCursor(cursor);
    m_rtfInnerHTML->centerCursor();
    m_rtfInnerHTML->setFocus();
    return block.blockNumber() + 1;
}
