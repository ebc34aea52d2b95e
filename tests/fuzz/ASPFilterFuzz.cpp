// Builds a page from the fuzzer's bytes, each byte choosing a piece of HTML
// or script, and checks that the filter gives the page back exactly.

#include "aspfilter/CASPFilter.h"
#include "support/MError.h"

#include <QString>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

const char *const Pieces[] = {
    "<%",  "%>", "<%=", "<%@ LANGUAGE=VBScript %>", "<%@ EnableSessionState=False %>",
    "Option Explicit", "<!--", "-->", "<!--#include file=\"a.inc\"-->", "#include", "<HTML>",
    "</HTML>", "<HTML lang=en>", "<BODY>", "</BODY>", "<TABLE>", "</TABLE>", "<TD width=\"", "\">",
    "<A href=\"", "<IMG src=\"", "<P>", "</P>", "<", ">", "\"", "'", " ", "\n", "\r\n", "\t",
    "\v", "x", "now", "response.write \"<B>\"", "For i = 1 To 3", "Next", "<% %>", "%", "@",
    "language", "<SPAN>", "</SPAN>", "\xc3\xa5",
};
constexpr size_t PieceCount = sizeof(Pieces) / sizeof(Pieces[0]);

QString pageFrom(const uint8_t *data, size_t size)
{
    QByteArray bytes;
    for (size_t i = 0; i < size; ++i) {
        bytes += Pieces[data[i] % PieceCount];
    }
    return QString::fromUtf8(bytes);
}

[[noreturn]] void fail(const char *what, const QString &page)
{
    std::fprintf(stderr, "%s\n--- page ---\n%s\n", what, page.toUtf8().constData());
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString page = pageFrom(data, size);
    CASPFilter filter;
    QString text = page;
    MError::ClearError();
    const long in = filter.FilterIn(text);
    if (in == 0) {
        if (MError::ErrorNumber() != -26060 || text != page) {
            fail("refused without the table error, or changed", page);
        }
        return 0;
    }
    if (in == -1 && text != page) {
        fail("a page without script was changed", page);
    }
    const long out = filter.FilterOut(text, true);
    if (out != (in == 1 ? 1 : 2) || text != page) {
        fail("round trip lost the page", page);
    }
    return 0;
}
