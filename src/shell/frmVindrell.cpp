#include "shell/frmVindrell.h"

#include "config/CPublicSettings.h"
#include "config/CSettingsFileDrop.h"
#include "platform/CReg.h"
#include "support/MError.h"
#include "support/UserQuestions.h"

#include <QApplication>
#include <QDropEvent>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
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
    m_browser = new QWebEngineView(central);
    column->addWidget(m_browser, 1);
    setCentralWidget(central);
    resize(1024, 768);
    setAcceptDrops(true);
    qApp->installEventFilter(this); // settings files dropped on the page, too
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

// The page takes drops of its own; a settings file dropped anywhere on the
// window is taken here instead, and every other drop goes on to the page.
bool frmVindrell::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop)
        return QMainWindow::eventFilter(watched, event);
    auto *widget = qobject_cast<QWidget *>(watched);
    auto *drop = static_cast<QDropEvent *>(event);
    if (!widget || widget == this || !isAncestorOf(widget)
        || !CSettingsFileDrop::CarriesSettingsFile(drop->mimeData()))
        return QMainWindow::eventFilter(watched, event);
    if (type == QEvent::Drop)
        dropEvent(drop);
    else
        drop->acceptProposedAction();
    return true;
}
