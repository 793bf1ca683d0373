// The vertex palette: each vertex kind lands in its shared property with its colour, and the
// offset map finds it again.
#include <gtest/gtest.h>

#include <Inventor/SbColor.h>
#include <Inventor/nodes/SoSwitch.h>
#include <Inventor/nodes/SoVertexProperty.h>

#include "ConvertSupport.h"
#include "MemoryInput.h"
#include "reader/FltCreationVisitor.h"
#include "reader/FltParser.h"

namespace {

// A converter kept alive after its walk, so that a test can ask it about offsets.
class HeldConversion {
public:
    explicit HeldConversion(FltFixture& db) : input(db.bytes())
    {
        SoDB::init();
        root = new SoSeparator;
        root->ref();
        CaptureStream out(std::cout), err(std::cerr);
        converter.setFltInputToconvert(&input);
        dynamic_cast<Flt_15_7_CreationVisitor*>(converter.getFltParser()->creationVisitor)->setDumpStream(nullptr);
        converter.setResult(root);
        status = converter.convert();
    }
    ~HeldConversion()
    {
        // The header visit keeps a reference of its own.
        while (root->getRefCount() > 1) root->unrefNoDelete();
        root->unref();
    }
    SoVertexProperty* property(const char* name) { return static_cast<SoVertexProperty*>(findNamed(root, name)); }

    MemoryInput input;
    FltToInventor converter;
    SoSeparator* root = nullptr;
    int status = -1;
};

uint32_t abgrWord(uint8_t a, uint8_t b, uint8_t g, uint8_t r)
{
    return (uint32_t(a) << 24) | (uint32_t(b) << 16) | (uint32_t(g) << 8) | r;
}

FltVertexSpec at(double x, double y, double z)
{
    FltVertexSpec s;
    s.x = x, s.y = y, s.z = z;
    return s;
}

}  // namespace

TEST(VertexPalette, oneVertexOfEachKindLandsInItsOwnProperty)
{
    FltFixture db;
    db.header();
    db.vertexPalette();
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

    auto* palette = dynamic_cast<SoSwitch*>(findNamed(h.root, "vertexPropertyPalette"));
    ASSERT_NE(palette, nullptr);
    EXPECT_EQ(palette->whichChild.getValue(), SO_SWITCH_NONE);
    EXPECT_EQ(childNames(palette), (std::vector<std::string>{"vertexColorProperty", "vertexColorNormalProperty",
                                                             "vertexColorUVProperty", "vertexColorNormalUVProperty"}));

    SoVertexProperty* colour = h.property("vertexColorProperty");
    ASSERT_EQ(colour->vertex.getNum(), 1);
    EXPECT_EQ(colour->vertex[0], SbVec3f(1, 2, 3));
    EXPECT_EQ(colour->orderedRGBA[0], 0xFFFFFFFFu);
    EXPECT_EQ(colour->normal.getNum(), 0);
    SoVertexProperty* normalUv = h.property("vertexColorNormalUVProperty");
    ASSERT_EQ(normalUv->vertex.getNum(), 1);
    EXPECT_EQ(normalUv->texCoord[0], SbVec2f(0.25f, 0.75f));
    EXPECT_EQ(normalUv->normal[0], SbVec3f(0, 0, 1));
    EXPECT_EQ(h.property("vertexColorNormalProperty")->normal[0], SbVec3f(0, 1, 0));
    EXPECT_EQ(h.property("vertexColorUVProperty")->texCoord[0], SbVec2f(0.5f, 0.125f));

    for (uint64_t offset : {8u, 48u, 104u, 168u}) EXPECT_EQ(h.converter.getIndexVertexFromOffset(offset), 0);
    EXPECT_EQ(h.converter.getSizeVertexFromOffset(48), 56);
    EXPECT_EQ(h.converter.getSoVertexPropertyFromOffset(168), h.property("vertexColorUVProperty"));
    EXPECT_EQ(h.converter.getSoVertexPropertyFromOffset(12), nullptr);
    EXPECT_EQ(h.converter.getIndexVertexFromOffset(12), 0);
    EXPECT_EQ(h.converter.getSizeVertexFromOffset(12), 0);
}

TEST(VertexPalette, onlyColourAndNormalVerticesGiveAPaletteSwitchWithOneChild)
{
    FltFixture db;
    db.header().vertexPalette();
    db.vertexColorNormal(at(0, 0, 0));
    db.vertexColorNormal(at(1, 0, 0));
    db.push().pop();
    Converted c(db);
    auto* palette = findNamed(c.root, "vertexPropertyPalette");
    ASSERT_NE(palette, nullptr);
    EXPECT_EQ(childNames(palette), std::vector<std::string>{"vertexColorNormalProperty"});
    // The palette switch follows the header's nodes under the root.
    EXPECT_EQ(childTypes(c.root).back(), "Switch");
}

TEST(VertexPalette, vertexColoursFollowFlagsPackedColoursAndIndices)
{
    FltFixture db;
    db.header();
    std::vector<uint32_t> colors(1024, 0);
    colors[3] = abgrWord(0x80, 0x30, 0x20, 0x10);  // red 0x10, green 0x20, blue 0x30, alpha 0x80
    db.colorPalette(colors);
    db.vertexPalette();
    FltVertexSpec noColor = at(0, 0, 0);
    noColor.flags = 0x2000;
    noColor.packed[3] = 0x55;
    db.vertexColor(noColor);
    FltVertexSpec packed = at(0, 0, 0);
    packed.flags = 0x1000;
    packed.packed[0] = 255, packed.packed[1] = 0, packed.packed[2] = 0, packed.packed[3] = 255;
    db.vertexColor(packed);
    FltVertexSpec full = at(0, 0, 0);
    full.flags = 0;
    full.vertexColorIndex = 16384 * 3 + 128 * 127;
    db.vertexColor(full);
    FltVertexSpec dark = full;
    dark.vertexColorIndex = 16384 * 3;
    db.vertexColor(dark);
    FltVertexSpec beyond = full;
    beyond.vertexColorIndex = 0x20001 * 128;
    db.vertexColor(beyond);
    FltVertexSpec negative = full;
    negative.vertexColorIndex = -128;
    db.vertexColor(negative);
    FltVertexSpec fullKind4 = full;
    db.vertexColorNormalUv(fullKind4);
    FltVertexSpec smallNegativeKind4 = full;
    smallNegativeKind4.vertexColorIndex = -5;
    db.vertexColorNormalUv(smallNegativeKind4);
    db.push().pop();
    HeldConversion h(db);

    SoVertexProperty* colour = h.property("vertexColorProperty");
    ASSERT_EQ(colour->orderedRGBA.getNum(), 6);
    EXPECT_EQ(colour->orderedRGBA[0], 0xFFFFFFFFu);
    // Packed: opaque red in the file is stored with alpha 0 (the file's alpha inverted).
    EXPECT_EQ(colour->orderedRGBA[1], 0xFF000000u);
    // Entry 3 at full intensity keeps the entry's own transparency (alpha 0x80).
    EXPECT_EQ(colour->orderedRGBA[2], 0x10203080u);
    // Intensity 0 is black with the entry's transparency.
    EXPECT_EQ(colour->orderedRGBA[3], 0x00000080u);
    EXPECT_EQ(colour->orderedRGBA[4], 0xFFFFFFFFu);
    EXPECT_EQ(colour->orderedRGBA[5], 0xFFFFFFFFu);

    SoVertexProperty* richest = h.property("vertexColorNormalUVProperty");
    ASSERT_EQ(richest->orderedRGBA.getNum(), 2);
    EXPECT_EQ(richest->orderedRGBA[0], 0x10203000u);  // packed fully transparent for this kind
    EXPECT_EQ(richest->orderedRGBA[1], 0xFFFFFFFFu);  // every negative index is white for it
}

TEST(VertexPalette, the100001stVertexGrowsThePropertyTo150100Entries)
{
    FltFixture db;
    db.header().vertexPalette();
    for (int i = 0; i <= 100000; ++i) db.vertexColorNormalUv(at(i, 0, 0));
    HeldConversion h(db);
    // Before the first push level nothing is trimmed: the fields have grown once.
    SoVertexProperty* richest = h.converter.getVertexPropertyFromIntId(VERTEX_COLOR_NORMAL_UV_PROPERTY_ID);
    EXPECT_EQ(richest->vertex.getNum(), 150100);
    EXPECT_EQ(richest->texCoord.getNum(), 150100);
    EXPECT_EQ(richest->vertex[100000], SbVec3f(100000, 0, 0));
    EXPECT_EQ(h.converter.getIndexVertexFromOffset(8 + 64 * 100000), 100000);
}

TEST(VertexPalette, colourOnlyPositionsPastTheFirst100000GoToAnotherPropertysArray)
{
    // After the first growth, positions of colour-only vertices continue in the vertex array
    // of the colour-and-texture property: kept on purpose. Here that array is too short, so
    // the positions are dropped and the vertices stay at the origin.
    FltFixture db;
    db.header().vertexPalette();
    for (int i = 0; i <= 100001; ++i) db.vertexColor(at(1, 1, 1));
    db.push().pop();
    HeldConversion h(db);
    SoVertexProperty* colour = h.property("vertexColorProperty");
    ASSERT_EQ(colour->vertex.getNum(), 100002);
    EXPECT_EQ(colour->vertex[99999], SbVec3f(1, 1, 1));
    EXPECT_EQ(colour->vertex[100000], SbVec3f(0, 0, 0));
    EXPECT_EQ(colour->vertex[100001], SbVec3f(0, 0, 0));
    EXPECT_EQ(colour->orderedRGBA[100001], 0xFFFFFFFFu);
}
