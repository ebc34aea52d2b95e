// The pages of tests/fixtures/corpus, each edited as a user does: Edit, a
// word typed over the paragraph "kedit", Save. The server must then hold
// the page exactly as it was but for the word typed; a page without server
// script also gets the three tags the save writes into its head, and
// nothing else. Each shard reports every page that failed, with what went
// wrong: refused at Edit (the words shown), failed at Save (the error), or
// bytes that differ (where, with the bytes around it).

#include "../shell/SessionWindow.h"
#include "TestEnvironment.h"

#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QMap>
#include <QRegularExpression>

#include <cstdio>

using namespace session_test;

namespace {

const QString kFolder = QStringLiteral("corpus");
const QByteArray kEditText = "Edit me";
const QString kTyped = QStringLiteral("Typed");
constexpr int kShards = 8;

// The tags the save writes into the head of a page without server script,
// as the page engine spells them.
const QString kSaveTags[] = {
    QStringLiteral(R"(<meta http-equiv="Expires" content="-1">)"),
    QStringLiteral(R"(<meta http-equiv="Pragma" content="no-cache">)"),
    QStringLiteral(R"(<meta http-equiv="Last-Modified" content="[A-Z][a-z]{2}, \d{2} [A-Z][a-z]{2} \d{4} \d{2}:\d{2}:\d{2} GMT">)"),
};

// Pages the program may refuse at Edit, with the start of the message it
// must then show. Such a page that is edited after all is checked as any
// other.
struct ExpectedRefusal
{
    const char *page;
    const char *message;
    const char *reason;
};
const QList<ExpectedRefusal> kExpectedRefusals = {};

QString corpusSource()
{
    return TestEnvironment::fixturesFolder() + QStringLiteral("/corpus");
}

QStringList corpusPages()
{
    return QDir(corpusSource())
        .entryList({QStringLiteral("*.htm"), QStringLiteral("*.html"), QStringLiteral("*.asp")}, QDir::Files,
                   QDir::Name);
}

// The corpus goes into the web root of this program's servers once.
void installCorpus()
{
    static bool installed = false;
    if (installed)
        return;
    const QString from = corpusSource();
    QDirIterator it(from, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString source = it.next();
        if (source.endsWith(QLatin1String(".py")))
            continue;
        QFile file(source);
        if (!file.open(QIODevice::ReadOnly))
            throw std::runtime_error("cannot read " + source.toStdString());
        servers().writeWebFile(kFolder + source.mid(from.size()), file.readAll());
    }
    installed = true;
}

QByteArray printable(const QByteArray &bytes)
{
    QByteArray out;
    for (const char c : bytes) {
        const auto u = static_cast<unsigned char>(c);
        if (c == '\r')
            out += "\\r";
        else if (c == '\n')
            out += "\\n";
        else if (c == '\t')
            out += "\\t";
        else if (u < 0x20 || u >= 0x7f)
            out += "\\x" + QByteArray::number(u, 16).rightJustified(2, '0');
        else
            out += c;
    }
    return out;
}

QString firstDifference(const QByteArray &expected, const QByteArray &saved)
{
    qsizetype at = 0;
    while (at < expected.size() && at < saved.size() && expected[at] == saved[at])
        ++at;
    const qsizetype from = qMax<qsizetype>(0, at - 40);
    return QStringLiteral("bytes differ at offset %1 (expected %2 bytes, saved %3)\n"
                          "      expected: ...%4|%5...\n"
                          "      saved:    ...%6|%7...")
        .arg(at)
        .arg(expected.size())
        .arg(saved.size())
        .arg(QString::fromLatin1(printable(expected.mid(from, at - from))),
             QString::fromLatin1(printable(expected.mid(at, 60))),
             QString::fromLatin1(printable(saved.mid(from, at - from))),
             QString::fromLatin1(printable(saved.mid(at, 60))));
}

// Script blocks, include directives and runat=server elements, in the
// order of the page. Bytes are read as latin-1 so that each is one char.
QStringList serverPieces(const QByteArray &page)
{
    static const QRegularExpression piece(
        QStringLiteral(R"(<%.*?%>|<!--\s*#include\b.*?-->|<(script|object)\b[^>]*\brunat\s*=\s*["']?server\b[^>]*>.*?</\1\s*>)"),
        QRegularExpression::DotMatchesEverythingOption | QRegularExpression::CaseInsensitiveOption);
    QStringList pieces;
    for (const auto &match : piece.globalMatch(QString::fromLatin1(page)))
        pieces.append(match.captured());
    return pieces;
}

// The first piece of server script of the original that the saved page
// lacks, in order; empty when all are there.
QString missingPiece(const QByteArray &original, const QByteArray &saved)
{
    const QString text = QString::fromLatin1(saved);
    qsizetype from = 0;
    const QStringList pieces = serverPieces(original);
    for (int n = 0; n < pieces.size(); ++n) {
        const qsizetype at = text.indexOf(pieces[n], from);
        if (at < 0)
            return QStringLiteral("server script piece %1 of %2 missing or changed: %3")
                .arg(n + 1)
                .arg(pieces.size())
                .arg(QString::fromLatin1(printable(pieces[n].left(80).toLatin1())));
        from = at + pieces[n].size();
    }
    return {};
}

// What the program said, but for the note about the missing CMS file,
// which every Edit of the fixture site shows.
QString questionsShown()
{
    QStringList said;
    for (const UserQuestions::Shown &shown : UserQuestions::ShownSoFar()) {
        if (shown.text.startsWith(kNoCMSFile))
            continue;
        said.append(QStringLiteral("[%1] %2").arg(shown.kind, shown.text.left(300).simplified()));
    }
    return said.join(QStringLiteral("\n      "));
}

enum class Verdict { Passed, ExpectedRefusal, RefusedAtEdit, NotTyped, FailedAtSave, BytesDiffer };

const char *verdictName(Verdict v)
{
    switch (v) {
    case Verdict::Passed: return "passed";
    case Verdict::ExpectedRefusal: return "refused as expected";
    case Verdict::RefusedAtEdit: return "refused at Edit";
    case Verdict::NotTyped: return "typing not taken";
    case Verdict::FailedAtSave: return "failed at Save";
    case Verdict::BytesDiffer: return "bytes differ";
    }
    return "";
}

struct PageResult
{
    QString page;
    Verdict verdict = Verdict::Passed;
    QString detail;
};

const ExpectedRefusal *expectedRefusal(const QString &page)
{
    for (const ExpectedRefusal &r : kExpectedRefusals)
        if (page == QLatin1String(r.page))
            return &r;
    return nullptr;
}

QMap<QString, QByteArray> corpusOnServer()
{
    QMap<QString, QByteArray> files;
    const QString root = servers().webRoot() + QLatin1Char('/') + kFolder;
    QDirIterator it(root, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QFile file(it.next());
        if (file.open(QIODevice::ReadOnly))
            files.insert(it.filePath().mid(root.size()), file.readAll());
    }
    return files;
}

// The save's tags taken out of a page without server script; what is wrong
// with them, if anything.
QString takeOutSaveTags(QByteArray &saved)
{
    QString text = QString::fromLatin1(saved);
    QStringList wrong;
    for (const QString &pattern : kSaveTags) {
        const QRegularExpression tag(pattern);
        int count = 0;
        for (auto it = tag.globalMatch(text); it.hasNext(); it.next())
            ++count;
        if (count != 1)
            wrong.append(QStringLiteral("%1 times: %2").arg(count).arg(pattern));
        text.replace(tag, QString());
    }
    saved = text.toLatin1();
    return wrong.isEmpty() ? QString() : QStringLiteral("save tags wrong: ") + wrong.join(QStringLiteral("; "));
}

PageResult checkSaved(const QString &name, const QByteArray &original, const QByteArray &savedBytes)
{
    QByteArray expected = original;
    expected.replace(kEditText, kTyped.toLatin1());
    QByteArray saved = savedBytes;
    QStringList problems;
    if (!name.endsWith(QLatin1String(".asp"))) {
        const QString tags = takeOutSaveTags(saved);
        if (!tags.isEmpty())
            problems.append(tags);
    }
    if (saved != expected)
        problems.append(firstDifference(expected, saved));
    const QString missing = missingPiece(original, savedBytes);
    if (!missing.isEmpty())
        problems.append(missing);
    if (problems.isEmpty())
        return {name, Verdict::Passed, {}};
    return {name, Verdict::BytesDiffer, problems.join(QStringLiteral("\n    "))};
}

// A frameset has no paragraph of its own: Edit must stand on it, and
// leaving without a change must leave every file as it was.
PageResult enterOnly(Window &w, const QString &name)
{
    const QMap<QString, QByteArray> before = corpusOnServer();
    w.open(kFolder + QLatin1Char('/') + name);
    w.pressEdit();
    if (!w.editing())
        return {name, Verdict::RefusedAtEdit, questionsShown()};
    w.pressEdit();
    if (w.editing())
        return {name, Verdict::FailedAtSave, QStringLiteral("the session did not end: ") + questionsShown()};
    if (corpusOnServer() != before)
        return {name, Verdict::BytesDiffer, QStringLiteral("a file changed though nothing was typed")};
    return {name, Verdict::Passed, {}};
}

// Another test program on the same display takes the keyboard each time it
// opens a window. The X server then refuses our window the focus for as
// long as our last event is older than that change; a change of our own
// window's title brings a fresh event, after which the window can take the
// keyboard back.
void takeKeyboard(Window &w)
{
    const QString title = w.form.windowTitle();
    w.form.setWindowTitle(title + QLatin1Char(' '));
    PageScriptCall::pumpUntil([] { return false; }, 100);
    w.form.setWindowTitle(title);
    w.form.activateWindow();
    PageScriptCall::pumpUntil([&w] { return w.form.isActiveWindow(); }, 3000);
}

PageResult editPage(Window &w, const QString &name, const QByteArray &original)
{
    const QString path = kFolder + QLatin1Char('/') + name;
    w.open(path);
    w.pressEdit();
    if (!w.editing()) {
        const QString said = questionsShown();
        const ExpectedRefusal *expected = expectedRefusal(name);
        if (expected && said.contains(QLatin1String(expected->message)))
            return {name, Verdict::ExpectedRefusal, QLatin1String(expected->reason)};
        const std::string error = firstError();
        return {name, Verdict::RefusedAtEdit,
                said + (error.empty() ? QString() : QStringLiteral("\n      error: ") + QString::fromStdString(error))};
    }
    bool typed = false;
    for (int attempt = 0; attempt < 3 && !typed; ++attempt) {
        takeKeyboard(w);
        typed = w.typeInto(w.page(), QStringLiteral("kedit"), kTyped);
    }
    if (!typed)
        return {name, Verdict::NotTyped,
                QStringLiteral("the paragraph holds \"%1\" %2")
                    .arg(w.page().getElementById(QStringLiteral("kedit")).innerText(), questionsShown())};
    w.pressSave();
    if (errorDialogs() > 0)
        return {name, Verdict::FailedAtSave, QString::fromStdString(firstError())};
    if (w.editing())
        return {name, Verdict::FailedAtSave, QStringLiteral("the session still stands: ") + questionsShown()};
    const QByteArray saved = servers().readWebFile(path);
    if (saved == original)
        return {name, Verdict::FailedAtSave, QStringLiteral("the server still holds the page as it was: ") + questionsShown()};
    PageResult result = checkSaved(name, original, saved);
    if (result.verdict != Verdict::Passed && !questionsShown().isEmpty())
        result.detail += QStringLiteral("\n    shown: ") + questionsShown();
    return result;
}

// With CORPUS_SAVED_DIR set, every page saved is also written there, to be
// compared with its original at leisure.
void keepSaved(const QString &name)
{
    const QString folder = qEnvironmentVariable("CORPUS_SAVED_DIR");
    if (folder.isEmpty())
        return;
    QDir().mkpath(folder);
    QFile copy(folder + QLatin1Char('/') + name);
    if (copy.open(QIODevice::WriteOnly))
        copy.write(servers().readWebFile(kFolder + QLatin1Char('/') + name));
}

PageResult runPage(const QString &name)
{
    const QByteArray original = servers().readWebFile(kFolder + QLatin1Char('/') + name);
    if (original.isEmpty())
        return {name, Verdict::FailedAtSave, QStringLiteral("the page is not on the server")};
    writeStore();
    MError::ClearError();
    // Every question, the charset ones among them, is answered No (an
    // information box takes any answer as OK).
    UserQuestions::Script(QList<long>(24, UserQuestions::vbNo));
    Window w;
    PageResult result = original.contains(kEditText) ? editPage(w, name, original) : enterOnly(w, name);
    if (w.editing())
        w.pressEdit(); // No to the save question: the page stays as saved
    keepSaved(name);
    UserQuestions::EndScript();
    return result;
}

class CorpusGui : public ::testing::Test
{
protected:
    void SetUp() override
    {
        installCorpus();
        servers().clearFtpFaults();
    }
    void TearDown() override { UserQuestions::EndScript(); }

    void runShard(int shard)
    {
        const QStringList all = corpusPages();
        ASSERT_GE(all.size(), 110);
        const qsizetype first = all.size() * shard / kShards;
        const qsizetype last = all.size() * (shard + 1) / kShards;
        QMap<Verdict, int> counts;
        QStringList failures;
        for (qsizetype n = first; n < last; ++n) {
            QElapsedTimer clock;
            clock.start();
            const PageResult r = runPage(all[n]);
            ++counts[r.verdict];
            std::printf("CORPUS %-20s %5.1fs %s\n", verdictName(r.verdict), clock.elapsed() / 1000.0,
                        qPrintable(r.page));
            if (r.verdict != Verdict::Passed && r.verdict != Verdict::ExpectedRefusal)
                failures.append(QStringLiteral("%1: %2\n    %3").arg(r.page, QLatin1String(verdictName(r.verdict)),
                                                                 r.detail));
        }
        QStringList summary;
        for (auto it = counts.cbegin(); it != counts.cend(); ++it)
            summary.append(QStringLiteral("%1 %2").arg(it.value()).arg(QLatin1String(verdictName(it.key()))));
        std::printf("CORPUS shard %d of %d, pages %lld-%lld: %s\n", shard + 1, kShards, qlonglong(first + 1),
                    qlonglong(last), qPrintable(summary.join(QStringLiteral(", "))));
        std::fflush(stdout);
        EXPECT_TRUE(failures.isEmpty()) << failures.size() << " of " << (last - first) << " pages failed:\n"
                                        << failures.join(QLatin1Char('\n')).toStdString();
    }
};

} // namespace

TEST_F(CorpusGui, Shard1) { runShard(0); }
TEST_F(CorpusGui, Shard2) { runShard(1); }
TEST_F(CorpusGui, Shard3) { runShard(2); }
TEST_F(CorpusGui, Shard4) { runShard(3); }
TEST_F(CorpusGui, Shard5) { runShard(4); }
TEST_F(CorpusGui, Shard6) { runShard(5); }
TEST_F(CorpusGui, Shard7) { runShard(6); }
TEST_F(CorpusGui, Shard8) { runShard(7); }
