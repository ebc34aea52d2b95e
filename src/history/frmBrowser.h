#pragma once

#include <QDialog>
#include <QUrl>

class QWebEngineView;

// A bare window around a browser: the window in which a kept revision of a
// page is looked at, shown modal over the program.
class frmBrowser : public QDialog
{
    Q_OBJECT

public:
    explicit frmBrowser(QWidget *parent = nullptr);

    void SetURL(const QString &strURL_p);
    void SetTitle(const QString &strTitle_p);
    QUrl URL() const;

    // Makes CRollback::ViewBackup show its revisions in this window. Called
    // once at start by the program (the window lives in the GUI library, the
    // revisions in the core).
    static void InstallAsRevisionViewer();

private:
    QWebEngineView *m_browser;
};
