#pragma once

#include "platform/CICustomDoc.h"
#include "platform/HtmlDocument.h"
#include "shell/ASPTagging.h"

#include <QSet>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

struct PageEvent;
class CASPFilter;
class CDocument;
class CFTPS;
class WebBrowser;
class frmVindrell;

// One edit session on the main window, from the press of Edit to the end
// of the session by Save or by the release of Edit. The page with all its
// frames is made editable in place; a script page is first marked on the
// server for the moment of one reload, so that its output can be mapped
// back to the source at Save, and then put back as it was.
//
// The handlers run inside nested event loops (transfers, page calls, the
// wait dialog), so a click can arrive while another one is still running.
// nClickDepth lets a change of the Edit button made by the code itself fall
// through, and boolEditAborted tells a running entry that the wait dialog's
// Cancel has already ended the session under it.
//
// A Cancel (of the wait dialog, or a close of the window) ends the FTP call
// under way at once. The entry then puts every marked page back, and that
// put-back is never cut short; a save stops after the page it was sending,
// which the transfer layer leaves whole, old or new.
class EditSession
{
public:
    explicit EditSession(frmVindrell &form);
    ~EditSession();
    EditSession(const EditSession &) = delete;
    EditSession &operator=(const EditSession &) = delete;

    // The Edit button changed its state: both directions of the session.
    void cmdEdit_Click();
    void cmdSave_MouseUp();

    // The window wants to close: true when it may close now. A step under
    // way (entry, save, release) is cancelled, or let finish when it only
    // puts the server back, and the window is closed again once it is down.
    // Changes are asked about (Save / Don't save / Cancel); a session
    // without changes simply ends.
    bool QueryClose();
    // Some handler of the session is under way, with its nested loops.
    bool Running() const { return m_nRunning > 0; }

    // 1 some page was a script page and was marked, -1 none was, 0 error,
    // -2 the file of a page is not on the server.
    long DoTheServerSideDance();
    long SetASPTags(const QString &strURL) { return m_ASP.SetASPTags(strURL); }
    long RemoveASPTags();
    // 1, 0 on error, -1 when a document has a type that is not edited.
    long DocLoad(bool boolEdit);
    long DeleteCachedDocs();
    long EditAspDocument(long nDoc);
    // For the page objects: end the session without saving, or save every
    // document but the one whose source was edited by hand.
    long EditStop();
    long EditASPStop(long lEditedDoc_p);

    // What the documents ask the main window for.
    HtmlDocument FrameDocument() const { return m_HTMLFrameDocument; }
    long DocIndex() const { return m_lDocIndex; }
    void SetDocIndex(long index) { m_lDocIndex = index; }
    const std::vector<std::shared_ptr<CDocument>> &Documents() const { return m_Documents; }
    // The document that has the caret; none while no page is edited.
    CDocument *CurrentDocument() const;
    bool DocumentLoaded() const { return m_boolDocumentLoaded; }
    bool Saving() const { return m_boolSaving; }
    bool Aborted() const { return boolEditAborted; }

private:
    // Counts a handler under way; the last one to end closes the window
    // when a close came meanwhile.
    class StepGuard
    {
    public:
        explicit StepGuard(EditSession &session);
        ~StepGuard();
        StepGuard(const StepGuard &) = delete;
        StepGuard &operator=(const StepGuard &) = delete;

    private:
        EditSession &m_session;
    };

    void OnPageEvent(const PageEvent &event);
    void OnContextMenu(CDocument &document, const PageEvent &event);
    void OnPaste(CDocument &document);
    void CancelEntry();
    void CancelSave();
    void ReportCancelledSave();
    bool UnsavedChanges(bool &aspEdited) const;
    void Press();
    long Enter(int &step);
    long EnterDocuments(int &step);
    void Release();
    void ReleaseDuringEntry();
    long AskToSave(bool &boolKeepEditing);
    void LeaveDocuments(bool boolReload);
    long SaveDocuments(long lSkipDoc, int &step);
    void TellSaved();
    void TellNotSaved();

    bool IsRealDocument() const;
    long LogOnForEdit();
    void LoadCMSData();
    void TellNoCMSFile();
    bool StopIfAborted();
    long TieFilters(long &nComplexDoc);
    void ComplexASP(long nDoc);
    void Refuse(const QString &text);
    long SubDocLoad(const HtmlDocument &parent, int nFrames, bool boolEdit);
    long BindDocument(long index, bool boolEdit);
    void KeepSource(CDocument &doc, long index);
    static long Source(CDocument &doc, QByteArray &bytes);
    long TryIfDocIsReal(const HtmlDocument &frame);
    void ReloadMarkedPages();
    void EndQuietly();
    void ReleaseDocuments();
    void LockBrowser(bool locked);
    void CommonTail();
    void SetEditValue(bool pressed);
    void Trap(const QString &procedure, int step);
    static void Hourglass(bool on);
    void HoldConnection();
    void DropConnection();

    frmVindrell &m_form;
    WebBrowser *m_IE;
    // The window's command channel to the engine: bound at the first Edit,
    // let go by EditStop.
    CICustomDoc m_CustomDoc;
    std::vector<std::shared_ptr<CDocument>> m_Documents;
    // The filters the documents were given; they live as long as those.
    std::vector<std::shared_ptr<CASPFilter>> m_HeldFilters;
    ASPTagging m_ASP;
    // The session's own FTP client: while it lives, every client the
    // session's steps make for a moment rides on its logged-in connection.
    std::unique_ptr<CFTPS> m_FTP;
    HtmlDocument m_HTMLDocument;
    HtmlDocument m_HTMLFrameDocument;
    long m_lDocIndex = 0;
    bool m_boolASPTagged = false;
    bool m_boolDocumentLoaded = false;
    bool m_boolSaving = false;
    bool m_boolSkipEditClick = false;
    bool m_boolSavedInSession = false;
    bool m_boolCMSLoaded = false;
    bool m_boolEntering = false;
    bool m_boolKeepSources = false; // the documents being bound are for editing
    int nClickDepth = 0;
    bool boolEditAborted = false;
    int m_nRunning = 0;
    bool m_boolCloseWhenDone = false;
    bool m_boolSaveCancelled = false;
    bool m_boolPuttingBack = false;
    bool m_boolReleaseQuietly = false; // a close ends the session: nothing is asked
    // The server path of a page whose file the server has not got.
    QString m_strMissingFile;
    // The sites whose missing CMS data was told in this window's life,
    // which is the program's run.
    QSet<QString> m_sitesToldNoCMS;
    // What the last save wrote, and whether every page's earlier version
    // was kept as a revision.
    QStringList m_astrSavedPages;
    bool m_boolRevisionsKept = true;
};
