#pragma once

#include "document/FaithfulSave.h"
#include "objects/CStyle.h"
#include "platform/HtmlDocument.h"
#include "platform/HtmlTextRange.h"

#include <QList>
#include <QStringList>
#include <QString>
#include <QVariant>

#include <map>
#include <memory>
#include <vector>

class CASPFilter;
class CFTPS;
struct PageEvent;
struct StylePaneState;
struct SiteRecord;
class CDocEventHandler;
class CIHTMLObject;
class CSPANASP;
class CVisibility;
class QWidget;
class WebBrowser;

// One page on screen during an edit session: the top document or one frame.
// It knows which file on the server it stands for, switches the page engine
// in and out of design mode, and holds the registry of the page objects.
class CDocument
{
public:
    CDocument();
    ~CDocument();
    CDocument(const CDocument &) = delete;
    CDocument &operator=(const CDocument &) = delete;

    // A server page type that is shown hatched and skipped by Save.
    bool boolNoEdit = false;

    long GetDirty(bool &boolDocIsDirty_p) const;
    long SetDirty();
    long GetDocumentEventHandler(CDocEventHandler *&CDocEventHandler_p) const;
    long GetDocument(HtmlDocument &HTMLDocument_p) const;
    bool IsASPDocument() const { return m_boolIsASP; }
    long RemoveObject(const QString &strKey_p);
    // Registers under the key of the current count; gives count + 1.
    long AddObject(std::unique_ptr<CIHTMLObject> CIHTMLObject_p);
    CIHTMLObject *Object(const QString &strKey_p) const;
    long ObjectCount() const { return long(m_Objects.size()); }
    long GetDocIndex(long &lIndex_p) const;
    long GetASPEdited(bool &bASPEdited_p) const;
    long GetURL_FullPath(QString &strFullURL_p) const;
    long GetURL(QString &strURL_p) const;
    // Keeps the file's bytes as the server holds them, and lines them up
    // with the page as the engine loaded it, before edit mode touches it.
    // Empty bytes: the file could not be read; the page is then saved as
    // the engine writes it. 1, or 0 with the reason in RefusalReason().
    long KeepSource(const QByteArray &original);
    // The file's bytes as the server holds them; 1 or 0 with the error set.
    long FetchOriginal(QByteArray &bytes);
    // A script page can be edited only when its script can be kept.
    long IsEditable(CASPFilter &CASPFilter_p);
    const QString &RefusalReason() const { return m_strRefusal; }
    long EditOn(bool boolEdit_p);
    // 1 saved; -2 not dirty, nothing done; -1 not saved and nothing to
    // report (the user's answer to the charset question stopped it); 0
    // failed, error pending. A page whose old version can't be kept as a
    // revision is saved all the same.
    long Save();
    // After a Save of 1: whether the version it replaced was kept as a
    // revision.
    bool RevisionKept() const { return m_boolRevisionKept; }
    // Sends the text to the page's file on the server as it stands. 1 or 0.
    // What stands on the server is kept as a revision first.
    long SendDocumentToServer(const QString &strHTMLStream_p);
    // The page's path on the FTP server: strUnCorrectedPath_p (the
    // document's own path, m_strURL) or, when that is empty, the address's
    // path, with the site's root in front. Always 1.
    long GetPreparedSendPath(const QString &strUnCorrectedPath_p, QString &strCorrectedPath) const;
    // The page's source as the server holds it. 1 or 0.
    long GetDocumentFromServer(QString &strHTMLStream_p);
    // Lets the user edit the page's source by hand (the page object menus'
    // "Show/edit HTML"). 1 sent and out of edit mode, 0 on error, -1 when
    // the user cancelled: nothing sent and the page still in edit mode.
    long EditAspDocument();
    long GetVisible(bool &boolIsVisible_p) const;
    long GetIsIFrame(bool &boolIsIFrame_p) const;
    // 1 bound, 0 error pending, -1 a blank page or a type not edited.
    long Init(CDocEventHandler *CDocEventHandler_p);
    long SetASPFilter(CASPFilter *CASPFilter_p);
    long ShowDisableGlyphs(bool AnchorsOn_p, bool LayerOn_p, bool ScriptsOn_p, bool SpanOn_p, bool FontOn_p = false);
    long setDocumentWindowHatched();
    bool getDocumentControledByCMS() const { return m_boolControledByCMS; }
    long setDocumentControledByCMS(bool boolDocumentControledByCMS_p);
    bool EditIsOn() const { return m_boolEditOn; }
    bool UserMayEdit() const { return m_boolUserMayEdit; }
    HtmlTextRange TextRange() const { return m_TextRange; }
    // The character formatting of the page, read when the document is bound.
    CStyle &Style() { return m_Style; }

    // The full addresses of the documents of the session, one per Init.
    static QStringList g_astrDocURLs;

    // F7: the spell check of the selection; 1, or 0 with the error pending.
    long Spellcheck();

    // Events of the page while it is in design mode, and the style pane's
    // actions on its selection; each 1, or 0 with the error pending.
    long OnPageEvent(const PageEvent &event);
    // What the style pane shows for the caret; a picked object gives a
    // state that is not enabled.
    long SetStylePaneProperties(StylePaneState &state);
    // A font name, or empty for "No formatting" (asked about first).
    long m_cboFont_Click(const QString &strFontName_p);
    long m_cboBlockFormat(int item);
    long m_cboClasses(const QString &strClass_p);
    long m_chkBoldSel_Click();
    long m_chkItalicSel_Click();
    long m_chkUnderlineSel_Click();
    long m_updFontSize(int direction);
    long SetJustify(const QString &strJustify_p);
    long Undo();
    long Redo();
    long GetUndoRedo(bool &boolCanUndo_p, bool &boolCanRedo_p) const;
    // The copy of the script block whose start mark is given goes in at
    // the caret, as a block of its own: 1, -1 when the page has no such
    // block, 0 failed.
    long PasteASPObject(const QString &strMarker_p);
    // Blocks whose marks stand in the page twice since a paste: each copy
    // gets the next free number and its own entry in the filter, with the
    // source of the block it copies, and is sealed like the others. 1, or
    // 0 with the error pending.
    long ResolvePastedASP();
    CASPFilter *ASPFilter() const { return m_ASPFilter; }
    // The block whose start mark is given, or nullptr.
    CSPANASP *ASPSpan(const QString &strMarker_p) const;

private:
    long InitDocument(CDocEventHandler *handler);
    long BindServerPath();
    long FindIndexOnServer(QString folder); // by value: the caller passes m_strURL
    void CheckCMS(const QString &address);
    void ReadFrames();
    long EditOnFrameset();
    long EditOnPage();
    long EditOffPage();
    bool WaitForBody();
    void ShowForeignContentOnce(int elementsBefore);
    void MarkCMSAreas();
    long RegisterImages();
    // The layers of the Visibility pane and the boxes of the applets.
    long ShowLayersAndApplets();
    QString Position(const QString &operation) const;
    static QString EventPosition(const QString &handler);
    long Command(const QString &command, const QVariant &value, const QString &handler);

    // The steps of Save, in their order.
    long SaveText(QByteArray &bytes, bool keepPage);
    long SaveObjects();
    long UnmarkedText(QByteArray &bytes);
    void RestoreFrameset();
    long StripEditMarks(const SiteRecord &site);
    long StripLockMarks();
    long MakePageText(QByteArray &bytes);
    long MakeWholePageText(QByteArray &bytes);
    long MakeASPText(QByteArray &bytes);
    void ApplyASPEdits();
    long SealASPBlocks();
    long SendSaved(const QByteArray &bytes);
    long EndEditByHand();
    long SaveFailed(long line, long number = 0, const QString &description = QString());
    static QString SavePosition(const QString &path, long line);
    static QString SaveDate();
    static SiteRecord CurrentSite();
    long OpenTransfer(CFTPS &ftp, const QString &position) const;

    bool m_boolControledByCMS = false;
    bool m_boolUserMayEdit = false;
    bool m_boolIsNotFrameset = true;
    bool m_boolDirty = false;
    WebBrowser *m_IE = nullptr;
    long m_lDocIndex = 0;
    bool m_boolIsASP = false;
    std::map<QString, std::unique_ptr<CIHTMLObject>> m_Objects;
    bool m_boolEditOn = false;
    CDocEventHandler *m_DocEventHandler = nullptr;
    QString m_strTopHTML;
    QList<bool> m_abNoResize;
    QVariant m_vFrameBorder;
    QString m_strURL;
    CASPFilter *m_ASPFilter = nullptr;
    std::vector<std::unique_ptr<CSPANASP>> m_aSPANASP; // one per script block in the page
    QString m_strLastSaved;
    QString m_strSavePath; // the server path of the save under way
    bool m_boolRevisionKept = false;
    FaithfulSave m_Faithful; // the file's own bytes, lined up with the page
    QString m_strRefusal;
    bool m_boolASPEdited = false;
    bool m_boolIsIFrame = false;
    bool m_boolGlyphsOn = false;
    int m_lElementsAtInit = 0; // the page's element count when it was bound
    QWidget *m_frmVindrell = nullptr;
    HtmlDocument m_Document;
    HtmlElement m_HTMLBody;
    HtmlTextRange m_TextRange; // the body's text, kept for pages of some length
    CStyle m_Style;
    std::unique_ptr<CVisibility> m_Visibility; // while edit mode lasts
};
