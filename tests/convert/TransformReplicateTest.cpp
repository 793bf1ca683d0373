// Matrix records as matrix transforms ahead of the children, and replicate records with
// their "Replications" separator of shared copies.
#include <gtest/gtest.h>

#include <Inventor/nodes/SoMatrixTransform.h>

#include "ConvertSupport.h"

namespace {

using Types = std::vector<std::string>;
using Names = std::vector<std::string>;

constexpr int kHeaderChildren = 3;

SoNode* hierarchyChild(const Converted& c, int index) { return childAs<SoNode>(c.root, kHeaderChildren + index); }

// The x translation of a matrix transform, which tells the matrix records apart here.
float translationX(SoNode* node)
{
    auto* transform = dynamic_cast<SoMatrixTransform*>(node);
    return transform ? transform->matrix.getValue()[3][0] : -1.0f;
}

}  // namespace

// ---- Matrices ----

TEST(Matrix, becomesTheGroupsFirstChildInFileOrderWithoutTransposition)
{
    const float m[16] = {1, 2, 3, 0, 5, 6, 7, 0, 9, 10, 11, 0, 13, 14, 15, 1};
    FltFixture db;
    db.header().push();
    db.group("g").matrix(m).push().group("child").push().pop().pop();
    db.pop();
    Converted c(db);
    SoNode* g = hierarchyChild(c, 0);
    ASSERT_EQ(childTypes(g), (Types{"MatrixTransform", "Separator"}));
    const SbMatrix& value = childAs<SoMatrixTransform>(g, 0)->matrix.getValue();
    for (int row = 0; row < 4; ++row)
        for (int col = 0; col < 4; ++col) EXPECT_EQ(value[row][col], m[4 * row + col]) << row << "," << col;
}

TEST(Matrix, modellingTransformsWithoutTheComposedMatrixChangeNothing)
{
    FltFixture db;
    db.header().push();
    db.group("g");
    db.add(FltRecordBytes(78, 56));  // translate
    db.add(FltRecordBytes(79, 48));  // non-uniform scale
    db.add(FltRecordBytes(80, 48));  // rotate about point
    db.add(FltRecordBytes(76, 64));  // rotate about edge
    db.add(FltRecordBytes(94, 68));  // general matrix
    db.push().pop();
    db.pop();
    Converted c(db);
    EXPECT_EQ(childTypes(hierarchyChild(c, 0)), Types{});
    EXPECT_EQ(c.root->getNumChildren(), kHeaderChildren + 1);
}

// ---- Replication ----

TEST(Replicate, countZeroLeavesAnEmptySeparatorBesideTheNode)
{
    FltFixture db;
    db.header().push();
    db.group("g").replicate(0).translationMatrix(7, 0, 0).push().pop();
    db.pop();
    Converted c(db);
    EXPECT_EQ(childNames(c.root).back(), "Replications");
    SoNode* g = hierarchyChild(c, 0);
    auto* replications = childAs<SoSeparator>(c.root, kHeaderChildren + 1);
    ASSERT_NE(replications, nullptr);
    EXPECT_EQ(replications->getNumChildren(), 0);
    // The matrix after an empty replication belongs to the node as usual.
    ASSERT_EQ(childTypes(g), (Types{"MatrixTransform"}));
    EXPECT_EQ(translationX(childAs<SoNode>(g, 0)), 7.0f);
}

TEST(Replicate, eachCopyTakesTheMatrixAfterTheOneTested)
{
    // Test and use are one record apart: 1 is tested and 2 used, then 3 tested and 4 used.
    FltFixture db;
    db.header().push();
    db.group("g").replicate(1).translationMatrix(1, 0, 0).translationMatrix(2, 0, 0).push().pop();
    db.group("h").replicate(5);
    for (int i = 1; i <= 4; ++i) db.translationMatrix(static_cast<float>(i), 0, 0);
    db.push().pop();
    db.pop();
    Converted c(db);
    ASSERT_EQ(childNames(c.root),
              (Names{"", "", "", "g", "Replications", "h", "Replications"}));
    SoNode* g = hierarchyChild(c, 0);
    SoNode* one = hierarchyChild(c, 1);
    ASSERT_EQ(childTypes(one), (Types{"MatrixTransform", "Separator"}));
    EXPECT_EQ(translationX(childAs<SoNode>(one, 0)), 2.0f);
    EXPECT_EQ(childAs<SoNode>(one, 1), g);  // the node itself, not a copy
    EXPECT_EQ(childTypes(g), Types{});      // the tested matrix is used by no one

    SoNode* h = hierarchyChild(c, 2);
    SoNode* many = hierarchyChild(c, 3);
    ASSERT_EQ(childTypes(many), (Types{"MatrixTransform", "Separator", "MatrixTransform", "Separator"}));
    EXPECT_EQ(translationX(childAs<SoNode>(many, 0)), 2.0f);
    EXPECT_EQ(translationX(childAs<SoNode>(many, 2)), 4.0f);
    EXPECT_EQ(childAs<SoNode>(many, 1), h);
    EXPECT_EQ(childAs<SoNode>(many, 3), h);
}

TEST(Replicate, matricesLeftAfterTheCountReachTheNode)
{
    FltFixture db;
    db.header().push();
    db.group("g").replicate(2);
    for (int i = 1; i <= 5; ++i) db.translationMatrix(static_cast<float>(i), 0, 0);
    db.push().pop();
    db.pop();
    Converted c(db);
    SoNode* replications = hierarchyChild(c, 1);
    ASSERT_EQ(replications->getName(), SbName("Replications"));
    EXPECT_EQ(childTypes(replications).size(), 4u);
    SoNode* g = hierarchyChild(c, 0);
    ASSERT_EQ(childTypes(g), (Types{"MatrixTransform"}));
    EXPECT_EQ(translationX(childAs<SoNode>(g, 0)), 5.0f);
}

TEST(Replicate, recordAfterTheTestedMatrixNotAMatrix_stopsTheReplication)
{
    FltFixture db;
    db.header().push();
    db.group("g").replicate(3).translationMatrix(1, 0, 0).comment("not a matrix").push().pop();
    db.group("h").replicate(3).comment("first").push().pop();
    db.pop();
    Converted c(db);
    SoNode* replications = hierarchyChild(c, 1);
    ASSERT_EQ(replications->getName(), SbName("Replications"));
    EXPECT_EQ(childTypes(replications), Types{});
    // The record that stopped the replication is passed over, whichever step met it.
    EXPECT_EQ(childTypes(hierarchyChild(c, 0)), Types{});
    EXPECT_EQ(childTypes(hierarchyChild(c, 2)), Types{});
    EXPECT_TRUE(c.messages.empty());
}

TEST(Replicate, eachCopyPassesOverOneRecordAfterTheAncillaryRecords)
{
    // The walk's position moves on with each copy, though it already stands after the
    // ancillary records: one copy passes over the push level of the children. The children
    // walk then takes "a" as the only child, "b" lands one level up, and the pop meant for
    // "g" closes the root's level: the established walk, pinned here.
    FltFixture db;
    db.header().push();
    db.group("g").replicate(1).translationMatrix(1, 0, 0).translationMatrix(2, 0, 0).push();
    db.group("a").push().pop();
    db.group("b").push().pop();
    db.pop();
    db.group("after").push().pop();
    db.pop();
    Converted c(db);
    EXPECT_EQ(childNames(c.root), (Names{"", "", "", "g", "Replications", "b"}));
    EXPECT_EQ(childNames(hierarchyChild(c, 0)), (Names{"a"}));
    EXPECT_EQ(c.messages, (Names{"WARNING ! trying a pop() but stack is empty! (File corrupted ?)"}));
}

TEST(Replicate, replicationAtTheEndOfTheRecordsStopsThere)
{
    FltFixture db;
    db.header().push();
    db.group("g").replicate(4).translationMatrix(1, 0, 0).translationMatrix(2, 0, 0).translationMatrix(3, 0, 0);
    Converted c(db);
    SoNode* replications = hierarchyChild(c, 1);
    ASSERT_NE(replications, nullptr);
    EXPECT_EQ(childTypes(replications), (Types{"MatrixTransform", "Separator"}));
}
