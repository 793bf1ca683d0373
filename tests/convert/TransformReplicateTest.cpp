// Matrix records as matrix transforms ahead of the children (of groups and degree-of-freedom
// records alike), and replicate records with their "Replications" separator of shared copies.
#include <gtest/gtest.h>

#include <Inventor/nodes/SoMatrixTransform.h>

#include "ConvertSupport.h"

namespace {

// The x translations of a group's matrix transforms (which tell the matrix records apart
// here), and "node" for each child that is `node` itself.
std::vector<std::string> shapeOf(SoNode* group, SoNode* node = nullptr)
{
    std::vector<std::string> shape;
    auto* g = dynamic_cast<SoGroup*>(group);
    for (int i = 0; g && i < g->getNumChildren(); ++i) {
        if (auto* t = childAs<SoMatrixTransform>(g, i))
            shape.push_back(std::to_string(static_cast<int>(t->matrix.getValue()[3][0])));
        else
            shape.push_back(g->getChild(i) == node ? "node" : g->getChild(i)->getTypeId().getName().getString());
    }
    return shape;
}

}  // namespace

// ---- Matrices ----

TEST(Matrix, becomesTheGroupsOrDegreeOfFreedomsFirstChildInFileOrderWithoutTransposition)
{
    // The modelling transforms that come with the composed matrix change nothing.
    const float m[16] = {1, 2, 3, 0, 5, 6, 7, 0, 9, 10, 11, 0, 13, 14, 15, 1};
    FltFixture db;
    db.header().push().group("g").matrix(m);
    // Translate, non-uniform scale, rotate about point, rotate about edge, general matrix.
    for (auto [opcode, length] : {std::pair{78, 56}, {79, 48}, {80, 48}, {76, 64}, {94, 68}})
        db.add(FltRecordBytes(static_cast<uint16_t>(opcode), static_cast<size_t>(length)));
    db.push().group("child").push().pop().pop();
    // A degree-of-freedom record is a separator with its matrix ahead of the children (the
    // golden scene pins the matrix's values).
    db.dof("arm").translationMatrix(1, 2, 3).push().group("hand").push().pop().pop();
    Converted c(db.dof("bare").push().pop().pop());
    EXPECT_EQ(hierarchy(c), "Separator:g[MatrixTransform Separator:child] Separator:arm[MatrixTransform "
                            "Separator:hand] Separator:bare");
    const SbMatrix& value = childAs<SoMatrixTransform>(hierarchyChild(c, 0), 0)->matrix.getValue();
    for (int row = 0; row < 4; ++row)
        for (int col = 0; col < 4; ++col) EXPECT_EQ(value[row][col], m[4 * row + col]) << row << "," << col;
}

// ---- Replication ----

TEST(Replicate, eachCopyTakesTheMatrixAfterTheOneTestedAndTheRestReachTheNode)
{
    // Test and use are one record apart: 1 is tested and 2 used, then 3 tested and 4 used.
    // The copies are the node itself; the tested matrices serve no one; matrices left after
    // the count, or after an empty replication, belong to the node. A replication at the
    // end of the records stops there.
    struct Case {
        int32_t count;
        int matrices;
        bool closed;  // a push and pop level after the matrices
        Names node, replications;
        bool comment = false;  // after the matrices, a record that is none stops the replication
    };
    const Case cases[] = {
        {0, 1, true, {"1"}, {}},
        {1, 2, true, {}, {"2", "node"}},
        {5, 4, true, {}, {"2", "node", "4", "node"}},
        {2, 5, true, {"5"}, {"2", "node", "4", "node"}},
        {4, 3, false, {}, {"2", "node"}},
        // The record that stopped the replication is passed over, whichever step met it.
        {3, 1, true, {}, {}, true},
        {3, 0, true, {}, {}, true},
    };
    for (const Case& k : cases) {
        SCOPED_TRACE(k.count);
        FltFixture db;
        db.header().push().group("g").replicate(k.count);
        for (int i = 1; i <= k.matrices; ++i) db.translationMatrix(static_cast<float>(i), 0, 0);
        if (k.comment) db.comment("not a matrix");
        if (k.closed) db.push().pop().pop();
        Converted c(db);
        ASSERT_EQ(c.root->getNumChildren(), kHeaderChildren + 2);
        ASSERT_EQ(hierarchyChild(c, 1)->getName(), SbName("Replications"));
        EXPECT_EQ(shapeOf(hierarchyChild(c, 0)), k.node);
        EXPECT_EQ(shapeOf(hierarchyChild(c, 1), hierarchyChild(c, 0)), k.replications);
        EXPECT_TRUE(c.messages.empty());
    }
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
    db.group("a").push().pop().group("b").push().pop();
    db.pop();
    db.group("after").push().pop();
    Converted c(db.pop());
    EXPECT_EQ(hierarchy(c), "Separator:g[Separator:a] Separator:Replications[MatrixTransform Separator:g[Separator:a]] "
                            "Separator:b");
    EXPECT_EQ(c.messages, (Names{"WARNING ! trying a pop() but stack is empty! (File corrupted ?)"}));
}
