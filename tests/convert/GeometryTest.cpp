// Objects and faces: face groups per vertex kind, subfaces, old vertex records, loose faces,
// heterogeneous faces and face sets split by texture pattern.
#include <gtest/gtest.h>

#include <Inventor/nodes/SoIndexedFaceSet.h>
#include <Inventor/nodes/SoMaterial.h>
#include <Inventor/nodes/SoTexture2.h>
#include <Inventor/nodes/SoVertexProperty.h>

#include "ConvertSupport.h"

namespace {

using Ints = std::vector<int>;

// The values of a multiple-value field.
template <class Field>
Ints values(const Field& field)
{
    return Ints(field.getValues(0), field.getValues(0) + field.getNum());
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
        for (int i = 0; i < 3; ++i) color.push_back(db.vertexColor(vertexAt(i, 0)));
        for (int i = 0; i < 3; ++i) colorNormal.push_back(db.vertexColorNormal(vertexAt(i, 1)));
        for (int i = 0; i < 3; ++i) colorUv.push_back(db.vertexColorUv(vertexAt(i, 2)));
        for (int i = 0; i < 3; ++i) colorNormalUv.push_back(db.vertexColorNormalUv(vertexAt(i, 3)));
    }
    std::vector<int32_t> color, colorNormal, colorUv, colorNormalUv;
};

const std::string kColourSet = "Material:faceVertexColorSoMaterialSet IndexedFaceSet:SoIFSVertexColor";

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
    Converted c(db.pop().pop());
    // The golden scene pins the binding, the polygon offset and the shared vertex properties.
    SoNode* house = findNamed(c.root, "house");
    EXPECT_EQ(tree(house), "Separator:house[MaterialBinding " + kColourSet +
                               " Material:faceVertexColorNormalSoMaterialSet IndexedFaceSet:SoIFSVertexColorNormal "
                               "PolygonOffset Material:subFaceVertexColorNormalSoMaterialSet "
                               "IndexedFaceSet:SoIFSVertexColorNormal Material:faceVertexColorNormalUVSoMaterialSet "
                               "IndexedFaceSet:SoIFSVertexColorNormalUV]");
    EXPECT_EQ(childAs<SoMaterial>(house, 1)->diffuseColor.getNum(), 2);
    auto* colourSet = childAs<SoIndexedFaceSet>(house, 2);
    EXPECT_EQ(values(colourSet->coordIndex), (Ints{0, 1, 2, -1, 0, 1, 2, -1}));
    EXPECT_EQ(values(colourSet->materialIndex), (Ints{0, 1}));
    EXPECT_TRUE(c.messages.empty());
}

TEST(Geometry, objectsWithoutFacesAndLooseFacesUnderGroups)
{
    FltFixture db;
    Palette p(db.header());
    db.push().group("g").push();
    db.object("first").push().pop();
    db.object("empty");  // nothing below it, not even a push level
    db.pop();
    // Loose faces are converted as one run straight into the group, before the object that
    // ends the run.
    db.group("loose").push();
    face(db, p.color);
    face(db, p.color);
    db.object("after").push();
    face(db, p.color);
    // (A record after a group without push level is its only child: Hierarchy.groupsBecome...)
    Converted c(db.pop().pop().pop());
    EXPECT_EQ(tree(findNamed(c.root, "g")), "Separator:g[Separator:first[MaterialBinding] Separator:empty]");
    SoNode* loose = findNamed(c.root, "loose");
    EXPECT_EQ(tree(loose), "Separator:loose[MaterialBinding " + kColourSet + " Separator:after[MaterialBinding " +
                               kColourSet + "]]");
    EXPECT_TRUE(c.messages.empty());
}

TEST(Geometry, faceMixingVertexKindsIsDroppedUnlessAllAreTexturedThenCopiedIntoTheRichestProperty)
{
    FltFixture db;
    Palette p(db.header());
    db.push().object("o").push();
    face(db, {p.color[0], p.color[1], p.colorNormal[0]});
    face(db, {p.colorUv[0], p.colorNormalUv[1], p.colorUv[2]});
    Converted c(db.pop().pop());
    SoNode* o = findNamed(c.root, "o");
    EXPECT_EQ(tree(o), "Separator:o[MaterialBinding Material:faceVertexColorNormalUVSoMaterialSet "
                       "IndexedFaceSet:SoIFSVertexColorNormalUV]");
    EXPECT_EQ(c.messages, Names{"WARNING ! Remove a face having heterogeneous vertices"});
    EXPECT_EQ(c.levels, std::vector<int>{1});
    // The two colour-and-texture vertices were appended after the three of the richest kind.
    EXPECT_EQ(values(childAs<SoIndexedFaceSet>(o, 2)->coordIndex), (Ints{3, 1, 4, -1}));
    auto* richest = static_cast<SoVertexProperty*>(findNamed(c.root, "vertexColorNormalUVProperty"));
    ASSERT_EQ(richest->vertex.getNum(), 5);
    EXPECT_EQ(richest->vertex[3], SbVec3f(0, 2, 0));
    EXPECT_EQ(richest->normal[4], SbVec3f(0, 0, 1));  // the average normal of the face's own vertices
    EXPECT_EQ(richest->orderedRGBA.getNum(), 0);      // emptied after every copy, as established
}

TEST(Geometry, faceSetsSplitByTexturePatternInAscendingOrder)
{
    FltFixture db;
    db.header().texturePattern(3, "tex/three.rgb").texturePattern(5, "five.rgb").texturePattern(7, "seven.rgb");
    Palette p(db);
    db.push().object("o").push();
    for (int16_t texture : {-1, 3, 3, -1, 5, 9}) face(db, p.colorUv, texture);
    db.pop().object("one").push();  // faces of one texture make one isolated face set
    face(db, p.colorUv, 7);
    face(db, p.colorUv, 7);
    Converted c(db.pop().pop());
    const std::string set = "IndexedFaceSet:SoIFSVertexColorUV", isolated = "Separator:isolateTexturesNodes[";
    // A pattern missing from the palette (9) gets no texture node.
    EXPECT_EQ(tree(findNamed(c.root, "o")), "Separator:o[MaterialBinding Material:faceVertexColorUVSoMaterialSet " +
                                                set + " " + isolated + "Texture2 " + set + "] " + isolated +
                                                "Texture2 " + set + "] " + isolated + set + "]]");
    SoNode* o = findNamed(c.root, "o");
    std::vector<Ints> faces;  // the material entries, one per face, of each face set in order
    for (SoIndexedFaceSet* set : findAll<SoIndexedFaceSet>(o)) faces.push_back(values(set->materialIndex));
    EXPECT_EQ(faces, (std::vector<Ints>{{0, 3}, {1, 2}, {4}, {5}}));
    EXPECT_EQ(childAs<SoTexture2>(childAs<SoNode>(o, 3), 0)->filename.getValue(), SbString("tex/three.rgb"));
    EXPECT_EQ(childAs<SoTexture2>(childAs<SoNode>(o, 4), 0)->filename.getValue(), SbString("five.rgb"));
    EXPECT_EQ(tree(findNamed(c.root, "one")), "Separator:one[MaterialBinding Material:faceVertexColorUVSoMaterialSet " +
                                                  isolated + "Texture2 " + set + "]]");
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
    db.pop().object("alone").push();
    faceOfOldVertices(db, 8, 20);
    Converted c(db.pop().pop());
    // The golden scene pins the old vertices' face sets and their positions.
    EXPECT_EQ(hierarchy(c), "Separator:o[MaterialBinding IndexedFaceSet:OLD_VERTEX_COLOR_NORMAL "
                            "IndexedFaceSet:OLD_VERTEX_COLOR] Separator:alone[MaterialBinding]");
}
