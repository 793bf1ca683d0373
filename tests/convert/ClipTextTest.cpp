// Clip regions as five clip planes ahead of the children, and text records as empty named
// separators; neither walks its children itself.
#include <gtest/gtest.h>

#include <Inventor/nodes/SoClipPlane.h>

#include "ConvertSupport.h"

TEST(ClipRegionAndText, neitherWalksItsChildrenItselfAndOnlyAFlagOfOneSwitchesAPlaneOn)
{
    // Text is an empty separator named by its raw identifier. Without a children walk of
    // their own, text and clip regions leave the walk on the record after their ancillary
    // records: a sibling that follows stays a sibling, a pop closes its level, and a push
    // opens the text or clip region after its own nodes. (The golden scene pins the planes'
    // values and the flags 0 and 1.)
    const double planes[5][4] = {{1, 0, 0, 0}, {0, 1, 0, 2}, {0, 0, 1, -5}, {0, 0, 2, -8}, {0, 0, 0, 0}};
    const uint8_t enabled[5] = {0, 0, 1, 2, 0};
    FltFixture db;
    db.header().push();
    db.group("g").push();
    db.text("t").group("sibling").push().pop();
    db.clipRegion("c", enabled, planes).longId("clip_long");
    db.pop();
    db.text("caption").comment("shown nowhere").push().group("under").push().pop().pop();
    db.clipRegion("clip", enabled, planes).comment("cut").push().group("inside").push().pop().pop();
    Converted c(db.pop());
    EXPECT_EQ(hierarchy(c), "Separator:g[Separator:t Separator:sibling Separator:clip_long[ClipPlane ClipPlane "
                            "ClipPlane ClipPlane ClipPlane]] Separator:caption[Info Separator:under] "
                            "Separator:clip[Info ClipPlane ClipPlane ClipPlane ClipPlane ClipPlane Separator:inside]");
    std::string on;
    for (SoClipPlane* plane : findAll<SoClipPlane>(hierarchyChild(c, 2))) on += plane->on.getValue() ? '1' : '0';
    EXPECT_EQ(on, "00100");
    EXPECT_TRUE(c.messages.empty());
}
