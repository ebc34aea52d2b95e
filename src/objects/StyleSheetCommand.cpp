#include "objects/StyleSheetCommand.h"

#include "config/MGlobalProjectObjects.h"
#include "fileviews/SiteTreeKeys.h"
#include "document/CDocument.h"
#include "platform/HttpControl.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QClipboard>
#include <QDateTime>
#include <QGuiApplication>

namespace {

enum Text : long { txtInsertStyleSheet = 17621, txtSpecifyHow = 17631, txtSpecifyTitle = 17632, txtWillBePasted = 17633,
                   txtSpecifyAgain = 17648, txtCopyPath = 17651, txtNoAnswer = 17652, txtReleaseEdit = 16813 };

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

// The scheme and host of an address, lower-cased: its part up to the
// third "/".
QString HostPart(const QString &address)
{
    const QString lower = address.trimmed().toLower();
    qsizetype at = -1;
    for (int i = 0; i < 3; ++i) {
        at = lower.indexOf(QLatin1Char('/'), at + 1);
        if (at < 0)
            return lower;
    }
    return lower.left(at);
}

// Long enough to tell a server that is slow from one that isn't there; the
// wait keeps the window alive meanwhile.
constexpr int kAnswerSeconds = 20;

} // namespace

bool StyleSheetCommand::IsSiteStyleSheet(const QString &strAddress_p, const QString &strSiteAddress_p)
{
    const QString address = strAddress_p.trimmed();
    const QString extension = address.mid(address.lastIndexOf(QLatin1Char('.')) + 1).toLower();
    return extension == QLatin1String("css") && HostPart(address) == HostPart(strSiteAddress_p);
}

long StyleSheetCommand::InsertStyleSheet(CDocument &document)
{
    const QString address = QGuiApplication::clipboard()->text().trimmed();
    if (address.size() <= 10 || !IsSiteStyleSheet(address, SiteTreeKeys::CurrentSite().baseaddress)) {
        UserQuestions::MsgBox(L(txtSpecifyHow) + L(txtCopyPath) + L(txtSpecifyAgain), UserQuestions::vbInformation,
                              L(txtSpecifyTitle));
        return -1;
    }
    // A sheet the server doesn't give out would leave the page unstyled
    // without a word: it is checked before it goes in.
    if (!Answers(address))
        return -1;
    UserQuestions::MsgBox(L(txtWillBePasted) + QLatin1Char('\n') + L(txtReleaseEdit), UserQuestions::vbInformation,
                          L(txtInsertStyleSheet));
    return LinkIntoHead(document, address);
}

bool StyleSheetCommand::Answers(const QString &strAddress_p)
{
    HttpControl http;
    MGlobalProjectObjects::ApplyHttpProxy(http);
    http.Timeout = kAnswerSeconds;
    if (http.Get(strAddress_p) == 1)
        return true;
    UserQuestions::MsgBox(L(txtNoAnswer).arg(strAddress_p, http.ErrorDescription()), UserQuestions::vbExclamation,
                          L(txtInsertStyleSheet));
    return false;
}

long StyleSheetCommand::LinkIntoHead(CDocument &document, const QString &strAddress_p)
{
    HtmlDocument page;
    document.GetDocument(page);
    const QList<HtmlElement> heads = page.getElementsByTagName(QStringLiteral("HEAD"));
    if (heads.isEmpty()) {
        MError::SetErrorIfClear(91, QStringLiteral("Object variable not set"), QStringLiteral("StyleSheetCommand.InsertStyleSheet"));
        return 0;
    }
    const QString id = QStringLiteral("Vindrell") + QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMddHHmm"));
    HtmlElement link = page.createElement(QStringLiteral("LINK"));
    link.setAttribute(QStringLiteral("id"), id);
    link.setAttribute(QStringLiteral("rel"), QStringLiteral("stylesheet"));
    link.setAttribute(QStringLiteral("type"), QStringLiteral("text/css"));
    link.setAttribute(QStringLiteral("href"), strAddress_p);
    HtmlElement head = heads.first();
    head.appendChild(link);
    if (MError::ErrorNumber() != 0)
        return 0;
    document.SetDirty();
    return 1;
}
