#include "platform/WebBrowser.h"

#include "platform/BrowserPage.h"
#include "platform/EngineProfile.h"
#include "platform/EngineProxy.h"
#include "platform/CReg.h"
#include "platform/FreshLoadInterceptor.h"
#include "platform/HtmlDocument.h"
#include "platform/PageEventSink.h"
#include "platform/PageScriptCall.h"

#include <QAuthenticator>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpServer>
#include <QWebChannel>
#include <QWebEngineHttpRequest>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineScript>
#include <QWebEngineSettings>
#include <QWebEngineScriptCollection>

namespace {

QString readResource(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll());
}

} // namespace

WebBrowser::WebBrowser(QWidget *parent)
    : QWebEngineView(parent)
{
    m_page = new BrowserPage(EngineProfile::Shared(), this);
    setPage(m_page);
    // The editor shows its own menus; the engine's never appears.
    setContextMenuPolicy(Qt::PreventContextMenu);
    // Cut, Copy and Paste of the editor's menus are commands of the engine,
    // run from the editor's script.
    m_page->settings()->setAttribute(QWebEngineSettings::JavascriptCanAccessClipboard, true);
    m_page->settings()->setAttribute(QWebEngineSettings::JavascriptCanPaste, true);

    m_fresh = new FreshLoadInterceptor(this);
    m_page->setUrlRequestInterceptor(m_fresh);

    m_sink = new PageEventSink(this);
    m_channel = new QWebChannel(this);
    m_channel->registerObject(QStringLiteral("keldaSink"), m_sink);
    m_page->setWebChannel(m_channel, PageScriptCall::worldId());
    injectRuntime();

    connect(m_sink, &PageEventSink::pageEvent, this, &WebBrowser::onPageEvent);
    connect(m_page, &BrowserPage::beforeNavigate, this,
            [this](const QUrl &url, bool top, bool *cancel) { emit BeforeNavigate2(url.toString(), top, cancel); });
    connect(m_page, &QWebEnginePage::newWindowRequested, this, &WebBrowser::onNewWindow);
    connect(m_page, &QWebEnginePage::urlChanged, this,
            [this](const QUrl &url) { emit NavigateComplete2(url.toString()); });
    connect(m_page, &QWebEnginePage::proxyAuthenticationRequired, this,
            [this](const QUrl &, QAuthenticator *authenticator, const QString &proxyHost) {
                EngineProxy::Answer(proxyHost, authenticator, m_proxyAnswers);
            });
    connect(m_page, &QWebEnginePage::loadStarted, this, [this] {
        m_proxyAnswers = 0;
        m_loading = true;
        m_everLoaded = true;
        m_topComplete = false;
    });
    connect(m_page, &QWebEnginePage::loadFinished, this, [this](bool) {
        m_loading = false;
        m_topComplete = true;
        applyRules();
    });
    connect(m_page, &QWebEnginePage::loadProgress, this,
            [this](int progress) { emit ProgressChange(progress, 100); });
    connect(m_page, &QWebEnginePage::windowCloseRequested, this, &WebBrowser::OnQuit);
}

WebBrowser::~WebBrowser()
{
    // The page must go before the interceptor and the channel it refers to.
    // Taking it away announces an empty address, which nobody may hear now:
    // the widgets around the browser are being destroyed.
    blockSignals(true);
    setPage(nullptr);
    delete m_page;
}

void WebBrowser::injectRuntime()
{
    QWebEngineScript script;
    script.setName(QStringLiteral("kelda-bridge"));
    script.setWorldId(PageScriptCall::worldId());
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setRunsOnSubFrames(true);
    script.setSourceCode(readResource(QStringLiteral(":/qtwebchannel/qwebchannel.js"))
                         + QStringLiteral("\n")
                         + readResource(QStringLiteral(":/keldacms/engine/kelda-bridge.js"))
                         + QStringLiteral("\n")
                         + readResource(QStringLiteral(":/keldacms/engine/kelda-objects.js"))
                         + QStringLiteral("\n")
                         + readResource(QStringLiteral(":/keldacms/engine/kelda-images.js"))
                         + QStringLiteral("\n")
                         + readResource(QStringLiteral(":/keldacms/engine/kelda-events.js"))
                         + QStringLiteral("\n")
                         + readResource(QStringLiteral(":/keldacms/engine/kelda-spelling.js"))
                         + QStringLiteral("\n")
                         + readResource(QStringLiteral(":/keldacms/engine/kelda-applets.js"))
                         + QStringLiteral("\n")
                         + readResource(QStringLiteral(":/keldacms/engine/kelda-layers.js")));
    m_page->scripts().insert(script);
}

QString WebBrowser::LocationURL() const
{
    return m_page->url().toString();
}

HtmlDocument WebBrowser::Document()
{
    return HtmlDocument(this, {});
}

int WebBrowser::ReadyState() const
{
    if (!m_everLoaded)
        return ReadyStateUninitialized;
    return m_loading || !m_topComplete ? ReadyStateLoading : ReadyStateComplete;
}

void WebBrowser::Navigate2(const QString &url, int flags)
{
    catchUpWithProxy();
    const QUrl address = QUrl::fromUserInput(url);
    if (flags & NavNoReadFromCache)
        m_fresh->mark(address);
    m_page->load(address);
}

// The engine reads the application's proxy only when it next looks up the
// way to an address, and the request that makes it read still goes the old
// way: the first page after a change of the proxy settings would go past
// the new proxy, or to the one the user just left. So that page is
// preceded by a request of no consequence, to a port of this machine that
// nobody answers on (the engine sends this machine's addresses straight,
// whatever the proxy), and waits for it. The engine's proxy is one for all
// browsers, hence one count of the changes seen.
void WebBrowser::catchUpWithProxy()
{
    static int seen = 0;
    if (EngineProxy::Changes() == seen)
        return;
    seen = EngineProxy::Changes();
    quint16 port = 0;
    {
        QTcpServer closed;
        closed.listen(QHostAddress::LocalHost);
        port = closed.serverPort();
    }
    QWebEnginePage probe(m_page->profile());
    bool finished = false;
    connect(&probe, &QWebEnginePage::loadFinished, this, [&finished] { finished = true; });
    probe.load(QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(port)));
    PageScriptCall::pumpUntil([&finished] { return finished; }, 3000);
}

void WebBrowser::Refresh()
{
    m_page->triggerAction(QWebEnginePage::Reload);
}

void WebBrowser::GoHome()
{
    Navigate2(homePage());
}

void WebBrowser::GoBack()
{
    m_page->triggerAction(QWebEnginePage::Back);
}

void WebBrowser::GoForward()
{
    m_page->triggerAction(QWebEnginePage::Forward);
}

void WebBrowser::removeFromCache(const QUrl &url)
{
    m_fresh->mark(url);
}

QString WebBrowser::homePage()
{
    CReg browserKey;
    browserKey.Subkey = QStringLiteral("Browser");
    return browserKey.GetRegistryValue(QStringLiteral("HomePage"), QStringLiteral("about:blank")).toString();
}

void WebBrowser::setSwallowedKeys(const QList<int> &keyCodes)
{
    m_swallowKeys = keyCodes;
    applyRules();
}

void WebBrowser::setCancelPaste(bool cancel)
{
    m_cancelPaste = cancel;
    applyRules();
}

void WebBrowser::setCancelDrop(bool cancel)
{
    m_cancelDrop = cancel;
    applyRules();
}

// Sent without waiting: a page that is still loading takes them when its
// runtime is there, and each finished load sends them again.
void WebBrowser::applyRules()
{
    QJsonArray keys;
    for (int k : m_swallowKeys)
        keys.append(k);
    const QJsonObject rules{{QStringLiteral("swallowKeys"), keys},
                            {QStringLiteral("cancelPaste"), m_cancelPaste},
                            {QStringLiteral("cancelDrop"), m_cancelDrop}};
    const QString json = QString::fromUtf8(QJsonDocument(rules).toJson(QJsonDocument::Compact));
    m_page->runJavaScript(QStringLiteral("window.__kelda && __kelda.setRules(%1)").arg(json),
                          PageScriptCall::worldId());
}

void WebBrowser::onPageEvent(const PageEvent &event)
{
    if (event.type == QStringLiteral("documentcomplete")) {
        const bool isTop = event.frame.isEmpty();
        if (isTop)
            m_topComplete = true;
        emit DocumentComplete(event.frame, event.key, isTop);
        return;
    }
    // The event arrives inside the engine's own message handling, where a
    // call into the page never gets its answer; its handlers (a right
    // click's menu reads the page) run from the event loop instead, in
    // the order the events came.
    QMetaObject::invokeMethod(this, [this, event] { emit pageEvent(event); }, Qt::QueuedConnection);
}

// The editor has one window: a page's request for a new one either is
// cancelled or opens in this browser.
void WebBrowser::onNewWindow(QWebEngineNewWindowRequest &request)
{
    bool cancel = false;
    emit NewWindow2(request.requestedUrl().toString(), &cancel);
    if (!cancel)
        m_page->load(request.requestedUrl());
}

bool WebBrowser::waitUntilComplete(int deadlineMs)
{
    return PageScriptCall::pumpUntil([this] { return ReadyState() == ReadyStateComplete; }, deadlineMs);
}
