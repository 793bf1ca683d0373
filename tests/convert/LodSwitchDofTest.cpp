// Level-of-detail, switch and degree-of-freedom records: the nodes they become, the mask
// rule that turns each child of a switch on or off, and its speed on large switches.
#include <gtest/gtest.h>

#include <Inventor/nodes/SoInfo.h>
#include <Inventor/nodes/SoLOD.h>
#include <Inventor/nodes/SoLabel.h>
#include <Inventor/nodes/SoMatrixTransform.h>
#include <Inventor/nodes/SoSwitch.h>

#include <chrono>

#include "ConvertSupport.h"

namespace {

// One mask word as the property string spells it: bit 31 first, then two blanks.
std::string bitsOf(uint32_t word)
{
    std::string s;
    for (int bit = 31; bit >= 0; --bit) s += ((word >> bit) & 1u) ? "1 " : "0 ";
    return s + "  ";
}

std::string infoOf(SoNode* sw) { return childAs<SoInfo>(sw, 0)->string.getValue().getString(); }

// A switch over `children` text records (each one child, with nothing below it).
FltFixture switchOverChildren(int32_t currentMask, int32_t wordsPerMask, const std::vector<uint32_t>& words,
                              int children)
{
    FltFixture db;
    db.header().push();
    db.switchNode("sw", currentMask, wordsPerMask, words).push();
    for (int i = 0; i < children; ++i) db.text("t" + std::to_string(i));
    db.pop().pop();
    return db;
}

// The wrappers under the first converted node, "1" for on and "0" for off, in order.
std::string wrapperStates(const Converted& c)
{
    std::string states;
    auto* group = dynamic_cast<SoGroup*>(hierarchyChild(c, 0));
    for (int i = 0; group && i < group->getNumChildren(); ++i)
        if (auto* wrapper = childAs<SoSwitch>(group, i))
            states += wrapper->whichChild.getValue() == SO_SWITCH_ALL ? '1' : '0';
    return states;
}

// n children, those listed on.
std::string onAt(int n, std::initializer_list<int> on)
{
    std::string states(n, '0');
    for (int i : on) states[i] = '1';
    return states;
}

// n mask words, all zero but the last.
std::vector<uint32_t> lastWord(size_t n, uint32_t last)
{
    std::vector<uint32_t> words(n, 0);
    words.back() = last;
    return words;
}

}  // namespace

// ---- Level of detail ----

TEST(LevelOfDetail, rangesCentresLabelsAndContent)
{
    FltFixture db;
    db.header();
    db.vertexPalette();
    const int a = db.vertexColor(2, 4, 6), b = db.vertexColor(4, 4, 6), d = db.vertexColor(4, 8, 6);
    db.push();
    db.lod("l1", 1000, 10, 1, 2, 3).push().group("g").push().pop().pop();
    // Ancillary records apply to the content; a centre almost zero is the file's own.
    db.lod("l2", 100, 0, 0, 0, 0.001).longId("far_away_detail").translationMatrix(5, 0, 0).push().pop();
    // A zero centre is the content's bounding box centre, the origin when it is empty.
    db.lod("l3", 100, 0).push().object("o").push().face().push().vertexList({a, b, d}).pop().pop().pop();
    db.lod("l4", 100, 0).push().pop();
    db.oldLod("old", 4000000000u, 20, -1, 2, 3).push().group("h").push().pop().pop();
    db.pop();
    Converted c(db);
    const std::vector<SoLOD*> lods = findAll<SoLOD>(c.root);
    ASSERT_EQ(lods.size(), 5u);
    auto lod = [&](int i) { return lods[i]; };
    for (int i = 0; i < 5; ++i) {
        ASSERT_EQ(childTypes(lod(i)), (Types{"Label", "Separator", "Label"})) << i;
        // The two labels are the converter's shared nodes, under every LOD.
        EXPECT_EQ(lod(i)->getChild(0), lod(0)->getChild(0));
        EXPECT_EQ(lod(i)->getChild(2), lod(0)->getChild(2));
    }
    EXPECT_EQ(lod(0)->getName(), SbName("l1"));
    ASSERT_EQ(lod(0)->range.getNum(), 2);
    EXPECT_EQ(lod(0)->range[0], 10.0f);
    EXPECT_EQ(lod(0)->range[1], 1000.0f);
    EXPECT_EQ(lod(0)->center.getValue(), SbVec3f(1, 2, 3));
    EXPECT_EQ(childAs<SoLabel>(lod(0), 0)->label.getValue(), SbName("MinRangeLimitForLOD"));
    EXPECT_EQ(childAs<SoLabel>(lod(0), 2)->label.getValue(), SbName("MaxRangeLimitForLOD"));
    EXPECT_EQ(lod(0)->getChild(1)->getName(), SbName("l1"));
    EXPECT_EQ(childNames(lod(0)->getChild(1)), (Names{"g"}));

    EXPECT_EQ(lod(1)->getName(), SbName("l2"));
    EXPECT_EQ(lod(1)->getChild(1)->getName(), SbName("far_away_detail"));
    EXPECT_EQ(childTypes(lod(1)->getChild(1)), (Types{"MatrixTransform"}));
    EXPECT_EQ(lod(1)->center.getValue(), SbVec3f(0, 0, 0.001f));
    EXPECT_EQ(lod(2)->center.getValue(), SbVec3f(3, 6, 6));
    EXPECT_EQ(lod(3)->center.getValue(), SbVec3f(0, 0, 0));
    // The old LOD is widened into the same nodes; its unsigned distances stay positive.
    EXPECT_EQ(lod(4)->getName(), SbName("old"));
    EXPECT_EQ(lod(4)->range[0], 20.0f);
    EXPECT_EQ(lod(4)->range[1], 4000000000.0f);
    EXPECT_EQ(lod(4)->center.getValue(), SbVec3f(-1, 2, 3));
    EXPECT_EQ(childNames(lod(4)->getChild(1)), (Names{"h"}));
    EXPECT_TRUE(c.messages.empty());
}

// ---- Switch ----

TEST(Switch, separatorInfoAndOneWrapperPerChildOnByTheMaskBit)
{
    FltFixture db;
    db.header().push();
    db.switchNode("sw", 0, 1, {0x00000005}).push();
    for (const char* name : {"a", "b", "c"}) db.group(name).push().pop();
    db.pop().pop();
    Converted c(db);
    SoNode* sw = hierarchyChild(c, 0);
    // Coin keeps the parentheses of the name.
    EXPECT_EQ(sw->getName(), SbName("sw_(flt_switch)"));
    ASSERT_EQ(childTypes(sw), (Types{"Info", "Switch", "Switch", "Switch"}));
    EXPECT_EQ(childNames(sw), (Names{"SoInfo_child_of_FLT_switch", "child_of_sw_(flt_switch)",
                                     "child_of_sw_(flt_switch)", "child_of_sw_(flt_switch)"}));
    EXPECT_EQ(infoOf(sw), "Current Mask:0 NumberOfWordsPerMask:1 numberOfMasks:1 Switch Masks:" + bitsOf(5));
    EXPECT_EQ(wrapperStates(c), "101");
    EXPECT_EQ(childNames(childAs<SoSwitch>(sw, 2)), (Names{"b"}));
    EXPECT_TRUE(c.messages.empty());
}

TEST(Switch, maskRuleOverMasksWordsAndHeaderValues)
{
    struct Case {
        const char* what;
        int32_t currentMask, wordsPerMask;
        std::vector<uint32_t> words;
        std::string states;
    };
    const Case cases[] = {
        {"the current mask among several", 1, 1, {0x1, 0x6, 0x0}, "0110"},
        // Children 0 to 31 read the second word, from its least significant bit; 32 on the first.
        {"several words per mask", 0, 2, {0x00000001, 0x80000002}, onAt(34, {1, 31, 32})},
        // switchMaskShorterThanChildren_headerElementsThenOff: past the mask the rule reads
        // back into the header, numberOfMasks (1) turning child 33 on and the words per mask
        // (1) child 35; everything before the list's start is off.
        {"mask shorter than the children", 0, 1, {0xFFFFFFFF}, std::string(32, '1') + "01010000"},
        // Header values of 10 and 100 to 109 are misread on purpose: the "0" is read again as
        // a number, the words per mask land on a separator and every child is off.
        {"current mask 10", 10, 1, lastWord(11, 0xFFFFFFFF), "000"},
        {"current mask 104", 104, 1, lastWord(105, 0xFFFFFFFF), "00"},
        // Eleven and ten words per mask are read right: the misread digit stays in the header.
        {"current mask 11", 11, 1, lastWord(12, 0x2), "01"},
        {"ten words per mask", 0, 10, {0, 0, 0, 0, 0, 0, 0, 0, 1, 1}, onAt(33, {0, 32})},
    };
    for (const Case& k : cases) {
        FltFixture db = switchOverChildren(k.currentMask, k.wordsPerMask, k.words, static_cast<int>(k.states.size()));
        Converted c(db);
        EXPECT_EQ(wrapperStates(c), k.states) << k.what;
        EXPECT_TRUE(c.messages.empty()) << k.what;
    }
}

TEST(Switch, countsClaimingMoreWordsThanTheRecordHoldsPrintOnlyThoseHeld)
{
    FltFixture db;
    db.header().push();
    FltRecordBytes r(96, 32);  // room for one word, while the counts claim 4 x 1000
    r.chars(4, "big", 8).i32(16, 0).i32(20, 4).i32(24, 1000).u32(28, 0x3);
    db.add(r).push().text("a").text("b").pop();
    Converted c(db.pop());
    EXPECT_EQ(infoOf(hierarchyChild(c, 0)),
              "Current Mask:0 NumberOfWordsPerMask:1000 numberOfMasks:4 Switch Masks:" + bitsOf(0x3));
    // Child n reads far beyond the one word printed: off.
    EXPECT_EQ(wrapperStates(c), "00");
}

TEST(Switch, aGroupNamedLikeASwitchWrapsItsChildrenAndReportsTheMissingInfo)
{
    FltFixture db;
    db.header().push();
    db.group("g").longId("not_a_flt_switch").push();
    db.group("a").push().pop().group("b").push().pop();
    db.pop().pop();
    Converted c(db);
    SoNode* g = hierarchyChild(c, 0);
    EXPECT_EQ(childTypes(g), (Types{"Switch", "Switch"}));
    EXPECT_EQ(childNames(g), (Names{"child_of_not_a_flt_switch", "child_of_not_a_flt_switch"}));
    EXPECT_EQ(childNames(childAs<SoSwitch>(g, 1)), (Names{"b"}));
    EXPECT_EQ(wrapperStates(c), "00");
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
    db.pop().pop();
    Converted c(db);
    EXPECT_EQ(wrapperStates(c), "01");
    SoNode* inner = childAs<SoSwitch>(hierarchyChild(c, 0), 1)->getChild(0);
    EXPECT_EQ(inner->getName(), SbName("in_(flt_switch)"));
    ASSERT_EQ(childTypes(inner), (Types{"Info", "Switch", "Switch"}));
    EXPECT_EQ(childAs<SoSwitch>(inner, 1)->whichChild.getValue(), SO_SWITCH_ALL);
    EXPECT_EQ(childAs<SoSwitch>(inner, 2)->whichChild.getValue(), SO_SWITCH_NONE);
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
    db.pop().pop();

    const auto start = std::chrono::steady_clock::now();
    Converted c(db);
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::string expected(kChildren, '0');
    for (int n = 0; n < kChildren; ++n)
        if ((static_cast<uint32_t>(n / 32) >> (n % 32)) & 1u) expected[n] = '1';
    EXPECT_TRUE(wrapperStates(c) == expected);
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
    Converted c(db.pop());
    SoNode* arm = hierarchyChild(c, 0);
    EXPECT_EQ(arm->getTypeId(), SoSeparator::getClassTypeId());
    EXPECT_EQ(childNames(c.root), (Names{"", "", "", "arm", "bare"}));
    ASSERT_EQ(childTypes(arm), (Types{"MatrixTransform", "Separator"}));
    EXPECT_EQ(childAs<SoMatrixTransform>(arm, 0)->matrix.getValue()[3][0], 1.0f);
    EXPECT_EQ(childNames(arm)[1], "hand");
    EXPECT_EQ(childTypes(hierarchyChild(c, 1)), Types{});
}
