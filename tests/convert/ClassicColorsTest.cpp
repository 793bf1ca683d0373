// The classic colour rules, called directly on records parsed from fixtures: each face's
// material entry by its colour and material case, and each vertex's packed colour; then
// once through a conversion, that the walk hands them the object and the log.
#include <gtest/gtest.h>

#include <Inventor/nodes/SoMaterial.h>

#include "ConvertSupport.h"
#include "convert/FltClassicColors.h"
#include "reader/FltOpcode.h"
#include "reader/FltRecordFace.h"
#include "reader/FltRecordVertex.h"

namespace {

// The palettes of colourPalettes, then `empty` 4-byte colour and old material palettes, and
// one face.
FltFixture faceDatabase(const FltFaceSpec& face, int32_t revision, int empty = 0)
{
    FltFixture db = colourPalettes(revision);
    for (int i = 0; i < empty; ++i) db.add(FltRecordBytes(32, 4)).add(FltRecordBytes(66, 4));
    return db.face(face);
}

void expectColor(const SbColor& actual, const SbColor& expected, const std::string& what)
{
    for (int i = 0; i < 3; ++i) EXPECT_NEAR(actual[i], expected[i], 1e-5) << what << ", component " << i;
}

struct Face {
    Face& flags(int32_t v) { spec.flags = v; return *this; }
    Face& material(int16_t v) { spec.materialIndex = v; return *this; }
    Face& index(int32_t v) { spec.primaryColorIndex = v; return *this; }
    Face& nameIndex(uint16_t v) { spec.colorNameIndex = v; return *this; }
    Face& transparency(uint16_t v) { spec.transparency = v; return *this; }
    Face& packed(uint8_t a, uint8_t b, uint8_t g, uint8_t r)
    {
        spec.packed[0] = a, spec.packed[1] = b, spec.packed[2] = g, spec.packed[3] = r;
        return *this;
    }
    Face& whiteTexture() { spec.texturePatternIndex = 1, spec.textureWhite = 1; return *this; }
    Face& object(float t) { objectTransparency = t; return *this; }
    Face& revision(int32_t r, bool packedMode = false) { version = {r, packedMode}; return *this; }
    Face& emptyPalettes(int n) { empty = n; return *this; }
    FltFaceSpec spec;
    float objectTransparency = 0;
    FltVersion version{1570, false};
    int empty = 0;
};

}  // namespace

TEST(ClassicColors, eachColourAndMaterialCaseGivesItsFaceEntry)
{
    struct Case {
        const char* what;
        Face face;
        SbColor diffuse, ambient;
        float shininess;
        float transparency;  // -1: the entry leaves the transparency unwritten; kNone: no entry
    };
    constexpr float kNone = -2;
    const SbColor m(0.5f, 0.25f, 1.0f), mAmbient(0.25f, 0.125f, 0.5f), entry5(0.4f, 0.6f, 1.0f), black(0, 0, 0);
    const SbColor diffuse(0.8f, 0.8f, 0.8f), ambient(0.2f, 0.2f, 0.2f);  // Inventor's defaults
    const float p = 63.0f / 127, r = 127.0f / 255;
    const Case cases[] = {
        // Without material.
        {"no colour: defaults", Face().flags(kNoColor).transparency(30000), diffuse, ambient, 0.2f, 0},
        {"packed colour ignores every transparency",
         Face().flags(kPackedColor).packed(0x80, 0, 0, 0xFF).transparency(40000).object(0.5f), {1, 0, 0}, {1, 0, 0},
         0, 0},
        {"palette index weighs the transparency", Face().index(5 * 128 + 127).transparency(32768), entry5, entry5, 0,
         0.50001f},
        {"palette index in an opaque object", Face().index(5 * 128 + 127).transparency(32768).object(1), entry5,
         entry5, 0, 0},
        {"palette index scaled by its intensity", Face().index(5 * 128 + 63), entry5 * p, entry5 * p, 0, 0},
        {"thousands of empty palettes: the last one empties the table", Face().index(5 * 128 + 127).emptyPalettes(3000),
         black, black, 0, 0},
        // With material 2.
        {"no colour copies the material", Face().flags(kNoColor).material(2).transparency(32768), m, mAmbient, 0.5f,
         0.75f},
        {"no colour: the raw object transparency weighs the face's",
         Face().flags(kNoColor).material(2).transparency(32768).object(1), m, mAmbient, 0.5f,
         (1.0f - 32768.0f / 65535.0f) * 0.75f},
        // Kept on purpose: no transparency entry is written.
        {"packed colour times material", Face().flags(kPackedColor).material(2).packed(0, 0, 127, 255),
         {0.5f, 0.25f * r, 0}, {0.25f, 0.125f * r, 0}, 0.5f, -1},
        {"palette index without intensity", Face().material(2).index(5 * 128 + 10), {0.2f, 0.15f, 1.0f},
         {0.1f, 0.075f, 0.5f}, 0.5f, 0.75f},
        {"before 1540 the colour name index", Face().material(2).nameIndex(5 * 128).revision(1530),
         {0.2f, 0.15f, 1.0f}, {0.1f, 0.075f, 0.5f}, 0.5f, 0.75f},
        {"texture white is white under the material", Face().material(2).index(5 * 128).whiteTexture(), m, mAmbient,
         0.5f, 0.75f},
        // Kept on purpose: each byte truncated to 0 or 1, alpha and blue 255 give (1, 1, 0) / 255.
        {"packed colour mode: nearly black", Face().material(2).packed(255, 255, 10, 255).revision(1570, true),
         {0.5f / 255, 0.25f / 255, 0}, {0.25f / 255, 0.125f / 255, 0}, 0.5f, 0.75f},
        // Before 15.0 the face's colour index is its colour name index, scaling white.
        {"old revision, full intensity", Face().material(2).nameIndex(127).revision(13), m, mAmbient, 0.5f, 0.75f},
        {"old revision, intensity 0", Face().material(2).revision(13), black, black, 0.5f, 0.75f},
        {"material beyond the palette: defaults", Face().flags(kNoColor).material(30000), diffuse, ambient, 0.2f, 0},
        {"colour index beyond every palette: nothing", Face().index(-1), black, black, 0, kNone},
    };
    for (const Case& k : cases) {
        FltFixture db = faceDatabase(k.face.spec, k.face.version.formatRevision, k.face.empty);
        ParsedPalettes p(db);
        const FltFaceMaterialEntry e = fltClassicFaceMaterial(p.nth<FltRecordFace>(FltOpcode::Face), p.palettes,
                                                               k.face.version, k.face.objectTransparency);
        EXPECT_EQ(e.set, k.transparency != kNone) << k.what;
        if (!e.set) continue;
        expectColor(e.diffuse, k.diffuse, k.what);
        expectColor(e.ambient, k.ambient, k.what);
        EXPECT_NEAR(e.shininess, k.shininess, 1e-5) << k.what;
        EXPECT_EQ(e.setsTransparency, k.transparency >= 0) << k.what;
        if (e.setsTransparency) {
            EXPECT_NEAR(e.transparency, k.transparency, 1e-5) << k.what;
        }
    }
}

TEST(ClassicColors, vertexColoursFollowFlagsPackedColoursAndIndices)
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
    ParsedPalettes p(db);
    int n[2] = {0, 0};
    for (const Row& row : rows) {
        const int opcode = row.richest ? FltOpcode::VertexColorNormalUv : FltOpcode::VertexColor;
        const auto& vertex = p.nth<FltRecordVertexColor>(opcode, n[row.richest]++);
        EXPECT_EQ(fltClassicVertexColor(vertex, row.richest, p.palettes), row.rgba) << row.what;
    }
}

TEST(ClassicColors, theWalkGivesTheRulesTheObjectsTransparencyAndReportsBadIndices)
{
    // Faces under an object of transparency 0 and loose faces (transparency 1), one with a
    // bad colour index: its entry is left to the defaults, and the log says so. A face names
    // its material in 16 bits: a material record above 32767 is ignored without a word, one
    // below 0 with a message.
    const float white[3] = {1, 1, 1};
    FltFixture db = colourPalettes();
    db.material(-1, white).material(40000, white).material(32767, white).vertexPalette();
    const int32_t a = db.vertexColor(0, 0, 0), b = db.vertexColor(1, 0, 0), c = db.vertexColor(0, 1, 0);
    FltFaceSpec weighed, bad;
    weighed.primaryColorIndex = 5 * 128 + 127;
    weighed.transparency = 32768;
    bad.primaryColorIndex = -1;
    db.push().object("o", 0).push().face(weighed).push().vertexList({a, b, c}).pop().pop();
    db.face(weighed).push().vertexList({a, b, c}).pop().face(bad).push().vertexList({a, b, c}).pop();
    Converted converted(db.pop());
    const auto materials = findAll<SoMaterial>(converted.root);
    ASSERT_EQ(materials.size(), 2u);
    EXPECT_NEAR(materials[0]->transparency[0], 0.50001f, 1e-5);
    ASSERT_EQ(materials[1]->transparency.getNum(), 1);  // the bad face's entry is never written
    EXPECT_NEAR(materials[1]->transparency[0], 0, 1e-5);
    EXPECT_NE(converted.log().find("\nbad color index\n"), std::string::npos);
    EXPECT_EQ(converted.messages,
              (Names{"WARNING ! Material palette index -1 is outside 0..32767: the material is ignored"}));
    EXPECT_EQ(converted.levels, (std::vector<int>{3}));
}
