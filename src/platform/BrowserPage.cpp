#include "platform/BrowserPage.h"

bool BrowserPage::acceptNavigationRequest(const QUrl &url, NavigationType, bool isMainFrame)
{
    bool cancel = false;
    emit beforeNavigate(url, isMainFrame, &cancel);
    return !cancel;
}
