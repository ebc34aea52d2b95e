#pragma once

#include "platform/PageEvent.h"

#include <QList>
#include <QUrl>
#include <QWebEngineView>

class BrowserPage;
class FreshLoadInterceptor;
class HtmlDocument;
class PageEventSink;
class QWebChannel;

// The embedded browser: a web view with the editor's runtime injected into
// every frame, the browser calls and events the editor relies on, and the
// page's own events delivered as signals.
class WebBrowser : public QWebEngineView
{
    Q_OBJECT

public:
    static constexpr int NavNoReadFromCache = 4;
    static constexpr int ReadyStateUninitialized = 0;
    static constexpr int ReadyStateLoading = 1;
    static constexpr int ReadyStateComplete = 4;

    explicit WebBrowser(QWidget *parent = nullptr);
    ~WebBrowser() override;

    QString LocationURL() const;
    HtmlDocument Document();
    int ReadyState() const;

    void Navigate2(const QString &url, int flags = 0);
    void Refresh();
    void GoHome();
    void GoBack();
    void GoForward();

    // Makes the next load of the address come from the server.
    void removeFromCache(const QUrl &url);

    // The home page from the settings store, or about:blank when none is set.
    static QString homePage();

    // Keys (DOM key codes) whose default the page runtime cancels, and
    // whether paste and drop are cancelled in the page. They hold across
    // navigations.
    void setSwallowedKeys(const QList<int> &keyCodes);
    void setCancelPaste(bool cancel);
    void setCancelDrop(bool cancel);

    // Waits, pumping events, until the top document and its frames are
    // complete. Gives false when the deadline passed first.
    bool waitUntilComplete(int deadlineMs = 15000);

signals:
    void BeforeNavigate2(const QString &url, bool isTopFrame, bool *cancel);
    void NewWindow2(const QString &url, bool *cancel);
    void NavigateComplete2(const QString &url);
    void DocumentComplete(const QList<int> &framePath, const QString &url, bool isTop);
    void ProgressChange(int progress, int progressMax);
    void OnQuit();
    void pageEvent(const PageEvent &event);

private:
    void injectRuntime();
    void catchUpWithProxy();
    void onPageEvent(const PageEvent &event);
    void applyRules();
    void onNewWindow(class QWebEngineNewWindowRequest &request);

    BrowserPage *m_page = nullptr;
    PageEventSink *m_sink = nullptr;
    QWebChannel *m_channel = nullptr;
    FreshLoadInterceptor *m_fresh = nullptr;
    int m_proxyAnswers = 0; // the proxy's password given in this page
    bool m_loading = false;
    bool m_everLoaded = false;
    bool m_topComplete = false;
    QList<int> m_swallowKeys;
    bool m_cancelPaste = false;
    bool m_cancelDrop = false;
};
