// Face colours and materials: one material entry per face, by the six colour and material
// cases, with their transparency formulas.
#include <gtest/gtest.h>

#include <Inventor/nodes/SoMaterial.h>

#include "ConvertSupport.h"

namespace {

constexpr uint32_t kNoColor = 0x40000000u;
constexpr uint32_t kPackedColor = 0x10000000u;

uint32_t abgrWord(uint8_t a, uint8_t b, uint8_t g, uint8_t r)
{
    return (uint32_t(a) << 24) | (uint32_t(b) << 16) | (uint32_t(g) << 8) | r;
}

// One face of colour-only vertices in an object (or loose, with objectTransparency < 0),
// after a colour palette whose entry 5 is (0.4, 0.6, 1.0) and a material 2.
class FaceMaterial {
public:
    explicit FaceMaterial(const FltFaceSpec& spec, int objectTransparency = 0, int32_t revision = 1570,
                          int32_t headerFlags = 0)
    {
        FltFixture db;
        db.header(revision, 0, headerFlags);
        std::vector<uint32_t> colors(1024, 0);
        colors[5] = abgrWord(0xFF, 255, 153, 102);
        db.colorPalette(colors);
        const float diffuse[3] = {0.5f, 0.25f, 1.0f};
        db.material(2, diffuse, 64.0f, 0.25f);
        db.vertexPalette();
        const int32_t a = db.vertexColor(0, 0, 0), b = db.vertexColor(1, 0, 0), c = db.vertexColor(0, 1, 0);
        db.push();
        if (objectTransparency >= 0) db.object("o", static_cast<uint16_t>(objectTransparency)).push();
        db.face(spec).push().vertexList({a, b, c}).pop();
        if (objectTransparency >= 0) db.pop();
        db.pop();
        converted = std::make_unique<Converted>(db);
        for (SoMaterial* m : findAll<SoMaterial>(converted->root))
            if (m->getName() == "faceVertexColorSoMaterialSet") material = m;
    }
    std::unique_ptr<Converted> converted;
    SoMaterial* material = nullptr;
};

void expectColor(const SbColor& actual, float r, float g, float b)
{
    EXPECT_NEAR(actual[0], r, 1e-5);
    EXPECT_NEAR(actual[1], g, 1e-5);
    EXPECT_NEAR(actual[2], b, 1e-5);
}

}  // namespace

TEST(FaceMaterial, noColourAndNoMaterialGivesInventorsDefaults)
{
    FltFaceSpec spec;
    spec.flags = kNoColor;
    spec.transparency = 30000;
    FaceMaterial f(spec);
    ASSERT_NE(f.material, nullptr);
    expectColor(f.material->ambientColor[0], 0.2f, 0.2f, 0.2f);
    expectColor(f.material->diffuseColor[0], 0.8f, 0.8f, 0.8f);
    expectColor(f.material->specularColor[0], 0, 0, 0);
    EXPECT_FLOAT_EQ(f.material->shininess[0], 0.2f);
    EXPECT_FLOAT_EQ(f.material->transparency[0], 0.0f);
}

TEST(FaceMaterial, packedColourWithoutMaterialIgnoresEveryTransparency)
{
    FltFaceSpec spec;
    spec.flags = kPackedColor;
    spec.packed[0] = 0x80, spec.packed[3] = 0xFF;
    spec.transparency = 40000;
    FaceMaterial f(spec);
    expectColor(f.material->ambientColor[0], 1, 0, 0);
    expectColor(f.material->diffuseColor[0], 1, 0, 0);
    EXPECT_FLOAT_EQ(f.material->shininess[0], 0.0f);
    EXPECT_FLOAT_EQ(f.material->transparency[0], 0.0f);
}

TEST(FaceMaterial, paletteIndexWithoutMaterialScalesByIntensityAndWeighsTransparency)
{
    FltFaceSpec spec;
    spec.primaryColorIndex = 5 * 128 + 127;
    spec.transparency = 32768;
    FaceMaterial inObject(spec, 0);
    expectColor(inObject.material->diffuseColor[0], 0.4f, 0.6f, 1.0f);
    expectColor(inObject.material->ambientColor[0], 0.4f, 0.6f, 1.0f);
    EXPECT_NEAR(inObject.material->transparency[0], 0.50001f, 1e-5);

    FaceMaterial loose(spec, -1);
    EXPECT_FLOAT_EQ(loose.material->transparency[0], 0.0f);

    spec.primaryColorIndex = 5 * 128 + 63;
    FaceMaterial half(spec);
    expectColor(half.material->diffuseColor[0], 0.4f * 63 / 127, 0.6f * 63 / 127, 63.0f / 127);
}

TEST(FaceMaterial, negativeColourIndexIsABadIndexAndLeavesTheEntryUnset)
{
    FltFaceSpec spec;
    spec.primaryColorIndex = -1;
    FaceMaterial f(spec);
    ASSERT_NE(f.material, nullptr);
    EXPECT_NE(f.converted->log().find("\nbad color index\n"), std::string::npos);
    // The material node still holds Inventor's one default entry.
    EXPECT_EQ(f.material->diffuseColor.getNum(), 1);
    expectColor(f.material->diffuseColor[0], 0.8f, 0.8f, 0.8f);
}

TEST(FaceMaterial, noColourWithMaterialCopiesItAndWeighsItsTransparency)
{
    FltFaceSpec spec;
    spec.flags = kNoColor;
    spec.materialIndex = 2;
    spec.transparency = 32768;
    FaceMaterial inObject(spec, 0);
    expectColor(inObject.material->diffuseColor[0], 0.5f, 0.25f, 1.0f);
    expectColor(inObject.material->ambientColor[0], 0.25f, 0.125f, 0.5f);
    EXPECT_FLOAT_EQ(inObject.material->shininess[0], 0.5f);
    EXPECT_FLOAT_EQ(inObject.material->transparency[0], 0.75f);

    FaceMaterial loose(spec, -1);
    EXPECT_NEAR(loose.material->transparency[0], (1.0 - 32768.0 / 65535.0) * 0.75, 1e-6);
}

TEST(FaceMaterial, packedColourWithMaterialMultipliesAndWritesNoTransparency)
{
    FltFaceSpec spec;
    spec.flags = kPackedColor;
    spec.materialIndex = 2;
    spec.packed[3] = 255, spec.packed[2] = 127, spec.packed[1] = 0;
    FaceMaterial f(spec);
    expectColor(f.material->diffuseColor[0], 0.5f, 0.25f * 127 / 255, 0.0f);
    expectColor(f.material->ambientColor[0], 0.25f, 0.125f * 127 / 255, 0.0f);
    EXPECT_FLOAT_EQ(f.material->shininess[0], 0.5f);
    EXPECT_EQ(f.material->transparency.getNum(), 1);  // only Inventor's default entry
}

TEST(FaceMaterial, paletteIndexWithMaterialTakesTheEntryWithoutIntensity)
{
    FltFaceSpec spec;
    spec.materialIndex = 2;
    spec.primaryColorIndex = 5 * 128 + 10;
    FaceMaterial f(spec);
    expectColor(f.material->diffuseColor[0], 0.5f * 0.4f, 0.25f * 0.6f, 1.0f);
    EXPECT_FLOAT_EQ(f.material->transparency[0], 0.75f);
}

TEST(FaceMaterial, paletteIndexWithMaterialBefore1540UsesTheColourNameIndex)
{
    FltFaceSpec spec;
    spec.materialIndex = 2;
    spec.primaryColorIndex = 0;
    spec.colorNameIndex = 5 * 128;
    FaceMaterial f(spec, 0, 1530);
    expectColor(f.material->diffuseColor[0], 0.5f * 0.4f, 0.25f * 0.6f, 1.0f);
}

TEST(FaceMaterial, texturedFaceWithTextureWhiteIsWhiteUnderItsMaterial)
{
    FltFaceSpec spec;
    spec.materialIndex = 2;
    spec.primaryColorIndex = 5 * 128;
    spec.texturePatternIndex = 1;
    spec.textureWhite = 1;
    FaceMaterial f(spec);
    expectColor(f.material->diffuseColor[0], 0.5f, 0.25f, 1.0f);
}

TEST(FaceMaterial, packedColourModeWithMaterialGivesTheTruncatedNearlyBlackColour)
{
    FltFaceSpec spec;
    spec.materialIndex = 2;
    spec.packed[0] = 255, spec.packed[1] = 255, spec.packed[2] = 10, spec.packed[3] = 255;
    FaceMaterial f(spec, 0, 1570, 0x40000000);
    // Alpha and blue were 255: the colour is (1, 1, 0) / 255.
    expectColor(f.material->diffuseColor[0], 0.5f / 255, 0.25f / 255, 0.0f);
}

TEST(FaceMaterial, oldRevisionWithMaterialScalesWhiteByTheIndexIntensity)
{
    FltFaceSpec spec;
    spec.materialIndex = 2;
    spec.colorNameIndex = 127;  // before 15.0 the face's colour index is its colour name index
    FaceMaterial full(spec, 0, 13);
    expectColor(full.material->diffuseColor[0], 0.5f, 0.25f, 1.0f);
    spec.colorNameIndex = 0;
    FaceMaterial black(spec, 0, 13);
    expectColor(black.material->diffuseColor[0], 0, 0, 0);
}

TEST(FaceMaterial, materialIndexBeyondThePaletteReadsInventorsDefaults)
{
    FltFaceSpec spec;
    spec.flags = kNoColor;
    spec.materialIndex = 30000;
    FaceMaterial f(spec);
    expectColor(f.material->diffuseColor[0], 0.8f, 0.8f, 0.8f);
    EXPECT_FLOAT_EQ(f.material->transparency[0], 0.0f);
}
