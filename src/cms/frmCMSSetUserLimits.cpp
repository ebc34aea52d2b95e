#include "cms/frmCMSSetUserLimits.h"

#include "support/MResources.h"
#include "support/OkCancelButtons.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

namespace {
enum : long { txtCaption = 20445, txtUserInfo = 20446, txtMainInfo = 20222, txtBand = 20447, txtRightClick = 20448,
              txtSiteTree = 20449, txtOther = 20450 };

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

struct Row
{
    std::int32_t CMS_LIMITS::*mask;
    std::int32_t bit;
    const char *name;
    long caption;
};

// The boxes, by mask, as the dialog shows them.
const Row kRows[] = {
    {&CMS_LIMITS::lBand, 1, "chkCMS_DISABLE_FONT_PANEL", 20200},
    {&CMS_LIMITS::lBand, 2, "chkCMS_DISABLE_LAYER_PANEL", 20201},
    {&CMS_LIMITS::lBand, 4, "chkCMS_DISABLE_RECOVER_PANEL", 20202},
    {&CMS_LIMITS::lBand, 8, "chkCMS_DISABLE_SITE_PANEL", 14401},
    {&CMS_LIMITS::lRightClick, 1, "chkCMS_DISABLE_FORMAT_FONT", 20203},
    {&CMS_LIMITS::lRightClick, 2, "chkCMS_DISABLE_FORMAT_POSITION", 20204},
    {&CMS_LIMITS::lRightClick, 4, "chkCMS_DISABLE_FORMAT_SIZE", 20205},
    {&CMS_LIMITS::lRightClick, 8, "chkCMS_DISABLE_FORMAT_COLOR", 20206},
    {&CMS_LIMITS::lRightClick, 16, "chkCMS_DISABLE_FORMAT_FONT_STYLE", 20207},
    {&CMS_LIMITS::lRightClick, 32, "chkCMS_DISABLE_INSERT_OBJECT", 20208},
    {&CMS_LIMITS::lRightClick, 64, "chkCMS_DISABLE_DOCUMENT", 20209},
    {&CMS_LIMITS::lRightClick, 128, "chkCMS_DISABLE_TABLE", 20230},
    {&CMS_LIMITS::lRightClick, 256, "chkCMS_DISABLE_ABSOLUTE_POS", 17200},
    {&CMS_LIMITS::lRightClick, 512, "chkCMS_DISABLE_CREATE_LINK", 17611},
    {&CMS_LIMITS::lSiteTree, 1, "chkCMS_DISABLE_TW_CREATE_FOLDER", 20210},
    {&CMS_LIMITS::lSiteTree, 2, "chkCMS_DISABLE_TW_EDIT_FILE", 20211},
    {&CMS_LIMITS::lSiteTree, 4, "chkCMS_DISABLE_TW_CHANGE_NAME", 20212},
    {&CMS_LIMITS::lSiteTree, 8, "chkCMS_DISABLE_TW_DELETE_FILE", 20213},
    {&CMS_LIMITS::lSiteTree, 16, "chkCMS_DISABLE_TW_COPY_FILE", 20214},
    {&CMS_LIMITS::lSiteTree, 32, "chkCMS_DISABLE_TW_COPY_FILE_HD", 20215},
    {&CMS_LIMITS::lSiteTree, 64, "chkCMS_DISABLE_TWFO_CREATE", 20216},
    {&CMS_LIMITS::lSiteTree, 128, "chkCMS_DISABLE_TWFO_DELETE", 20217},
    {&CMS_LIMITS::lSiteTree, 256, "chkCMS_DISABLE_TWFO_RENAME", 20218},
    {&CMS_LIMITS::lSiteTree, 512, "chkCMS_DISABLE_TWFO_TRANSFER_FILE", 20219},
    {&CMS_LIMITS::lSiteTree, 1024, "chkCMS_DISABLE_TWFO_COPY_HD", 20220},
    {&CMS_LIMITS::lOther, 1, "chkCMS_DISABLE_IMAGE_EDIT", 20221},
};
} // namespace

frmCMSSetUserLimits::frmCMSSetUserLimits(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmCMSSetUserLimits"));
    auto *layout = new QVBoxLayout(this);
    auto *userInfo = new QLabel(this);
    userInfo->setObjectName(QStringLiteral("lblUserInfo"));
    layout->addWidget(userInfo);
    auto *mainInfo = new QLabel(L(txtMainInfo), this);
    mainInfo->setObjectName(QStringLiteral("lblMainInfo"));
    layout->addWidget(mainInfo);
    auto *grid = new QGridLayout;
    layout->addLayout(grid);
    const std::pair<std::int32_t CMS_LIMITS::*, long> frames[] = {
        {&CMS_LIMITS::lBand, txtBand}, {&CMS_LIMITS::lRightClick, txtRightClick},
        {&CMS_LIMITS::lSiteTree, txtSiteTree}, {&CMS_LIMITS::lOther, txtOther}};
    int column = 0;
    for (const auto &[mask, caption] : frames) {
        auto *frame = new QGroupBox(L(caption), this);
        auto *boxes = new QVBoxLayout(frame);
        for (const Row &row : kRows) {
            if (row.mask != mask)
                continue;
            auto *check = new QCheckBox(L(row.caption), frame);
            check->setObjectName(QString::fromLatin1(row.name));
            boxes->addWidget(check);
            m_boxes.push_back({row.mask, row.bit, check});
        }
        boxes->addStretch(1);
        grid->addWidget(frame, column < 2 ? 0 : 1, column % 2);
        ++column;
    }
    m_chkSitePanel = findChild<QCheckBox *>(QStringLiteral("chkCMS_DISABLE_SITE_PANEL"));
    connect(m_chkSitePanel, &QCheckBox::toggled, this, &frmCMSSetUserLimits::chkCMS_DISABLE_SITE_PANEL_Click);
    OkCancelButtons::Add(this, layout, [this] {
        m_boolCancelled = false;
        accept();
    });
}

long frmCMSSetUserLimits::init(const CMS_LIMITS &limits_p, const QString &strUser_p)
{
    setWindowTitle(L(txtCaption) + QLatin1Char(' ') + strUser_p);
    findChild<QLabel *>(QStringLiteral("lblUserInfo"))->setText(L(txtUserInfo) + QLatin1Char(' ') + strUser_p);
    for (const Box &box : m_boxes)
        box.check->setChecked((limits_p.*box.mask & box.bit) != 0);
    chkCMS_DISABLE_SITE_PANEL_Click(m_chkSitePanel->isChecked());
    return 1;
}

long frmCMSSetUserLimits::GetCMS_LIMITS(CMS_LIMITS &limits_p) const
{
    limits_p.lBand = limits_p.lRightClick = limits_p.lSiteTree = limits_p.lOther = 0;
    for (const Box &box : m_boxes)
        if (box.check->isChecked())
            limits_p.*box.mask |= box.bit;
    return 1;
}

// Without the site pane the site tree can't be reached: its boxes go grey.
void frmCMSSetUserLimits::chkCMS_DISABLE_SITE_PANEL_Click(bool ticked)
{
    for (const Box &box : m_boxes)
        if (box.mask == &CMS_LIMITS::lSiteTree)
            box.check->setEnabled(ticked);
}
