#pragma once

#include <QDialog>
#include <QString>

class FtpControl;
class QCheckBox;
class QLineEdit;
class QPushButton;
class QRadioButton;

// The result of Parse_manuellProxy: HTTP host and port, two unused, the
// FTP host and port, the SOCKS host and port.
struct PROXYRESULT
{
    QString strHTTPHost, strHTTPPort, strUnused1, strUnused2;
    QString strFTPHost, strFTPPort, strSOCKSHost, strSOCKSPort;
};

// Edits the proxy block of the settings: the HTTP proxy, the FTP proxy
// (the FTP control's firewall: SOCKS4, SOCKS5 or an HTTP tunnel) and their
// passwords. "Get" reads how this computer is set up and proves it with a
// live connection; the test buttons try the boxes as they stand. The
// globals change only on OK.
class frmProxySettings : public QDialog
{
    Q_OBJECT

public:
    explicit frmProxySettings(QWidget *parent = nullptr);

    // What the tests connect to. The site being edited is the best proof
    // that the settings work for the user, so the settings dialog passes
    // its addresses and account; without them a public web page and a
    // public anonymous FTP server are used.
    void SetTestTargets(const QString &strHTTPAddress_p, const QString &strFTPAddress_p,
                        const QString &strUser_p, const QString &strPassword_p);

    // Opens the dialog on the globals, modally; true when OK changed them.
    static bool Edit(QWidget *parent, const QString &strHTTPAddress_p, const QString &strFTPAddress_p,
                     const QString &strUser_p, const QString &strPassword_p);

private:
    void BuildControls();
    QLineEdit *AddBox(class QFormLayout *form, const char *name, long caption, bool secret = false);
    QCheckBox *AddCheck(class QFormLayout *form, const char *name, long caption);
    void FillFromGlobals();
    void ServerTypeChanged();
    void cmdGetProxyFromIE_Click();
    void AutomaticRoad(const QString &strFlagsText_p);
    void ManualRoad(long lFlags_p, const QString &strFlagsText_p, const QString &strProxyServer_p);
    bool FillRoute(const QString &strRoute_p, QCheckBox *use, QLineEdit *host, QLineEdit *port);
    void FillCredentials();
    void cmdTestHTTP_Click();
    void cmdTestFTP_Click();
    void ShowTestResult(long lStatus_p, const QString &strReason_p);
    void RunTest(long announcement, long (frmProxySettings::*test)(long &, QString &));
    void cmdClose_Click();
    bool BothFilled(QCheckBox *use, QLineEdit *a, QLineEdit *b, long message);
    void cmdLookForExtraInfo_Click();
    long testProxySettings(long &lStatus_p, QString &strReason_p);
    long testHTTPSettings(long &lStatus_p, QString &strReason_p);
    void SetUpFirewall(FtpControl &ftp) const;
    long Parse_manuellProxy(const QString &strProxy_p, PROXYRESULT &result_p, long &lStatus_p);
    long splitPROXY_Result(const QString &strRoute_p, QString &strHost_p, QString &strPort_p, bool &boolMore_p,
                           long &lStatus_p);
    QString ServerType() const;
    QString Origin() const;
    long Say(long message, const QString &strTitle_p = QString(), long style = 0);

    QString m_strHTTPTarget;
    QString m_strFTPTarget;
    QString m_strFTPUser;
    QString m_strFTPPassword;
    QString m_strBuffer;    // the HTTP test's receive buffer
    QString m_strExtraInfo; // what "Extended info" shows

    QCheckBox *chkUseProxy = nullptr;
    QLineEdit *txtProxyHTTPAddress = nullptr;
    QLineEdit *txtProxyHTTPPort = nullptr;
    QCheckBox *chkUseHTTPProxyPassword = nullptr;
    QLineEdit *txtHTTPProxyUserID = nullptr;
    QLineEdit *txtHTTPProxyPassword = nullptr;
    QCheckBox *chkUseProxyFTP = nullptr;
    QLineEdit *txtProxySOCKSAddress = nullptr;
    QLineEdit *txtProxySOCKSPort = nullptr;
    QRadioButton *optSOCKS4 = nullptr;
    QRadioButton *optSOCKS5 = nullptr;
    QRadioButton *optTunnel = nullptr;
    QCheckBox *chkUseSOCKSPassword = nullptr;
    QLineEdit *txtUserID = nullptr;
    QLineEdit *txtPassWord = nullptr;
    QPushButton *cmdLookForExtraInfo = nullptr;
};
