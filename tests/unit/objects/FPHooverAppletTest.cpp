// What the hover button's writer makes of what was read: the attributes
// that say nothing are left out, the id is swapped for the one the new
// element is found by, values come back quoted whatever they hold, and a
// parameter keeps its valuetype, or has none when it had none.

#include "objects/FPHooverApplet.h"

#include <gtest/gtest.h>

namespace {

using P = FPHooverApplet;

TEST(FPHooverApplet, WritesBackWhatItReadAndLeavesOutWhatSaysNothing)
{
    P applet;
    applet.Read({{QStringLiteral("TEXT"), QStringLiteral("Say \"hi\" & go"), QStringLiteral("data")},
                 {QStringLiteral("bgcolor"), QStringLiteral("#0000FF"), QString()},
                 {QStringLiteral("hoverimage"), QString(), QStringLiteral("ref")},
                 {QStringLiteral("Speed"), QStringLiteral("3"), QStringLiteral("object")}},
                {{QStringLiteral("code"), QStringLiteral("fphover.class")},
                 {QStringLiteral("id"), QStringLiteral("btn")},
                 {QStringLiteral("disabled"), QStringLiteral("false")},
                 {QStringLiteral("onclick"), QStringLiteral("null")},
                 {QStringLiteral("contenteditable"), QStringLiteral("inherit")},
                 {QStringLiteral("alt"), QString()},
                 {QStringLiteral("mayscript"), QString()},
                 {QStringLiteral("keldalabel"), QStringLiteral("Say")},
                 {QStringLiteral("style"), QStringLiteral("left: 5px")}});

    EXPECT_EQ(applet.OldId(), QStringLiteral("btn"));
    EXPECT_EQ(applet.param(P::text).valuetype, QStringLiteral("data"));
    EXPECT_EQ(applet.Text(),
              QStringLiteral("<APPLET code=\"fphover.class\" id=\"new_a\" mayscript style=\"left: 5px\">"
                             "<PARAM name=\"bgColor\" value=\"#0000FF\">"
                             "<PARAM name=\"text\" value=\"Say &quot;hi&quot; &amp; go\" valuetype=data>"
                             "<PARAM name=\"Speed\" value=\"3\" valuetype=object></APPLET>"));
}

// Without an id of its own the new element still gets one to be found by,
// and GetData then has none to give back.
TEST(FPHooverApplet, AnAppletWithoutIdIsWrittenWithTheNewOne)
{
    P applet;
    applet.Read({}, {{QStringLiteral("code"), QStringLiteral("fphover.class")}});
    EXPECT_TRUE(applet.OldId().isEmpty());
    EXPECT_EQ(applet.Text(), QStringLiteral("<APPLET id=\"new_a\" code=\"fphover.class\"></APPLET>"));
}

} // namespace
