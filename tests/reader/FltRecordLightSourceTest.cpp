// Light source record and light source palette.
#include <gtest/gtest.h>

#include "RecordTestSupport.h"
#include "reader/FltRecordLightSource.h"

namespace {

// A 240-byte palette entry whose values tell from which offset they were read.
FltRecordBytes lightSourcePalette()
{
    FltRecordBytes r(102, 240);
    r.i32(4, 7).chars(8, "RESERVED", 8).chars(16, "sun", 20);
    for (int i = 0; i < 12; ++i) r.f32(40 + 4 * i, 0.25f * static_cast<float>(i + 1));  // ambient .. specular
    r.i32(88, 2).f32(132, 1.5f).f32(136, 45.0f).f32(140, 90.0f).f32(144, -30.0f);
    r.f32(148, 1.0f).f32(152, 0.5f).f32(156, 0.125f).i32(160, 1);
    return r;
}

}  // namespace

TEST(LightSourcePalette, decodesTheFormatsOffsetsAndDumpsTheLabelsInOrder)
{
    auto light = decodeRecord<FltRecordLightSourcePalette>(lightSourcePalette());
    ASSERT_TRUE(light);
    EXPECT_EQ(light->paletteIndex, 7);
    EXPECT_STREQ(light->lightSourceName, "sun");  // the reserved words before it are not the name
    EXPECT_EQ(std::string(light->reserved1, 8), "RESERVED");
    EXPECT_FLOAT_EQ(light->specularAlpha, 3.0f);
    EXPECT_EQ(light->lightType, 2);
    EXPECT_FLOAT_EQ(light->quadraticAttenuationCoefficient, 0.125f);
    EXPECT_EQ(fieldsOf(*light),
              "paletteIndex: 7\nlightSourceName: sun\n"
              "ambientRed: 0.25\nambientGreen: 0.5\nambientBlue: 0.75\nambientAlpha : 1\n"
              "diffuseRed : 1.25\ndiffuseGreen : 1.5\ndiffuseBlue: 1.75\ndiffuseAlpha: 2\n"
              "specularRed: 2.25\nspecularGreen: 2.5\nspecularBlue: 2.75\nspecularAlpha: 3\n"
              "lightType: 2\nspotExponentialDropoffTerm : 1.5\nspotCutoffAngle: 45\nyaw: 90\npitch: -30\n"
              "constantAttenuationCoefficient: 1\nlinearAttenuationCoefficient: 0.5\n"
              "quadraticAttenuationCoefficient: 0.125\nmodelingLight: 1\n");
}

TEST(LightSourceRecord, dumpsPlacementAndFlagBits)
{
    FltRecordBytes r(101, 64);
    r.chars(4, "lamp1", 8).i32(16, 4).u32(24, 0x90000000u).f64(32, 1.5).f64(40, -2).f64(48, 1e6);
    r.f32(56, 10).f32(60, -5);
    auto light = decodeRecord<FltRecordLightSource>(r);
    ASSERT_TRUE(light);
    EXPECT_EQ(light->paletteIndex, 4);
    EXPECT_DOUBLE_EQ(light->positionZ, 1e6);
    EXPECT_EQ(dumpOf(*light),
              "\n LIGHT SOURCE RECORD \n  (PRIMARY_RECORD)\n-- Opcode: 101  Length: 64 --\n"
              "idASCII: lamp1\npaletteIndex: 4\nflags: \n     enabled: 1\n     global: 0\n     export: 1\n"
              "positionX: 1.5\npositionY: -2\npositionZ: 1e+06\nyaw: 10\npitch: -5\n");
}
