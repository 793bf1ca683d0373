// The texture mapping palette record and the block each type adds (the golden log shows a
// put block with a warp block).
#include <gtest/gtest.h>

#include "RecordTestSupport.h"
#include "reader/FltRecordTextureMapping.h"

namespace {

// The common part: index 6, name "map", the given type and warped flag, an identity matrix.
FltRecordBytes textureMapping(size_t length, int32_t type, int32_t warpedFlag = 0)
{
    FltRecordBytes r(112, length);
    r.i32(4, 6).i32(8, 77).chars(12, "map", 20).i32(32, type).i32(36, warpedFlag);
    for (int i = 0; i < 4; ++i) r.f64(40 + 8 * (5 * i), 1.0);
    return r;
}

std::unique_ptr<FltRecordTextureMappingPalette> decode(const FltRecordBytes& bytes)
{
    return decodeRecord<FltRecordTextureMappingPalette>(bytes);
}

}  // namespace

TEST(TextureMappingPalette, eachTypeReadsItsOwnBlockAfterTheCommonPart)
{
    FltRecordBytes four = textureMapping(584, 2);
    four.i32(236, 1).f64(328, 3).f64(424, 5).f32(440, 0.5f).f64(448, 2).f64(568, 8).f32(580, 6);
    auto p = decode(four);
    ASSERT_TRUE(p && p->pointPutTextureMapping);
    EXPECT_FALSE(p->putTextureMapping || p->sphericalTextureMapping || p->radialTextureMapping);
    EXPECT_DOUBLE_EQ(p->pointPutTextureMapping->texturePerspectivePoint[2], 3.0);
    EXPECT_DOUBLE_EQ(p->pointPutTextureMapping->geometryPerspectivePoint[2], 5.0);
    EXPECT_FLOAT_EQ(p->pointPutTextureMapping->depthScaleFactor, 0.5f);
    EXPECT_FLOAT_EQ(p->pointPutTextureMapping->vRepetition, 6.0f);
    EXPECT_NE(fieldsOf(*p).find("projectionMatrix: 2 0 0 0 0 0 0 0 0 0 0 0 0 0 0 8\n"), std::string::npos);

    FltRecordBytes sphere = textureMapping(204, 4);
    sphere.f32(168, 2).f64(172, 1).f64(180, 2).f64(188, 3).f32(196, 0.25f).f32(200, 8);
    EXPECT_EQ(fieldsOf(*decode(sphere)),
              "index: 6\nname: map\ntype: 4\nwarpedFlag: 0\nscale: 2\ncenterX: 1\ncenterY: 2\ncenterZ: 3\n"
              "scaleByMaximumDimension: 0.25\nmaximumDimension: 8\n");

    FltRecordBytes cylinder = textureMapping(360, 5);
    cylinder.i32(168, 2).f32(176, 1.5f).f64(184, 1).f64(312, -1).f64(352, 10);
    auto c = decode(cylinder);
    ASSERT_TRUE(c->radialTextureMapping);
    EXPECT_FLOAT_EQ(c->radialTextureMapping->radialScale, 1.5f);
    EXPECT_DOUBLE_EQ(c->radialTextureMapping->endPoint1[0], -1.0);
    EXPECT_DOUBLE_EQ(c->radialTextureMapping->endPoint2[2], 10.0);
    EXPECT_NE(fieldsOf(*c).find("radialScale: 1.5\nlengthScale: 0\ntrackplaneMatrix: 1 0 0 0"), std::string::npos);

    for (int32_t type : {0, 3, 6, -1, 0x7FFFFFFF})
        EXPECT_EQ(fieldsOf(*decode(textureMapping(168, type))),
                  "index: 6\nname: map\ntype: " + std::to_string(type) + "\nwarpedFlag: 0\n");
}

TEST(TextureMappingPalette, warpBlockIsReadFromTheSameOffsetAsTheTypesBlockToItsEnd)
{
    // The golden log shows a put block with a warp block up to the record's end at 368.
    FltRecordBytes r = textureMapping(440, 1, 1);
    auto mapping = decode(r.f64(432, 3));
    ASSERT_TRUE(mapping->putTextureMapping && mapping->warpedTextureMapping);
    EXPECT_TRUE(endsWith(fieldsOf(*mapping), "\ntoPoint[7]: 0 3\n"));

    auto warpOnly = decode(textureMapping(440, 0, -1));
    EXPECT_FALSE(warpOnly->putTextureMapping);
    EXPECT_TRUE(warpOnly->warpedTextureMapping);
}

TEST(TextureMappingPalette, aSecondDecodeReplacesTheBlocksItHeld)
{
    FltRecordTextureMappingPalette mapping(400);
    std::string first = textureMapping(400, 1, 1).bytes();
    mapping.getPropertiesFromData(first.data());
    ASSERT_TRUE(mapping.putTextureMapping && mapping.warpedTextureMapping);
    FltRecordBytes sphere = textureMapping(204, 4);
    sphere.f32(168, 5);
    std::string second = sphere.bytes();
    mapping.length = 204;
    mapping.getPropertiesFromData(second.data());
    EXPECT_FALSE(mapping.putTextureMapping || mapping.warpedTextureMapping);
    ASSERT_TRUE(mapping.sphericalTextureMapping);
    EXPECT_FLOAT_EQ(mapping.sphericalTextureMapping->scale, 5.0f);
}

TEST(TextureMappingPalette, blockPastTheEndOfAShortRecordReadsAsZeros)
{
    FltRecordBytes cut = textureMapping(180, 2, 1);
    cut.i32(168, 4).i32(176, 9);
    auto mapping = decode(cut);
    ASSERT_TRUE(mapping->pointPutTextureMapping && mapping->warpedTextureMapping);
    EXPECT_EQ(mapping->pointPutTextureMapping->state, 4);
    EXPECT_FLOAT_EQ(mapping->pointPutTextureMapping->vRepetition, 0.0f);
    EXPECT_EQ(mapping->warpedTextureMapping->reserved[0], 9);

    FltRecordBytes common(112, 20);  // the common part itself cut short
    common.i32(4, 6).chars(12, "mapping!", 8);
    auto tiny = decode(common);
    EXPECT_EQ(tiny->index, 6);
    EXPECT_STREQ(tiny->name, "mapping!");
    EXPECT_EQ(tiny->type, 0);
}
