#include "shell/frmVindrell.h"

#include "platform/LocalFolders.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QVBoxLayout>
#include <QWebEngineView>

frmVindrell::frmVindrell(QWidget *parent)
    : QMainWindow(parent)
{
    setWindowTitle(QStringLiteral("VindrellCMS"));
    auto *central = new QWidget(this);
    auto *column = new QVBoxLayout(central);
    auto *addressRow = new QHBoxLayout;
    m_address = new QLineEdit(central);
    auto *go = new QPushButton(tr("Go"), central);
    addressRow->addWidget(m_address, 1);
    addressRow->addWidget(go);
    column->addLayout(addressRow);
    m_browser = new WebBrowser(central);
    column->addWidget(m_browser, 1);
    setCentralWidget(central);
    resize(1024, 768);

    connect(go, &QPushButton::clicked, this, &frmVindrell::navigateToAddressRow);
    connect(m_address, &QLineEdit::returnPressed, this, &frmVindrell::navigateToAddressRow);
    connect(m_browser, &QWebEngineView::urlChanged, this,
            [this](const QUrl &url) { m_address->setText(url.toString()); });
    m_browser->load(QUrl(homePage()));
}

QString frmVindrell::homePage()
{
    QSettings store(LocalFolders::configFolder() + QStringLiteral("/keldacms.ini"),
                    QSettings::IniFormat);
    return store.value(QStringLiteral("Browser/HomePage"), QStringLiteral("about:blank")).toString();
}

void frmVindrell::navigateToAddressRow()
{
    m_browser->load(QUrl::fromUserInput(m_address->text()));
}
