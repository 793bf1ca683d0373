// The walk over records: groups as named separators, push and pop levels, long IDs and
// comments applied to the node before them, unbalanced and misplaced records.
#include <gtest/gtest.h>

#include <Inventor/nodes/SoInfo.h>
#include <Inventor/nodes/SoSwitch.h>

#include "ConvertSupport.h"

namespace {

using Types = std::vector<std::string>;
using Names = std::vector<std::string>;

// The header's four children (shape hints and bindings) come before the hierarchy.
constexpr int kHeaderChildren = 3;

SoNode* hierarchyChild(const Converted& c, int index) { return childAs<SoNode>(c.root, kHeaderChildren + index); }

}  // namespace

TEST(Hierarchy, groupsBecomeNamedSeparatorsInFileOrder)
{
    FltFixture db;
    db.header().push();
    db.group("g1").push();
    db.group("g2").push().pop();
    db.group("g3").push().group("g4").push().pop().pop();
    db.pop();
    db.pop();
    Converted c(db);
    EXPECT_EQ(childTypes(c.root), (Types{"ShapeHints", "TextureCoordinateBinding", "NormalBinding", "Separator"}));
    SoNode* g1 = hierarchyChild(c, 0);
    EXPECT_EQ(g1->getName(), SbName("g1"));
    EXPECT_EQ(childNames(g1), (Names{"g2", "g3"}));
    EXPECT_EQ(childNames(childAs<SoNode>(g1, 1)), (Names{"g4"}));
    EXPECT_TRUE(c.messages.empty());
}

TEST(Hierarchy, primaryRecordWithoutPushLevelTakesTheNextRecordAsItsOnlyChild)
{
    FltFixture db;
    db.header().push();
    db.group("outer").group("inner").push().pop();
    db.group("after").push().pop();
    db.pop();
    Converted c(db);
    SoNode* outer = hierarchyChild(c, 0);
    EXPECT_EQ(outer->getName(), SbName("outer"));
    EXPECT_EQ(childNames(outer), (Names{"inner"}));
    EXPECT_EQ(hierarchyChild(c, 1)->getName(), SbName("after"));
}

TEST(Hierarchy, leafGroupTakesTheFollowingPopAsItsChild)
{
    // A group directly followed by a pop level takes that pop as its single child and
    // ignores it, so the level it closed stays open: the established walk, kept.
    FltFixture db;
    db.header().push();
    db.group("a").push();
    db.group("leaf");
    db.pop();
    db.group("b").push().pop();
    db.pop();
    Converted c(db);
    SoNode* a = hierarchyChild(c, 0);
    EXPECT_EQ(childNames(a), (Names{"leaf", "b"}));
    EXPECT_TRUE(c.messages.empty());
}

TEST(Hierarchy, theLastLongIdNamesTheNode)
{
    FltFixture db;
    db.header().push();
    db.group("short").longId("a_long_name").longId("the_final_name").push().pop();
    db.pop();
    Converted c(db);
    EXPECT_EQ(hierarchyChild(c, 0)->getName(), SbName("the_final_name"));
}

TEST(Hierarchy, oneLineCommentBecomesOneInfoNode)
{
    FltFixture db;
    db.header().push();
    db.group("g").comment("built by hand").push().pop();
    db.pop();
    Converted c(db);
    SoNode* g = hierarchyChild(c, 0);
    ASSERT_EQ(childTypes(g), (Types{"Info"}));
    EXPECT_EQ(childAs<SoInfo>(g, 0)->string.getValue(), SbString("built by hand"));
}

TEST(Hierarchy, commentLinesAfterTheFirstRunToTheEndOfTheComment)
{
    FltFixture db;
    db.header().push();
    db.group("ab").comment("A\nB").push().pop();
    db.group("abc").comment("A\r\nB\nC").push().pop();
    db.group("edge").comment("\nX\n").push().pop();
    db.pop();
    Converted c(db);
    auto infos = [](SoNode* g) {
        std::vector<std::string> texts;
        for (int i = 0; childAs<SoInfo>(g, i); ++i) texts.push_back(childAs<SoInfo>(g, i)->string.getValue().getString());
        return texts;
    };
    EXPECT_EQ(infos(hierarchyChild(c, 0)), (Names{"B", "B"}));
    EXPECT_EQ(infos(hierarchyChild(c, 1)), (Names{"B\nC", "C", "C"}));
    EXPECT_EQ(infos(hierarchyChild(c, 2)), (Names{"X\n"}));
}

TEST(Hierarchy, primaryRecordsWithoutConverterAreIgnoredSilently)
{
    FltFixture db;
    db.header().push();
    db.add(FltRecordBytes(101, 64));  // light source
    db.add(FltRecordBytes(99, 8));    // unknown opcode
    db.add(FltRecordBytes(200, 8));   // beyond the record set
    db.group("g").push().pop();
    db.pop();
    Converted c(db);
    EXPECT_EQ(childNames(c.root).back(), "g");
    EXPECT_EQ(c.root->getNumChildren(), kHeaderChildren + 1);
    EXPECT_TRUE(c.messages.empty());
}

TEST(Hierarchy, popOnAnEmptyStackWarnsAndTheWalkGoesOn)
{
    FltFixture db;
    db.header().push().pop().pop();
    db.group("late").push().pop();
    Converted c(db);
    EXPECT_EQ(c.messages, (Names{"WARNING ! trying a pop() but stack is empty! (File corrupted ?)"}));
    EXPECT_EQ(c.levels, std::vector<int>{2});
    EXPECT_NE(c.errors.find("WARNING ! trying a pop() but stack is empty! (File corrupted ?)\n(Warning Level: 2)\n\n"),
              std::string::npos);
    // "late" came after the root's level closed: it belongs to no group.
    EXPECT_EQ(c.root->getNumChildren(), kHeaderChildren);
}

TEST(Hierarchy, pushesNeverClosedEndWithTheRecords)
{
    FltFixture db;
    db.header().push().group("g").push().group("h").push();
    Converted c(db);
    SoNode* g = hierarchyChild(c, 0);
    EXPECT_EQ(childNames(g), (Names{"h"}));
    EXPECT_TRUE(c.messages.empty());
}

TEST(Hierarchy, primaryRecordsBeforeTheFirstPushAreDropped)
{
    FltFixture db;
    db.header().group("early").push().group("inside").push().pop().pop();
    Converted c(db);
    // "early" had no open group; its push then opens it as the current parent, out of the graph.
    EXPECT_EQ(c.root->getNumChildren(), kHeaderChildren);
    EXPECT_EQ(findNamed(c.root, "early"), nullptr);
    EXPECT_EQ(findNamed(c.root, "inside"), nullptr);
}

TEST(Hierarchy, groupsUnderAGroupNamedLikeASwitchAreWrappedAndOffWithoutItsInfo)
{
    FltFixture db;
    db.header().push();
    db.group("s").longId("my_flt_switch").push();
    db.group("c0").push().pop();
    db.pop();
    db.pop();
    Converted c(db);
    SoNode* s = hierarchyChild(c, 0);
    ASSERT_EQ(childTypes(s), (Types{"Switch"}));
    auto* wrapper = childAs<SoSwitch>(s, 0);
    EXPECT_EQ(wrapper->getName(), SbName("child_of_my_flt_switch"));
    EXPECT_EQ(wrapper->whichChild.getValue(), SO_SWITCH_NONE);
    EXPECT_EQ(childNames(wrapper), (Names{"c0"}));
    EXPECT_TRUE(c.hasMessage("ERROR ! SoInfo with switch properties not found"));
}

TEST(Hierarchy, emptyVertexPaletteAddsNoPropertyPaletteSwitch)
{
    FltFixture db;
    db.header().vertexPalette().push().pop();
    Converted c(db);
    EXPECT_EQ(findNamed(c.root, "vertexPropertyPalette"), nullptr);
}

TEST(Hierarchy, hierarchyDeeperThanTheLimitIsCutWithOneMessage)
{
    FltFixture db;
    db.header().push();
    for (int i = 0; i < 3000; ++i) db.group("d").push();
    for (int i = 0; i < 3000; ++i) db.pop();
    db.pop();
    Converted c(db);
    ASSERT_EQ(c.messages.size(), 1u);
    EXPECT_NE(c.messages[0].find("nested more than"), std::string::npos);
    EXPECT_EQ(c.root->getRefCount(), 1);
}

TEST(Hierarchy, commentOfManyLinesStopsRepeatingItsTextAtTheBudget)
{
    // Each line would repeat the rest of the comment: 32000 lines of a 64000-byte comment
    // would make about 1 GB of info text. The text stops at 16 times the file plus 16 MiB.
    std::string text;
    while (text.size() < 64000) text += "a\r";
    FltFixture db;
    db.header().push().group("g").comment(text).push().pop().pop();
    Converted c(db);
    SoNode* g = hierarchyChild(c, 0);
    const int infos = static_cast<SoGroup*>(g)->getNumChildren();
    EXPECT_GT(infos, 100);
    EXPECT_LT(infos, 32000);
    size_t total = 0;
    for (int i = 0; i < infos; ++i) total += childAs<SoInfo>(g, i)->string.getValue().getLength();
    EXPECT_LE(total, 16 * db.bytes().size() + (size_t(16) << 20));
    EXPECT_EQ(c.messages, (Names{"WARNING ! The lines of the comments would repeat more text than 16 times the "
                                 "database holds: further comment lines are not converted into info nodes"}));
}
