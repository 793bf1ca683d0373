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

using Ints = std::vector<int>;

Ints coordIndexOf(SoNode* set)
{
    auto* s = static_cast<SoIndexedFaceSet*>(set);
    return Ints(s->coordIndex.getValues(0), s->coordIndex.getValues(0) + s->coordIndex.getNum());
}

Ints materialIndexOf(SoNode* set)
{
    auto* s = static_cast<SoIndexedFaceSet*>(set);
    return Ints(s->materialIndex.getValues(0), s->materialIndex.getValues(0) + s->materialIndex.getNum());
}

FltVertexSpec at(double x, double y, double z)
{
    FltVertexSpec s;
    s.x = x, s.y = y, s.z = z;
    return s;
}

// A face with its vertex list one level down.
void face(FltFixture& db, const std::vector<int32_t>& offsets, int16_t texture = -1)
{
    FltFaceSpec spec;
    spec.texturePatternIndex = texture;
    db.face(spec).push().vertexList(offsets).pop();
}

// Three vertices of each kind, by kind (68, 69, 71, 70).
struct Palette {
    explicit Palette(FltFixture& db)
    {
        db.vertexPalette();
        for (int i = 0; i < 3; ++i) color.push_back(db.vertexColor(at(i, 0, 0)));
        for (int i = 0; i < 3; ++i) colorNormal.push_back(db.vertexColorNormal(at(i, 1, 0)));
        for (int i = 0; i < 3; ++i) colorUv.push_back(db.vertexColorUv(at(i, 2, 0)));
        for (int i = 0; i < 3; ++i) colorNormalUv.push_back(db.vertexColorNormalUv(at(i, 3, 0)));
    }
    std::vector<int32_t> color, colorNormal, colorUv, colorNormalUv;
};

}  // namespace

TEST(Geometry, objectHoldsOneMaterialAndFaceSetPerKindAndSubfacesBehindAPolygonOffset)
{
    FltFixture db;
    Palette p(db.header());
    db.push().object("house").push();
    face(db, p.colorNormalUv);
    face(db, p.color);
    face(db, p.color);
    face(db, p.colorNormal);
    db.pushSubface();
    face(db, p.colorNormal);
    db.popSubface();
    db.pop().pop();
    Converted c(db);
    SoNode* house = findNamed(c.root, "house");
    ASSERT_NE(house, nullptr);
    EXPECT_EQ(childNames(house),
              (Names{"", "faceVertexColorSoMaterialSet", "SoIFSVertexColor", "faceVertexColorNormalSoMaterialSet",
                     "SoIFSVertexColorNormal", "", "subFaceVertexColorNormalSoMaterialSet", "SoIFSVertexColorNormal",
                     "faceVertexColorNormalUVSoMaterialSet", "SoIFSVertexColorNormalUV"}));
    EXPECT_EQ(childAs<SoMaterialBinding>(house, 0)->value.getValue(), SoMaterialBinding::PER_FACE_INDEXED);
    EXPECT_EQ(childAs<SoMaterial>(house, 1)->diffuseColor.getNum(), 2);
    auto* colourSet = childAs<SoIndexedFaceSet>(house, 2);
    EXPECT_EQ(coordIndexOf(colourSet), (Ints{0, 1, 2, -1, 0, 1, 2, -1}));
    EXPECT_EQ(materialIndexOf(colourSet), (Ints{0, 1}));
    EXPECT_EQ(colourSet->vertexProperty.getValue(), findNamed(c.root, "vertexColorProperty"));
    auto* offset = childAs<SoPolygonOffset>(house, 5);
    ASSERT_NE(offset, nullptr);
    EXPECT_EQ(offset->factor.getValue(), -1.0f);
    EXPECT_EQ(offset->units.getValue(), -30.0f);
    EXPECT_TRUE(c.messages.empty());
}

TEST(Geometry, objectsWithoutFacesAndLooseFacesUnderGroups)
{
    FltFixture db;
    Palette p(db.header());
    db.push().group("g").push();
    db.object("first").push().pop();
    db.object("empty");  // nothing below it: a named empty separator
    db.pop();
    // Loose faces are converted as one run straight into the group, before the object that
    // ends the run.
    db.group("loose").push();
    face(db, p.color);
    face(db, p.color);
    db.object("after").push();
    face(db, p.color);
    db.pop().pop();
    // A face after a group without push level becomes its only child.
    db.group("single");
    face(db, p.color);
    db.pop();
    Converted c(db);
    EXPECT_EQ(childNames(findNamed(c.root, "g")), (Names{"first", "empty"}));
    EXPECT_EQ(childTypes(findNamed(c.root, "first")), Types{"MaterialBinding"});
    EXPECT_EQ(childTypes(findNamed(c.root, "empty")), Types{});
    SoNode* loose = findNamed(c.root, "loose");
    EXPECT_EQ(childTypes(loose), (Types{"MaterialBinding", "Material", "IndexedFaceSet", "Separator"}));
    EXPECT_EQ(coordIndexOf(childAs<SoIndexedFaceSet>(loose, 2)), (Ints{0, 1, 2, -1, 0, 1, 2, -1}));
    EXPECT_EQ(childAs<SoNode>(loose, 3)->getName(), SbName("after"));
    EXPECT_EQ(childTypes(findNamed(c.root, "single")), (Types{"MaterialBinding", "Material", "IndexedFaceSet"}));
    EXPECT_TRUE(c.messages.empty());
}

TEST(Geometry, faceMixingColourAndNormalKindsIsDroppedWithAWarning)
{
    FltFixture db;
    Palette p(db.header());
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
    Palette p(db.header());
    db.push().object("o").push();
    face(db, {p.colorUv[0], p.colorNormalUv[1], p.colorUv[2]});
    db.pop().pop();
    Converted c(db);
    SoNode* o = findNamed(c.root, "o");
    ASSERT_EQ(childNames(o), (Names{"", "faceVertexColorNormalUVSoMaterialSet", "SoIFSVertexColorNormalUV"}));
    // The two colour-and-texture vertices were appended after the three of the richest kind.
    EXPECT_EQ(coordIndexOf(childAs<SoIndexedFaceSet>(o, 2)), (Ints{3, 1, 4, -1}));
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
    db.header().texturePattern(3, "tex/three.rgb").texturePattern(5, "five.rgb").texturePattern(7, "seven.rgb");
    Palette p(db);
    db.push().object("o").push();
    for (int16_t texture : {-1, 3, 3, -1, 5, 9}) face(db, p.colorUv, texture);
    db.pop();
    db.object("one").push();  // faces of one texture make one isolated face set
    face(db, p.colorUv, 7);
    face(db, p.colorUv, 7);
    db.pop().pop();
    Converted c(db);
    SoNode* o = findNamed(c.root, "o");
    ASSERT_EQ(childTypes(o), (Types{"MaterialBinding", "Material", "IndexedFaceSet", "Separator", "Separator",
                                    "Separator"}));
    EXPECT_EQ(materialIndexOf(childAs<SoIndexedFaceSet>(o, 2)), (Ints{0, 3}));
    SoNode* three = childAs<SoNode>(o, 3);
    EXPECT_EQ(three->getName(), SbName("isolateTexturesNodes"));
    ASSERT_EQ(childTypes(three), (Types{"Texture2", "IndexedFaceSet"}));
    EXPECT_EQ(childAs<SoTexture2>(three, 0)->filename.getValue(), SbString("tex/three.rgb"));
    EXPECT_EQ(materialIndexOf(childAs<SoIndexedFaceSet>(three, 1)), (Ints{1, 2}));
    EXPECT_EQ(childAs<SoTexture2>(childAs<SoNode>(o, 4), 0)->filename.getValue(), SbString("five.rgb"));
    EXPECT_EQ(materialIndexOf(childAs<SoIndexedFaceSet>(childAs<SoNode>(o, 4), 1)), (Ints{4}));
    // A pattern missing from the palette gets no texture node.
    EXPECT_EQ(childTypes(childAs<SoNode>(o, 5)), Types{"IndexedFaceSet"});
    SoNode* one = findNamed(c.root, "one");
    ASSERT_EQ(childTypes(one), (Types{"MaterialBinding", "Material", "Separator"}));
    EXPECT_EQ(childTypes(childAs<SoNode>(one, 2)), (Types{"Texture2", "IndexedFaceSet"}));
}

TEST(Geometry, oldColourVerticesMakeAFaceSetOnlyBesideColourNormalOnesAndPlainOldVerticesNone)
{
    // Kept on purpose: the colour face set is built only where colour-and-normal faces exist.
    auto faceOfOldVertices = [](FltFixture& db, uint16_t opcode, size_t length) {
        db.face().push();
        for (int x : {0, 1, 2}) db.add(FltRecordBytes(opcode, length).i32(4, x).i32(8, 1).i32(12, 2));
        db.pop();
    };
    FltFixture db;
    db.header(1300).push().object("o").push();
    faceOfOldVertices(db, 9, 32);
    faceOfOldVertices(db, 8, 20);
    faceOfOldVertices(db, 7, 16);
    db.pop();
    db.object("alone").push();
    faceOfOldVertices(db, 8, 20);
    db.pop().pop();
    Converted c(db);
    SoNode* o = findNamed(c.root, "o");
    ASSERT_EQ(childNames(o), (Names{"", "OLD_VERTEX_COLOR_NORMAL", "OLD_VERTEX_COLOR"}));
    auto* colourNormal = childAs<SoIndexedFaceSet>(o, 1);
    EXPECT_EQ(coordIndexOf(colourNormal), (Ints{0, 1, 2, -1}));
    EXPECT_EQ(static_cast<SoVertexProperty*>(colourNormal->vertexProperty.getValue())->vertex[2], SbVec3f(2, 1, 2));
    EXPECT_EQ(childTypes(findNamed(c.root, "alone")), Types{"MaterialBinding"});
}
