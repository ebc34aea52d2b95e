#include "cms/CMSTables.h"

std::vector<CMSUSER> g_aCMSUsers(1);
std::vector<CMSPAGE> g_aCMSPages{CMSPAGE{QString(), {-1.0f}}};
bool g_boolAllFilesLocked = true;
float g_sngCMSUser = CMS_NO_USER;
bool g_boolCMSAdmin = false;
QDate g_dtCMSStamp;

void ResetCMSTables()
{
    g_aCMSPages.assign(1, CMSPAGE{QString(), {-1.0f}});
    g_aCMSUsers.assign(1, CMSUSER{});
    g_sngCMSUser = CMS_NO_USER;
}
