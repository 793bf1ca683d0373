// Clip regions as five clip planes ahead of the children, and text records as empty named
// separators; neither walks its children itself.
#include <gtest/gtest.h>

#include <Inventor/nodes/SoClipPlane.h>

#include "ConvertSupport.h"

namespace {

const double kPlanes[5][4] = {{1, 0, 0, 0}, {0, 1, 0, 2}, {0, 0, 1, -5}, {0, 0, 2, -8}, {0, 0, 0, 0}};

}  // namespace

TEST(ClipRegion, ancillaryRecordsThenFivePlanesOnByTheirFlagsThenTheChildren)
{
    const uint8_t enabled[5] = {0, 0, 1, 2, 0};  // only a flag of exactly 1 switches on
    FltFixture db;
    db.header().push();
    db.clipRegion("clip", enabled, kPlanes).comment("cut").push().group("inside").push().pop().pop();
    Converted c(db.pop());
    ASSERT_EQ(hierarchy(c), "Separator:clip[Info ClipPlane ClipPlane ClipPlane ClipPlane ClipPlane Separator:inside]");
    SoNode* clip = hierarchyChild(c, 0);
    // Coin normalises the normal and keeps the distance as given: (0, 0, 2, -8) clips at 8.
    const std::pair<SbVec3f, float> expected[4] = {{{1, 0, 0}, 0}, {{0, 1, 0}, -2}, {{0, 0, 1}, 5}, {{0, 0, 1}, 8}};
    for (int i = 0; i < 4; ++i) {
        auto* plane = childAs<SoClipPlane>(clip, 1 + i);
        EXPECT_EQ(plane->on.getValue(), i == 2) << "plane " << i;
        EXPECT_EQ(plane->plane.getValue().getNormal(), expected[i].first) << "plane " << i;
        EXPECT_FLOAT_EQ(plane->plane.getValue().getDistanceFromOrigin(), expected[i].second) << "plane " << i;
    }
    EXPECT_FALSE(childAs<SoClipPlane>(clip, 5)->on.getValue());
    EXPECT_TRUE(c.messages.empty());
}

TEST(Text, textOrClipWithoutChildren_doesNotSwallowTheNextRecord)
{
    // Text is an empty separator named by its raw identifier. Without a children walk of
    // their own, text and clip regions leave the walk on the record after their ancillary
    // records: a sibling that follows stays a sibling, a pop closes its level, and a push
    // opens the text or clip region after its own nodes.
    const uint8_t enabled[5] = {0, 0, 0, 0, 0};
    FltFixture db;
    db.header().push();
    db.group("g").push();
    db.text("t").group("sibling").push().pop();
    db.clipRegion("c", enabled, kPlanes).longId("clip_long");
    db.pop();
    db.text("caption").comment("shown nowhere").push().group("under").push().pop().pop();
    Converted c(db.pop());
    EXPECT_EQ(hierarchy(c), "Separator:g[Separator:t Separator:sibling Separator:clip_long[ClipPlane ClipPlane "
                            "ClipPlane ClipPlane ClipPlane]] Separator:caption[Info Separator:under]");
    EXPECT_TRUE(c.messages.empty());
}
