#pragma once

#include <QDate>
#include <QList>
#include <QString>

#include <cstdint>
#include <vector>

// What a CMS user may do. A set bit enables the function.
struct CMS_LIMITS
{
    std::int32_t lRightClick = 0; // the page's context menus
    std::int32_t lBand = 0;       // panes of the band
    std::int32_t lSiteTree = 0;   // the site tree's context menus
    std::int32_t lOther = 0;      // other functions
    std::int32_t lIsAdmin = 0;    // 1 for an administrator of the site

    bool operator==(const CMS_LIMITS &) const = default;
};

// Every mask of a new user: everything enabled.
inline constexpr std::int32_t CMS_ALL_ENABLED = 0x1FFFF;

struct CMSUSER
{
    QString strName;
    QString strPassword;
    CMS_LIMITS limits;
    std::int16_t intHidden = 0; // other than 0: kept in the file, left out of every list

    bool operator==(const CMSUSER &) const = default;
};

struct CMSPAGE
{
    QString strPath;
    // Indexes into g_aCMSUsers; the last element is unused. Empty means the
    // array was never sized.
    QList<float> sngUsers;

    bool operator==(const CMSPAGE &) const = default;
};

// The CMS tables of the process, in clear text. Both tables keep one spare
// entry at the end: n real entries take n + 1 elements, and every walk runs
// from 0 to size() - 2.
extern std::vector<CMSUSER> g_aCMSUsers;
extern std::vector<CMSPAGE> g_aCMSPages;
extern bool g_boolAllFilesLocked;
extern float g_sngCMSUser; // index of this client's user; CMS_NO_USER for none
extern bool g_boolCMSAdmin;
extern QDate g_dtCMSStamp;

inline constexpr float CMS_NO_USER = -100000.0f;

// Set by the commands that lock and unlock pages in the page menus and the
// site tree: the tables differ from the file, and the next Save writes it,
// also on a site that had none. Cleared by each read and write.
extern bool g_boolCMSTablesChanged;

// The state an edit session starts from before each read of the file.
void ResetCMSTables();

// The entry of a page in g_aCMSPages, found by the exact address. An
// absent page is written into the spare entry with no users (the single
// unused -1) and the table grows by one. Gives the entry's index.
std::size_t CMSMakePageEntry(const QString &strPath_p, bool &boolExisted_p);
// Takes the page out of the table: later entries move down. False when it
// wasn't there.
bool CMSRemovePageEntry(const QString &strPath_p);
// The user this client was found as at Edit; null when none was found, and
// then no limit applies.
const CMSUSER *CMSCurrentUser();
// A user found who is no administrator of the site: he edits only inside
// the unlocked areas of pages tied to him.
bool CMSRestrictedUser();
// Whether the band's pane of a bit of lBand (1 font, 2 layers, 4 recovery,
// 8 site) may be opened by this client's user; every pane may with no user
// found.
bool CMSBandAllows(std::int32_t lBandBit_p);
