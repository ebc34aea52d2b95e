// The local part of a save on a 1 MB script page with 2,000 blocks of
// server script, in the real page engine: the page as the server sends it
// (its script's output between the marks) is loaded, lined up with its
// source, one word is changed, and the change is written into the source.
//
// Figures:
//   prepare_ms              lining up source and page at Edit
//   save_local_ms           at Save: diff, map, splice, guard and check
//   snapshot_ms             the engine's serialisation of the page
//   fidelity_bytes_changed  bytes of the result that differ from the source
//   save_whole_ms           the old way, for comparison: the engine's text,
//                           encoded (it loses the script and the markup)

#include "BenchPage.h"
#include "document/CPageEncoding.h"
#include "document/FaithfulSave.h"
#include "platform/HtmlDocument.h"
#include "platform/PageEngineEnvironment.h"
#include "platform/PageScriptCall.h"
#include "platform/WebBrowser.h"

#include <QApplication>
#include <QElapsedTimer>

#include <cstdio>
#include <vector>

namespace {

constexpr int kBlocks = 2000;

// About 1 MB of an author's page: upper-case tags, unquoted attributes,
// CRLF, windows-1252 text, and script in text, in tags and around rows.
QByteArray bigSource()
{
    QByteArray html = "<%@ Language=VBScript %>\r\n<HTML><HEAD><TITLE>Big</TITLE>\r\n"
                      "<META http-equiv=Content-Type content=\"text/html; charset=windows-1252\"></HEAD>\r\n<BODY>\r\n"
                      "<P ID=kedit>Edit me</P>\r\n";
    int blocks = 0;
    while (html.size() < 1024 * 1024) {
        const bool script = blocks < kBlocks - 1;
        html += "<TABLE BORDER=1><TR><TD CLASS=c>R\xE4ksm\xF6rg\xE5s &amp; co</TD><TD><A HREF=sida.htm>l\xE4nk</A></TD></TR>\r\n";
        html += script ? "<% If True Then %><TR><TD>rad</TD></TR><% End If %>\r\n" : "";
        html += "</TABLE>\r\n<P STYLE='color:blue'>Ett stycke text med <B>fet</B> och <I>kursiv</I> stil";
        html += script ? " <%= \"ord\" %>" : "";
        html += ".</P>\r\n";
        blocks += script ? 2 : 0;
    }
    return html + "</BODY></HTML>";
}

// What the server sends: the marks around each region and the script's
// output in place of the script.
QByteArray served(const QByteArray &source)
{
    QByteArray page = FaithfulSave::Marked(source);
    page.replace("<% If True Then %>", "").replace("<% End If %>", "").replace("<%= \"ord\" %>", "ord");
    page.replace("<%@ Language=VBScript %>", "");
    return page;
}

qsizetype changedBytes(const QByteArray &a, const QByteArray &b)
{
    qsizetype prefix = 0;
    while (prefix < a.size() && prefix < b.size() && a[prefix] == b[prefix])
        ++prefix;
    qsizetype suffix = 0;
    while (suffix < a.size() - prefix && suffix < b.size() - prefix && a[a.size() - 1 - suffix] == b[b.size() - 1 - suffix])
        ++suffix;
    return std::max(a.size(), b.size()) - prefix - suffix;
}

} // namespace

int main(int argc, char **argv)
{
    PageEngineEnvironment::prepare();
    QApplication app(argc, argv);
    const QByteArray source = bigSource();
    BenchPage page(served(source));
    if (!page.ok())
        return 1;
    WebBrowser &browser = page.browser();
    std::vector<double> prepare, save, snapshot, whole;
    qsizetype changed = -1;
    for (int round = 0; round < 5; ++round) {
        browser.Navigate2(page.url());
        PageScriptCall::pumpUntil([&] { return browser.ReadyState() != WebBrowser::ReadyStateComplete; }, 2000);
        if (!browser.waitUntilComplete())
            return 2;
        HtmlDocument doc = browser.Document();
        if (!PageScriptCall::pumpUntil([&] { return !doc.getElementById(QStringLiteral("kedit")).isNull(); }, 15000))
            return 2;
        FaithfulSave faithful;
        QString reason;
        QElapsedTimer timer;
        const QString atEdit = doc.snapshot();
        timer.start();
        if (faithful.Prepare(source, atEdit, reason) != 1) {
            std::fprintf(stderr, "refused at Edit: %s\n", qPrintable(reason));
            return 3;
        }
        prepare.push_back(timer.nsecsElapsed() / 1e6);
        doc.setDesignMode(QStringLiteral("On"));
        doc.getElementById(QStringLiteral("kedit")).setInnerText(QStringLiteral("Typed"));
        timer.restart();
        const QString atSave = doc.snapshot();
        snapshot.push_back(timer.nsecsElapsed() / 1e6);
        QByteArray result;
        timer.restart();
        if (faithful.Splice(atSave, result, reason) != 1) {
            std::fprintf(stderr, "not saved: %s\n", qPrintable(reason));
            return 4;
        }
        save.push_back(timer.nsecsElapsed() / 1e6);
        changed = changedBytes(source, result);
        timer.restart();
        const QByteArray old = CPageEncoding::Encode(doc.serialize());
        whole.push_back(timer.nsecsElapsed() / 1e6);
        if (old.isEmpty())
            return 5;
    }
    std::printf("page_bytes %lld bytes\n", qint64(source.size()));
    std::printf("script_blocks %d blocks\n", kBlocks);
    std::printf("prepare_ms %.1f ms\n", BenchPage::median(prepare));
    std::printf("save_local_ms %.1f ms\n", BenchPage::median(save));
    std::printf("snapshot_ms %.1f ms\n", BenchPage::median(snapshot));
    std::printf("fidelity_bytes_changed %lld bytes\n", qint64(changed));
    std::printf("save_whole_ms %.1f ms\n", BenchPage::median(whole));
    return 0;
}
