#include "config/MGlobalProjectObjects.h"

#include "platform/EngineProxy.h"
#include "platform/HttpControl.h"

std::vector<SiteRecord> MGlobalProjectObjects::URLDATA;
long MGlobalProjectObjects::lCurrentURL = 0;
ProxySettings MGlobalProjectObjects::Proxy;
long MGlobalProjectObjects::AdvancedUserSettings = 0;
bool MGlobalProjectObjects::UseTidy = false;
long MGlobalProjectObjects::TidyCharEncodingType = 0;
long MGlobalProjectObjects::TidyIndentScheme = 0;
QString MGlobalProjectObjects::CMSUserName;
QString MGlobalProjectObjects::CMSUserPassword;
bool MGlobalProjectObjects::useSpellCheck = false;
QString MGlobalProjectObjects::g_strAppPath;
QString MGlobalProjectObjects::g_strTempFolder;
QString MGlobalProjectObjects::g_strUserName;
QString MGlobalProjectObjects::g_strUserMail;
QString MGlobalProjectObjects::g_strSaveDate;
bool MGlobalProjectObjects::g_boolSaveDateValid = false;

void MGlobalProjectObjects::ApplyHttpProxy(HttpControl &http)
{
    if (!Proxy.use)
        return;
    http.ProxyServer = Proxy.serverHTTPname;
    http.ProxyPort = Proxy.serverHTTPPort.toInt();
    if (Proxy.useHTTPpassword) {
        http.ProxyUser = Proxy.serverHTTPUser;
        http.ProxyPassword = Proxy.serverHTTPPassword;
    }
}

void MGlobalProjectObjects::ApplyEngineProxy()
{
    if (!Proxy.use) {
        EngineProxy::Use(QString(), 0, QString(), QString());
        return;
    }
    const bool password = Proxy.useHTTPpassword;
    EngineProxy::Use(Proxy.serverHTTPname, Proxy.serverHTTPPort.toInt(), password ? Proxy.serverHTTPUser : QString(),
                     password ? Proxy.serverHTTPPassword : QString());
}
