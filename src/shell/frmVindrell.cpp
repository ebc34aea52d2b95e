#include "shell/frmVindrell.h"

#include "platform/LocalFolders.h"
#include "support/MResources.h"
#include "support/StringIds.h"
#include "config/CPublicSettings.h"
#include "config/CSettingsFileDrop.h"
#include "platform/CReg.h"
#include "support/MError.h"
#include "support/UserQuestions.h"

#include <QDropEvent>
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
    setAcceptDrops(true);
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
    m_browser->load(QUrl::fromUserInput(m_address->text()));
}

void frmVindrell::navigateTo(const QString &address)
{
    m_browser->load(QUrl::fromUserInput(address));
}

void frmVindrell::dragEnterEvent(QDragEnterEvent *event)
{
    if (CSettingsFileDrop::Acceptable(event->mimeData()))
        event->acceptProposedAction();
}

void frmVindrell::dropEvent(QDropEvent *event)
{
    event->acceptProposedAction();
    QString address;
    if (!CSettingsFileDrop::ApplyMime(event->mimeData(), address)) {
        UserQuestions::MsgBox(MError::ErrorDescription(), UserQuestions::vbCritical, windowTitle());
        MError::ClearError();
    } else if (!address.isEmpty()) {
        navigateTo(address);
    }
}
