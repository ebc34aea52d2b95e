#include "document/CPageMetaTags.h"

#include "config/MGlobalProjectObjects.h"
#include "document/CSaveText.h"
#include "platform/CReg.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

namespace {

using G = MGlobalProjectObjects;

enum Text : long {
    txtCharsetTitle = 16600, txtWindowsCharset = 16601, txtUnsavableCharset = 16602,
    txtInfo = 16603, txtCharsetTag = 16604, txtToWestern = 16605, txtToUnicode = 16606,
    txtToUnicodeOrNo = 16607, txtNoSave = 16608, txtYes = 16609, txtNo = 16610
};

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

QString Quoted(long id)
{
    return QLatin1Char('"') + L(id) + QLatin1Char('"');
}

constexpr long kLatin1 = 1;
constexpr long kUtf8 = 3;

} // namespace

long CPageMetaTags::CheckCharCodeMetaTag(HtmlDocument &doc, bool keepsBytes)
{
    HtmlElement head = Head(doc);
    if (head.isNull())
        return 1; // nothing declares a charset; the encoding step uses its default
    bool found = false;
    QList<HtmlElement> drop;
    for (HtmlElement meta : HeadMetas(head)) {
        if (HttpEquiv(meta) != QLatin1String("content-type"))
            continue;
        const QString content = meta.getAttribute(QStringLiteral("content")).toString().toLower();
        if (!content.contains(QLatin1String("charset")))
            continue;
        if (G::UseTidy) {
            found = true;
            if (G::TidyCharEncodingType == 0 || G::TidyCharEncodingType == kLatin1
                || G::TidyCharEncodingType == kUtf8)
                meta.setAttribute(QStringLiteral("content"), ContentOfType(G::TidyCharEncodingType));
            continue;
        }
        const Action action = AskAboutCharset(meta, content, keepsBytes);
        if (action == Refuse)
            return -1;
        if (action == Drop)
            drop.append(meta);
    }
    for (HtmlElement &meta : drop)
        meta.removeNode(false);
    if (G::UseTidy && !found)
        InsertCharsetTag(doc, head);
    return 1;
}

long CPageMetaTags::AddMetaEditTags(HtmlDocument &doc, const QString &strSaveDate)
{
    HtmlElement head = Head(doc);
    if (head.isNull()) {
        MError::SetErrorIfClear(10011, QStringLiteral("The page has no head"),
                                QStringLiteral("CDocument.AddMetaEditTags"));
        return 0;
    }
    struct Wanted { QString equiv; QString name; QString content; bool seen; };
    QList<Wanted> wanted = {
        {QStringLiteral("expires"), QStringLiteral("Expires"), QStringLiteral("-1"), false},
        {QStringLiteral("pragma"), QStringLiteral("Pragma"), QStringLiteral("no-cache"), false},
        {QStringLiteral("last-modified"), QStringLiteral("Last-Modified"), strSaveDate, false}};
    for (HtmlElement meta : HeadMetas(head)) {
        const QString equiv = HttpEquiv(meta);
        for (Wanted &w : wanted) {
            if (equiv == w.equiv) {
                meta.setAttribute(QStringLiteral("content"), w.content);
                w.seen = true;
            }
        }
    }
    for (const Wanted &w : wanted) {
        if (w.seen)
            continue;
        HtmlElement meta = doc.createElement(QStringLiteral("META"));
        meta.setAttribute(QStringLiteral("http-equiv"), w.name);
        meta.setAttribute(QStringLiteral("content"), w.content);
        if (head.insertAdjacentElement(QStringLiteral("beforeEnd"), meta).isNull())
            return 0;
    }
    return MError::ErrorNumber() == 0 ? 1 : 0;
}

QString CPageMetaTags::ContentOfType(long type)
{
    const QString charset = CSaveText::CharsetOfType(type);
    return charset.isEmpty() ? QString() : QStringLiteral("text/html; charset=") + charset;
}

HtmlElement CPageMetaTags::Head(const HtmlDocument &doc)
{
    const QList<HtmlElement> heads = doc.getElementsByTagName(QStringLiteral("HEAD"));
    return heads.isEmpty() ? HtmlElement() : heads.first();
}

QList<HtmlElement> CPageMetaTags::HeadMetas(const HtmlElement &head)
{
    QList<HtmlElement> metas;
    for (const HtmlElement &e : head.all()) {
        if (e.tagName() == QLatin1String("META"))
            metas.append(e);
    }
    return metas;
}

QString CPageMetaTags::HttpEquiv(const HtmlElement &meta)
{
    return meta.getAttribute(QStringLiteral("http-equiv")).toString().toLower();
}

// First match wins, so "windows-1252" is asked about only when the tag does
// not also name a western ISO charset.
CPageMetaTags::Action CPageMetaTags::AskAboutCharset(const HtmlElement &meta, const QString &content, bool keepsBytes)
{
    if (content.contains(QLatin1String("iso-8859-1")) || content.contains(QLatin1String("us-ascii")))
        return Keep;
    if (content.contains(QLatin1String("windows-1252")))
        return AskToConvert(meta, Question(txtWindowsCharset, txtToWestern, false), kLatin1) ? Drop : Keep;
    // The questions below warn of a page the engine's text can't carry in
    // its charset. A save into the page's own bytes writes every new
    // character in that charset (or as a number), so asking would only
    // offer to rewrite a page that is fine, or refuse to save it.
    if (keepsBytes)
        return Keep;
    const QString toUnicode = Question(txtUnsavableCharset, txtToUnicode, false);
    if (content.contains(QLatin1String("iso-8859-2")))
        return AskToConvert(meta, toUnicode, kUtf8) ? Drop : Keep;
    // A UTF-8 page may keep its text as it is; only the tag goes, so the
    // page is not declared twice once saved.
    if (content.contains(QLatin1String("utf-8"))) {
        AskToConvert(meta, toUnicode, kUtf8);
        return Drop;
    }
    return AskToConvert(meta, Question(txtUnsavableCharset, txtToUnicodeOrNo, true), kUtf8) ? Drop : Refuse;
}

bool CPageMetaTags::AskToConvert(const HtmlElement &meta, const QString &question, long type)
{
    const QString prompt = question + QStringLiteral("\n\n") + L(txtInfo) + QLatin1Char('\n') + L(txtCharsetTag)
                           + QLatin1Char('\n') + meta.outerHTML();
    const long answer = UserQuestions::MsgBox(prompt, UserQuestions::vbYesNo | UserQuestions::vbQuestion,
                                              L(txtCharsetTitle));
    if (answer != UserQuestions::vbYes)
        return false;
    SwitchTidyOn(type);
    return true;
}

QString CPageMetaTags::Question(long firstPart, long lastPart, bool warnNo)
{
    QString text = L(firstPart) + Quoted(txtYes) + L(lastPart);
    if (warnNo)
        text += Quoted(txtNo) + L(txtNoSave);
    return text;
}

// The choice holds for the rest of the session and the next ones: the next
// page saved goes through Tidy without a question.
void CPageMetaTags::SwitchTidyOn(long type)
{
    G::UseTidy = true;
    G::TidyCharEncodingType = type;
    const QString section = QStringLiteral("Advanced");
    CReg::SaveSetting(section, QStringLiteral("UseTidy"), QStringLiteral("True"));
    CReg::SaveSetting(section, QStringLiteral("TidyCharEncodingType"), QString::number(type));
}

void CPageMetaTags::InsertCharsetTag(HtmlDocument &doc, HtmlElement &head)
{
    HtmlElement meta = doc.createElement(QStringLiteral("META"));
    meta.setAttribute(QStringLiteral("http-equiv"), QStringLiteral("content-type"));
    const QString content = ContentOfType(G::TidyCharEncodingType);
    if (!content.isEmpty())
        meta.setAttribute(QStringLiteral("content"), content);
    head.insertAdjacentElement(QStringLiteral("afterBegin"), meta);
}
