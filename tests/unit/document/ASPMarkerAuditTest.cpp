#include "aspfilter/ASPMarkers.h"
#include "document/ASPMarkerAudit.h"

#include <gtest/gtest.h>

namespace {

QString Block(long id)
{
    const QString n = ASPMarkers::FormatID(id);
    return QStringLiteral("<span>keldaspIN#") + n + QStringLiteral("</span>x<!--keldaspOUT#") + n + QStringLiteral("-->");
}

} // namespace

TEST(ASPMarkerAudit, AcceptsEachMarkerOnceInItsNumbering)
{
    EXPECT_TRUE(ASPMarkerAudit::MarkersIntact(QStringLiteral("<p>no script</p>")));
    EXPECT_TRUE(ASPMarkerAudit::MarkersIntact(Block(0) + QStringLiteral("<p>") + Block(2) + Block(4)));
}

// A loop on the server repeats a block, and with it its markers.
TEST(ASPMarkerAudit, RefusesRepeatedMissingOrStrayMarkers)
{
    EXPECT_FALSE(ASPMarkerAudit::MarkersIntact(Block(0) + Block(2) + Block(2)));
    EXPECT_FALSE(ASPMarkerAudit::MarkersIntact(Block(0) + Block(4)));
    EXPECT_FALSE(ASPMarkerAudit::MarkersIntact(Block(0) + QStringLiteral("<!--keldaspOUT#00002-->")));
    EXPECT_FALSE(ASPMarkerAudit::MarkersIntact(QStringLiteral("keldaspIN#00000")));
}
