#include "history/frmBrowser.h"

#include "history/CRollback.h"
#include "platform/EngineProfile.h"

#include <QApplication>
#include <QVBoxLayout>
#include <QWebEnginePage>
#include <QWebEngineView>

frmBrowser::frmBrowser(QWidget *parent)
    : QDialog(parent)
    , m_browser(new QWebEngineView(this))
{
    setObjectName(QStringLiteral("frmBrowser"));
    // A revision comes from the site, with the site's cookies of the browser.
    m_browser->setPage(new QWebEnginePage(EngineProfile::Shared(), m_browser));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_browser);
    resize(800, 600);
}

void frmBrowser::SetURL(const QString &strURL_p)
{
    m_browser->setUrl(QUrl(strURL_p));
}

void frmBrowser::SetTitle(const QString &strTitle_p)
{
    setWindowTitle(strTitle_p);
}

QUrl frmBrowser::URL() const
{
    return m_browser->url();
}

void frmBrowser::InstallAsRevisionViewer()
{
    CRollback::SetViewer([](const QString &strURL_p, const QString &strTitle_p) {
        frmBrowser window(QApplication::activeWindow());
        window.SetURL(strURL_p);
        window.SetTitle(strTitle_p);
        window.exec();
    });
}
