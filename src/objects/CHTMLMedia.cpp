#include "objects/CHTMLMedia.h"

#include "document/CDocument.h"
#include "fileviews/ServerFolderPaths.h"
#include "fileviews/SiteFileDialogs.h"
#include "fileviews/frmSiteTree.h"
#include "objects/ImageUpload.h"
#include "platform/CReg.h"
#include "platform/HtmlTextRange.h"
#include "platform/LocalPictureScheme.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace {

enum Text : long { txtSound = 17615, txtVideo = 17616, txtFlash = 17642, txtSoundFilter = 17664,
                   txtFlashFilter = 17665, txtVideoFilter = 17666, txtChooseSound = 17667, txtChooseFlash = 17668,
                   txtChooseVideo = 17669, txtNotMedia = 17670 };

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

struct KindInfo
{
    long caption, filter, choose;
    int width, height; // the box it shows as, and a video's or film's size
    const char *extensions;
};

// A sound clip is the height of a player's bar; films and videos take
// the size most players start at.
const KindInfo kKinds[] = {
    {txtSound, txtSoundFilter, txtChooseSound, 300, 40, "mp3 wav ogg oga mid midi m4a"},
    {txtFlash, txtFlashFilter, txtChooseFlash, 400, 300, "swf"},
    {txtVideo, txtVideoFilter, txtChooseVideo, 320, 240, "mp4 webm ogv mov avi mpg mpeg wmv flv"},
};

QString Escaped(const QString &text)
{
    return text.toHtmlEscaped();
}

} // namespace

bool CHTMLMedia::KnownFile(Kind kind, const QString &strFile_p)
{
    const QStringList known = QString::fromLatin1(kKinds[kind].extensions).split(QLatin1Char(' '));
    return known.contains(QFileInfo(strFile_p).suffix().toLower());
}

QString CHTMLMedia::Markup(Kind kind, const QString &strSrc_p)
{
    const KindInfo &k = kKinds[kind];
    const QString src = Escaped(strSrc_p);
    switch (kind) {
    case Sound: return QStringLiteral("<audio controls src=\"%1\"></audio>").arg(src);
    case Flash:
        return QStringLiteral("<embed type=\"application/x-shockwave-flash\" src=\"%1\" width=\"%2\" height=\"%3\">")
            .arg(src)
            .arg(k.width)
            .arg(k.height);
    case Video:
        return QStringLiteral("<video controls src=\"%1\" width=\"%2\" height=\"%3\"></video>").arg(src).arg(k.width).arg(k.height);
    }
    return {};
}

// The folder of the last file chosen is offered again, as for pictures.
QString CHTMLMedia::ChooseFile(Kind kind)
{
    const KindInfo &k = kKinds[kind];
    const QString folder = CReg::GetSetting(QStringLiteral("lastdialogs"), QStringLiteral("mediapath"), QDir::homePath());
    const QString file = SiteFileDialogs::OpenFileName(nullptr, L(k.choose), folder, L(k.filter));
    if (file.isEmpty())
        return {};
    const QFileInfo info(file);
    if (!info.isFile() || !info.isReadable() || !KnownFile(kind, file)) {
        UserQuestions::MsgBox(L(txtNotMedia).arg(info.fileName(), L(k.caption).toLower(),
                                                 QString::fromLatin1(k.extensions).replace(QLatin1Char(' '), QStringLiteral(", "))),
                              UserQuestions::vbExclamation, L(k.caption));
        return {};
    }
    CReg::SaveSetting(QStringLiteral("lastdialogs"), QStringLiteral("mediapath"), info.absolutePath());
    return file;
}

// The tag goes in with a mark by which it is found, taken off at once.
HtmlElement CHTMLMedia::Place(HtmlDocument &page, HtmlTextRange &range, Kind kind, const QString &strFile_p)
{
    const QString mark = QStringLiteral("kelda-media-") + QString::number(QDateTime::currentMSecsSinceEpoch());
    QString html = Markup(kind, LocalPictureScheme::AddressOf(strFile_p));
    html.insert(html.indexOf(QLatin1Char(' ')), QStringLiteral(" id=\"%1\"").arg(mark));
    range.pasteHTML(html);
    HtmlElement element = page.getElementById(mark);
    if (!element.isNull())
        element.removeAttribute(QStringLiteral("id"));
    return element;
}

long CHTMLMedia::Insert(CDocument &document, HtmlTextRange &range, Kind kind)
{
    const QString file = ChooseFile(kind);
    if (file.isEmpty())
        return -1;
    frmSiteTree &tree = frmSiteTree::Instance();
    QString upload;
    const long chosen = tree.GetUpLoadPath(upload);
    if (chosen != 1)
        return chosen;
    HtmlDocument page;
    document.GetDocument(page);
    auto media = std::make_unique<CHTMLMedia>();
    media->m_Document = &document;
    media->m_strWebFolder = ServerFolderPaths::RelativePath(page.pathname(), tree.ChosenKey());
    media->m_Element = Place(page, range, kind, file);
    if (media->m_Element.isNull())
        return MError::ErrorNumber() == 0 ? -1 : 0;
    CHTMLMedia *self = media.get();
    const long key = document.AddObject(std::move(media)) - 1;
    if (self->LetKeldaKey(key) != 1)
        return 0;
    self->ShowPlaceholder(kind, file);
    document.SetDirty();
    return MError::ErrorNumber() == 0 ? 1 : 0;
}

// A box of the clip's size with its kind and name drawn in it, and the
// engine's own player hidden: a rule of the editor's style, keyed to the
// object, which the saved page never holds.
void CHTMLMedia::ShowPlaceholder(Kind kind, const QString &strFile_p)
{
    const KindInfo &k = kKinds[kind];
    const QString label = Escaped(L(k.caption) + QStringLiteral(": ") + QFileInfo(strFile_p).fileName());
    const QString svg = QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' width='%1' height='%2'>"
                                       "<text x='50%' y='50%' dominant-baseline='middle' text-anchor='middle' "
                                       "font-family='sans-serif' font-size='12' fill='#303030'>%3</text></svg>")
                            .arg(k.width)
                            .arg(k.height)
                            .arg(label);
    const QString key = QStringLiteral("[keldakey=\"%1\"]").arg(m_lKey);
    const QString rule =
        key + QStringLiteral("{display:inline-block!important;box-sizing:border-box;width:%1px;height:%2px;"
                             "border:1px dashed #707070;background:#e4e4e4 url(\"data:image/svg+xml,%3\") center no-repeat}")
                  .arg(k.width)
                  .arg(k.height)
                  .arg(QString::fromLatin1(QUrl::toPercentEncoding(svg)))
        + key + QStringLiteral("::-webkit-media-controls{display:none!important}");
    HtmlDocument page;
    m_Document->GetDocument(page);
    HtmlElement style = page.createElement(QStringLiteral("STYLE"));
    style.setAttribute(QStringLiteral("data-kelda"), QStringLiteral("1"));
    style.setInnerText(rule);
    HtmlElement head = page.getElementsByTagName(QStringLiteral("HEAD")).value(0);
    (head.isNull() ? page.body() : head).appendChild(style);
}

long CHTMLMedia::IsDirty(bool &boolIsDirty_p) const
{
    boolIsDirty_p = m_boolDirty;
    return 1;
}

// The file goes up under a name the server takes (a clash is asked about,
// as for pictures); after that the clip is one of the page.
long CHTMLMedia::Save(HtmlDocument &Document_p)
{
    if (!m_Element.isConnected() || m_Element.getAttribute(KeyAttribute()).toString() != QString::number(m_lKey))
        return 1;
    const QString local = LocalPictureScheme::PathOf(m_Element.getAttribute(QStringLiteral("src")).toString());
    if (local.isEmpty())
        return -1;
    const QString folder = m_strWebFolder.isEmpty() ? QString() : m_strWebFolder + QLatin1Char('/');
    QString name;
    if (ImageUpload::Send(Document_p, local, folder, name) != 1)
        return 0;
    m_Element.setAttribute(QStringLiteral("src"), folder + name);
    return MError::ErrorNumber() == 0 ? 1 : 0;
}

long CHTMLMedia::LetKeldaKey(long lNewKey_p)
{
    m_lKey = lNewKey_p;
    m_Element.setAttribute(KeyAttribute(), QString::number(lNewKey_p));
    return MError::ErrorNumber() == 0 ? 1 : 0;
}

long CHTMLMedia::GetKeldaKey(long &lKey_p) const
{
    lKey_p = m_lKey;
    return 1;
}
