// The walk over records: groups as named separators, push and pop levels, long IDs and
// comments applied to the node before them, unbalanced and misplaced records.
#include <gtest/gtest.h>

#include <Inventor/SbViewportRegion.h>
#include <Inventor/actions/SoGetBoundingBoxAction.h>
#include <Inventor/nodes/SoCoordinate3.h>
#include <Inventor/nodes/SoInfo.h>
#include <Inventor/nodes/SoPointSet.h>

#include "ConvertSupport.h"

namespace {

// How many nodes of each name are alive.
std::vector<int> alive(std::initializer_list<const char*> names)
{
    std::vector<int> counts;
    SoNodeList nodes;
    for (const char* name : names) counts.push_back(SoNode::getByName(name, nodes));
    return counts;
}

// The texts of a group's leading info nodes.
Names infosOf(SoNode* g)
{
    Names texts;
    for (int i = 0; childAs<SoInfo>(g, i); ++i) texts.push_back(childAs<SoInfo>(g, i)->string.getValue().getString());
    return texts;
}

}  // namespace

TEST(Hierarchy, groupsBecomeNamedSeparatorsInFileOrder)
{
    // A primary record without push level takes the next record as its only child. A leaf
    // group directly followed by a pop level takes that pop as its single child and ignores
    // it, so the level it closed stays open: the established walk, kept. (The golden scene
    // pins that records without converter are passed over silently.)
    FltFixture db;
    db.header().push();
    db.group("g1").push().group("g2").push().pop().group("g3").push().group("g4").push().pop().pop().pop();
    db.group("outer").group("inner").push().pop();
    db.group("a").push().group("leaf").pop();
    db.group("b").push().pop().pop();
    Converted c(db.group("last").push().pop().pop());
    EXPECT_EQ(hierarchy(c), "Separator:g1[Separator:g2 Separator:g3[Separator:g4]] Separator:outer[Separator:inner] "
                            "Separator:a[Separator:leaf Separator:b] Separator:last");
    EXPECT_TRUE(c.messages.empty());
}

TEST(Hierarchy, theLastLongIdNamesTheNodeAndCommentLinesAfterTheFirstRunToItsEnd)
{
    // Each line break cuts the comment, the piece after it running to the end: the first
    // line gets no node of its own and "A\nB" two nodes of "B", kept on purpose.
    const std::vector<std::pair<std::string, Names>> comments = {
        {"built by hand", {"built by hand"}},
        {"A\nB", {"B", "B"}},
        {"A\r\nB\nC", {"B\nC", "C", "C"}},
        {"\nX\n", {"X\n"}},
    };
    FltFixture db;
    db.header().push();
    db.group("short").longId("a_long_name").longId("the_final_name").push().pop();
    for (const auto& comment : comments) db.group("g").comment(comment.first).push().pop();
    db.pop();
    Converted c(db);
    EXPECT_EQ(hierarchyChild(c, 0)->getName(), SbName("the_final_name"));
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(static_cast<SoGroup*>(hierarchyChild(c, 1 + i))->getNumChildren(), int(comments[i].second.size()));
        EXPECT_EQ(infosOf(hierarchyChild(c, 1 + i)), comments[i].second) << comments[i].first;
    }
}

TEST(Hierarchy, pushesNeverClosedEndWithTheRecordsAndRecordsOutsideTheRootsLevelAreDropped)
{
    FltFixture open;
    Converted c(open.header().push().group("g").push().group("h").push());
    EXPECT_EQ(hierarchy(c), "Separator:g[Separator:h]");
    EXPECT_TRUE(c.messages.empty());
    // "early" had no open group; its push then opens it as the current parent, out of the graph.
    FltFixture early;
    Converted e(early.header().group("early").push().group("inside").push().pop().pop());
    EXPECT_EQ(hierarchy(e), "");
    // "late" comes after the root's level closed; the pop past it warns and the walk goes on
    // (the warning's text, level and echo: ConversionRun's options test).
    FltFixture late;
    Converted l(late.header().push().pop().pop().group("late").push().pop());
    EXPECT_EQ(hierarchy(l), "");
    EXPECT_EQ(l.messages.size(), 1u);
}

TEST(Hierarchy, everyGroupNotifiesItsParentsAgainOnceConverted)
{
    // Groups hold their notification while open; closed or left open by the file, each must
    // pass changes up again, or a host would draw a stale scene.
    FltFixture db;
    db.header().push().group("nfClosed").push().group("nfDeep").push().pop().pop().group("nfOpen").push().group("nfLast");
    Converted c(db.push());
    SoGetBoundingBoxAction box{SbViewportRegion()};
    for (const char* name : {"nfDeep", "nfOpen", "nfLast"}) {
        box.apply(c.root);  // caches every separator's box
        auto* group = dynamic_cast<SoGroup*>(SoNode::getByName(name));
        ASSERT_TRUE(group) << name;
        EXPECT_TRUE(group->isNotifyEnabled()) << name;
        auto* point = new SoSeparator;
        auto* coordinates = new SoCoordinate3;
        coordinates->point.setValue(SbVec3f(100, 0, 0));
        point->addChild(coordinates);
        point->addChild(new SoPointSet);
        group->addChild(point);
        box.apply(c.root);
        EXPECT_EQ(box.getBoundingBox().getMax()[0], 100.0f) << name;
        group->removeChild(point);
    }
}

TEST(Hierarchy, hierarchyDeeperThanTheLimitIsCutWithOneMessage)
{
    FltFixture db;
    db.header().push();
    for (int i = 0; i < 3000; ++i) db.group("d").push();
    for (int i = 0; i < 3000; ++i) db.pop();
    Converted c(db.pop());
    ASSERT_EQ(c.messages.size(), 1u);
    EXPECT_NE(c.messages[0].find("nested more than"), std::string::npos);
    EXPECT_EQ(c.levels, std::vector<int>{3});
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
    const Names infos = infosOf(hierarchyChild(c, 0));
    EXPECT_GT(infos.size(), 100u);
    EXPECT_LT(infos.size(), 32000u);
    size_t total = 0;
    for (const std::string& info : infos) total += info.size();
    EXPECT_LE(total, 16 * db.bytes().size() + (size_t(16) << 20));
    EXPECT_EQ(c.messages, (Names{"WARNING ! The lines of the comments would repeat more text than 16 times the "
                                 "database holds: further comment lines are not converted into info nodes"}));
}

TEST(Hierarchy, nodesOutsideTheGraphAreFreedDuringTheWalkOnceNoRecordCanReachThem)
{
    // Before any push, primary records join no group. The scene graph library releases N
    // nodes of one name in N * N steps, so each goes as soon as the walk has moved past it.
    FltFixture db;
    db.header();
    for (int i = 0; i < 50; ++i) db.group("lsGroup").push().group("lsChild").push().pop().pop();
    for (int i = 0; i < 50; ++i) db.instanceDefinition(31999).push().group("lsDef").push().pop().pop();
    db.lod("lsLod", 10, 0).push().group("lsInLod").push().pop().pop();
    // Left open by the file: alive until the converter ends.
    db.group("lsLast").push().switchNode("lsSwitch", 0, 1, {1}).push().group("lsOn").push();

    HeldConversion h(db);
    // The walk is over and the builder still alive: only what a later record could still
    // have reached is left.
    // The current definition, and the groups left open, stay.
    const auto names = {"lsGroup", "lsChild", "lsLod", "lsInLod", "InstanceDefinition_31999", "lsDef", "lsLast", "lsOn"};
    EXPECT_EQ(alive(names), (std::vector<int>{0, 0, 0, 0, 1, 1, 1, 1}));
    EXPECT_EQ(h.root->getNumChildren(), 3);  // shape hints and bindings only
    h.end();
    EXPECT_EQ(alive(names), (std::vector<int>(8, 0)));
    // The header's own reference, then the caller's.
    EXPECT_EQ(h.root->getRefCount(), 2);
}
