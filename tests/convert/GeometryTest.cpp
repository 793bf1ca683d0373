// Objects and faces: face groups per vertex kind, subfaces, old vertex records, loose faces,
// heterogeneous faces and face sets split by texture pattern.
#include <gtest/gtest.h>

#include <Inventor/nodes/SoIndexedFaceSet.h>
#include <Inventor/nodes/SoMaterial.h>
#include <Inventor/nodes/SoMaterialBinding.h>
#include <Inventor/nodes/SoPolygonOffset.h>
#include <Inventor/nodes/SoTexture2.h>
#include <Inventor/nodes/SoVertexProperty.h>

#include "ConvertSupport.h"

namespace {

using Types = std::vector<std::string>;
using Names = std::vector<std::string>;

std::vector<int> coordIndexOf(SoIndexedFaceSet* set)
{
    return std::vector<int>(set->coordIndex.getValues(0), set->coordIndex.getValues(0) + set->coordIndex.getNum());
}

std::vector<int> materialIndexOf(SoIndexedFaceSet* set)
{
    return std::vector<int>(set->materialIndex.getValues(0),
                            set->materialIndex.getValues(0) + set->materialIndex.getNum());
}

FltVertexSpec at(double x, double y, double z)
{
    FltVertexSpec s;
    s.x = x, s.y = y, s.z = z;
    return s;
}

// A face with its vertex list one level down.
void face(FltFixture& db, const std::vector<int32_t>& offsets, FltFaceSpec spec = FltFaceSpec())
{
    db.face(spec).push().vertexList(offsets).pop();
}

// Three vertices of each kind; returns their offsets by kind (68, 69, 71, 70).
struct Palette {
    std::vector<int32_t> color, colorNormal, colorUv, colorNormalUv;
};

Palette threeOfEachKind(FltFixture& db)
{
    Palette p;
    db.vertexPalette();
    for (int i = 0; i < 3; ++i) p.color.push_back(db.vertexColor(at(i, 0, 0)));
    for (int i = 0; i < 3; ++i) p.colorNormal.push_back(db.vertexColorNormal(at(i, 1, 0)));
    for (int i = 0; i < 3; ++i) p.colorUv.push_back(db.vertexColorUv(at(i, 2, 0)));
    for (int i = 0; i < 3; ++i) p.colorNormalUv.push_back(db.vertexColorNormalUv(at(i, 3, 0)));
    return p;
}

}  // namespace

TEST(Geometry, objectWithFacesOfTwoKindsHoldsOneMaterialAndFaceSetPerKind)
{
    FltFixture db;
    db.header();
    Palette p = threeOfEachKind(db);
    db.push().object("house").push();
    face(db, p.colorNormalUv);
    face(db, p.color);
    face(db, p.color);
    db.pop().pop();
    Converted c(db);
    SoNode* house = findNamed(c.root, "house");
    ASSERT_NE(house, nullptr);
    EXPECT_EQ(childTypes(house), (Types{"MaterialBinding", "Material", "IndexedFaceSet", "Material", "IndexedFaceSet"}));
    EXPECT_EQ(childNames(house), (Names{"", "faceVertexColorSoMaterialSet", "SoIFSVertexColor",
                                        "faceVertexColorNormalUVSoMaterialSet", "SoIFSVertexColorNormalUV"}));
    EXPECT_EQ(childAs<SoMaterialBinding>(house, 0)->value.getValue(), SoMaterialBinding::PER_FACE_INDEXED);
    auto* colourSet = childAs<SoIndexedFaceSet>(house, 2);
    EXPECT_EQ(coordIndexOf(colourSet), (std::vector<int>{0, 1, 2, -1, 0, 1, 2, -1}));
    EXPECT_EQ(materialIndexOf(colourSet), (std::vector<int>{0, 1}));
    EXPECT_EQ(colourSet->vertexProperty.getValue(), findNamed(c.root, "vertexColorProperty"));
    EXPECT_EQ(childAs<SoMaterial>(house, 1)->diffuseColor.getNum(), 2);
    EXPECT_TRUE(c.messages.empty());
}

TEST(Geometry, subfacesFollowTheirFacesBehindAPolygonOffset)
{
    FltFixture db;
    db.header();
    Palette p = threeOfEachKind(db);
    db.push().object("o").push();
    face(db, p.colorNormal);
    db.pushSubface();
    face(db, p.colorNormal);
    db.popSubface();
    db.pop().pop();
    Converted c(db);
    SoNode* o = findNamed(c.root, "o");
    EXPECT_EQ(childTypes(o), (Types{"MaterialBinding", "Material", "IndexedFaceSet", "PolygonOffset", "Material",
                                    "IndexedFaceSet"}));
    EXPECT_EQ(childAs<SoNode>(o, 4)->getName(), SbName("subFaceVertexColorNormalSoMaterialSet"));
    auto* offset = childAs<SoPolygonOffset>(o, 3);
    EXPECT_EQ(offset->factor.getValue(), -1.0f);
    EXPECT_EQ(offset->units.getValue(), -30.0f);
}

TEST(Geometry, objectWithoutRecordsBelowItIsANamedEmptySeparator)
{
    FltFixture db;
    db.header().push().group("g").push();
    db.object("first").push().pop();
    db.object("empty");
    db.pop().pop();
    Converted c(db);
    SoNode* g = findNamed(c.root, "g");
    EXPECT_EQ(childNames(g), (Names{"first", "empty"}));
    EXPECT_EQ(childTypes(findNamed(c.root, "first")), Types{"MaterialBinding"});
    EXPECT_EQ(childTypes(findNamed(c.root, "empty")), Types{});
    EXPECT_TRUE(c.messages.empty());
}

TEST(Geometry, looseFacesUnderAGroupAreConvertedAsOneRun)
{
    FltFixture db;
    db.header();
    Palette p = threeOfEachKind(db);
    db.push().group("g").push();
    face(db, p.color);
    face(db, p.color);
    db.object("after").push();
    face(db, p.color);
    db.pop();
    db.pop().pop();
    Converted c(db);
    SoNode* g = findNamed(c.root, "g");
    // The run's nodes go straight into the group, before the object that ended it.
    EXPECT_EQ(childTypes(g), (Types{"MaterialBinding", "Material", "IndexedFaceSet", "Separator"}));
    EXPECT_EQ(coordIndexOf(childAs<SoIndexedFaceSet>(g, 2)), (std::vector<int>{0, 1, 2, -1, 0, 1, 2, -1}));
    EXPECT_EQ(childAs<SoNode>(g, 3)->getName(), SbName("after"));
}

TEST(Geometry, faceAfterAGroupWithoutPushLevelBecomesItsOnlyChild)
{
    FltFixture db;
    db.header();
    Palette p = threeOfEachKind(db);
    db.push().group("g");
    face(db, p.color);
    db.pop();
    Converted c(db);
    EXPECT_EQ(childTypes(findNamed(c.root, "g")), (Types{"MaterialBinding", "Material", "IndexedFaceSet"}));
}

TEST(Geometry, faceMixingColourAndNormalKindsIsDroppedWithAWarning)
{
    FltFixture db;
    db.header();
    Palette p = threeOfEachKind(db);
    db.push().object("o").push();
    face(db, {p.color[0], p.color[1], p.colorNormal[0]});
    db.pop().pop();
    Converted c(db);
    EXPECT_EQ(childTypes(findNamed(c.root, "o")), Types{"MaterialBinding"});
    ASSERT_EQ(c.messages, Names{"WARNING ! Remove a face having heterogeneous vertices"});
    EXPECT_EQ(c.levels, std::vector<int>{1});
}

TEST(Geometry, texturedFaceOfTwoKindsIsCopiedIntoTheRichestProperty)
{
    FltFixture db;
    db.header();
    Palette p = threeOfEachKind(db);
    db.push().object("o").push();
    face(db, {p.colorUv[0], p.colorNormalUv[1], p.colorUv[2]});
    db.pop().pop();
    Converted c(db);
    SoNode* o = findNamed(c.root, "o");
    ASSERT_EQ(childNames(o), (Names{"", "faceVertexColorNormalUVSoMaterialSet", "SoIFSVertexColorNormalUV"}));
    // The two colour-and-texture vertices were appended after the three of the richest kind.
    EXPECT_EQ(coordIndexOf(childAs<SoIndexedFaceSet>(o, 2)), (std::vector<int>{3, 1, 4, -1}));
    auto* richest = static_cast<SoVertexProperty*>(findNamed(c.root, "vertexColorNormalUVProperty"));
    ASSERT_EQ(richest->vertex.getNum(), 5);
    EXPECT_EQ(richest->vertex[3], SbVec3f(0, 2, 0));
    EXPECT_EQ(richest->normal[4], SbVec3f(0, 0, 1));  // the average normal of the face's own vertices
    EXPECT_EQ(richest->orderedRGBA.getNum(), 0);      // emptied after every copy, as established
    EXPECT_TRUE(c.messages.empty());
}

TEST(Geometry, faceSetsSplitByTexturePatternInAscendingOrder)
{
    FltFixture db;
    db.header();
    db.texturePattern(3, "tex/three.rgb");
    db.texturePattern(5, "five.rgb");
    Palette p = threeOfEachKind(db);
    db.push().object("o").push();
    for (int16_t texture : {-1, 3, 3, -1, 5}) {
        FltFaceSpec spec;
        spec.texturePatternIndex = texture;
        face(db, p.colorUv, spec);
    }
    db.pop().pop();
    Converted c(db);
    SoNode* o = findNamed(c.root, "o");
    ASSERT_EQ(childTypes(o), (Types{"MaterialBinding", "Material", "IndexedFaceSet", "Separator", "Separator"}));
    EXPECT_EQ(materialIndexOf(childAs<SoIndexedFaceSet>(o, 2)), (std::vector<int>{0, 3}));
    SoNode* three = childAs<SoNode>(o, 3);
    EXPECT_EQ(three->getName(), SbName("isolateTexturesNodes"));
    ASSERT_EQ(childTypes(three), (Types{"Texture2", "IndexedFaceSet"}));
    EXPECT_EQ(childAs<SoTexture2>(three, 0)->filename.getValue(), SbString("tex/three.rgb"));
    EXPECT_EQ(materialIndexOf(childAs<SoIndexedFaceSet>(three, 1)), (std::vector<int>{1, 2}));
    SoNode* five = childAs<SoNode>(o, 4);
    EXPECT_EQ(childAs<SoTexture2>(five, 0)->filename.getValue(), SbString("five.rgb"));
    EXPECT_EQ(materialIndexOf(childAs<SoIndexedFaceSet>(five, 1)), (std::vector<int>{4}));
}

TEST(Geometry, facesOfOneTextureMakeOneIsolatedFaceSet)
{
    FltFixture db;
    db.header();
    db.texturePattern(7, "seven.rgb");
    Palette p = threeOfEachKind(db);
    db.push().object("o").push();
    FltFaceSpec spec;
    spec.texturePatternIndex = 7;
    face(db, p.colorUv, spec);
    face(db, p.colorUv, spec);
    db.pop().pop();
    Converted c(db);
    SoNode* o = findNamed(c.root, "o");
    ASSERT_EQ(childTypes(o), (Types{"MaterialBinding", "Material", "Separator"}));
    EXPECT_EQ(childTypes(childAs<SoNode>(o, 2)), (Types{"Texture2", "IndexedFaceSet"}));
}

TEST(Geometry, faceNamingAMissingTexturePatternGetsNoTextureNode)
{
    FltFixture db;
    db.header();
    Palette p = threeOfEachKind(db);
    db.push().object("o").push();
    FltFaceSpec spec;
    spec.texturePatternIndex = 9;
    face(db, p.colorUv, spec);
    db.pop().pop();
    Converted c(db);
    SoNode* isolate = childAs<SoNode>(findNamed(c.root, "o"), 2);
    ASSERT_NE(isolate, nullptr);
    EXPECT_EQ(childTypes(isolate), Types{"IndexedFaceSet"});
}

TEST(Geometry, oldColourNormalVerticesMakeAFaceSetAndPlainOldVerticesNone)
{
    auto oldVertex = [](uint16_t opcode, size_t length, int32_t x) {
        FltRecordBytes r(opcode, length);
        r.i32(4, x).i32(8, 1).i32(12, 2);
        return r;
    };
    FltFixture db;
    db.header(1300).push().object("o").push();
    db.face().push();
    for (int x : {0, 1, 2}) db.add(oldVertex(9, 32, x));
    db.pop();
    db.face().push();
    for (int x : {0, 1, 2}) db.add(oldVertex(8, 20, x));
    db.pop();
    db.face().push();
    for (int x : {0, 1, 2}) db.add(oldVertex(7, 16, x));
    db.pop();
    db.pop().pop();
    Converted c(db);
    SoNode* o = findNamed(c.root, "o");
    ASSERT_EQ(childNames(o), (Names{"", "OLD_VERTEX_COLOR_NORMAL", "OLD_VERTEX_COLOR"}));
    auto* colourNormal = childAs<SoIndexedFaceSet>(o, 1);
    EXPECT_EQ(coordIndexOf(colourNormal), (std::vector<int>{0, 1, 2, -1}));
    auto* property = static_cast<SoVertexProperty*>(colourNormal->vertexProperty.getValue());
    EXPECT_EQ(property->vertex[2], SbVec3f(2, 1, 2));
}

TEST(Geometry, oldColourVerticesAloneMakeNoFaceSet)
{
    FltFixture db;
    db.header(1300).push().object("o").push();
    db.face().push();
    for (int x : {0, 1, 2}) {
        FltRecordBytes r(8, 20);
        r.i32(4, x);
        db.add(r);
    }
    db.pop();
    db.pop().pop();
    Converted c(db);
    EXPECT_EQ(childTypes(findNamed(c.root, "o")), Types{"MaterialBinding"});
}
