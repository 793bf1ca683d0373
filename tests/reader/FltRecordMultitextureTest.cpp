// Multitexture and UV list records.
#include <gtest/gtest.h>

#include "RecordTestSupport.h"
#include "reader/FltRecordMultitexture.h"

TEST(MultitextureRecord, layersFollowTheLowBitsOfTheMaskConsumeBytesInOrderAndReadZerosPastTheEnd)
{
    // Mask 0x5: layer 0 at offsets 8-15, layer 2 at 16-23.
    FltRecordBytes bytes(52, 24);
    bytes.u32(4, 0x5u).u16(8, 1).u16(10, 2).u16(12, 3).u16(14, 4).u16(16, 65535).u16(18, 6).u16(20, 7).u16(22, 8);
    auto multi = decodeRecord<FltRecordMultitexture>(bytes);
    EXPECT_TRUE(multi->hasLayerN(0) && !multi->hasLayerN(1) && multi->hasLayerN(2));
    EXPECT_EQ(multi->layer[0].mapping, 3);
    EXPECT_EQ(multi->layer[1].texture, 0);
    EXPECT_EQ(multi->layer[2].texture, 65535);
    EXPECT_EQ(multi->layer[2].data, 8);

    FltRecordBytes cut(52, 16);  // eight layers announced, one present
    cut.u32(4, 0xFFu).u16(8, 11).u16(14, 12);
    auto eight = decodeRecord<FltRecordMultitexture>(cut);
    EXPECT_EQ((std::vector<int>{eight->layer[0].texture, eight->layer[0].data, eight->layer[1].texture}),
              (std::vector<int>{11, 12, 0}));
    EXPECT_NE(fieldsOf(*eight).find("layer[7]: \n  texture: 0\n"), std::string::npos);

    // Only the low eight bits name layers; bit 31 is there to test, a number outside the word is none.
    cut.u32(4, 0x80000000u);
    auto high = decodeRecord<FltRecordMultitexture>(cut);
    for (int n = 0; n < 8; ++n) EXPECT_FALSE(high->hasLayerN(n)) << n;
    EXPECT_EQ(high->layer[0].texture, 0);
    EXPECT_EQ(fieldsOf(*high), "attributeMask: 0x80000000\n");
    EXPECT_EQ(fieldsOf(*decodeRecord<FltRecordMultitexture>(FltRecordBytes(52, 8))), "attributeMask: 0\n");
    EXPECT_TRUE(high->hasLayerN(31));
    EXPECT_FALSE(high->hasLayerN(32) || high->hasLayerN(-1));
}

TEST(UVListRecord, findsEachVertexLayerPairByTheMaskAndKeepsOnlyWholeValues)
{
    // Layers 1 and 3 (mask 0xA), two vertices: v0 l1, v0 l3, v1 l1, v1 l3.
    FltRecordBytes bytes(53, 8 + 8 * 4);
    bytes.u32(4, 0xAu);
    for (size_t n = 0; n < 8; ++n) bytes.f32(8 + 4 * n, static_cast<float>(n) + 0.5f);
    auto list = decodeDirectly<FltRecordUVList>(bytes);
    EXPECT_EQ(list->getVertexType(), FltRecordUVList::PlainVertices);
    double u = -1, v = -1;
    ASSERT_TRUE(list->getUV(1, 3, u, v));
    EXPECT_EQ(std::make_pair(u, v), std::make_pair(6.5, 7.5));
    ASSERT_TRUE(list->getUV(0, 3, u, v));
    EXPECT_EQ(u, 2.5);
    EXPECT_FALSE(list->getUV(0, 0, u, v));  // layer 0 absent
    EXPECT_EQ(u, 0.0);
    EXPECT_FALSE(list->getUV(2, 1, u, v) || list->getUV(-1, 1, u, v));  // no third vertex, no vertex -1
    EXPECT_EQ(fieldsOf(*list).substr(0, 36), "attributeMask: 0xa\nu=0.5  v=1.5\nu=2.");

    // Read as a morph list, each layer takes four values: vertex 0 holds both layers.
    double u0, v0, u100, v100;
    ASSERT_TRUE(list->getMorphUV(0, 3, u0, v0, u100, v100));
    EXPECT_EQ(std::make_pair(u0, v100), std::make_pair(4.5, 7.5));
    EXPECT_FALSE(list->getMorphUV(1, 1, u0, v0, u100, v100));

    FltRecordBytes cut(53, 14);  // one float and half of another
    cut.u32(4, 0x1u).f32(8, 1.5f);
    auto half = decodeDirectly<FltRecordUVList>(cut);
    EXPECT_EQ(half->uvCount, 1u);
    EXPECT_FALSE(half->getUV(0, 0, u, v));
    EXPECT_EQ(fieldsOf(*half), "attributeMask: 0x1\n");
}
