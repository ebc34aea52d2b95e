#include "objects/CHTMLImg.h"

#include "cms/CMSTables.h"
#include "document/CDocument.h"
#include "fileviews/SiteFileDialogs.h"
#include "fileviews/ServerFolderPaths.h"
#include "fileviews/frmSiteTree.h"
#include "objects/CImageManager.h"
#include "objects/ImageUpload.h"
#include "objects/LinkCommand.h"
#include "objects/frmImageProperties.h"
#include "objects/frmImgProperties.h"
#include "objects/frmImgZOrder.h"
#include "objects/frmMenu.h"
#include "platform/CReg.h"
#include "platform/LocalPictureScheme.h"
#include "platform/PageEvent.h"
#include "platform/PageScriptCall.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QAction>
#include <QMenu>
#include <QCursor>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

#include <cmath>

namespace {

enum Text : long { txtRatherBig = 17800, txtWouldCompress = 17801, txtCompressTitle = 17802, txtCompressedName = 17803,
                   txtRescaleHint = 17820, txtKb = 17819, txtOtherDomain = 17822, txtInsertPicture = 17823,
                   txtFromMenu = 17824, txtInvalidTitle = 15055, txtInvalidName = 15056, txtInvalidName2 = 15057,
                   txtFilter = 17843, txtChoose = 17844 };

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

const QString kSrc = QStringLiteral("src");
const QString kNoFolder = QStringLiteral("|new|");
const QString kPosition = QStringLiteral("position");
constexpr std::int32_t kImageFunctionsBit = 1;

// Pictures of at most this many units of 1000 bytes are small enough to
// go up as they are.
constexpr long kCompressAboveKb = 50;

// The text behind the last separator of a local path, of either kind.
QString FileNameOf(const QString &path)
{
    return path.mid(std::max(path.lastIndexOf(QLatin1Char('\\')), path.lastIndexOf(QLatin1Char('/'))) + 1);
}

// "host:port" of an address behind its scheme; empty for a relative one.
QString HostOf(const QString &address)
{
    const QUrl url(address);
    return url.isRelative() ? QString() : url.authority().toLower();
}

// With no CMS user every entry is open; a CMS user needs the bit of the
// image functions.
bool LimitsAllowImageFunctions()
{
    const long user = long(g_sngCMSUser);
    if (g_sngCMSUser == CMS_NO_USER || user < 0 || user + 1 >= long(g_aCMSUsers.size()))
        return true;
    return (g_aCMSUsers[size_t(user)].limits.lOther & kImageFunctionsBit) != 0;
}

// A name that holds a blank or one of the Swedish letters is refused by
// some web servers: the user is asked before he goes on with it.
bool NameNeedsQuestion(const QString &name)
{
    for (const QChar c : name)
        if (c == QLatin1Char(' ') || QStringLiteral("åäöÅÄÖ").contains(c))
            return true;
    return false;
}

} // namespace

long CHTMLImg::Init(const HtmlElement &img, CDocument *document, long lKnownKey_p)
{
    if (img.isNull() || !document) {
        MError::SetErrorIfClear(91, QStringLiteral("Object variable not set"), QStringLiteral("CHTMLImg.Init"));
        return 0;
    }
    m_Img = img;
    m_Document = document;
    m_lKey = lKnownKey_p;
    m_strSource = m_strNewSource = img.getAttribute(kSrc).toString();
    ListenToPage();
    return MError::ErrorNumber() == 0 ? 1 : 0;
}

// Key i goes to the object added i-th: the numbers go on from those that
// edit mode gave out.
long CHTMLImg::Register(std::unique_ptr<CHTMLImg> image)
{
    CHTMLImg *self = image.get();
    const long key = self->m_Document->AddObject(std::move(image)) - 1;
    return self->LetKeldaKey(key);
}

// A picture object of the element, joined to the document's objects; null
// when the element can't be one.
CHTMLImg *CHTMLImg::Made(CDocument &document, const HtmlElement &img)
{
    auto made = std::make_unique<CHTMLImg>();
    if (made->Init(img, &document) != 1)
        return nullptr;
    CHTMLImg *self = made.get();
    return Register(std::move(made)) == 1 ? self : nullptr;
}

long CHTMLImg::InitNew(CDocument &document, HtmlElement img)
{
    CHTMLImg *self = Made(document, img);
    if (!self)
        return 0;
    self->m_strLocalFile = LocalPictureScheme::PathOf(self->m_strSource);
    self->m_strSource.clear(); // nothing of it stands on the server yet
    if (self->CompressImage(self->m_strLocalFile) == 0)
        MError::ShowError(); // the picture goes in as it is
    const long chosen = self->ChooseFolder();
    if (chosen != 1) {
        img.removeNode(true);
        document.RemoveObject(QString::number(self->m_lKey)); // self is gone now
        return chosen;
    }
    self->SetDirty();
    return 1;
}

// The web folder is the way from the page's folder to the chosen one, so
// the page finds the picture wherever the site itself lies on its host.
long CHTMLImg::ChooseFolder()
{
    frmSiteTree &form = frmSiteTree::Instance();
    const long chosen = form.GetUpLoadPath(m_strUploadFolder);
    if (chosen != 1)
        return chosen;
    HtmlDocument page;
    m_Document->GetDocument(page);
    m_strWebFolder = ServerFolderPaths::RelativePath(page.pathname(), form.ChosenKey());
    if (m_strUploadFolder.isEmpty())
        m_strUploadFolder = kNoFolder;
    return 1;
}

long CHTMLImg::InitEx(CDocument &document, HtmlElement img)
{
    CHTMLImg *self = Made(document, img);
    if (!self)
        return 0;
    img.setAttribute(QStringLiteral("id"), QString());
    img.removeAttribute(QStringLiteral("id"));
    HtmlDocument page;
    document.GetDocument(page);
    const QString address = img.getAttribute(kSrc).toString();
    const QString path = QUrl(address).path();
    const QString folder = ServerFolderPaths::RelativePath(page.pathname(), path.left(path.lastIndexOf(QLatin1Char('/'))));
    const QString src = (folder.isEmpty() ? QString() : folder + QLatin1Char('/')) + FileNameOf(address);
    if (HostOf(address) == HostOf(page.URL()))
        img.setAttribute(kSrc, src);
    self->m_strSource = self->m_strNewSource = img.getAttribute(kSrc).toString();
    self->SetDirty();
    return MError::ErrorNumber() == 0 ? 1 : 0;
}

// The engine puts the picture in with a placeholder address, by which the
// new element is found; then it shows the local file.
long CHTMLImg::InsertLocalPicture(CDocument &document, const QString &strLocalFile_p)
{
    // A file that is no picture the program can work on never enters the
    // page: the page stays as it was.
    long width = 0, height = 0;
    if (CImageManager().GetImageSize(strLocalFile_p, width, height) != 1)
        return 0;
    HtmlDocument page;
    document.GetDocument(page);
    const QString placeholder = QStringLiteral("@") + QString::number(QDateTime::currentMSecsSinceEpoch());
    const int handle = PageScriptCall::call(page.browser()->page(), QStringLiteral("img.insert"),
                                            {QVariant::fromValue(page.framePath()), placeholder},
                                            QStringLiteral("CHTMLImg.InsertLocalPicture"))
                           .toInt();
    if (handle == 0)
        return MError::ErrorNumber() == 0 ? -1 : 0;
    HtmlElement img(page.browser(), handle);
    img.setAttribute(kSrc, LocalPictureScheme::AddressOf(strLocalFile_p));
    return InitNew(document, img);
}

long CHTMLImg::ChangeImage(const QString &strLocalFileName_p)
{
    m_Img.setAttribute(kSrc, LocalPictureScheme::AddressOf(strLocalFileName_p));
    m_strLocalFile = strLocalFileName_p;
    m_strNewSource = FileNameOf(strLocalFileName_p);
    SetDirty();
    return MError::ErrorNumber() == 0 ? 1 : 0;
}

void CHTMLImg::SetDirty()
{
    m_boolDirty = true;
    if (m_Document)
        m_Document->SetDirty();
}

// A big picture is offered for compression once, as it comes in. The new
// name keeps the part of the old one before its first ".", so that the
// user knows it again.
long CHTMLImg::CompressImage(const QString &strFile_p)
{
    const QFileInfo info(strFile_p);
    const qint64 bytes = info.isFile() ? info.size() : 0;
    const long kb = long(std::lround(double(bytes) / 1000.0));
    if (kb <= kCompressAboveKb)
        return 1;
    const QString name = info.fileName().section(QLatin1Char('.'), 0, 0) + QLatin1Char('_')
                         + QString::number(QDateTime::currentMSecsSinceEpoch()) + QStringLiteral(".jpg");
    const QString question = L(txtRatherBig) + QString::number(kb) + L(txtKb) + QLatin1Char('\n') + L(txtWouldCompress);
    if (UserQuestions::MsgBox(question, UserQuestions::vbYesNo | UserQuestions::vbQuestion, L(txtCompressTitle))
        != UserQuestions::vbYes)
        return 1;
    const QString target = ImageUpload::WorkFolder() + QLatin1Char('/') + name;
    if (CImageManager().ConvertToJpg(strFile_p, target, 75) != 1)
        return 0;
    if (!QFileInfo::exists(target))
        return 1;
    ChangeImage(target);
    UserQuestions::MsgBox(L(txtCompressedName) + QLatin1Char(' ') + name + QStringLiteral(".\n") + L(txtRescaleHint),
                          UserQuestions::vbInformation, L(txtCompressTitle));
    return 1;
}

// The picture's own events come from the page's runtime: a resize or a
// move with the mouse changes it.
void CHTMLImg::ListenToPage()
{
    if (m_boolListening || !m_Img.browser())
        return;
    m_boolListening = true;
    connect(m_Img.browser(), &WebBrowser::pageEvent, this, &CHTMLImg::OnPageEvent);
}

void CHTMLImg::OnPageEvent(const PageEvent &event)
{
    if (event.element != m_Img.handle())
        return;
    if (event.type == QLatin1String("imgresized") || event.type == QLatin1String("imgmoved")) {
        if (event.type == QLatin1String("imgresized")) {
            m_Img.setStyleValue(QStringLiteral("width"), QString::number(event.x) + QStringLiteral("px"));
            m_Img.setStyleValue(QStringLiteral("height"), QString::number(event.y) + QStringLiteral("px"));
        }
        SetDirty();
    }
}

long CHTMLImg::IsDirty(bool &boolIsDirty_p) const
{
    boolIsDirty_p = m_boolDirty;
    return 1;
}

long CHTMLImg::LetKeldaKey(long lNewKey_p)
{
    m_lKey = lNewKey_p;
    m_Img.setAttribute(KeyAttribute(), QString::number(lNewKey_p));
    return MError::ErrorNumber() == 0 ? 1 : 0;
}

long CHTMLImg::GetKeldaKey(long &lKey_p) const
{
    lKey_p = m_lKey;
    return 1;
}

bool CHTMLImg::OnOwnHost() const
{
    const QString src = m_Img.getAttribute(kSrc).toString();
    if (LocalPictureScheme::IsLocalAddress(src))
        return true;
    HtmlDocument page;
    m_Document->GetDocument(page);
    const QString host = HostOf(src);
    return host.isEmpty() || host == HostOf(page.href());
}

// ------------------------------------------------------------------ Save

// A picture whose src is a file of the disk goes up now; any other one
// stands where it is, and only tells whether it was changed. After the
// upload the picture counts as one of the page: a second Save (the page's
// own send failed the first time) doesn't send it again.
long CHTMLImg::Save(HtmlDocument &Document_p)
{
    if (!m_Img.isConnected() || m_Img.getAttribute(KeyAttribute()).toString() != QString::number(m_lKey))
        return 1;
    const QString src = m_Img.getAttribute(kSrc).toString();
    const QString local = LocalPictureScheme::PathOf(src);
    if (local.isEmpty())
        return m_boolDirty ? 1 : -1;
    // A new picture goes to the chosen folder; one that replaces a picture
    // of the page goes where the old one lies, and is named as it was
    // written there.
    QString folder;
    if (!m_strUploadFolder.isEmpty())
        folder = m_strWebFolder.isEmpty() ? QString() : m_strWebFolder + QLatin1Char('/');
    else
        folder = m_strSource.left(m_strSource.lastIndexOf(QLatin1Char('/')) + 1);
    QString name;
    if (ImageUpload::Send(Document_p, local, folder, name) != 1)
        return 0;
    m_Img.setAttribute(kSrc, folder + name);
    m_strSource = m_strNewSource = folder + name;
    m_strLocalFile.clear();
    m_strUploadFolder.clear();
    m_boolDirty = true;
    return MError::ErrorNumber() == 0 ? 1 : 0;
}

// ------------------------------------------------------------------ menu

long CHTMLImg::OnContextMenu()
{
    if (!StillInPage())
        return 1;
    frmMenu menu;
    Prepare(menu);
    if (MError::ErrorNumber() != 0)
        return 0;
    Connect(menu);
    menu.PopupMenu(QStringLiteral("mnuHTMLImg"), QCursor::pos());
    return 1;
}

void CHTMLImg::Prepare(frmMenu &menu)
{
    const bool sized = !m_Img.getAttribute(QStringLiteral("width")).isNull()
                       || !m_Img.getAttribute(QStringLiteral("height")).isNull()
                       || !m_Img.styleValue(QStringLiteral("width")).isEmpty()
                       || !m_Img.styleValue(QStringLiteral("height")).isEmpty();
    menu.Item(QStringLiteral("mnuResetSize"))->setEnabled(sized);
    const bool absolute = m_Img.styleValue(kPosition) == QLatin1String("absolute");
    menu.Item(QStringLiteral("mnuAbsolutPosition"))->setChecked(absolute);
    menu.Item(QStringLiteral("mnuImgZOrder"))->setEnabled(absolute);
    const bool linked = !LinkCommand::GetHREF(m_Img).isNull();
    menu.Item(QStringLiteral("mnuHTMLImgEditLink"))->setVisible(linked);
    menu.Item(QStringLiteral("mnuHTMLImgRemoveLink"))->setVisible(linked);
    menu.Item(QStringLiteral("mnuHTMLImgCreateLink"))->setVisible(!linked);
    if (LimitsAllowImageFunctions())
        return;
    for (QAction *action : menu.Menu(QStringLiteral("mnuHTMLImg"))->actions())
        action->setEnabled(false);
}

void CHTMLImg::Connect(frmMenu &menu)
{
    const std::pair<const char *, void (CHTMLImg::*)()> handlers[] = {
        {"mnuChangeImg", &CHTMLImg::m_mnuChangeImg_Click},
        {"mnuRemoveImg", &CHTMLImg::m_mnuRemoveImg_Click},
        {"mnuResetSize", &CHTMLImg::m_mnuResetSize_Click},
        {"mnuAbsolutPosition", &CHTMLImg::m_mnuAbsolutePosition_Click},
        {"mnuImgZOrder", &CHTMLImg::m_mnuZOrder_Click},
        {"mnuHTMLImgCreateLink", &CHTMLImg::m_mnuHTMLImgCreateLink_Click},
        {"mnuHTMLImgEditLink", &CHTMLImg::m_mnuHTMLImgEditLink_Click},
        {"mnuHTMLImgRemoveLink", &CHTMLImg::m_mnuHTMLImgRemoveLink_Click},
        {"mnuHTMLImageProperties", &CHTMLImg::m_mnuHTMLImageProperties_Click}};
    for (const auto &[item, handler] : handlers)
        connect(menu.Item(QString::fromLatin1(item)), &QAction::triggered, this, [this, handler = handler] {
            if (!StillInPage())
                return;
            (this->*handler)();
            if (MError::ErrorNumber() != 0)
                MError::ShowError();
        });
    const std::pair<const char *, const char *> placements[] = {{"mnuImgJustifyCenter", "justifycenter"},
                                                                {"mnuImgJustifyRight", "justifyright"},
                                                                {"mnuImgJustifyLeft", "justifyleft"}};
    for (const auto &[item, command] : placements) {
        const QString name = QString::fromLatin1(command);
        connect(menu.Item(QString::fromLatin1(item)), &QAction::triggered, this, [this, name] { Justify(name); });
    }
}

// The page's own script may have taken the picture out while the menu was
// open: a command then has nothing to act on, and says nothing.
bool CHTMLImg::StillInPage() const
{
    return m_Img.isConnected();
}

HtmlElement CHTMLImg::LinkOrImage() const
{
    const HtmlElement link = LinkCommand::GetHREF(m_Img);
    return link.isNull() ? m_Img : link;
}

void CHTMLImg::Changed()
{
    SetDirty();
}

// Pictures on another host are left as they are: the user removes one and
// inserts his own instead.
void CHTMLImg::m_mnuChangeImg_Click()
{
    if (!OnOwnHost()) {
        UserQuestions::MsgBox(L(txtOtherDomain) + QLatin1Char('"') + L(txtInsertPicture) + QLatin1Char('"') + L(txtFromMenu),
                              UserQuestions::vbExclamation);
        return;
    }
    const QString file = ChoosePictureFile(nullptr);
    long width = 0, height = 0;
    if (!file.isEmpty() && CImageManager().GetImageSize(file, width, height) == 1)
        ChangeImage(file);
}

QString CHTMLImg::ChoosePictureFile(QWidget *parent)
{
    for (;;) {
        const QString folder = CReg::GetSetting(QStringLiteral("lastdialogs"), QStringLiteral("imgpath"), QDir::homePath());
        const QString file = SiteFileDialogs::OpenFileName(parent, L(txtChoose), folder, L(txtFilter));
        if (file.isEmpty())
            return {};
        const QString name = FileNameOf(file);
        long answer = UserQuestions::vbYes;
        if (NameNeedsQuestion(name))
            answer = UserQuestions::MsgBox(L(txtInvalidName) + name + L(txtInvalidName2),
                                           UserQuestions::vbYesNoCancel | UserQuestions::vbQuestion, L(txtInvalidTitle));
        if (answer == UserQuestions::vbCancel)
            return {};
        if (answer == UserQuestions::vbNo)
            continue;
        CReg::SaveSetting(QStringLiteral("lastdialogs"), QStringLiteral("imgpath"), QFileInfo(file).absolutePath());
        return file;
    }
}

void CHTMLImg::m_mnuRemoveImg_Click()
{
    LinkOrImage().removeNode(true);
    Changed();
}

void CHTMLImg::Justify(const QString &command)
{
    if (!StillInPage())
        return;
    HtmlDocument page;
    m_Document->GetDocument(page);
    PageScriptCall::call(page.browser()->page(), QStringLiteral("img.select"), {m_Img.handle()},
                         QStringLiteral("CHTMLImg.m_mnuImgJustify_Click"));
    page.execCommand(command);
    Changed();
    if (MError::ErrorNumber() != 0)
        MError::ShowError();
}

void CHTMLImg::m_mnuResetSize_Click()
{
    for (const QString &name : {QStringLiteral("width"), QStringLiteral("height")}) {
        m_Img.removeAttribute(name);
        m_Img.removeStyleValue(name);
    }
    Changed();
}

// The picture floats where it stood, on the body: out of a table cell or
// any other parent, which would hold it in the flow.
void CHTMLImg::m_mnuAbsolutePosition_Click()
{
    if (m_Img.styleValue(kPosition) == QLatin1String("absolute")) {
        for (const QString &name : {kPosition, QStringLiteral("left"), QStringLiteral("top")})
            m_Img.removeStyleValue(name);
        Changed();
        return;
    }
    const int left = m_Img.offsetLeft(), top = m_Img.offsetTop();
    m_Img.setStyleValue(kPosition, QStringLiteral("absolute"));
    m_Img.setStyleValue(QStringLiteral("left"), QString::number(left) + QStringLiteral("px"));
    m_Img.setStyleValue(QStringLiteral("top"), QString::number(top) + QStringLiteral("px"));
    HtmlElement moved = LinkOrImage();
    HtmlDocument page;
    m_Document->GetDocument(page);
    moved.removeNode(true);
    page.body().insertAdjacentElement(QStringLiteral("beforeEnd"), moved);
    Changed();
}

void CHTMLImg::m_mnuZOrder_Click()
{
    frmImgZOrder form;
    form.LetImgZOrder(m_Img.styleValue(QStringLiteral("zIndex")));
    if (form.Show() != 1)
        return;
    m_Img.setStyleValue(QStringLiteral("zIndex"), form.GetImgZOrder());
    Changed();
}

void CHTMLImg::m_mnuHTMLImgCreateLink_Click()
{
    HtmlDocument page;
    m_Document->GetDocument(page);
    PageScriptCall::call(page.browser()->page(), QStringLiteral("img.select"), {m_Img.handle()},
                         QStringLiteral("CHTMLImg.m_mnuHTMLImgCreateLink_Click"));
    if (LinkCommand::CreateLink(*m_Document) == 1)
        Changed();
}

void CHTMLImg::m_mnuHTMLImgEditLink_Click()
{
    if (LinkCommand::EditLink(*m_Document, m_Img) == 1)
        Changed();
}

void CHTMLImg::m_mnuHTMLImgRemoveLink_Click()
{
    HtmlDocument page;
    m_Document->GetDocument(page);
    PageScriptCall::call(page.browser()->page(), QStringLiteral("img.select"), {m_Img.handle()},
                         QStringLiteral("CHTMLImg.m_mnuHTMLImgRemoveLink_Click"));
    page.execCommand(QStringLiteral("Unlink"));
    Changed();
}

// A picture of the site (or of the disk) may be scaled and compressed;
// one of another host only has its attributes.
void CHTMLImg::m_mnuHTMLImageProperties_Click()
{
    if (!OnOwnHost()) {
        frmImgProperties form;
        form.Init(m_Img);
        if (form.Show() == 1)
            Changed();
        return;
    }
    frmImageProperties form;
    if (form.Init(this) != 1) {
        // The file can't be read as a picture: said, and its attributes
        // can still be changed.
        MError::ShowError();
        frmImgProperties attributes;
        attributes.Init(m_Img);
        if (attributes.Show() == 1)
            Changed();
        return;
    }
    if (form.Show() == 1)
        Changed();
}
