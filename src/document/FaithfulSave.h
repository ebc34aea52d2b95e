#pragma once

#include "aspfilter/ScriptRegion.h"
#include "document/PageToken.h"

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QStringList>
#include <QList>
#include <QString>

#include <vector>

// Writes back only what the user changed.
//
// The page engine's serialisation is how the program sees a page, never
// what it sends: it rewrites the author's markup (case, quotes, entities,
// line ends, implied tags) and knows nothing of the server's script. So
// the save works on the file's own bytes as the server held them at Edit:
//
//  1. At Edit, the source and the engine's view of the loaded page are
//     read into tokens (PageTokenizer) and lined up (TokenDiff). Server
//     script is one token on each side: its region in the source, the
//     stretch between its marker comments in the view (ScriptRegions).
//     A script page whose regions can't all be found in the view, in
//     order, is refused here, before the user has typed anything.
//  2. At Save, the engine's view as it is now is lined up with the view at
//     Edit. Each run of tokens that changed is put in place of the source
//     bytes of the tokens it replaces; an insertion goes behind the source
//     of the token before it. A tag whose attributes changed keeps its own
//     spelling and gets only the changed values, also where what follows
//     it changed too (start tags of one element are lined up by name
//     inside a changed run). An insertion that could stand a token earlier
//     or later goes where it is whole: a new row before the author's <TR>,
//     not inside it. Rows and cells the table commands put in come marked
//     (AddedMark) and are never lined up with the author's: a new row can't
//     take his tags, even where it looks more like his row than his row
//     does after the change. Script in the new text is copied from the source,
//     never taken from the engine.
//  3. The result is checked twice before anything is sent: ScriptGuard
//     compares its script with the original's, and the result is lined up
//     with the engine's view once more: it must match that view at least
//     as well as the original matched the view at Edit (white space between
//     two tags left out of both counts).
//
// New text is written in the page's charset; characters it lacks become
// numeric references. Everything else keeps its bytes.
//
// Of the two ways to find source positions (a three-way merge of token
// streams, or the positions of a standards parser run over the source), the
// merge was chosen: it needs no parser of its own beyond a tokenizer, and it
// treats the engine as the only judge of what a page means.
class FaithfulSave
{
public:
    // The attribute the page's reader sets, for the time of the reading,
    // on each element the editor's commands put into the page. It never
    // reaches the file: the save takes it out of the view before anything.
    static constexpr const char *AddedMark = "data-keldaadded";

    // 1 ready; 0 not possible, with the reason in words for the user.
    long Prepare(const QByteArray &original, const QString &engineView, QString &reason);
    // 1 with the bytes to send; 0 with the reason, and nothing may be sent.
    long Splice(const QString &engineView, QByteArray &result, QString &reason) const;

    // The user pasted a copy of the region's output: its script may stand
    // in the page once more, as a copy of the source's block.
    void AllowCopyOf(int region);

    // The source of each script region as the page's charset reads it, by
    // region number (its marks carry twice the number).
    QStringList RegionSources() const;
    // The user's deliberate change of a region: its source edited by hand,
    // or, under a number beyond the page's regions, a pasted copy that is a
    // block of its own. Save writes the text there, and the guard expects
    // it there and nowhere else. A region whose marks left the page was
    // deleted by the user; its script is expected to be gone.
    void SetRegionText(int region, const QString &text);

    bool IsPrepared() const { return m_prepared; }
    bool HasScript() const { return !m_regions.isEmpty(); }
    const QByteArray &Original() const { return m_original; }
    const QString &Charset() const { return m_charset; }

    // The page as the server should run it once: every region between its
    // marker comments. Empty when the page has no script.
    static QByteArray Marked(const QByteArray &original);

private:
    struct Hunk
    {
        int a0, a1; // the view at Edit
        int b0, b1; // the view at Save
    };

    QList<PageToken> SourceTokens(const QString &source, QList<ScriptRegion> &regions) const;
    static bool ViewTokens(const QString &view, QList<PageToken> &tokens, QString &reason);
    static QString WithoutAddedMarks(const QString &view, QSet<qsizetype> &added);
    static QList<PageToken> KeyedApart(QList<PageToken> tokens, const QString &view, const QSet<qsizetype> &added);
    static std::vector<int> LineUp(const QList<PageToken> &a, const QList<PageToken> &b);
    static std::vector<quint64> Keys(const QList<PageToken> &tokens);
    static QList<PageToken> WithoutSpaceBetweenMarkup(const QList<PageToken> &tokens);
    static int Unmatched(const std::vector<int> &match, size_t otherSize);
    long CheckRegions(QString &reason) const;
    void KeepBytes(QString &out, qsizetype from, qsizetype to, QHash<qsizetype, quint64> &written) const;
    QString Expected() const;
    QStringList Deleted(const QList<PageToken> &view) const;
    long CheckMapping(QString &reason) const;
    static QList<Hunk> Hunks(const std::vector<int> &match, const QList<PageToken> &a, const QList<PageToken> &b);
    void PairTags(std::vector<int> &match, const QList<PageToken> &now, const QString &view) const;
    void SlideInsertions(std::vector<int> &match, const QList<PageToken> &now, const QString &view) const;
    bool Place(const Hunk &hunk, const QString &view, const QList<PageToken> &tokens, qsizetype &start,
               qsizetype &end, QString &text, QHash<qsizetype, quint64> &regionsAt) const;
    QString NewText(const QString &view, const QList<PageToken> &tokens, int from, int to,
                    QHash<qsizetype, quint64> &regionsAt) const;
    QString Attributes(const PageToken &source, const PageToken &before, const QString &view,
                       const PageToken &after) const;
    QString Encoded(const QString &characters) const;
    long Verify(const QString &result, const QList<PageToken> &view, const QHash<qsizetype, quint64> &written,
                QString &reason) const;
    int LineOf(qsizetype position) const;

    bool m_prepared = false;
    QByteArray m_original;
    QString m_charset;
    QStringList m_copies; // script pieces the user pasted again
    QHash<quint64, QString> m_texts; // a region's key to the text the user gave it
    QString m_source; // the original, one character per byte
    QList<ScriptRegion> m_regions;
    QList<PageToken> m_sourceTokens;
    QHash<quint64, int> m_regionTokens; // a region's key to its source token
    QString m_view; // the engine's view at Edit
    QList<PageToken> m_viewTokens;
    std::vector<int> m_viewToSource;
    int m_baseline = 0; // tokens that did not line up at Edit
};
