// The vertex palette: each vertex kind lands in its shared property with its colour, and the
// offset map finds it again.
#include <gtest/gtest.h>

#include <Inventor/nodes/SoSwitch.h>
#include <Inventor/nodes/SoVertexProperty.h>

#include "ConvertSupport.h"

namespace {

SoVertexProperty* property(HeldConversion& h, const char* name)
{
    return static_cast<SoVertexProperty*>(findNamed(h.root, name));
}

FltVertexSpec at(double x, double y, double z)
{
    FltVertexSpec s;
    s.x = x, s.y = y, s.z = z;
    return s;
}

}  // namespace

TEST(VertexPalette, oneVertexOfEachKindLandsInItsOwnPropertyAndTheOffsetMapFindsIt)
{
    FltFixture db;
    db.header().vertexPalette();
    FltVertexSpec a = at(1, 2, 3), b = at(4, 5, 6), c = at(7, 8, 9), d = at(10, 11, 12);
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

    SoNode* palette = findNamed(h.root, "vertexPropertyPalette");
    EXPECT_EQ(tree(palette), "Switch:vertexPropertyPalette[VertexProperty:vertexColorProperty "
                             "VertexProperty:vertexColorNormalProperty VertexProperty:vertexColorUVProperty "
                             "VertexProperty:vertexColorNormalUVProperty]");
    EXPECT_EQ(static_cast<SoSwitch*>(palette)->whichChild.getValue(), SO_SWITCH_NONE);
    SoVertexProperty* colour = property(h, "vertexColorProperty");
    ASSERT_EQ(colour->vertex.getNum(), 1);
    EXPECT_EQ(colour->vertex[0], SbVec3f(1, 2, 3));
    EXPECT_EQ(colour->normal.getNum(), 0);
    SoVertexProperty* normalUv = property(h, "vertexColorNormalUVProperty");
    ASSERT_EQ(normalUv->vertex.getNum(), 1);
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

TEST(VertexPalette, vertexColoursFollowFlagsPackedColoursAndIndices)
{
    // Entry 3 of the colour palette: red 0x10, green 0x20, blue 0x30, alpha 0x80.
    std::vector<uint32_t> colors(1024, 0);
    colors[3] = 0x80302010u;
    struct Row {
        const char* what;
        bool richest;  // of the kind with normal and texture coordinates
        uint16_t flags;
        int32_t index;
        uint32_t rgba;
    };
    const Row rows[] = {
        {"no colour, whatever is packed: white", false, 0x2000, 0, 0xFFFFFFFFu},
        // Kept on purpose: the file's alpha goes in as a transparency, so opaque is stored 0.
        {"packed opaque red", false, 0x1000, 0, 0xFF000000u},
        {"entry 3 at full intensity keeps its transparency", false, 0, 16384 * 3 + 128 * 127, 0x10203080u},
        {"intensity 0: black with the entry's transparency", false, 0, 16384 * 3, 0x00000080u},
        {"entry beyond the table: white", false, 0, 0x20001 * 128, 0xFFFFFFFFu},
        {"negative index: white", false, 0, -128, 0xFFFFFFFFu},
        // Kept on purpose: packed fully transparent, and every negative index white.
        {"richest kind, entry 3 at full intensity", true, 0, 16384 * 3 + 128 * 127, 0x10203000u},
        {"richest kind, small negative index", true, 0, -5, 0xFFFFFFFFu},
    };
    FltFixture db;
    db.header().colorPalette(colors).vertexPalette();
    for (const Row& row : rows) {
        FltVertexSpec s;
        s.flags = row.flags;
        s.packed[0] = 255, s.packed[3] = 255;  // opaque red, where the flags ask for it
        s.vertexColorIndex = row.index;
        row.richest ? db.vertexColorNormalUv(s) : db.vertexColor(s);
    }
    db.push().pop();
    HeldConversion h(db);
    // The palette switch, after the header's nodes, holds only the kinds present.
    const std::string palette = "Switch:vertexPropertyPalette[VertexProperty:vertexColorProperty ";
    EXPECT_EQ(tree(h.root->getChild(kHeaderChildren)), palette + "VertexProperty:vertexColorNormalUVProperty]");
    SoVertexProperty* colour = property(h, "vertexColorProperty");
    SoVertexProperty* richest = property(h, "vertexColorNormalUVProperty");
    ASSERT_EQ(colour->orderedRGBA.getNum(), 6);
    ASSERT_EQ(richest->orderedRGBA.getNum(), 2);
    int n[2] = {0, 0};
    for (const Row& row : rows)
        EXPECT_EQ((row.richest ? richest : colour)->orderedRGBA[n[row.richest]++], row.rgba) << row.what;
}

TEST(VertexPalette, the100001stVertexGrowsItsPropertyAndColourOnlyPositionsGoToAnotherPropertysArray)
{
    // Before the first push level nothing is trimmed: the fields have grown once, to 1.5 x
    // 100000 + 100 entries. After that growth, positions of colour-only vertices continue in
    // the vertex array of the colour-and-texture property: kept on purpose. Here that array
    // is empty, so the positions are dropped and the vertices stay at the origin.
    FltFixture db;
    db.header().vertexPalette();
    for (int i = 0; i <= 100000; ++i) db.vertexColorNormalUv(at(i, 0, 0));
    for (int i = 0; i <= 100001; ++i) db.vertexColor(at(1, 1, 1));
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
