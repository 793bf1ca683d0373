// Clip regions as five clip planes ahead of the children, and text records as empty named
// separators; neither walks its children itself.
#include <gtest/gtest.h>

#include <Inventor/nodes/SoClipPlane.h>
#include <Inventor/nodes/SoInfo.h>

#include "ConvertSupport.h"

namespace {

using Types = std::vector<std::string>;
using Names = std::vector<std::string>;

constexpr int kHeaderChildren = 3;

SoNode* hierarchyChild(const Converted& c, int index) { return childAs<SoNode>(c.root, kHeaderChildren + index); }

const double kPlanes[5][4] = {{1, 0, 0, 0}, {0, 1, 0, 2}, {0, 0, 1, -5}, {0, 0, 2, -8}, {0, 0, 0, 0}};

}  // namespace

TEST(ClipRegion, fivePlanesOnByTheirFlagsThenTheChildren)
{
    const uint8_t enabled[5] = {0, 0, 1, 2, 0};  // only a flag of exactly 1 switches on
    FltFixture db;
    db.header().push();
    db.clipRegion("clip", enabled, kPlanes).push().group("inside").push().pop().pop();
    db.pop();
    Converted c(db);
    SoNode* clip = hierarchyChild(c, 0);
    ASSERT_NE(clip, nullptr);
    EXPECT_EQ(clip->getName(), SbName("clip"));
    ASSERT_EQ(childTypes(clip), (Types{"ClipPlane", "ClipPlane", "ClipPlane", "ClipPlane", "ClipPlane", "Separator"}));
    for (int i = 0; i < 5; ++i) EXPECT_EQ(childAs<SoClipPlane>(clip, i)->on.getValue(), i == 2) << "plane " << i;
    // (0, 0, 1, -5) clips at z = 5.
    const SbPlane plane = childAs<SoClipPlane>(clip, 2)->plane.getValue();
    EXPECT_EQ(plane.getNormal(), SbVec3f(0, 0, 1));
    EXPECT_FLOAT_EQ(plane.getDistanceFromOrigin(), 5.0f);
    const SbPlane second = childAs<SoClipPlane>(clip, 1)->plane.getValue();
    EXPECT_EQ(second.getNormal(), SbVec3f(0, 1, 0));
    EXPECT_FLOAT_EQ(second.getDistanceFromOrigin(), -2.0f);
    // The scene-graph library normalises the normal and keeps the distance as given.
    const SbPlane fourth = childAs<SoClipPlane>(clip, 3)->plane.getValue();
    EXPECT_EQ(fourth.getNormal(), SbVec3f(0, 0, 1));
    EXPECT_FLOAT_EQ(fourth.getDistanceFromOrigin(), 8.0f);
    EXPECT_EQ(childNames(clip).back(), "inside");
    EXPECT_TRUE(c.messages.empty());
}

TEST(ClipRegion, ancillaryRecordsComeBeforeThePlanes)
{
    const uint8_t enabled[5] = {1, 1, 1, 1, 1};
    FltFixture db;
    db.header().push();
    db.clipRegion("clip", enabled, kPlanes).comment("cut").push().pop();
    db.pop();
    Converted c(db);
    EXPECT_EQ(childTypes(hierarchyChild(c, 0)),
              (Types{"Info", "ClipPlane", "ClipPlane", "ClipPlane", "ClipPlane", "ClipPlane"}));
}

TEST(Text, emptySeparatorNamedByItsRawIdentifier)
{
    FltFixture db;
    db.header().push();
    db.text("label_01");
    db.text("caption").comment("shown nowhere").push().group("under").push().pop().pop();
    db.pop();
    Converted c(db);
    SoNode* first = hierarchyChild(c, 0);
    EXPECT_EQ(first->getTypeId(), SoSeparator::getClassTypeId());
    EXPECT_EQ(first->getName(), SbName("label_01"));
    EXPECT_EQ(childTypes(first), Types{});
    SoNode* second = hierarchyChild(c, 1);
    EXPECT_EQ(second->getName(), SbName("caption"));
    EXPECT_EQ(childTypes(second), (Types{"Info", "Separator"}));
    EXPECT_EQ(childNames(second)[1], "under");
}

TEST(Text, textOrClipWithoutChildren_doesNotSwallowTheNextRecord)
{
    // Without a children walk of their own, both leave the walk on the record after their
    // ancillary records: a sibling that follows stays a sibling, and a pop closes its level.
    const uint8_t enabled[5] = {0, 0, 0, 0, 0};
    FltFixture db;
    db.header().push();
    db.group("g").push();
    db.text("t").group("sibling").push().pop();
    db.clipRegion("c", enabled, kPlanes).longId("clip_long");
    db.pop();
    db.group("after").push().pop();
    db.pop();
    Converted c(db);
    EXPECT_EQ(childNames(hierarchyChild(c, 0)), (Names{"t", "sibling", "clip_long"}));
    EXPECT_EQ(hierarchyChild(c, 1)->getName(), SbName("after"));
    EXPECT_TRUE(c.messages.empty());
}
