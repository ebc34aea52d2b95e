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

// The class by which an object names the Flash player.
const QString kFlashClassId = QStringLiteral("D27CDB6E-AE6D-11CF-96B8-444553540000");

// A size the author gave in pixels; a percentage or nothing leaves the box
// the size of its kind, as a new clip of the kind gets.
int SizeOf(const HtmlElement &element, const QString &side, int fallback)
{
    bool number = false;
    const int pixels = element.getAttribute(side).toString().trimmed().remove(QStringLiteral("px")).toInt(&number);
    return number && pixels > 0 ? pixels : fallback;
}

// The film an object names in its parameters, as the Flash player reads them.
QString ParamFile(const HtmlElement &object)
{
    for (const HtmlElement &param : object.children()) {
        const QString name = param.getAttribute(QStringLiteral("name")).toString().toLower();
        if (param.tagName() == QLatin1String("PARAM") && (name == QLatin1String("movie") || name == QLatin1String("src")))
            return param.getAttribute(QStringLiteral("value")).toString();
    }
    return {};
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
    const KindInfo &k = kKinds[kind];
    ShowPlaceholder(document, QStringLiteral("[%1=\"%2\"]").arg(KeyAttribute()).arg(key), kind, file, k.width, k.height);
    document.SetDirty();
    return MError::ErrorNumber() == 0 ? 1 : 0;
}

// A box of the clip's size with its kind and name drawn in it, and the
// engine's own player (and an object's stand-in content) hidden: a rule of
// the editor's style, tied to the element by its mark, which the saved page
// never holds.
void CHTMLMedia::ShowPlaceholder(CDocument &document, const QString &selector, Kind kind, const QString &strFile_p,
                                 int width, int height)
{
    const QString label = Escaped(L(kKinds[kind].caption) + QStringLiteral(": ") + QFileInfo(strFile_p).fileName());
    const QString svg = QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' width='%1' height='%2'>"
                                       "<text x='50%' y='50%' dominant-baseline='middle' text-anchor='middle' "
                                       "font-family='sans-serif' font-size='12' fill='#303030'>%3</text></svg>")
                            .arg(width)
                            .arg(height)
                            .arg(label);
    const QString rule =
        selector + QStringLiteral("{display:inline-block!important;box-sizing:border-box;width:%1px;height:%2px;"
                                  "border:1px dashed #707070;background:#e4e4e4 url(\"data:image/svg+xml,%3\") center no-repeat}")
                       .arg(width)
                       .arg(height)
                       .arg(QString::fromLatin1(QUrl::toPercentEncoding(svg)))
        + selector + QStringLiteral("::-webkit-media-controls{display:none!important}") + selector
        + QStringLiteral(">*{display:none!important}");
    HtmlDocument page;
    document.GetDocument(page);
    HtmlElement style = page.createElement(QStringLiteral("STYLE"));
    style.setAttribute(QStringLiteral("data-kelda"), QStringLiteral("1"));
    style.setInnerText(rule);
    HtmlElement head = page.getElementsByTagName(QStringLiteral("HEAD")).value(0);
    (head.isNull() ? page.body() : head).appendChild(style);
}

// The engine never shows a sound without a player, whatever the style
// says: one the author keeps out of sight (music behind the page) gets a
// player for the edit, so that the user sees its box and can pick it. The
// save takes the player off with the mark that says it was lent.
void CHTMLMedia::ShowHiddenSound(HtmlElement &element)
{
    if (element.tagName() != QLatin1String("AUDIO") || !element.getAttribute(QStringLiteral("controls")).isNull())
        return;
    element.setAttribute(QStringLiteral("keldacontrols"), QStringLiteral("1"));
    element.setAttribute(QStringLiteral("controls"), QString());
}

// Objects first: a Flash object's box stands for the embed the author put
// inside it for other browsers, which gets none of its own.
long CHTMLMedia::ShowExisting(CDocument &document)
{
    HtmlDocument page;
    document.GetDocument(page);
    int mark = 0;
    for (const char *tag : {"OBJECT", "EMBED", "AUDIO", "VIDEO"}) {
        for (HtmlElement &element : page.getElementsByTagName(QString::fromLatin1(tag))) {
            Kind kind = Sound;
            QString file;
            if (!KindOf(element, kind, file) || (element.tagName() == QLatin1String("EMBED") && InBoxedObject(element)))
                continue;
            element.setAttribute(BoxAttribute(), QString::number(mark));
            ShowHiddenSound(element);
            ShowPlaceholder(document, QStringLiteral("[%1=\"%2\"]").arg(BoxAttribute()).arg(mark++), kind, file,
                            SizeOf(element, QStringLiteral("width"), kKinds[kind].width),
                            SizeOf(element, QStringLiteral("height"), kKinds[kind].height));
        }
    }
    return MError::ErrorNumber() == 0 ? 1 : 0;
}

// What the element plays, and of which kind. An embed or object that is no
// Flash film counts by its file's extension; one that names no clip of a
// kind we know (a PDF, a plug-in's own data) keeps the engine's look.
bool CHTMLMedia::KindOf(const HtmlElement &element, Kind &kind, QString &strFile_p)
{
    const QString tag = element.tagName();
    const auto attribute = [&element](const char *name) { return element.getAttribute(QString::fromLatin1(name)).toString(); };
    if (tag == QLatin1String("AUDIO") || tag == QLatin1String("VIDEO")) {
        kind = tag == QLatin1String("AUDIO") ? Sound : Video;
        strFile_p = attribute("src");
        for (const HtmlElement &child : element.children())
            if (strFile_p.isEmpty() && child.tagName() == QLatin1String("SOURCE"))
                strFile_p = child.getAttribute(QStringLiteral("src")).toString();
        return true;
    }
    strFile_p = attribute(tag == QLatin1String("OBJECT") ? "data" : "src");
    if (tag == QLatin1String("OBJECT") && strFile_p.isEmpty())
        strFile_p = ParamFile(element);
    const QString path = QUrl(strFile_p).path();
    if (attribute("type").contains(QLatin1String("flash"), Qt::CaseInsensitive)
        || attribute("classid").contains(kFlashClassId, Qt::CaseInsensitive) || KnownFile(Flash, path))
        kind = Flash;
    else if (KnownFile(Sound, path))
        kind = Sound;
    else if (KnownFile(Video, path))
        kind = Video;
    else
        return false;
    return true;
}

bool CHTMLMedia::InBoxedObject(const HtmlElement &element)
{
    for (HtmlElement up = element.parentElement(); !up.isNull(); up = up.parentElement())
        if (up.tagName() == QLatin1String("OBJECT") && !up.getAttribute(BoxAttribute()).isNull())
            return true;
    return false;
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
