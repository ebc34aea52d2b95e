#pragma once

#include "objects/CIHTMLObject.h"

#include <QObject>
#include <QString>

#include <memory>

class CDocument;
class frmMenu;
struct PageEvent;

// A picture of a page being edited. It follows the picture through the
// edit: a file of the user's disk put into the page, a resize, a picture
// changed for another, compressed or scaled; and at Save it uploads the
// file that the page needs now and points the page's src at it on the
// server. A picture of another host can be moved, resized and removed,
// never changed: it stays where it is.
class CHTMLImg : public QObject, public CIHTMLObject
{
    Q_OBJECT

public:
    // Binds the object to a picture that came with the page: edit mode
    // numbers the pictures and passes the key it wrote. 0 when the element
    // is gone, with the error pending.
    long Init(const HtmlElement &img, CDocument *document, long lKnownKey_p = -1);
    // A picture of the user's disk just put into the page (its src the
    // local picture's address): it joins the document's objects, is
    // offered for compression when it is big, and asks for the folder on
    // the server it is to go to. 1; -1 when the user cancelled the folder,
    // and then the picture is out of the page again; 0 on failure.
    static long InitNew(CDocument &document, HtmlElement img);
    // A picture of the site dragged in from the site tree: it joins the
    // document's objects and its src becomes relative to the page.
    static long InitEx(CDocument &document, HtmlElement img);
    // Puts the local file into the page at the selection, as a new picture
    // (InitNew). The same results.
    static long InsertLocalPicture(CDocument &document, const QString &strLocalFile_p);

    // Adds a bound picture without a key to its document's objects and
    // writes the key they gave it on the element.
    static long Register(std::unique_ptr<CHTMLImg> image);

    // The page shows the local file now; it is uploaded at Save.
    long ChangeImage(const QString &strLocalFileName_p);

    HtmlElement Element() const override { return m_Img; }
    CDocument *Document() const { return m_Document; }
    long IsDirty(bool &boolIsDirty_p) const override;
    long Save(HtmlDocument &Document_p) override;
    long OnContextMenu() override;
    long LetKeldaKey(long lNewKey_p) override;
    long GetKeldaKey(long &lKey_p) const override;
    long Init(CDocEventHandler *, CDocument *) override { return 1; }
    // Every change of the image marks it.
    void SetDirty();

    // What the dialogs and the save read.
    QString LocalFile() const { return m_strLocalFile; }
    QString UploadFolder() const { return m_strUploadFolder; }
    QString WebFolder() const { return m_strWebFolder; }
    QString Source() const { return m_strSource; }
    // Whether the picture lies on the host of the page (or on the user's
    // disk): only such a picture can be changed.
    bool OnOwnHost() const;

    // The file dialog of the picture commands: the remembered folder, and
    // the question about a name that some web servers refuse. Empty when
    // the user cancelled.
    static QString ChoosePictureFile(QWidget *parent);

private:
    static CHTMLImg *Made(CDocument &document, const HtmlElement &img);
    long CompressImage(const QString &strFile_p);
    long ChooseFolder();
    void ListenToPage();
    void OnPageEvent(const PageEvent &event);
    void Prepare(frmMenu &menu);
    void Connect(frmMenu &menu);
    bool StillInPage() const;
    HtmlElement LinkOrImage() const;
    void Changed();

    void m_mnuChangeImg_Click();
    void m_mnuRemoveImg_Click();
    void Justify(const QString &command);
    void m_mnuResetSize_Click();
    void m_mnuAbsolutePosition_Click();
    void m_mnuZOrder_Click();
    void m_mnuHTMLImgCreateLink_Click();
    void m_mnuHTMLImgEditLink_Click();
    void m_mnuHTMLImgRemoveLink_Click();
    void m_mnuHTMLImageProperties_Click();

    HtmlElement m_Img;
    CDocument *m_Document = nullptr;
    long m_lKey = -1;
    QString m_strSource;       // src as the element had it when bound
    QString m_strNewSource;    // the file name the changed picture has
    QString m_strLocalFile;    // the file of the disk to upload
    QString m_strWebFolder;    // the chosen folder, as the page reaches it
    QString m_strUploadFolder; // the same on the server; "|new|" none chosen
    bool m_boolDirty = false;
    bool m_boolListening = false;
};
