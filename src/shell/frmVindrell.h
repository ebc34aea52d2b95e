#pragma once

#include <QMainWindow>

class QLineEdit;
class QWebEngineView;

// The main window: an address row above the embedded browser. It opens on
// the home page kept in the settings store (key Browser, value HomePage).
class frmVindrell : public QMainWindow
{
    Q_OBJECT

public:
    explicit frmVindrell(QWidget *parent = nullptr);

    QWebEngineView *browser() const { return m_browser; }

    // The home page from the settings store, or about:blank when none is set.
    static QString homePage();

    // Shows the given address in the browser.
    void navigateTo(const QString &address);

private:
    void navigateToAddressRow();

    QLineEdit *m_address = nullptr;
    QWebEngineView *m_browser = nullptr;
};
