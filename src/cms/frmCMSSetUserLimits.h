#pragma once

#include "cms/CMSTables.h"

#include <QDialog>

#include <vector>

class QCheckBox;

// The limits of one CMS user: a box for each function of the band, the
// page's menus, the site tree's menus and the pictures. A ticked box
// enables its function. The site tree's boxes are grey while the site
// pane is off, and keep their ticks.
class frmCMSSetUserLimits : public QDialog
{
    Q_OBJECT

public:
    explicit frmCMSSetUserLimits(QWidget *parent = nullptr);

    long init(const CMS_LIMITS &limits_p, const QString &strUser_p);
    // The four masks as the boxes stand, built from nothing: every ticked
    // box adds its bit, greyed or not. The administrator flag is left as
    // it was.
    long GetCMS_LIMITS(CMS_LIMITS &limits_p) const;
    bool Cancelled() const { return m_boolCancelled; }

private:
    struct Box
    {
        std::int32_t CMS_LIMITS::*mask;
        std::int32_t bit;
        QCheckBox *check;
    };
    void chkCMS_DISABLE_SITE_PANEL_Click(bool ticked);

    std::vector<Box> m_boxes;
    QCheckBox *m_chkSitePanel = nullptr;
    bool m_boolCancelled = true;
};
