#pragma once

#include "platform/HtmlDocument.h"

#include <QString>
#include <QStringList>

class QWidget;
class WebBrowser;

// How a document and its page objects reach the main window. The main
// window implements it; every operation answers a status (1 success).
class CDocEventHandler
{
public:
    virtual ~CDocEventHandler() = default;

    virtual long StartTransfer(const QString &strTransferID_p) = 0;
    virtual long EndTransfer(const QString &strTransferID_p) = 0;
    virtual long SetNavigateComplete(const QString &strURL_p) = 0;
    virtual long GetNavigateComplete(const QString &strURL_p, bool &boolNavigateComplete_p) = 0;
    virtual long Show(bool boolShow_p) = 0;
    virtual long Click(long index, bool &boolClick_p) = 0;
    virtual long DebugMsg(const QString &strMsg_p) = 0;
    // The names of the page's frames, in the order of the frame list.
    virtual long GetFrameNames(QStringList &astrNames_p) = 0;
    virtual long GetNumberOfFrames() = 0;
    virtual long GetDocumentTitle(QString &strDocumentTitle_p) = 0;
    virtual long LetDocumentTitle(const QString &strTitle_p) = 0;
    // The document now being set up: the top page or one frame.
    virtual long GetDocument(HtmlDocument &HTMLDocument_p) = 0;
    virtual long GetIE(WebBrowser *&IE_p) = 0;
    virtual long GetDocIndex(long &lIndex_p) = 0;
    virtual long GetForm(QWidget *&frmVindrell_p) = 0;
    virtual long GetPaneStatus(long &lPaneStatus_p) = 0;
    // The page's source was edited by hand and went to the server: the
    // other documents are saved and the edit session ends. A host without
    // a session has nothing to end.
    virtual long EditASPStop(long /*lEditedDoc_p*/) { return 1; }
};
