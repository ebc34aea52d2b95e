// The source editor on a page of a megabyte with 2,000 script blocks: from
// Init until the window is on screen with the lines it shows coloured
// (open_ms), and a replace-all of a word with 5,000 hits until the lines
// on screen are coloured again (replace_ms). Medians of five rounds.

#include "BenchPage.h"
#include "objects/HtmlSourceHighlighter.h"
#include "objects/frmDocumentInnerHTML.h"
#include "platform/PageScriptCall.h"
#include "support/UserQuestions.h"

#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextBlock>
#include <QWindow>

#include <cstdio>
#include <vector>

namespace {

constexpr int kBlocks = 2000;
constexpr int kRounds = 5;

// Each part: a table row with a script block of three lines, text with the
// word twice (three times in every other part), and filler up to 512 bytes.
QString megabytePage(int &hits)
{
    QString page = QStringLiteral("<HTML>\r\n<HEAD><TITLE>Big</TITLE></HEAD>\r\n<BODY>\r\n<TABLE border=0>\r\n");
    hits = 0;
    for (int i = 0; i < kBlocks; ++i) {
        QString part = QStringLiteral("<TR><TD class=cell width=\"50%\">\r\n<%\r\nIf Request(\"n\") = %1 Then\r\n"
                                      "Response.Write \"row %1\"\r\nEnd If %>\r\n</TD><TD>The garden of row %1 and "
                                      "its garden path</TD></TR>\r\n")
                           .arg(i);
        hits += 2;
        if (i % 2 == 0) {
            part += QStringLiteral("<!-- the garden's note -->\r\n");
            ++hits;
        }
        part += QStringLiteral("<P align=left>%1</P>\r\n").arg(QString(512 - part.size() - 25, QLatin1Char('x')));
        page += part;
    }
    return page + QStringLiteral("</TABLE>\r\n</BODY>\r\n</HTML>\r\n");
}

QPlainTextEdit *box(QWidget *form)
{
    return form->findChild<QPlainTextEdit *>(QStringLiteral("rtfInnerHTML"));
}

// Every line in the box's window has had its colours applied.
bool shownLinesPainted(QPlainTextEdit *edit)
{
    QTextBlock block = edit->cursorForPosition(QPoint(0, 0)).block();
    const QTextBlock last = edit->cursorForPosition(QPoint(0, edit->viewport()->height() - 1)).block();
    for (; block.isValid() && block.blockNumber() <= last.blockNumber(); block = block.next())
        if (!HtmlSourceHighlighter::IsPainted(block))
            return false;
    return true;
}

bool waitPainted(QPlainTextEdit *edit)
{
    return PageScriptCall::pumpUntil([&] { return shownLinesPainted(edit); }, 10000);
}

bool exposed(QWidget &form)
{
    return PageScriptCall::pumpUntil([&] { return form.isVisible() && form.windowHandle() && form.windowHandle()->isExposed(); },
                                     10000);
}

double openRound(const QString &page)
{
    QElapsedTimer timer;
    timer.start();
    frmDocumentInnerHTML form;
    form.Init(page, true, QStringLiteral("/big.asp"));
    form.show();
    if (!exposed(form) || !waitPainted(box(&form)))
        return -1;
    return double(timer.nsecsElapsed()) / 1e6;
}

double replaceRound(const QString &page, int expectedHits)
{
    frmDocumentInnerHTML form;
    form.Init(page, true, QStringLiteral("/big.asp"));
    form.show();
    if (!exposed(form) || !waitPainted(box(&form)))
        return -1;
    form.findChild<QLineEdit *>(QStringLiteral("txtWordToFind"))->setText(QStringLiteral("garden"));
    form.findChild<QLineEdit *>(QStringLiteral("txtReplace"))->setText(QStringLiteral("meadow"));
    form.findChild<QCheckBox *>(QStringLiteral("chkMatchCase"))->setChecked(true);
    UserQuestions::Script({UserQuestions::vbOK});
    QElapsedTimer timer;
    timer.start();
    const long hits = form.cmdReplaceAll_Click();
    QCoreApplication::processEvents();
    if (hits != expectedHits || !waitPainted(box(&form))) {
        std::fprintf(stderr, "replace-all found %ld hits\n", hits);
        return -1;
    }
    return double(timer.nsecsElapsed()) / 1e6;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    UserQuestions::Script({});
    int hits = 0;
    const QString page = megabytePage(hits);
    std::vector<double> opens, replaces;
    for (int round = 0; round < kRounds; ++round) {
        const double open = openRound(page);
        const double replace = replaceRound(page, hits);
        if (open < 0 || replace < 0)
            return 2;
        opens.push_back(open);
        replaces.push_back(replace);
    }
    std::printf("page_bytes %lld bytes\n", static_cast<long long>(page.size()));
    std::printf("replace_hits %d hits\n", hits);
    std::printf("open_ms %.1f ms\n", BenchPage::median(opens));
    std::printf("replace_ms %.1f ms\n", BenchPage::median(replaces));
    return 0;
}
