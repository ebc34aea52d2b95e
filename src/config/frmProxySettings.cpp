#include "config/frmProxySettings.h"

#include "config/MGlobalProjectObjects.h"
#include "config/MNetworksFuncs.h"
#include "config/frmProxyExtraInfo.h"
#include "config/frmSettingsHelp.h"
#include "platform/FtpControl.h"
#include "platform/HttpControl.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"
#include "transfer/FtpAddress.h"

#include <QApplication>
#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

using G = MGlobalProjectObjects;

enum Text : long {
    txtGet = 15000, txtUseHTTP = 15001, txtHTTPAddress = 15002, txtHTTPPort = 15003, txtHTTPPassword = 15004,
    txtUseFTP = 15005, txtFTPAddress = 15006, txtFTPPort = 15007, txtServerType = 15008,
    txtSOCKSPassword = 15009, txtTestHTTP = 15010, txtTestFTP = 15011, txtExtendedInfo = 15012,
    txtCaption = 15013, txtIntro = 15014, txtSOCKS4Note = 15015, txtTitle = 15028, txtAutomatic = 15029,
    txtMustConnect = 15030, txtOkOrCancel = 15031, txtAborted = 15032, txtTransfer = 15033,
    txtConnectionInfo = 15034, txtHTTPFound = 15035, txtFTPFound = 15036, txtScriptAt = 15037,
    txtMoreRoutes = 15038, txtManual = 15039, txtSeeExtended = 15040, txtTryingFTP = 15041,
    txtTryingHTTP = 15042, txtUnable = 15043, txtUnknown = 15044, txtCorrect = 15045, txtFillHTTP = 15046,
    txtFillFTP = 15047, txtFillPasswords = 15048, txtTunnel = 15052, txtOK = 14624, txtCancel = 14625,
    txtUsername = 20400, txtPassword = 20435, txtReadFrom = 15058, txtWebProxyForFTP = 15059,
    txtErrorPage = 15060, txtProxyPassword = 15061
};

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

// What the tests reach when the dialog has no site to try: a public web
// page, and a public anonymous FTP server.
const QString kPublicPage = QStringLiteral("http://www.debian.org/index.html");
const QString kPublicFtp = QStringLiteral("ftp.gnu.org");

} // namespace

frmProxySettings::frmProxySettings(QWidget *parent)
    : QDialog(parent), m_strHTTPTarget(kPublicPage), m_strFTPTarget(kPublicFtp),
      m_strFTPUser(QStringLiteral("anonymous")), m_strFTPPassword(QStringLiteral("guest@example.com"))
{
    setObjectName(QStringLiteral("frmProxySettings"));
    setWindowTitle(L(txtCaption));
    BuildControls();
    FillFromGlobals();
}

void frmProxySettings::SetTestTargets(const QString &strHTTPAddress_p, const QString &strFTPAddress_p,
                                      const QString &strUser_p, const QString &strPassword_p)
{
    if (!strHTTPAddress_p.isEmpty())
        m_strHTTPTarget = strHTTPAddress_p;
    if (!strFTPAddress_p.isEmpty()) {
        m_strFTPTarget = strFTPAddress_p;
        m_strFTPUser = strUser_p;
        m_strFTPPassword = strPassword_p;
    }
}

bool frmProxySettings::Edit(QWidget *parent, const QString &strHTTPAddress_p, const QString &strFTPAddress_p,
                            const QString &strUser_p, const QString &strPassword_p)
{
    frmProxySettings form(parent);
    form.SetTestTargets(strHTTPAddress_p, strFTPAddress_p, strUser_p, strPassword_p);
    return form.exec() == QDialog::Accepted;
}

// Every label leads to the help page of this dialog.
QLineEdit *frmProxySettings::AddBox(QFormLayout *form, const char *name, long caption, bool secret)
{
    auto *box = new QLineEdit(this);
    box->setObjectName(QString::fromLatin1(name));
    if (secret)
        box->setEchoMode(QLineEdit::Password);
    auto *label = new QLabel(QStringLiteral("<a href=\"010400.htm\">%1</a>").arg(L(caption).toHtmlEscaped()), this);
    connect(label, &QLabel::linkActivated, this, [](const QString &page) { frmSettingsHelp::ShowHelpOn(page); });
    form->addRow(label, box);
    return box;
}

QCheckBox *frmProxySettings::AddCheck(QFormLayout *form, const char *name, long caption)
{
    auto *box = new QCheckBox(L(caption), this);
    box->setObjectName(QString::fromLatin1(name));
    form->addRow(box);
    return box;
}

void frmProxySettings::BuildControls()
{
    auto *column = new QVBoxLayout(this);
    for (long text : {txtIntro, txtSOCKS4Note}) {
        auto *label = new QLabel(L(text), this);
        label->setWordWrap(true);
        column->addWidget(label);
    }
    auto *form = new QFormLayout;
    column->addLayout(form);
    chkUseProxy = AddCheck(form, "chkUseProxy", txtUseHTTP);
    txtProxyHTTPAddress = AddBox(form, "txtProxyHTTPAddress", txtHTTPAddress);
    txtProxyHTTPPort = AddBox(form, "txtProxyHTTPPort", txtHTTPPort);
    chkUseHTTPProxyPassword = AddCheck(form, "chkUseHTTPProxyPassword", txtHTTPPassword);
    txtHTTPProxyUserID = AddBox(form, "txtHTTPProxyUserID", txtUsername);
    txtHTTPProxyPassword = AddBox(form, "txtHTTPProxyPassword", txtPassword, true);
    chkUseProxyFTP = AddCheck(form, "chkUseProxyFTP", txtUseFTP);
    txtProxySOCKSAddress = AddBox(form, "txtProxySOCKSAddress", txtFTPAddress);
    txtProxySOCKSPort = AddBox(form, "txtProxySOCKSPort", txtFTPPort);
    auto *types = new QGroupBox(L(txtServerType), this);
    auto *typeRow = new QHBoxLayout(types);
    optSOCKS4 = new QRadioButton(QStringLiteral("SOCKS4"), types);
    optSOCKS5 = new QRadioButton(QStringLiteral("SOCKS5"), types);
    optTunnel = new QRadioButton(L(txtTunnel), types);
    for (QRadioButton *option : {optSOCKS4, optSOCKS5, optTunnel}) {
        typeRow->addWidget(option);
        connect(option, &QRadioButton::toggled, this, &frmProxySettings::ServerTypeChanged);
    }
    optSOCKS4->setObjectName(QStringLiteral("optSOCKS4"));
    optSOCKS5->setObjectName(QStringLiteral("optSOCKS5"));
    optTunnel->setObjectName(QStringLiteral("optTunnel"));
    form->addRow(types);
    chkUseSOCKSPassword = AddCheck(form, "chkUseSOCKSPassword", txtSOCKSPassword);
    txtUserID = AddBox(form, "txtUserID", txtUsername);
    txtPassWord = AddBox(form, "txtPassWord", txtPassword, true);

    auto *buttons = new QHBoxLayout;
    column->addLayout(buttons);
    const std::pair<const char *, long> names[] = {{"cmdGetProxyFromIE", txtGet},       {"cmdTestHTTP", txtTestHTTP},
                                                   {"cmdTestFTP", txtTestFTP},          {"cmdLookForExtraInfo", txtExtendedInfo},
                                                   {"cmdClose", txtOK},                 {"cmdCancel", txtCancel}};
    QList<QPushButton *> made;
    for (const auto &[name, caption] : names) {
        auto *button = new QPushButton(L(caption), this);
        button->setObjectName(QString::fromLatin1(name));
        button->setAutoDefault(false);
        buttons->addWidget(button);
        made << button;
    }
    cmdLookForExtraInfo = made[3];
    cmdLookForExtraInfo->hide();
    connect(made[0], &QPushButton::clicked, this, &frmProxySettings::cmdGetProxyFromIE_Click);
    connect(made[1], &QPushButton::clicked, this, &frmProxySettings::cmdTestHTTP_Click);
    connect(made[2], &QPushButton::clicked, this, &frmProxySettings::cmdTestFTP_Click);
    connect(made[3], &QPushButton::clicked, this, &frmProxySettings::cmdLookForExtraInfo_Click);
    connect(made[4], &QPushButton::clicked, this, &frmProxySettings::cmdClose_Click);
    connect(made[5], &QPushButton::clicked, this, &QDialog::reject);
}

// Boxes from the globals (empty ones leave the box as it is); an empty or
// "4" type is SOCKS4.
void frmProxySettings::FillFromGlobals()
{
    const ProxySettings &p = G::Proxy;
    const std::pair<QLineEdit *, QString> boxes[] = {
        {txtProxyHTTPAddress, p.serverHTTPname}, {txtProxyHTTPPort, p.serverHTTPPort},
        {txtHTTPProxyUserID, p.serverHTTPUser},  {txtHTTPProxyPassword, p.serverHTTPPassword},
        {txtProxySOCKSAddress, p.serverSOCKSname}, {txtProxySOCKSPort, p.serverSOCKSPort},
        {txtUserID, p.serverSOCKSUser},          {txtPassWord, p.serverSOCKSPassWord}};
    for (const auto &[box, value] : boxes)
        if (!value.isEmpty())
            box->setText(value);
    chkUseProxy->setChecked(p.use);
    chkUseProxyFTP->setChecked(p.useFTP);
    chkUseSOCKSPassword->setChecked(p.usesockspassword);
    chkUseHTTPProxyPassword->setChecked(p.useHTTPpassword);
    const QString &type = p.serverSOCKSServerType;
    (type == QLatin1String("5") ? optSOCKS5 : type == QLatin1String("6") ? optTunnel : optSOCKS4)->setChecked(true);
    ServerTypeChanged();
}

// A SOCKS4 server takes no user name or password.
void frmProxySettings::ServerTypeChanged()
{
    const bool password = !optSOCKS4->isChecked();
    for (QWidget *w : std::initializer_list<QWidget *>{chkUseSOCKSPassword, txtUserID, txtPassWord})
        w->setEnabled(password);
}

QString frmProxySettings::ServerType() const
{
    return optSOCKS4->isChecked() ? QStringLiteral("4") : optTunnel->isChecked() ? QStringLiteral("6") : QStringLiteral("5");
}

long frmProxySettings::Say(long message, const QString &strTitle_p, long style)
{
    return UserQuestions::MsgBox(L(message), style, strTitle_p.isEmpty() ? L(txtTitle) : strTitle_p);
}

// Where the settings of this computer came from, for the messages and the
// extended information.
QString frmProxySettings::Origin() const
{
    return L(txtReadFrom) + QLatin1Char('\n') + SystemProxyQuery::Origin().join(QLatin1Char('\n')) + QLatin1Char('\n');
}

void frmProxySettings::cmdGetProxyFromIE_Click()
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    for (QLineEdit *box : {txtProxyHTTPAddress, txtProxyHTTPPort, txtProxySOCKSAddress, txtProxySOCKSPort})
        box->clear();
    chkUseProxy->setChecked(false);
    chkUseProxyFTP->setChecked(false);
    QString text;
    QString server;
    long flags = 0;
    MNetworksFuncs::getConnectionFlags(text, flags, server);
    if (flags & 0x10D)
        AutomaticRoad(text);
    else
        ManualRoad(flags, text, server);
    QApplication::restoreOverrideCursor();
}

void frmProxySettings::AutomaticRoad(const QString &strFlagsText_p)
{
    const QString ask = L(txtAutomatic) + QLatin1Char('\n') + L(txtMustConnect) + QStringLiteral("\n\n") + L(txtOkOrCancel);
    if (UserQuestions::MsgBox(ask, UserQuestions::vbOKCancel, L(txtTitle)) != UserQuestions::vbOK) {
        Say(txtAborted);
        return;
    }
    SystemProxyQuery::Route http;
    SystemProxyQuery::Route ftp;
    QString script;
    MNetworksFuncs::getAutoConfigedRoute(m_strHTTPTarget, FtpAddress::Parse(m_strFTPTarget, false).host, http, ftp, script);
    cmdLookForExtraInfo->show();
    m_strExtraInfo = Origin() + L(txtConnectionInfo) + QLatin1Char('\n') + strFlagsText_p + QLatin1Char('\n')
                     + L(txtHTTPFound) + QLatin1Char(' ') + http.text + QLatin1Char('\n') + L(txtFTPFound)
                     + QLatin1Char(' ') + ftp.text + QLatin1Char('\n') + L(txtScriptAt) + QLatin1Char(' ') + script;
    if (UserQuestions::MsgBox(Origin() + QLatin1Char('\n') + L(txtTransfer), UserQuestions::vbOKCancel, L(txtTitle))
        != UserQuestions::vbOK) {
        Say(txtAborted);
        return;
    }
    bool more = FillRoute(http.text, chkUseProxy, txtProxyHTTPAddress, txtProxyHTTPPort);
    if (!http.user.isEmpty()) {
        txtHTTPProxyUserID->setText(http.user);
        txtHTTPProxyPassword->setText(http.password);
        chkUseHTTPProxyPassword->setChecked(true);
    }
    if (ftp.text.startsWith(QLatin1String("PROXY"), Qt::CaseInsensitive)) {
        // A web proxy for FTP: refused, and said why.
        UserQuestions::MsgBox(L(txtWebProxyForFTP).arg(ftp.text.mid(6).section(QLatin1Char(';'), 0, 0)),
                              UserQuestions::vbOKOnly, L(txtTitle));
    } else {
        more = FillRoute(ftp.text, chkUseProxyFTP, txtProxySOCKSAddress, txtProxySOCKSPort) || more;
        // The scheme of the entry says the SOCKS version where the setting
        // names it; a plain "SOCKS" leaves the choice as it is.
        if (ftp.socksVersion)
            (ftp.socksVersion == 4 ? optSOCKS4 : optSOCKS5)->setChecked(true);
    }
    if (more)
        Say(txtMoreRoutes);
    // Both answers were OK: the result is proven at once. The HTTP proxy
    // found is tried too, so that neither half is taken on trust.
    if (chkUseProxy->isChecked())
        cmdTestHTTP_Click();
    cmdTestFTP_Click();
}

void frmProxySettings::ManualRoad(long lFlags_p, const QString &strFlagsText_p, const QString &strProxyServer_p)
{
    if (lFlags_p & 2) {
        UserQuestions::MsgBox(L(txtManual) + strProxyServer_p, UserQuestions::vbOKOnly, L(txtTitle));
        PROXYRESULT found;
        long status = 0;
        Parse_manuellProxy(strProxyServer_p, found, status);
        if (status > 0) {
            txtProxyHTTPAddress->setText(found.strHTTPHost);
            txtProxyHTTPPort->setText(found.strHTTPPort);
            chkUseProxy->setChecked(!found.strHTTPHost.isEmpty());
            txtProxySOCKSAddress->setText(found.strSOCKSHost);
            txtProxySOCKSPort->setText(found.strSOCKSPort);
            chkUseProxyFTP->setChecked(!found.strSOCKSHost.isEmpty());
            FillCredentials();
            if (!found.strFTPHost.isEmpty() && found.strSOCKSHost.isEmpty())
                UserQuestions::MsgBox(L(txtWebProxyForFTP).arg(found.strFTPHost + QLatin1Char(':') + found.strFTPPort),
                                      UserQuestions::vbOKOnly, L(txtTitle));
        }
    }
    m_strExtraInfo = Origin() + L(txtConnectionInfo) + QLatin1Char('\n') + strFlagsText_p + QLatin1Char('\n');
    UserQuestions::MsgBox(Origin() + QLatin1Char('\n') + L(txtSeeExtended), UserQuestions::vbOKOnly, L(txtTitle));
    cmdLookForExtraInfo->show();
    // What was read is proven with a live connection, as on the automatic
    // road: a setting that doesn't work is better found here than at Save.
    if (chkUseProxy->isChecked())
        cmdTestHTTP_Click();
    if (chkUseProxyFTP->isChecked())
        cmdTestFTP_Click();
}

// User names in the environment's proxy addresses, and the SOCKS version
// all_proxy names.
void frmProxySettings::FillCredentials()
{
    QString user;
    QString password;
    SystemProxyQuery::HttpCredentials(user, password);
    if (!user.isEmpty() && chkUseProxy->isChecked()) {
        txtHTTPProxyUserID->setText(user);
        txtHTTPProxyPassword->setText(password);
        chkUseHTTPProxyPassword->setChecked(true);
    }
    if (!chkUseProxyFTP->isChecked())
        return;
    const int version = SystemProxyQuery::SocksVersion();
    if (version)
        (version == 4 ? optSOCKS4 : optSOCKS5)->setChecked(true);
    SystemProxyQuery::SocksCredentials(user, password);
    if (!user.isEmpty() && version != 4) {
        txtUserID->setText(user);
        txtPassWord->setText(password);
        chkUseSOCKSPassword->setChecked(true);
    }
}

// True when the route named more than one way.
bool frmProxySettings::FillRoute(const QString &strRoute_p, QCheckBox *use, QLineEdit *host, QLineEdit *port)
{
    if (strRoute_p.isEmpty())
        return false;
    const QString head = strRoute_p.left(6).toUpper();
    QString h;
    QString p;
    bool more = false;
    long status = 0;
    if (head == QLatin1String("SOCKS ") || head == QLatin1String("PROXY ")) {
        splitPROXY_Result(strRoute_p, h, p, more, status);
        use->setChecked(true);
    } else if (head == QLatin1String("DIRECT")) {
        use->setChecked(false);
    }
    host->setText(h);
    port->setText(p);
    return more;
}

long frmProxySettings::splitPROXY_Result(const QString &strRoute_p, QString &strHost_p, QString &strPort_p,
                                         bool &boolMore_p, long &lStatus_p)
{
    QString rest = strRoute_p.mid(6);
    const qsizetype semicolon = rest.indexOf(QLatin1Char(';'));
    if (semicolon > 0) {
        boolMore_p = true;
        rest = rest.left(semicolon);
    }
    strHost_p = rest.section(QLatin1Char(':'), 0, 0).trimmed();
    strPort_p = rest.section(QLatin1Char(':'), 1, 1).trimmed();
    lStatus_p = 1;
    return 1;
}

long frmProxySettings::Parse_manuellProxy(const QString &strProxy_p, PROXYRESULT &result_p, long &lStatus_p)
{
    result_p = PROXYRESULT();
    const QStringList parts = strProxy_p.split(QLatin1Char(';'));
    // A part that names its protocol ("ftp=host:port") is read as such even
    // when it stands alone.
    if (parts.size() > 1 || strProxy_p.contains(QLatin1Char('='))) {
        for (const QString &part : parts) {
            const QStringList pieces = part.split(QLatin1Char(':'));
            if (part.startsWith(QLatin1String("ftp"))) {
                result_p.strFTPHost = pieces.at(0).mid(4);
                result_p.strFTPPort = pieces.value(1);
            } else if (part.startsWith(QLatin1String("http="))) {
                result_p.strHTTPHost = pieces.at(0).mid(5);
                result_p.strHTTPPort = pieces.value(1);
            } else if (part.startsWith(QLatin1String("socks"))) {
                result_p.strSOCKSHost = pieces.at(0).mid(6);
                result_p.strSOCKSPort = pieces.value(1);
            }
        }
    } else {
        const QStringList pieces = strProxy_p.split(QLatin1Char(':'));
        result_p.strHTTPHost = pieces.at(0);
        result_p.strHTTPPort = pieces.value(1);
    }
    lStatus_p = 1;
    return 1;
}

void frmProxySettings::cmdTestHTTP_Click()
{
    RunTest(txtTryingHTTP, &frmProxySettings::testHTTPSettings);
}

void frmProxySettings::cmdTestFTP_Click()
{
    RunTest(txtTryingFTP, &frmProxySettings::testProxySettings);
}

// Says what is tried, tries it with the wait cursor, and shows the outcome.
void frmProxySettings::RunTest(long announcement, long (frmProxySettings::*test)(long &, QString &))
{
    UserQuestions::MsgBox(L(announcement), UserQuestions::vbOKOnly, QStringLiteral("-"));
    long status = 0;
    QString reason;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    (this->*test)(status, reason);
    QApplication::restoreOverrideCursor();
    ShowTestResult(status, reason);
}

// A failure says why: the proxy's or the server's own words. A bare "unable
// to connect" leaves the user nothing to tell his administrator.
void frmProxySettings::ShowTestResult(long lStatus_p, const QString &strReason_p)
{
    if (lStatus_p == 1) {
        UserQuestions::MsgBox(L(txtCorrect), UserQuestions::vbOKOnly, QStringLiteral("-"));
    } else if (lStatus_p == -1) {
        const QString text = strReason_p.isEmpty() ? L(txtUnable) : L(txtUnable) + QStringLiteral("\n\n") + strReason_p;
        UserQuestions::MsgBox(text, UserQuestions::vbOKOnly, QStringLiteral("-"));
    } else {
        UserQuestions::MsgBox(L(txtUnknown), UserQuestions::vbOKOnly, QStringLiteral("-"));
        MError::ShowError();
    }
}

void frmProxySettings::SetUpFirewall(FtpControl &ftp) const
{
    if (!chkUseProxyFTP->isChecked())
        return;
    ftp.FirewallType = optSOCKS4->isChecked() ? 2 : optSOCKS5->isChecked() ? 3 : 1;
    ftp.FirewallHost = txtProxySOCKSAddress->text().trimmed();
    ftp.FirewallPort = txtProxySOCKSPort->text().trimmed().toInt();
    if (chkUseSOCKSPassword->isChecked() && !optSOCKS4->isChecked()
        && (!txtUserID->text().isEmpty() || !txtPassWord->text().isEmpty())) {
        ftp.FirewallUser = txtUserID->text();
        ftp.FirewallPassword = txtPassWord->text();
    }
}

// A logon and a listing of the login folder: the listing proves that the
// proxy carries the data connections too, which a logon alone does not.
long frmProxySettings::testProxySettings(long &lStatus_p, QString &strReason_p)
{
    FtpControl ftp;
    SetUpFirewall(ftp);
    ftp.Passive = true;
    FtpAddress::Parse(m_strFTPTarget, false).ApplyTo(ftp);
    ftp.User = m_strFTPUser;
    ftp.Password = m_strFTPPassword;
    ftp.Timeout = 30;
    long result = ftp.Logon();
    if (result == 1)
        result = ftp.ListDirectoryLong();
    if (result != 1)
        strReason_p = ftp.ErrorDescription();
    if (ftp.Connected())
        ftp.Logoff();
    lStatus_p = result == 1 ? 1 : -1;
    return 1;
}

long frmProxySettings::testHTTPSettings(long &lStatus_p, QString &strReason_p)
{
    HttpControl http;
    m_strBuffer.clear();
    http.Timeout = 15;
    if (chkUseProxy->isChecked()) {
        http.ProxyServer = txtProxyHTTPAddress->text().trimmed();
        http.ProxyPort = txtProxyHTTPPort->text().trimmed().toInt();
        if (chkUseHTTPProxyPassword->isChecked()) {
            http.ProxyUser = txtHTTPProxyUserID->text();
            http.ProxyPassword = txtHTTPProxyPassword->text();
        }
    }
    connect(&http, &HttpControl::StartTransfer, this, [this] { m_strBuffer.clear(); });
    connect(&http, &HttpControl::Transfer, this, [this](int direction, qint64, const QByteArray &text) {
        if (direction == 1)
            m_strBuffer += QString::fromUtf8(text);
    });
    // A proxy answers with a page of its own when it refuses: only the
    // test page itself, with a status of success, proves the settings.
    if (http.Get(m_strHTTPTarget) != 1) {
        const long code = http.StatusCode();
        // 407 is the rule; some proxies (tinyproxy) answer 401.
        const bool password = code == 407 || (code == 401 && !http.ProxyServer.isEmpty());
        strReason_p = password ? L(txtProxyPassword).arg(http.ErrorDescription())
                      : code >= 300 ? L(txtErrorPage).arg(http.ErrorDescription())
                                    : http.ErrorDescription();
        lStatus_p = -1;
        return 1;
    }
    lStatus_p = m_strBuffer.isEmpty() ? -1 : 1;
    return 1;
}

void frmProxySettings::cmdLookForExtraInfo_Click()
{
    frmProxyExtraInfo::Show(this, m_strExtraInfo);
}

// On with an empty box is refused, with the box unchecked and the dialog
// left open.
bool frmProxySettings::BothFilled(QCheckBox *use, QLineEdit *a, QLineEdit *b, long message)
{
    if (!use->isChecked() || (!a->text().isEmpty() && !b->text().isEmpty()))
        return true;
    Say(message);
    use->setChecked(false);
    return false;
}

void frmProxySettings::cmdClose_Click()
{
    ProxySettings &p = G::Proxy;
    p.serverHTTPUser = txtHTTPProxyUserID->text();
    p.serverHTTPPassword = txtHTTPProxyPassword->text();
    p.serverHTTPname = txtProxyHTTPAddress->text().trimmed();
    p.serverHTTPPort = txtProxyHTTPPort->text().trimmed();
    p.serverSOCKSUser = txtUserID->text();
    p.serverSOCKSPassWord = txtPassWord->text();
    p.serverSOCKSname = txtProxySOCKSAddress->text().trimmed();
    p.serverSOCKSPort = txtProxySOCKSPort->text().trimmed();
    if (!BothFilled(chkUseProxy, txtProxyHTTPAddress, txtProxyHTTPPort, txtFillHTTP))
        return;
    p.use = chkUseProxy->isChecked();
    if (!BothFilled(chkUseProxyFTP, txtProxySOCKSAddress, txtProxySOCKSPort, txtFillFTP))
        return;
    p.useFTP = chkUseProxyFTP->isChecked();
    if (!BothFilled(chkUseSOCKSPassword, txtUserID, txtPassWord, txtFillPasswords))
        return;
    p.usesockspassword = chkUseSOCKSPassword->isChecked();
    if (!BothFilled(chkUseHTTPProxyPassword, txtHTTPProxyUserID, txtHTTPProxyPassword, txtFillPasswords))
        return;
    p.useHTTPpassword = chkUseHTTPProxyPassword->isChecked();
    p.serverSOCKSServerType = ServerType();
    accept();
}
