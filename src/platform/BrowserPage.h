#pragma once

#include <QWebEnginePage>

// The page behind the browser: it lets the owner cancel a navigation before
// it starts, and cancel or keep a request for a new window.
class BrowserPage : public QWebEnginePage
{
    Q_OBJECT

public:
    using QWebEnginePage::QWebEnginePage;

signals:
    void beforeNavigate(const QUrl &url, bool isMainFrame, bool *cancel);

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame) override;
};
