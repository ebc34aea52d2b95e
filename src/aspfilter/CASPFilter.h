#pragma once

#include <QList>
#include <QRegularExpression>
#include <QStringList>
#include <QString>

#include <vector>

// One stored script block: its five-digit ID, its source with the
// delimiters, and where it goes back when the edited page is saved.
struct ASPEntry
{
    QString strID;
    QString strASP;
    unsigned char bytPlacement = 1;
};

// Hides the server script of one page or frame from the editor and brings it
// back. FilterIn wraps every block in a numbered pair of markers that survive
// the server's run of the page; FilterOut cuts the marked output out again
// and puts the stored blocks in their places. Text only: no page engine, no
// network. Failures go to the pending error with "CASPFilter.<Operation>".
class CASPFilter
{
public:
    enum State : long { StateNew = 0, StateFilteredIn = 1, StateFilteredOut = 2 };
    enum Placement : unsigned char { InsidePage = 1, BeforeHtml = 2, AfterHtml = 3 };

    CASPFilter();

    long Init(const QString &strURL_p) { return LetURL(strURL_p); }
    long LetURL(const QString &strURL_p);
    long GetURL(QString &strURL_p) const;
    long GetFilterState() const { return m_lFilterState; }
    long SetFilterState(long lFilterState_p);
    long SetOriginalStream(const QString &strHTMLStream_p);

    long FilterIn(QString &strASP_p);
    long FilterOut(QString &strASP_p, bool boolUseLastStream_p = false);
    // Entry 2k is the first character of block k, entry 2k+1 its last
    // (0-based here; the text is a QString).
    long GetASPPos(const QString &strASP_p, QList<long> &aPositions_p);
    long IsEditable(const QString &strASP_p);

    long GetASP(const QString &strID_p, QString &strASP_p) const;
    long SetASP(const QString &strID_p, const QString &strASP_p);
    long GetLastASPPos() const;
    long CopyASPObject(long lSourceID_p, long lDestID_p);
    // The blocks of a page marked without this filter's wrappers: block k
    // gets the ID 2k and the source given, in the page. The override
    // table starts over. 1.
    long LetBlocks(const QStringList &astrSources_p);

private:
    // One piece of text that FixSpecialTags took out, at its position in the
    // text as it stood just before that removal.
    struct Removal
    {
        qsizetype position;
        QString text;
    };

    long CheckSpecialCaseTable(const QString &text);
    void FixSpecialTags(QString &text);
    bool TakeDirective(QString &text, const QString &block);
    void TakeOptionExplicit(QString &text, qsizetype blockStart, const QString &block);
    void RemoveAll(QString &text, const QString &exact);
    void RemoveEmptyBlocks(QString &text);
    void PutBackRemovals(QString &text) const;
    void IsInsideTag(const QString &text, qsizetype &blockStart, qsizetype &blockEnd) const;
    bool IsCommented(qsizetype position, const QString &text);
    void InitCommentPositions(const QString &text);
    void WriteFilterInASPTags(QString &text, const QList<long> &positions);
    long CheckSpecialCaseTags(const QString &text, const QString &pattern);
    long ScanForScript(const QString &text, const QRegularExpression &tag, bool insideTag);

    void ReadBlockTable(bool rebuild);
    static bool WrappersIntact(const QString &text);
    QString RestoreBlocks(const QString &text, bool useLastStream) const;
    static void RemoveGeneratorTag(QString &text);
    void PutBackHeader(QString &text) const;
    ASPEntry *BlockEntry(const QString &strID);
    const ASPEntry *OverrideEntry(const QString &strID) const;

    std::vector<ASPEntry> m_BlockTable;
    std::vector<ASPEntry> m_OverrideTable;
    long m_lFilterState = StateNew;
    QString m_strOriginalStream;
    QString m_strURL;
    bool m_boolHasASP = false;
    std::vector<qsizetype> m_CommentStarts;
    std::vector<qsizetype> m_CommentEnds;
    bool m_boolCommentsReady = false;
    QString m_strDirective;
    bool m_boolOptionExplicit = false;
    std::vector<std::vector<Removal>> m_Removals;
};
