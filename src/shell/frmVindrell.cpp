#include "shell/frmVindrell.h"

#include "platform/WebBrowser.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

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
    connect(m_browser, &WebBrowser::urlChanged, this,
            [this](const QUrl &url) { m_address->setText(url.toString()); });
    m_browser->GoHome();
}

QString frmVindrell::homePage()
{
    return WebBrowser::homePage();
}

void frmVindrell::navigateToAddressRow()
{
    m_browser->Navigate2(m_address->text());
}
