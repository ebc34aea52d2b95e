#include "shell/frmVindrell.h"

#include "config/CPublicSettings.h"
#include "config/CSettingsFileDropTarget.h"
#include "platform/CReg.h"
#include "support/MResources.h"
#include "support/StringIds.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWebEngineView>

frmVindrell::frmVindrell(QWidget *parent)
    : QMainWindow(parent)
{
    // The language is chosen once, before any caption is set.
    MResources::InitLangSupport();
    setWindowTitle(MResources::LoadResourceString(StringIds::ProgramName));
    auto *central = new QWidget(this);
    auto *column = new QVBoxLayout(central);
    auto *addressRow = new QHBoxLayout;
    m_address = new QLineEdit(central);
    auto *go = new QPushButton(MResources::LoadResourceString(StringIds::GoButton), central);
    addressRow->addWidget(m_address, 1);
    addressRow->addWidget(go);
    column->addLayout(addressRow);
    m_browser = new QWebEngineView(central);
    column->addWidget(m_browser, 1);
    setCentralWidget(central);
    resize(1024, 768);
    new CSettingsFileDropTarget(this, [this](const QString &address) { navigateTo(address); });
    MGlobalProjectObjects::g_strUserName = CReg::GetSetting(QStringLiteral("settings"), QStringLiteral("username"));
    MGlobalProjectObjects::g_strUserMail = CReg::GetSetting(QStringLiteral("settings"), QStringLiteral("usermail"));
    CPublicSettings().GetURLSettings();

    connect(go, &QPushButton::clicked, this, &frmVindrell::navigateToAddressRow);
    connect(m_address, &QLineEdit::returnPressed, this, &frmVindrell::navigateToAddressRow);
    connect(m_browser, &QWebEngineView::urlChanged, this,
            [this](const QUrl &url) { m_address->setText(url.toString()); });
    m_browser->load(QUrl(homePage()));
}

QString frmVindrell::homePage()
{
    CReg browserKey;
    browserKey.Subkey = QStringLiteral("Browser");
    return browserKey.GetRegistryValue(QStringLiteral("HomePage"), QStringLiteral("about:blank")).toString();
}

void frmVindrell::navigateToAddressRow()
{
    navigateTo(m_address->text());
}

void frmVindrell::navigateTo(const QString &address)
{
    m_browser->load(QUrl::fromUserInput(address));
}
