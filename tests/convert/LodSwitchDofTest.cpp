// Level-of-detail, switch and degree-of-freedom records: the nodes they become, the mask
// rule that turns each child of a switch on or off, and its speed on large switches.
#include <gtest/gtest.h>

#include <Inventor/nodes/SoIndexedFaceSet.h>
#include <Inventor/nodes/SoInfo.h>
#include <Inventor/nodes/SoLOD.h>
#include <Inventor/nodes/SoLabel.h>
#include <Inventor/nodes/SoMatrixTransform.h>
#include <Inventor/nodes/SoSwitch.h>

#include <chrono>

#include "ConvertSupport.h"

namespace {

using Types = std::vector<std::string>;
using Names = std::vector<std::string>;

// The header's children (shape hints and two bindings) come before the hierarchy.
constexpr int kHeaderChildren = 3;

SoNode* hierarchyChild(const Converted& c, int index) { return childAs<SoNode>(c.root, kHeaderChildren + index); }

// One mask word as the property string spells it: bit 31 first, then two blanks.
std::string bitsOf(uint32_t word)
{
    std::string s;
    for (int bit = 31; bit >= 0; --bit) s += ((word >> bit) & 1u) ? "1 " : "0 ";
    return s + "  ";
}

// The property string of a switch, built the way a reader of the info node expects it.
std::string switchProperties(int currentMask, int wordsPerMask, int masks, const std::vector<uint32_t>& words)
{
    std::string s = "Current Mask:" + std::to_string(currentMask) + " NumberOfWordsPerMask:" +
                    std::to_string(wordsPerMask) + " numberOfMasks:" + std::to_string(masks) + " Switch Masks:";
    for (uint32_t word : words) s += bitsOf(word);
    return s;
}

// A switch over `children` text records (each one child, with nothing below it).
FltFixture switchOverChildren(int32_t currentMask, int32_t wordsPerMask, const std::vector<uint32_t>& words,
                              int children)
{
    FltFixture db;
    db.header().push();
    db.switchNode("sw", currentMask, wordsPerMask, words).push();
    for (int i = 0; i < children; ++i) db.text("t" + std::to_string(i));
    db.pop();
    db.pop();
    return db;
}

// whichChild of every wrapper under the converted switch, in order.
std::vector<int> wrapperStates(const Converted& c)
{
    std::vector<int> states;
    SoNode* sw = hierarchyChild(c, 0);
    auto* group = dynamic_cast<SoGroup*>(sw);
    if (!group) return states;
    for (int i = 0; i < group->getNumChildren(); ++i)
        if (auto* wrapper = childAs<SoSwitch>(group, i)) states.push_back(wrapper->whichChild.getValue());
    return states;
}

constexpr int ON = SO_SWITCH_ALL;
constexpr int OFF = SO_SWITCH_NONE;

}  // namespace

// ---- Level of detail ----

TEST(LevelOfDetail, rangesLabelsAndContentInTheirOrder)
{
    FltFixture db;
    db.header().push();
    db.lod("l1", 1000, 10, 1, 2, 3).push().group("g").push().pop().pop();
    db.lod("l2", 50, 5, 4, 5, 6).push().pop();
    db.pop();
    Converted c(db);
    auto* lod = dynamic_cast<SoLOD*>(hierarchyChild(c, 0));
    ASSERT_NE(lod, nullptr);
    EXPECT_EQ(lod->getName(), SbName("l1"));
    ASSERT_EQ(lod->range.getNum(), 2);
    EXPECT_EQ(lod->range[0], 10.0f);
    EXPECT_EQ(lod->range[1], 1000.0f);
    EXPECT_EQ(lod->center.getValue(), SbVec3f(1, 2, 3));
    ASSERT_EQ(childTypes(lod), (Types{"Label", "Separator", "Label"}));
    EXPECT_EQ(childAs<SoLabel>(lod, 0)->label.getValue(), SbName("MinRangeLimitForLOD"));
    EXPECT_EQ(childAs<SoLabel>(lod, 2)->label.getValue(), SbName("MaxRangeLimitForLOD"));
    SoNode* content = childAs<SoSeparator>(lod, 1);
    EXPECT_EQ(content->getName(), SbName("l1"));
    EXPECT_EQ(childNames(content), (Names{"g"}));

    // The two labels are the converter's shared nodes, under every LOD.
    auto* second = dynamic_cast<SoLOD*>(hierarchyChild(c, 1));
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(second->getChild(0), lod->getChild(0));
    EXPECT_EQ(second->getChild(2), lod->getChild(2));
    EXPECT_TRUE(c.messages.empty());
}

TEST(LevelOfDetail, ancillaryRecordsApplyToTheContentNotToTheLod)
{
    FltFixture db;
    db.header().push();
    db.lod("l1", 100, 0, 0, 0, 1).longId("far_away_detail").translationMatrix(5, 0, 0).push().pop();
    db.pop();
    Converted c(db);
    auto* lod = dynamic_cast<SoLOD*>(hierarchyChild(c, 0));
    ASSERT_NE(lod, nullptr);
    EXPECT_EQ(lod->getName(), SbName("l1"));
    SoNode* content = lod->getChild(1);
    EXPECT_EQ(content->getName(), SbName("far_away_detail"));
    EXPECT_EQ(childTypes(content), (Types{"MatrixTransform"}));
}

TEST(LevelOfDetail, aCentreFromTheFileIsKeptEvenWhenAlmostZero)
{
    FltFixture db;
    db.header().push();
    db.lod("near", 100, 0, 0, 0, 0.001).push().pop();
    db.lod("empty", 100, 0).push().pop();
    db.pop();
    Converted c(db);
    EXPECT_EQ(dynamic_cast<SoLOD*>(hierarchyChild(c, 0))->center.getValue(), SbVec3f(0, 0, 0.001f));
    // No centre and nothing to measure: the empty box's centre, the origin.
    EXPECT_EQ(dynamic_cast<SoLOD*>(hierarchyChild(c, 1))->center.getValue(), SbVec3f(0, 0, 0));
}

TEST(LevelOfDetail, aZeroCentreIsTakenFromTheContentsBoundingBox)
{
    FltFixture db;
    db.header();
    db.vertexPalette();
    const int a = db.vertexColor(2, 4, 6), b = db.vertexColor(4, 4, 6), d = db.vertexColor(4, 8, 6);
    db.push();
    db.lod("l", 100, 0).push();
    db.object("o").push().face().push().vertexList({a, b, d}).pop().pop();
    db.pop();
    db.pop();
    Converted c(db);
    ASSERT_EQ(findAll<SoIndexedFaceSet>(c.root).size(), 1u);
    SoLOD* lod = findAll<SoLOD>(c.root).at(0);
    const SbVec3f centre = lod->center.getValue();
    EXPECT_FLOAT_EQ(centre[0], 3);
    EXPECT_FLOAT_EQ(centre[1], 6);
    EXPECT_FLOAT_EQ(centre[2], 6);
}

TEST(LevelOfDetail, oldLodIsWidenedIntoTheSameNodes)
{
    FltFixture db;
    db.header(1420).push();
    db.oldLod("old", 4000000000u, 20, -1, 2, 3).push().group("g").push().pop().pop();
    db.pop();
    Converted c(db);
    auto* lod = dynamic_cast<SoLOD*>(hierarchyChild(c, 0));
    ASSERT_NE(lod, nullptr);
    EXPECT_EQ(lod->getName(), SbName("old"));
    EXPECT_EQ(lod->range[0], 20.0f);
    EXPECT_EQ(lod->range[1], 4000000000.0f);  // unsigned distances stay positive
    EXPECT_EQ(lod->center.getValue(), SbVec3f(-1, 2, 3));
    ASSERT_EQ(childTypes(lod), (Types{"Label", "Separator", "Label"}));
    EXPECT_EQ(childNames(lod->getChild(1)), (Names{"g"}));
}

// ---- Switch ----

TEST(Switch, separatorInfoAndOneWrapperPerChildOnByTheMaskBit)
{
    FltFixture db;
    db.header().push();
    db.switchNode("sw", 0, 1, {0x00000005}).push();
    db.group("a").push().pop();
    db.group("b").push().pop();
    db.group("c").push().pop();
    db.pop();
    db.pop();
    Converted c(db);
    SoNode* sw = hierarchyChild(c, 0);
    ASSERT_NE(sw, nullptr);
    // Coin keeps the parentheses of the name.
    EXPECT_EQ(sw->getName(), SbName("sw_(flt_switch)"));
    ASSERT_EQ(childTypes(sw), (Types{"Info", "Switch", "Switch", "Switch"}));
    auto* info = childAs<SoInfo>(sw, 0);
    EXPECT_EQ(info->getName(), SbName("SoInfo_child_of_FLT_switch"));
    EXPECT_EQ(std::string(info->string.getValue().getString()), switchProperties(0, 1, 1, {5}));
    EXPECT_EQ(childNames(sw),
              (Names{"SoInfo_child_of_FLT_switch", "child_of_sw_(flt_switch)", "child_of_sw_(flt_switch)",
                     "child_of_sw_(flt_switch)"}));
    EXPECT_EQ(wrapperStates(c), (std::vector<int>{ON, OFF, ON}));
    EXPECT_EQ(childNames(childAs<SoSwitch>(sw, 2)), (Names{"b"}));
    EXPECT_TRUE(c.messages.empty());
}

TEST(Switch, severalWordsPerMaskGovernChildrenFromTheLastWordBack)
{
    // Children 0 to 31 read the second word, from its least significant bit; 32 on the first.
    FltFixture db = switchOverChildren(0, 2, {0x00000001, 0x80000002}, 34);
    Converted c(db);
    const std::vector<int> states = wrapperStates(c);
    ASSERT_EQ(states.size(), 34u);
    for (int n = 0; n < 34; ++n) {
        const bool on = n == 1 || n == 31 || n == 32;
        EXPECT_EQ(states[n], on ? ON : OFF) << "child " << n;
    }
    EXPECT_EQ(std::string(childAs<SoInfo>(hierarchyChild(c, 0), 0)->string.getValue().getString()),
              switchProperties(0, 2, 1, {0x00000001, 0x80000002}));
}

TEST(Switch, theCurrentMaskIsChosenAmongSeveral)
{
    FltFixture db = switchOverChildren(1, 1, {0x00000001, 0x00000006, 0x00000000}, 4);
    Converted c(db);
    EXPECT_EQ(wrapperStates(c), (std::vector<int>{OFF, ON, ON, OFF}));
}

TEST(Switch, switchMaskShorterThanChildren_headerElementsThenOff)
{
    // Past the mask, the rule reads back into the header: numberOfMasks (1) turns child 33
    // on and the words per mask (1) child 35; everything before the list's start is off.
    FltFixture db = switchOverChildren(0, 1, {0xFFFFFFFF}, 40);
    Converted c(db);
    const std::vector<int> states = wrapperStates(c);
    ASSERT_EQ(states.size(), 40u);
    for (int n = 0; n < 32; ++n) EXPECT_EQ(states[n], ON) << "child " << n;
    const std::vector<int> beyond(states.begin() + 32, states.end());
    EXPECT_EQ(beyond, (std::vector<int>{OFF, ON, OFF, ON, OFF, OFF, OFF, OFF}));
    EXPECT_TRUE(c.messages.empty());
}

TEST(Switch, headerValuesOfTenAndAHundredAreMisreadOnPurpose)
{
    // Current mask 10: its "0" is read again as a number, the words per mask land on a
    // separator and every child is off, though mask 10 is all ones.
    std::vector<uint32_t> eleven(11, 0);
    eleven[10] = 0xFFFFFFFF;
    {
        FltFixture db = switchOverChildren(10, 1, eleven, 3);
        Converted c(db);
        EXPECT_EQ(wrapperStates(c), (std::vector<int>{OFF, OFF, OFF}));
    }
    {
        std::vector<uint32_t> masks(105, 0);
        masks[104] = 0xFFFFFFFF;
        FltFixture db = switchOverChildren(104, 1, masks, 2);
        Converted c(db);
        EXPECT_EQ(wrapperStates(c), (std::vector<int>{OFF, OFF}));
    }
    // Eleven and ten words per mask are read right: the misread digit stays in the header.
    {
        std::vector<uint32_t> twelve(12, 0);
        twelve[11] = 0x00000002;
        FltFixture db = switchOverChildren(11, 1, twelve, 2);
        Converted c(db);
        EXPECT_EQ(wrapperStates(c), (std::vector<int>{OFF, ON}));
    }
    {
        std::vector<uint32_t> words(10, 0);
        words[9] = 0x00000001;
        words[8] = 0x00000001;
        FltFixture db = switchOverChildren(0, 10, words, 33);
        Converted c(db);
        const std::vector<int> states = wrapperStates(c);
        ASSERT_EQ(states.size(), 33u);
        EXPECT_EQ(states[0], ON);
        EXPECT_EQ(states[1], OFF);
        EXPECT_EQ(states[32], ON);
    }
}

TEST(Switch, countsClaimingMoreWordsThanTheRecordHoldsPrintOnlyThoseHeld)
{
    FltFixture db;
    db.header().push();
    FltRecordBytes r(96, 32);  // room for one word, while the counts claim 4 x 1000
    r.chars(4, "big", 8).i32(16, 0).i32(20, 4).i32(24, 1000).u32(28, 0x3);
    db.add(r).push().text("a").text("b").pop();
    db.pop();
    Converted c(db);
    SoNode* sw = hierarchyChild(c, 0);
    EXPECT_EQ(std::string(childAs<SoInfo>(sw, 0)->string.getValue().getString()),
              "Current Mask:0 NumberOfWordsPerMask:1000 numberOfMasks:4 Switch Masks:" + bitsOf(0x3));
    // Child n reads far beyond the one word printed: off.
    EXPECT_EQ(wrapperStates(c), (std::vector<int>{OFF, OFF}));
}

TEST(Switch, aGroupNamedLikeASwitchWrapsItsChildrenAndReportsTheMissingInfo)
{
    FltFixture db;
    db.header().push();
    db.group("g").longId("not_a_flt_switch").push();
    db.group("a").push().pop();
    db.group("b").push().pop();
    db.pop();
    db.pop();
    Converted c(db);
    SoNode* g = hierarchyChild(c, 0);
    EXPECT_EQ(childTypes(g), (Types{"Switch", "Switch"}));
    EXPECT_EQ(childNames(g), (Names{"child_of_not_a_flt_switch", "child_of_not_a_flt_switch"}));
    EXPECT_EQ(wrapperStates(c), (std::vector<int>{OFF, OFF}));
    const std::string missing = "ERROR ! SoInfo with switch properties not found";
    EXPECT_EQ(c.messages, (Names{missing, missing}));
    EXPECT_EQ(c.levels, (std::vector<int>{3, 3}));
}

TEST(Switch, nestedSwitchesEachKeepTheirOwnCount)
{
    // The inner switch is child 0 of the outer one; the outer's next child is child 1.
    FltFixture db;
    db.header().push();
    db.switchNode("out", 0, 1, {0x2}).push();
    db.switchNode("in", 0, 1, {0x1}).push().text("x").text("y").pop();
    db.text("z");
    db.pop();
    db.pop();
    Converted c(db);
    SoNode* outer = hierarchyChild(c, 0);
    ASSERT_EQ(childTypes(outer), (Types{"Info", "Switch", "Switch"}));
    auto* innerWrapper = childAs<SoSwitch>(outer, 1);
    EXPECT_EQ(innerWrapper->whichChild.getValue(), OFF);
    EXPECT_EQ(childAs<SoSwitch>(outer, 2)->whichChild.getValue(), ON);
    SoNode* inner = innerWrapper->getChild(0);
    EXPECT_EQ(inner->getName(), SbName("in_(flt_switch)"));
    ASSERT_EQ(childTypes(inner), (Types{"Info", "Switch", "Switch"}));
    EXPECT_EQ(childAs<SoSwitch>(inner, 1)->whichChild.getValue(), ON);
    EXPECT_EQ(childAs<SoSwitch>(inner, 2)->whichChild.getValue(), OFF);
}

TEST(Switch, hundredThousandChildrenUnderALongMaskConvertInLinearTime)
{
    // 3125 words make one 100000-bit mask; the word for children 32j..32j+31 holds j, so
    // every child has a bit of its own to check.
    constexpr int kChildren = 100000;
    constexpr int kWords = kChildren / 32;
    std::vector<uint32_t> words(kWords);
    for (int j = 0; j < kWords; ++j) words[kWords - 1 - j] = static_cast<uint32_t>(j);
    FltFixture db;
    db.header().push();
    db.switchNode("big", 0, kWords, words).push();
    FltRecordBytes child(2, 12);  // a group cut short after its name: the rest reads as zero
    child.chars(4, "c", 8);
    for (int i = 0; i < kChildren; ++i) db.add(child).push().pop();
    db.pop();
    db.pop();

    const auto start = std::chrono::steady_clock::now();
    Converted c(db);
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    const std::vector<int> states = wrapperStates(c);
    ASSERT_EQ(states.size(), static_cast<size_t>(kChildren));
    int wrong = 0;
    for (int n = 0; n < kChildren; ++n) {
        const bool on = ((static_cast<uint32_t>(n / 32) >> (n % 32)) & 1u) != 0;
        if (states[n] != (on ? ON : OFF)) ++wrong;
    }
    EXPECT_EQ(wrong, 0);
    // A rule that rescans the children or reparses the mask per child needs hours here.
    EXPECT_LT(seconds, 120.0);
}

// ---- Degree of freedom ----

TEST(DegreeOfFreedom, separatorWithItsMatrixAheadOfTheChildren)
{
    FltFixture db;
    db.header().push();
    db.dof("arm").translationMatrix(1, 2, 3).push().group("hand").push().pop().pop();
    db.dof("bare").push().pop();
    db.pop();
    Converted c(db);
    SoNode* arm = hierarchyChild(c, 0);
    EXPECT_EQ(arm->getTypeId(), SoSeparator::getClassTypeId());
    EXPECT_EQ(arm->getName(), SbName("arm"));
    ASSERT_EQ(childTypes(arm), (Types{"MatrixTransform", "Separator"}));
    EXPECT_EQ(childAs<SoMatrixTransform>(arm, 0)->matrix.getValue()[3][0], 1.0f);
    EXPECT_EQ(childNames(arm)[1], "hand");
    SoNode* bare = hierarchyChild(c, 1);
    EXPECT_EQ(bare->getName(), SbName("bare"));
    EXPECT_EQ(childTypes(bare), Types{});
}
