// The vertex palette: each vertex kind lands in its shared property with its colour, and the
// offset map finds it again.
#include <gtest/gtest.h>

#include <Inventor/nodes/SoVertexProperty.h>

#include "ConvertSupport.h"

namespace {

SoVertexProperty* property(HeldConversion& h, const char* name)
{
    return static_cast<SoVertexProperty*>(findNamed(h.root, name));
}

}  // namespace

TEST(VertexPalette, oneVertexOfEachKindLandsInItsOwnPropertyAndTheOffsetMapFindsIt)
{
    FltFixture db;
    db.header().vertexPalette();
    FltVertexSpec a = vertexAt(1, 2, 3), b = vertexAt(4, 5, 6), c = vertexAt(7, 8, 9), d = vertexAt(10, 11, 12);
    b.i = 0, b.j = 1, b.k = 0;
    c.u = 0.25f, c.v = 0.75f;
    d.u = 0.5f, d.v = 0.125f;
    EXPECT_EQ(db.vertexColor(a), 8);
    EXPECT_EQ(db.vertexColorNormal(b), 48);
    EXPECT_EQ(db.vertexColorNormalUv(c), 104);
    EXPECT_EQ(db.vertexColorUv(d), 168);
    db.push().pop();
    HeldConversion h(db);
    ASSERT_EQ(h.status, 0);

    // The golden scene pins the palette's hidden switch of the four properties.
    EXPECT_EQ(property(h, "vertexColorProperty")->vertex[0], SbVec3f(1, 2, 3));
    SoVertexProperty* normalUv = property(h, "vertexColorNormalUVProperty");
    EXPECT_EQ(normalUv->texCoord[0], SbVec2f(0.25f, 0.75f));
    EXPECT_EQ(normalUv->normal[0], SbVec3f(0, 0, 1));
    EXPECT_EQ(property(h, "vertexColorNormalProperty")->normal[0], SbVec3f(0, 1, 0));
    EXPECT_EQ(property(h, "vertexColorUVProperty")->texCoord[0], SbVec2f(0.5f, 0.125f));

    // Each offset finds its vertex's kind and size; an offset no vertex occupies, nothing.
    const FltPalettes& palettes = h.builder().getPalettes();
    EXPECT_EQ(palettes.vertexAt(48)->kind, VERTEX_COLOR_NORMAL_PROPERTY_ID);
    EXPECT_EQ(palettes.vertexAt(168)->kind, VERTEX_COLOR_UV_PROPERTY_ID);
    EXPECT_EQ(palettes.vertexAt(104)->size, 64);
    EXPECT_EQ(palettes.vertexAt(12), nullptr);

    FltFixture empty;  // an empty palette adds no switch
    Converted e(empty.header().vertexPalette().push().pop());
    EXPECT_EQ(hierarchy(e), "");
}

TEST(VertexPalette, the100001stVertexGrowsItsPropertyAndColourOnlyPositionsGoToAnotherPropertysArray)
{
    // Before the first push level nothing is trimmed: the fields have grown once, to 1.5 x
    // 100000 + 100 entries. After that growth, positions of colour-only vertices continue in
    // the vertex array of the colour-and-texture property: kept on purpose. Here that array
    // is empty, so the positions are dropped and the vertices stay at the origin.
    FltFixture db;
    db.header().vertexPalette();
    for (int i = 0; i <= 100000; ++i) db.vertexColorNormalUv(vertexAt(i, 0, 0));
    for (int i = 0; i <= 100001; ++i) db.vertexColor(vertexAt(1, 1, 1));
    HeldConversion h(db);
    const FltSharedVertexProperties& shared = h.builder().getVertexProperties();
    SoVertexProperty* richest = shared.property(VERTEX_COLOR_NORMAL_UV_PROPERTY_ID);
    EXPECT_EQ(richest->vertex.getNum(), 150100);
    EXPECT_EQ(richest->texCoord.getNum(), 150100);
    EXPECT_EQ(richest->vertex[100000], SbVec3f(100000, 0, 0));
    EXPECT_EQ(h.builder().getPalettes().vertexAt(8 + 64 * 100000)->index, 100000);
    SoVertexProperty* colour = shared.property(VERTEX_COLOR_PROPERTY_ID);
    EXPECT_EQ(colour->vertex[99999], SbVec3f(1, 1, 1));
    EXPECT_EQ(colour->vertex[100000], SbVec3f(0, 0, 0));
    EXPECT_EQ(colour->vertex[100001], SbVec3f(0, 0, 0));
    EXPECT_EQ(colour->orderedRGBA[100001], 0xFFFFFFFFu);
}
