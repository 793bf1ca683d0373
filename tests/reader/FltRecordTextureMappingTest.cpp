// The texture mapping palette record and its type-specific blocks.
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

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }
bool endsWith(const std::string& text, const std::string& part)
{
    return text.size() >= part.size() && text.compare(text.size() - part.size(), part.size(), part) == 0;
}

}  // namespace

TEST(TextureMappingPalette, putBlockIsReadFromItsOffsetsAfterTheCommonPart)
{
    FltRecordBytes r = textureMapping(400, 1);
    r.i32(168, 3).i32(172, 2).f64(176, -1).f64(216, 4).i32(228, 1);
    r.f64(240, 0.5).f64(376, 9).i32(384, 3).i32(388, 2).f32(392, 2).f32(396, 4);
    auto mapping = decodeRecord<FltRecordTextureMappingPalette>(r);
    ASSERT_TRUE(mapping);
    EXPECT_EQ(mapping->index, 6);
    EXPECT_EQ(mapping->reserved, 77);
    EXPECT_DOUBLE_EQ(mapping->matrix[15], 1.0);
    ASSERT_TRUE(mapping->putTextureMapping);
    EXPECT_FALSE(mapping->pointPutTextureMapping || mapping->sphericalTextureMapping ||
                 mapping->radialTextureMapping || mapping->warpedTextureMapping);
    const FltPutTextureMappingStruct& put = *mapping->putTextureMapping;
    EXPECT_DOUBLE_EQ(put.upperRightCorner[2], 4.0);
    EXPECT_EQ(put.useRealWorldSize[1], 1);
    EXPECT_DOUBLE_EQ(put.geometryShearPoint[2], 9.0);

    const std::string dump = fieldsOf(*mapping);
    EXPECT_EQ(0u, dump.find("index: 6\nname: map\ntype: 1\nwarpedFlag: 0\nstate: 3\nactiveGeometryPoint: 2\n"));
    EXPECT_TRUE(contains(dump, "geometryShearPointZ: 9\nactiveTexturePoint: 3\nuvDisplayType: 2\n"));
    EXPECT_TRUE(endsWith(dump, "uRepetition: 2\nvRepetition: 4\n"));
}

TEST(TextureMappingPalette, fourPointPutBlockCarriesPerspectiveAndProjectionPlane)
{
    FltRecordBytes r = textureMapping(584, 2);
    r.i32(236, 1).f64(328, 3).f64(424, 5).i32(432, 4).f32(440, 0.5f).f64(448, 2).f64(568, 8);
    r.f32(576, 3).f32(580, 6);
    auto mapping = decodeRecord<FltRecordTextureMappingPalette>(r);
    ASSERT_TRUE(mapping->pointPutTextureMapping);
    EXPECT_FALSE(mapping->putTextureMapping);
    const FltPointPutTextureMappingStruct& p = *mapping->pointPutTextureMapping;
    EXPECT_DOUBLE_EQ(p.texturePerspectivePoint[2], 3.0);
    EXPECT_DOUBLE_EQ(p.geometryPerspectivePoint[2], 5.0);
    EXPECT_FLOAT_EQ(p.depthScaleFactor, 0.5f);
    EXPECT_FLOAT_EQ(p.vRepetition, 6.0f);
    const std::string dump = fieldsOf(*mapping);
    EXPECT_TRUE(contains(dump, "useRealWorldSizePerspective: 1\n"));
    EXPECT_TRUE(contains(dump, "projectionMatrix: 2 0 0 0 0 0 0 0 0 0 0 0 0 0 0 8\n"));
}

TEST(TextureMappingPalette, sphericalAndRadialBlocks)
{
    FltRecordBytes sphere = textureMapping(204, 4);
    sphere.f32(168, 2).f64(172, 1).f64(180, 2).f64(188, 3).f32(196, 0.25f).f32(200, 8);
    auto s = decodeRecord<FltRecordTextureMappingPalette>(sphere);
    ASSERT_TRUE(s->sphericalTextureMapping);
    EXPECT_DOUBLE_EQ(s->sphericalTextureMapping->center[1], 2.0);
    EXPECT_EQ(fieldsOf(*s),
              "index: 6\nname: map\ntype: 4\nwarpedFlag: 0\nscale: 2\ncenterX: 1\ncenterY: 2\ncenterZ: 3\n"
              "scaleByMaximumDimension: 0.25\nmaximumDimension: 8\n");

    FltRecordBytes cylinder = textureMapping(360, 5);
    cylinder.i32(168, 2).f32(176, 1.5f).f32(180, 3).f64(184, 1).f64(312, -1).f64(352, 10);
    auto c = decodeRecord<FltRecordTextureMappingPalette>(cylinder);
    ASSERT_TRUE(c->radialTextureMapping);
    EXPECT_DOUBLE_EQ(c->radialTextureMapping->endPoint2[2], 10.0);
    const std::string dump = fieldsOf(*c);
    EXPECT_TRUE(contains(dump, "warpedFlag: 0\nactiveGeometryPoint: 2\nradialScale: 1.5\nlengthScale: 3\n"
                               "trackplaneMatrix: 1 0 0 0"));
    EXPECT_TRUE(contains(dump, "endPoint1X: -1\n"));
    EXPECT_TRUE(contains(dump, "endPoint2Z: 10\n"));
}

TEST(TextureMappingPalette, warpBlockIsReadFromTheSameOffsetAsTheTypesBlock)
{
    FltRecordBytes r = textureMapping(440, 1, 1);
    r.i32(168, 12).i32(172, 8).f64(184, 0.5).f64(304, 7).f64(312, -0.5).f64(432, 3);
    auto mapping = decodeRecord<FltRecordTextureMappingPalette>(r);
    ASSERT_TRUE(mapping->putTextureMapping);
    ASSERT_TRUE(mapping->warpedTextureMapping);
    EXPECT_EQ(mapping->putTextureMapping->state, 12);
    const FltWarpedTextureMappingStruct& w = *mapping->warpedTextureMapping;
    EXPECT_EQ(w.warpState, 8);
    EXPECT_DOUBLE_EQ(w.fromPoints[7][1], 7.0);
    EXPECT_DOUBLE_EQ(w.toPoints[0][0], -0.5);
    const std::string dump = fieldsOf(*mapping);
    // The put block comes first, the warp block last.
    EXPECT_LT(dump.find("vRepetition: "), dump.find("activeWarpPoint: 12\nwarpState: 8\nfromPoint[0]: 0.5 0\n"));
    EXPECT_TRUE(endsWith(dump, "\ntoPoint[7]: 0 3\n"));

    auto warpOnly = decodeRecord<FltRecordTextureMappingPalette>(textureMapping(440, 0, -1));
    EXPECT_FALSE(warpOnly->putTextureMapping);
    EXPECT_TRUE(warpOnly->warpedTextureMapping);
}

TEST(TextureMappingPalette, typesWithoutABlockDumpTheCommonPartOnly)
{
    for (int32_t type : {0, 3, 6, -1, 0x7FFFFFFF}) {
        auto mapping = decodeRecord<FltRecordTextureMappingPalette>(textureMapping(168, type));
        EXPECT_EQ(fieldsOf(*mapping),
                  "index: 6\nname: map\ntype: " + std::to_string(type) + "\nwarpedFlag: 0\n");
    }
}

TEST(TextureMappingPalette, aSecondDecodeReplacesTheBlocksItHeld)
{
    FltRecordBytes put = textureMapping(400, 1, 1);
    FltRecordBytes sphere = textureMapping(204, 4);
    sphere.f32(168, 5);
    FltRecordTextureMappingPalette mapping(400);
    std::string first = put.bytes();
    mapping.getPropertiesFromData(first.data());
    ASSERT_TRUE(mapping.putTextureMapping && mapping.warpedTextureMapping);
    std::string second = sphere.bytes();
    mapping.length = 204;
    mapping.getPropertiesFromData(second.data());
    EXPECT_FALSE(mapping.putTextureMapping);
    EXPECT_FALSE(mapping.warpedTextureMapping);
    ASSERT_TRUE(mapping.sphericalTextureMapping);
    EXPECT_FLOAT_EQ(mapping.sphericalTextureMapping->scale, 5.0f);
}

TEST(TextureMappingPalette, blockPastTheEndOfAShortRecordReadsAsZeros)
{
    FltRecordBytes cut = textureMapping(180, 2, 1);
    cut.i32(168, 4).i32(172, 1).i32(176, 9);
    auto mapping = decodeRecord<FltRecordTextureMappingPalette>(cut);
    ASSERT_TRUE(mapping->pointPutTextureMapping);
    EXPECT_EQ(mapping->pointPutTextureMapping->state, 4);
    EXPECT_FLOAT_EQ(mapping->pointPutTextureMapping->vRepetition, 0.0f);
    EXPECT_EQ(mapping->warpedTextureMapping->reserved[0], 9);

    // The common part itself cut short.
    FltRecordBytes common(112, 20);
    common.i32(4, 6).chars(12, "mapping!", 8);
    auto tiny = decodeRecord<FltRecordTextureMappingPalette>(common);
    EXPECT_EQ(tiny->index, 6);
    EXPECT_STREQ(tiny->name, "mapping!");
    EXPECT_EQ(tiny->type, 0);
}
