// The header's root: name, unit scale and the shape hints and bindings in their order.
#include <gtest/gtest.h>

#include <Inventor/nodes/SoNormalBinding.h>
#include <Inventor/nodes/SoScale.h>
#include <Inventor/nodes/SoShapeHints.h>
#include <Inventor/nodes/SoTextureCoordinateBinding.h>

#include "ConvertSupport.h"

namespace {

// The uniform scale at the root's head, or -1 when there is none.
float rootScale(int32_t revision, uint8_t units, int16_t multiplier = 0)
{
    FltFixture db;
    db.header(revision, units, 0, multiplier).push().pop();
    Converted c(db);
    auto* scale = childAs<SoScale>(c.root, 0);
    if (!scale) return -1;
    const SbVec3f f = scale->scaleFactor.getValue();
    EXPECT_EQ(f[0], f[1]);
    EXPECT_EQ(f[1], f[2]);
    return f[0];
}

}  // namespace

TEST(HeaderConversion, metresNeedNoScaleAndTheShapeHintsComeFirst)
{
    FltFixture db;
    db.header(1570, 0).push().pop();
    Converted c(db);
    EXPECT_EQ(c.root->getName(), SbName("root"));
    ASSERT_EQ(childTypes(c.root),
              (std::vector<std::string>{"ShapeHints", "TextureCoordinateBinding", "NormalBinding"}));
    auto* hints = childAs<SoShapeHints>(c.root, 0);
    EXPECT_EQ(hints->vertexOrdering.getValue(), SoShapeHints::COUNTERCLOCKWISE);
    EXPECT_EQ(hints->shapeType.getValue(), SoShapeHints::SOLID);
    EXPECT_EQ(hints->faceType.getValue(), SoShapeHints::CONVEX);
    EXPECT_EQ(childAs<SoTextureCoordinateBinding>(c.root, 1)->value.getValue(),
              SoTextureCoordinateBinding::PER_VERTEX_INDEXED);
    EXPECT_EQ(childAs<SoNormalBinding>(c.root, 2)->value.getValue(), SoNormalBinding::PER_VERTEX_INDEXED);
}

TEST(HeaderConversion, unitsScaleTheRootToMetres)
{
    EXPECT_FLOAT_EQ(rootScale(1570, 1), 1000.0f);
    EXPECT_FLOAT_EQ(rootScale(1570, 4), 0.3048f);
    EXPECT_FLOAT_EQ(rootScale(1570, 5), 0.0254f);
    EXPECT_FLOAT_EQ(rootScale(1570, 8), 1852.0f);
    EXPECT_EQ(rootScale(1570, 2), -1);  // values the table does not list count as metres
    EXPECT_EQ(rootScale(1570, 3), -1);
}

TEST(HeaderConversion, oldRevisionsApplyTheUnitMultiplierOrDivisor)
{
    EXPECT_FLOAT_EQ(rootScale(12, 0, -100), 0.01f);
    EXPECT_FLOAT_EQ(rootScale(12, 4, 2), 0.6096f);
    EXPECT_EQ(rootScale(13, 0, -100), -1);
    EXPECT_EQ(rootScale(12, 0, 1), -1);
    // A multiplier of 0 collapses the geometry: the established behaviour.
    EXPECT_EQ(rootScale(12, 0, 0), 0.0f);
}

TEST(HeaderConversion, scaleComesBeforeTheShapeHints)
{
    FltFixture db;
    db.header(1570, 4).push().pop();
    Converted c(db);
    EXPECT_EQ(childTypes(c.root),
              (std::vector<std::string>{"Scale", "ShapeHints", "TextureCoordinateBinding", "NormalBinding"}));
}

TEST(HeaderConversion, secondHeaderAppendsAnotherSetAndAnotherReference)
{
    FltFixture db;
    db.header(1570).header(1570).push().pop();
    Converted c(db);
    EXPECT_EQ(c.root->getNumChildren(), 6);
    EXPECT_EQ(c.root->getRefCount(), 2);
    c.root->unref();  // the second header's reference, so that the test frees the root
}
