// Face colours and materials: one material entry per face, by the six colour and material
// cases, with their transparency formulas.
#include <gtest/gtest.h>

#include <Inventor/nodes/SoMaterial.h>

#include "ConvertSupport.h"

namespace {

constexpr int32_t kNoColor = 0x40000000;
constexpr int32_t kPackedColor = 0x10000000;
constexpr int32_t kPackedMode = 0x40000000;  // of the header's flags

// The face and what surrounds it: an object of this transparency (no object when negative)
// in a database of this revision and header flags.
struct Face {
    Face& flags(int32_t v) { face.flags = v; return *this; }
    Face& material(int16_t v) { face.materialIndex = v; return *this; }
    Face& index(int32_t v) { face.primaryColorIndex = v; return *this; }
    Face& nameIndex(uint16_t v) { face.colorNameIndex = v; return *this; }
    Face& transparency(uint16_t v) { face.transparency = v; return *this; }
    Face& packed(uint8_t a, uint8_t b, uint8_t g, uint8_t r)
    {
        face.packed[0] = a, face.packed[1] = b, face.packed[2] = g, face.packed[3] = r;
        return *this;
    }
    Face& whiteTexture() { face.texturePatternIndex = 1, face.textureWhite = 1; return *this; }
    Face& loose() { objectTransparency = -1; return *this; }
    Face& header(int32_t r, int32_t f = 0) { revision = r, headerFlags = f; return *this; }
    Face& shortPalettes(int n) { emptyPalettes = n; return *this; }
    FltFaceSpec face;
    int objectTransparency = 0;
    int emptyPalettes = 0;  // 4-byte colour and old material palettes after the colour palette
    int32_t revision = 1570, headerFlags = 0;
};

// One face of colour-only vertices, after a colour palette whose entry 5 is (0.4, 0.6, 1.0)
// and a material 2 of diffuse (0.5, 0.25, 1.0), half that ambient, shininess 64 of 128 and
// alpha 0.25.
FltFixture database(const Face& s)
{
    FltFixture db;
    db.header(s.revision, 0, s.headerFlags);
    std::vector<uint32_t> colors(1024, 0);
    colors[5] = 0xFFFF9966u;  // alpha, blue, green, red
    const float diffuse[3] = {0.5f, 0.25f, 1.0f};
    db.colorPalette(colors);
    for (int i = 0; i < s.emptyPalettes; ++i) db.add(FltRecordBytes(32, 4)).add(FltRecordBytes(66, 4));
    db.material(2, diffuse, 64.0f, 0.25f).vertexPalette();
    const int32_t a = db.vertexColor(0, 0, 0), b = db.vertexColor(1, 0, 0), c = db.vertexColor(0, 1, 0);
    db.push();
    if (s.objectTransparency >= 0) db.object("o", static_cast<uint16_t>(s.objectTransparency)).push();
    db.face(s.face).push().vertexList({a, b, c}).pop();
    if (s.objectTransparency >= 0) db.pop();
    return db.pop();
}

void expectColor(const SbColor& actual, const SbColor& expected, const char* what)
{
    for (int i = 0; i < 3; ++i) EXPECT_NEAR(actual[i], expected[i], 1e-5) << what << ", component " << i;
}

}  // namespace

TEST(FaceMaterial, colourAndMaterialCasesGiveTheirEntry)
{
    struct Case {
        const char* what;
        Face setup;
        SbColor diffuse, ambient;
        float shininess, transparency;
    };
    const SbColor m(0.5f, 0.25f, 1.0f), mAmbient(0.25f, 0.125f, 0.5f), entry5(0.4f, 0.6f, 1.0f), black(0, 0, 0);
    const SbColor diffuse(0.8f, 0.8f, 0.8f), ambient(0.2f, 0.2f, 0.2f);  // Inventor's defaults
    const float p = 63.0f / 127, r = 127.0f / 255;
    const Case cases[] = {
        // Without material.
        {"no colour: defaults", Face().flags(kNoColor).transparency(30000), diffuse, ambient, 0.2f, 0},
        {"packed colour ignores every transparency",
         Face().flags(kPackedColor).packed(0x80, 0, 0, 0xFF).transparency(40000), {1, 0, 0}, {1, 0, 0}, 0, 0},
        {"palette index weighs the transparency", Face().index(5 * 128 + 127).transparency(32768), entry5, entry5, 0,
         0.50001f},
        {"palette index, loose face", Face().index(5 * 128 + 127).transparency(32768).loose(), entry5, entry5, 0, 0},
        {"palette index scaled by its intensity", Face().index(5 * 128 + 63), entry5 * p, entry5 * p, 0, 0},
        {"negative index: bad, the entry unset", Face().index(-1), diffuse, ambient, 0.2f, 0},
        {"thousands of empty palettes: the last one empties the table",
         Face().index(5 * 128 + 127).shortPalettes(3000), black, black, 0, 0},
        // With material 2.
        {"no colour copies the material", Face().flags(kNoColor).material(2).transparency(32768), m, mAmbient, 0.5f,
         0.75f},
        {"no colour, loose: raw object transparency", Face().flags(kNoColor).material(2).transparency(32768).loose(),
         m, mAmbient, 0.5f, (1.0f - 32768.0f / 65535.0f) * 0.75f},
        // Kept on purpose: no transparency entry is written.
        {"packed colour times material", Face().flags(kPackedColor).material(2).packed(0, 0, 127, 255),
         {0.5f, 0.25f * r, 0}, {0.25f, 0.125f * r, 0}, 0.5f, 0},
        {"palette index without intensity", Face().material(2).index(5 * 128 + 10), {0.2f, 0.15f, 1.0f},
         {0.1f, 0.075f, 0.5f}, 0.5f, 0.75f},
        {"before 1540 the colour name index", Face().material(2).nameIndex(5 * 128).header(1530), {0.2f, 0.15f, 1.0f},
         {0.1f, 0.075f, 0.5f}, 0.5f, 0.75f},
        {"texture white is white under the material", Face().material(2).index(5 * 128).whiteTexture(), m, mAmbient,
         0.5f, 0.75f},
        // Kept on purpose: each byte truncated to 0 or 1, alpha and blue 255 give (1, 1, 0) / 255.
        {"packed colour mode: nearly black", Face().material(2).packed(255, 255, 10, 255).header(1570, kPackedMode),
         {0.5f / 255, 0.25f / 255, 0}, {0.25f / 255, 0.125f / 255, 0}, 0.5f, 0.75f},
        // Before 15.0 the face's colour index is its colour name index, scaling white.
        {"old revision, full intensity", Face().material(2).nameIndex(127).header(13), m, mAmbient, 0.5f, 0.75f},
        {"old revision, intensity 0", Face().material(2).header(13), black, black, 0.5f, 0.75f},
        {"material beyond the palette: defaults", Face().flags(kNoColor).material(30000), diffuse, ambient, 0.2f, 0},
    };
    for (const Case& k : cases) {
        FltFixture db = database(k.setup);
        Converted c(db);
        auto* material = static_cast<SoMaterial*>(findNamed(c.root, "faceVertexColorSoMaterialSet"));
        ASSERT_NE(material, nullptr) << k.what;
        // One face, one entry, or Inventor's one default entry where nothing was written.
        EXPECT_EQ(material->diffuseColor.getNum(), 1) << k.what;
        EXPECT_EQ(material->transparency.getNum(), 1) << k.what;
        expectColor(material->diffuseColor[0], k.diffuse, k.what);
        expectColor(material->ambientColor[0], k.ambient, k.what);
        EXPECT_NEAR(material->shininess[0], k.shininess, 1e-5) << k.what;
        EXPECT_NEAR(material->transparency[0], k.transparency, 1e-5) << k.what;
        const bool badIndex = c.log().find("\nbad color index\n") != std::string::npos;
        EXPECT_EQ(badIndex, k.setup.face.primaryColorIndex == -1) << k.what;
    }
}
