#include "objects/PageBackgroundCommand.h"

#include "document/CDocument.h"
#include "fileviews/frmSiteTree.h"
#include "objects/CHTMLImg.h"
#include "objects/CImageManager.h"
#include "objects/frmColorDropper.h"
#include "platform/LocalPictureScheme.h"
#include "support/MError.h"
#include "support/MResources.h"

namespace {

constexpr long txtBackgroundColor = 17617;

const QString kBackground = QStringLiteral("background");
const QString kBgColor = QStringLiteral("bgColor");
const QString kSrcPath = QStringLiteral("BkndImgSrcPath");
const QString kUploadPath = QStringLiteral("BkndImgUploadPath");
const QString kDocPath = QStringLiteral("BkndImgDocPath");
const QString kNoFolder = QStringLiteral("|new|");
// The picture replaces the page's own where it lies on the server.
const QString kReplaced = QStringLiteral("bytad");

HtmlElement BodyOf(CDocument &document)
{
    HtmlDocument page;
    document.GetDocument(page);
    return page.body();
}

} // namespace

long PageBackgroundCommand::Changed(CDocument &document)
{
    if (MError::ErrorNumber() != 0)
        return 0;
    document.SetDirty();
    return 1;
}

long PageBackgroundCommand::SetColor(CDocument &document)
{
    HtmlElement body = BodyOf(document);
    const QString color = frmColorDropper::ChooseColor(nullptr, body.getAttribute(kBgColor).toString(),
                                                        MResources::LoadResourceString(txtBackgroundColor));
    if (color.isEmpty())
        return -1;
    body.setAttribute(kBgColor, color);
    return Changed(document);
}

long PageBackgroundCommand::RemoveColor(CDocument &document)
{
    HtmlElement body = BodyOf(document);
    body.removeAttribute(kBgColor);
    body.removeStyleValue(QStringLiteral("backgroundColor"));
    return Changed(document);
}

long PageBackgroundCommand::RetrieveColor(CDocument &document)
{
    frmColorDropper dropper;
    dropper.Init(kBgColor, BodyOf(document));
    return dropper.Show() == 1 ? Changed(document) : -1;
}

bool PageBackgroundCommand::HasPicture(const HtmlElement &body)
{
    return !body.getAttribute(kBackground).toString().isEmpty();
}

long PageBackgroundCommand::AskUploadFolder(QString &strFolder_p)
{
    const long chosen = frmSiteTree::Instance().GetUpLoadPath(strFolder_p);
    if (chosen == 1 && strFolder_p.isEmpty())
        strFolder_p = kNoFolder;
    return chosen;
}

// Three cases: a page without a background asks where the picture is to
// go; a page whose background is on the server has it replaced there; a
// picture still waiting for its upload is just exchanged.
long PageBackgroundCommand::SetPicture(CDocument &document)
{
    const QString file = CHTMLImg::ChoosePictureFile(nullptr);
    if (file.isEmpty())
        return -1;
    // A file that is no picture never reaches the page: the reason is shown
    // with its name.
    long width = 0, height = 0;
    if (CImageManager().GetImageSize(file, width, height) != 1) {
        MError::ShowError();
        return -1;
    }
    HtmlElement body = BodyOf(document);
    if (!HasPicture(body)) {
        QString folder;
        const long chosen = AskUploadFolder(folder);
        if (chosen != 1)
            return chosen;
        body.setAttribute(kSrcPath, file);
        body.setAttribute(kUploadPath, folder);
    } else if (body.getAttribute(kSrcPath).isNull()) {
        HtmlDocument page;
        document.GetDocument(page);
        body.setAttribute(kSrcPath, file);
        body.setAttribute(kUploadPath, kReplaced);
        body.setAttribute(kDocPath, page.pathname());
    } else {
        body.setAttribute(kSrcPath, file);
    }
    body.setAttribute(kBackground, file);
    body.setStyleValue(QStringLiteral("backgroundImage"),
                       QStringLiteral("url(\"") + LocalPictureScheme::AddressOf(file) + QStringLiteral("\")"));
    return Changed(document);
}

long PageBackgroundCommand::RemovePicture(CDocument &document)
{
    HtmlElement body = BodyOf(document);
    for (const QString &name : {kBackground, kSrcPath, kUploadPath, kDocPath})
        body.removeAttribute(name);
    body.removeStyleValue(QStringLiteral("backgroundImage"));
    return Changed(document);
}
