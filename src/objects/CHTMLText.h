#pragma once

#include "platform/HtmlDocument.h"
#include "platform/HtmlElement.h"
#include "platform/HtmlTextRange.h"

#include <QObject>

#include <functional>

class CDocument;
class frmMenu;

// The object behind the menu of text, and of everything in a page being
// edited that has no object of its own. It lives for one menu: Init reads
// the selection, the element under the pointer and the body, shows the
// menu as they allow, and runs the command picked. This menu is also
// where new things enter the page: pictures, bookmarks, style sheets,
// script and the page's background.
class CHTMLText : public QObject
{
    Q_OBJECT

public:
    // x_p and y_p: where the click fell, in the page. 1 when the page
    // changed (the document is marked), -1 when not, 0 on failure with the
    // error pending.
    long Init(CDocument *CDocument_p, long x_p, long y_p);

private:
    void ReadPage(long x_p, long y_p);
    void Prepare(frmMenu &menu);
    void PrepareSelection(frmMenu &menu);
    void PrepareLimits(frmMenu &menu) const;
    void Connect(frmMenu &menu);
    void On(frmMenu &menu, const char *item, std::function<long()> work);
    void Run(const std::function<long()> &work);
    long Exec(const QString &command, const QVariant &value = {});
    bool InsertionRefused(const QString &strWhat_p);

    long m_mnuPaste_Click();
    long m_mnuPasteText_Click(bool asHTML);
    long m_mnuJustifyCenter_Click();
    long m_mnuColor_Click();
    long m_mnuGetColorToFont_Click();
    long m_mnuAbsolutePosition_Click();
    long m_mnuZOrder_Click();
    long m_mnuRemoveLink_Click();
    long m_mnuInsertImage_Click();
    long m_mnuInsertTable_Click();
    long InsertMedia(int kind);
    long m_mnuInsertBookMark_Click();
    long m_mnuInsertRule_Click();
    long InsertFormField(const QString &strKind_p);
    long m_mnuDocumentTitle_Click();
    long m_mnuEditDocumentByHTML_Click();
    long m_mnuWhatsH1H7_Click();

    CDocument *m_Document = nullptr;
    HtmlDocument m_HTMLDocument;
    HtmlTextRange m_Range;
    HtmlElement m_Element;    // under the pointer
    HtmlElement m_Link;       // the link the selection lies in
    HtmlElement m_Positioned; // the floating element the pointer is in
    bool m_boolDirty = false;
};
