// Instance definitions and references: one separator shown wherever it is referenced,
// redefinitions, references before any definition, and references that would make an
// instance contain itself.
#include <gtest/gtest.h>

#include "ConvertSupport.h"

namespace {

// Instance records are control records: the walk converts them where it meets them at its
// own level, so these databases keep them at the top level, under the root.
FltFixture& definition(FltFixture& db, int16_t number, const std::string& group)
{
    return db.instanceDefinition(number).push().group(group).push().pop().pop();
}

const std::string kInsideItself =
    "ERROR ! Instance reference 1 stands inside its own definition: not added, the instance would contain itself";

}  // namespace

TEST(Instance, referencesShowTheLatestDefinitionsOwnSeparatorAlsoInsideOtherInstances)
{
    // References before any definition, or to none, add nothing and say nothing.
    FltFixture db;
    db.header().push().instanceReference(7).instanceReference(-5);
    definition(db, 7, "first").instanceReference(7).instanceReference(7);
    definition(db, 7, "second").instanceReference(7);
    db.instanceDefinition(1).push().instanceReference(7).group("trunk").push().pop().pop();
    Converted c(db.instanceReference(1).pop());
    const std::string first = "Separator:InstanceDefinition_7[Separator:first]";
    const std::string second = "Separator:InstanceDefinition_7[Separator:second]";
    const std::string outer = "Separator:InstanceDefinition_1[" + second + " Separator:trunk]";
    EXPECT_EQ(hierarchy(c),
              first + " " + first + " " + first + " " + second + " " + second + " " + outer + " " + outer);
    EXPECT_EQ(hierarchyChild(c, 1), hierarchyChild(c, 0));
    EXPECT_EQ(hierarchyChild(c, 2), hierarchyChild(c, 0));
    EXPECT_EQ(hierarchyChild(c, 4), hierarchyChild(c, 3));
    EXPECT_EQ(childAs<SoNode>(hierarchyChild(c, 5), 0), hierarchyChild(c, 3));
    EXPECT_EQ(hierarchyChild(c, 6), hierarchyChild(c, 5));
    EXPECT_TRUE(c.messages.empty());
}

TEST(Instance, referenceInsideItsOwnDefinitionOrUnderAGroupReopenedByAStalePushIsRefused)
{
    // Directly inside its definition; then, after a definition closes, the last primary
    // record is still its group, which a push with no record of its own reopens: a reference
    // to that definition there would put the instance inside itself; one to another
    // definition forms no cycle and is added.
    FltFixture db;
    db.header().push();
    db.instanceDefinition(1).push().group("g").push().pop().instanceReference(1).pop();
    db.instanceReference(1).push().instanceReference(1).pop();
    definition(db, 2, "h").push().instanceReference(1).pop();
    Converted c(db.pop());
    // Walking the graph, as hierarchy() does, would never end if the instance held itself.
    const std::string one = "Separator:InstanceDefinition_1[Separator:g]";
    EXPECT_EQ(hierarchy(c), one + " " + one + " Separator:InstanceDefinition_2[Separator:h[" + one + "]]");
    EXPECT_EQ(hierarchyChild(c, 1), hierarchyChild(c, 0));
    EXPECT_EQ(c.messages, (Names{kInsideItself, kInsideItself}));
    EXPECT_EQ(c.levels, (std::vector<int>{3, 3}));
}

TEST(Instance, manyReferencesUnderAReopenedGroupStayLinear)
{
    // Each refused reference costs the same, however many came before.
    FltFixture db;
    db.header().push();
    definition(db, 1, "g").push();
    for (int i = 0; i < 20000; ++i) db.instanceReference(1);
    Converted c(db.pop().pop());
    ASSERT_EQ(c.messages.size(), size_t(FltWarningMessageConsole::kMaxRepeats + 1));
    EXPECT_NE(c.messages.back().find("came 19000 more times"), std::string::npos);
    EXPECT_EQ(hierarchy(c), "Separator:InstanceDefinition_1[Separator:g]");
}
