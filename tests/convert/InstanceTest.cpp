// Instance definitions and references: one separator shown wherever it is referenced,
// redefinitions, references before any definition, and references that would make an
// instance contain itself.
#include <gtest/gtest.h>

#include <Inventor/actions/SoGetBoundingBoxAction.h>

#include "ConvertSupport.h"

namespace {

using Types = std::vector<std::string>;
using Names = std::vector<std::string>;

constexpr int kHeaderChildren = 3;

SoNode* hierarchyChild(const Converted& c, int index) { return childAs<SoNode>(c.root, kHeaderChildren + index); }

Names hierarchyNames(const Converted& c)
{
    Names names = childNames(c.root);
    names.erase(names.begin(), names.begin() + kHeaderChildren);
    return names;
}

// Instance records are control records: the walk converts them where it meets them at its
// own level, so these databases keep them at the top level, under the root.
void definition(FltFixture& db, int16_t number, const std::string& group)
{
    db.instanceDefinition(number).push().group(group).push().pop().pop();
}

}  // namespace

TEST(Instance, referencesShowTheDefinitionsOwnSeparator)
{
    FltFixture db;
    db.header().push();
    definition(db, 1, "tree");
    db.group("g").push().pop();
    db.instanceReference(1).instanceReference(1);
    db.pop();
    Converted c(db);
    EXPECT_EQ(hierarchyNames(c), (Names{"InstanceDefinition_1", "g", "InstanceDefinition_1", "InstanceDefinition_1"}));
    SoNode* defined = hierarchyChild(c, 0);
    EXPECT_EQ(childNames(defined), (Names{"tree"}));
    EXPECT_EQ(hierarchyChild(c, 2), defined);
    EXPECT_EQ(hierarchyChild(c, 3), defined);
    EXPECT_TRUE(c.messages.empty());
}

TEST(Instance, aSecondDefinitionServesTheReferencesAfterIt)
{
    FltFixture db;
    db.header().push();
    definition(db, 7, "first");
    db.instanceReference(7);
    definition(db, 7, "second");
    db.instanceReference(7);
    db.pop();
    Converted c(db);
    EXPECT_EQ(hierarchyNames(c), (Names{"InstanceDefinition_7", "InstanceDefinition_7", "InstanceDefinition_7",
                                        "InstanceDefinition_7"}));
    EXPECT_EQ(hierarchyChild(c, 1), hierarchyChild(c, 0));
    EXPECT_EQ(hierarchyChild(c, 3), hierarchyChild(c, 2));
    EXPECT_NE(hierarchyChild(c, 2), hierarchyChild(c, 0));
    EXPECT_EQ(childNames(hierarchyChild(c, 3)), (Names{"second"}));
}

TEST(Instance, referencesBeforeAnyDefinitionOrToNoneAddNothingSilently)
{
    FltFixture db;
    db.header().push();
    db.instanceReference(2);
    db.instanceReference(-5);
    definition(db, 2, "late");
    db.instanceReference(2);
    db.pop();
    Converted c(db);
    EXPECT_EQ(hierarchyNames(c), (Names{"InstanceDefinition_2", "InstanceDefinition_2"}));
    EXPECT_TRUE(c.messages.empty());
}

TEST(Instance, instancesNestInOtherInstances)
{
    FltFixture db;
    db.header().push();
    definition(db, 2, "leaf");
    db.instanceDefinition(1).push().instanceReference(2).group("trunk").push().pop().pop();
    db.instanceReference(1);
    db.pop();
    Converted c(db);
    SoNode* outer = hierarchyChild(c, 1);
    ASSERT_EQ(outer->getName(), SbName("InstanceDefinition_1"));
    EXPECT_EQ(childNames(outer), (Names{"InstanceDefinition_2", "trunk"}));
    EXPECT_EQ(childAs<SoNode>(outer, 0), hierarchyChild(c, 0));
    EXPECT_EQ(hierarchyChild(c, 2), outer);
}

TEST(Instance, referenceInsideItsOwnDefinition_isRefusedWithMessage)
{
    FltFixture db;
    db.header().push();
    db.instanceDefinition(1).push().group("a").push().pop().instanceReference(1).pop();
    db.instanceReference(1);
    db.pop();
    Converted c(db);
    SoNode* defined = hierarchyChild(c, 0);
    EXPECT_EQ(childNames(defined), (Names{"a"}));
    EXPECT_EQ(hierarchyChild(c, 1), defined);
    const std::string message =
        "ERROR ! Instance reference 1 stands inside its own definition: not added, the instance would contain itself";
    EXPECT_EQ(c.messages, (Names{message}));
    EXPECT_EQ(c.levels, (std::vector<int>{3}));
    // Any traversal of a graph with a cycle would never end.
    SoGetBoundingBoxAction box{SbViewportRegion()};
    box.apply(c.root);
}

TEST(Instance, manyReferencesUnderAReopenedGroupStayLinear)
{
    // Each refused reference costs the same, however many came before.
    FltFixture db;
    db.header().push();
    db.instanceDefinition(1).push().group("g").push().pop().pop();
    db.push();
    for (int i = 0; i < 20000; ++i) db.instanceReference(1);
    db.pop().pop();
    Converted c(db);
    ASSERT_EQ(c.messages.size(), size_t(FltWarningMessageConsole::kMaxRepeats + 1));
    EXPECT_NE(c.messages.back().find("came 19000 more times"), std::string::npos);
    EXPECT_EQ(childTypes(childAs<SoNode>(hierarchyChild(c, 0), 0)), Types{});
}

TEST(Instance, referenceUnderAGroupOfItsOwnReopenedByAStalePush_isRefused)
{
    // After the definition closes, the last primary record is still its group "g", which a
    // push with no record of its own reopens: a reference there would put the instance
    // inside itself although the definition is no longer open.
    FltFixture db;
    db.header().push();
    db.instanceDefinition(1).push().group("g").push().pop().pop();
    db.push().instanceReference(1).pop();
    db.pop();
    Converted c(db);
    SoNode* defined = hierarchyChild(c, 0);
    ASSERT_EQ(childNames(defined), (Names{"g"}));
    EXPECT_EQ(childTypes(childAs<SoNode>(defined, 0)), Types{});
    ASSERT_EQ(c.messages.size(), 1u);
    EXPECT_EQ(c.messages[0],
              "ERROR ! Instance reference 1 stands under a group that a push level opened again: not added, the "
              "instance could contain itself");
    SoGetBoundingBoxAction box{SbViewportRegion()};
    box.apply(c.root);
}
