#include "aspfilter/ScriptGuard.h"

#include <QRegularExpression>

#include <map>

namespace {

// Where each piece starts, so that the three kinds come out in page order.
void AddBlocks(QStringView page, std::map<qsizetype, QString> &pieces)
{
    qsizetype at = page.indexOf(u"<%");
    while (at >= 0) {
        const qsizetype close = page.indexOf(u"%>", at + 2);
        const qsizetype end = close < 0 ? page.size() : close + 2;
        pieces[at] = page.mid(at, end - at).toString();
        at = page.indexOf(u"<%", end);
    }
}

void AddMatches(QStringView page, const QRegularExpression &pattern, std::map<qsizetype, QString> &pieces)
{
    auto it = pattern.globalMatch(page);
    while (it.hasNext()) {
        const QRegularExpressionMatch m = it.next();
        pieces.emplace(m.capturedStart(), m.captured());
    }
}

QString Shown(const QString &piece)
{
    return piece.size() > 60 ? piece.left(57) + QStringLiteral("...") : piece;
}

} // namespace

QStringList ScriptGuard::Pieces(QStringView page)
{
    static const QRegularExpression include(QStringLiteral("<!--\\s*#include\\b.*?-->"),
                                            QRegularExpression::CaseInsensitiveOption
                                                | QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression server(
        QStringLiteral("<(script|object)\\b[^>]*\\brunat\\s*=\\s*[\"']?server\\b[^>]*>.*?</\\1\\s*>"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    std::map<qsizetype, QString> pieces;
    AddBlocks(page, pieces);
    AddMatches(page, include, pieces);
    AddMatches(page, server, pieces);
    QStringList ordered;
    for (const auto &[at, piece] : pieces)
        ordered.append(piece);
    return ordered;
}

bool ScriptGuard::Keeps(QStringView original, QStringView outgoing, QString &difference, const QStringList &copies,
                        const QStringList &removed)
{
    const QStringList before = Pieces(original);
    const QStringList after = Pieces(outgoing);
    QStringList mayGo = removed;
    qsizetype i = 0;
    for (const QString &piece : after) {
        if (i < before.size() && before[i] == piece) {
            ++i;
            continue;
        }
        if (copies.contains(piece))
            continue;
        while (i < before.size() && before[i] != piece && mayGo.removeOne(before[i]))
            ++i;
        if (i < before.size() && before[i] == piece) {
            ++i;
            continue;
        }
        if (i >= before.size())
            difference = QStringLiteral("script added: ") + Shown(piece);
        else
            difference = QStringLiteral("script changed: ") + Shown(before[i]) + QStringLiteral(" became ") + Shown(piece);
        return false;
    }
    while (i < before.size() && mayGo.removeOne(before[i]))
        ++i;
    if (i < before.size()) {
        difference = QStringLiteral("script missing: ") + Shown(before[i]);
        return false;
    }
    return true;
}
