#include "cms/CMSTables.h"

#include "cms/CCMS.h"

std::vector<CMSUSER> g_aCMSUsers(1);
std::vector<CMSPAGE> g_aCMSPages{CMSPAGE{QString(), {-1.0f}}};
bool g_boolAllFilesLocked = true;
float g_sngCMSUser = CMS_NO_USER;
bool g_boolCMSAdmin = false;
QDate g_dtCMSStamp;
bool g_boolCMSTablesChanged = false;

void ResetCMSTables()
{
    g_aCMSPages.assign(1, CMSPAGE{QString(), {-1.0f}});
    g_aCMSUsers.assign(1, CMSUSER{});
    g_sngCMSUser = CMS_NO_USER;
    g_boolCMSTablesChanged = false;
    CCMS::ForgetFile();
}

std::size_t CMSMakePageEntry(const QString &strPath_p, bool &boolExisted_p)
{
    for (std::size_t i = 0; i + 1 < g_aCMSPages.size(); ++i)
        if (g_aCMSPages[i].strPath == strPath_p) {
            boolExisted_p = true;
            return i;
        }
    boolExisted_p = false;
    const std::size_t index = g_aCMSPages.size() - 1;
    g_aCMSPages[index] = CMSPAGE{strPath_p, {-1.0f}};
    g_aCMSPages.push_back(CMSPAGE{QString(), {-1.0f}});
    return index;
}

bool CMSRemovePageEntry(const QString &strPath_p)
{
    for (std::size_t i = 0; i + 1 < g_aCMSPages.size(); ++i)
        if (g_aCMSPages[i].strPath == strPath_p) {
            g_aCMSPages.erase(g_aCMSPages.begin() + std::ptrdiff_t(i));
            return true;
        }
    return false;
}

const CMSUSER *CMSCurrentUser()
{
    const long user = long(g_sngCMSUser);
    if (g_sngCMSUser == CMS_NO_USER || user < 0 || user + 1 >= long(g_aCMSUsers.size()))
        return nullptr;
    return &g_aCMSUsers[std::size_t(user)];
}

bool CMSRestrictedUser()
{
    const CMSUSER *user = CMSCurrentUser();
    return user && user->limits.lIsAdmin == 0;
}

bool CMSBandAllows(std::int32_t lBandBit_p)
{
    const CMSUSER *user = CMSCurrentUser();
    return !user || (user->limits.lBand & lBandBit_p) != 0;
}
