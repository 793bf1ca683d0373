// Mesh, local vertex pool and mesh primitive records: field offsets, vertex strides, counts
// the bytes cannot hold, polygon expansion and continuation joining.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "reader/FltMeshRecords.h"
#include "tools/FltFixture.h"

namespace {

// A heap copy of exactly the record's bytes, so that the sanitizer build catches any read past it.
std::vector<char> exact(const FltRecordBytes& r) { return std::vector<char>(r.bytes().begin(), r.bytes().end()); }

using Polygons = std::vector<std::vector<uint32_t>>;

}  // namespace

TEST(MeshRecords, meshFieldsAreReadAtTheirOffsetsAndAShortRecordKeepsWhatItHolds)
{
    FltRecordBytes r(84, 84);
    r.chars(4, "mesh0001", 8).i8(22, 2).i8(23, 1).u16(24, 40000).i8(29, 3).i16(32, 5).i16(34, 6).u16(44, 65000);
    r.i32(48, -7).u8(52, 8).abgr(60, 9, 10, 11, 12).i16(68, 13).i32(72, 100000).i32(76, -14);
    std::vector<char> bytes = exact(r);
    FltMeshFields m;
    EXPECT_TRUE(fltDecodeMesh(bytes.data(), bytes.size(), m));
    EXPECT_EQ(std::string(m.id), "mesh0001");
    EXPECT_EQ((std::vector<long>{m.drawType, m.textureWhite, m.colorNameIndex, m.templateBillboard,
                                 m.texturePatternIndex, m.materialIndex, m.transparency, m.flags, m.lightMode,
                                 m.packedColor[0], m.packedColor[1], m.packedColor[2], m.packedColor[3],
                                 m.textureMappingIndex, m.primaryColorIndex, m.alternateColorIndex}),
              (std::vector<long>{2, 1, 40000, 3, 5, 6, 65000, -7, 8, 9, 10, 11, 12, 13, 100000, -14}));

    EXPECT_FALSE(fltDecodeMesh(bytes.data(), 46, m));
    EXPECT_EQ((std::vector<long>{m.transparency, m.flags, m.alternateColorIndex}), (std::vector<long>{65000, 0, 0}));
}

TEST(MeshRecords, poolVerticesHoldOnlyTheirMaskedAttributesInOrderSteppingOverUvLayers)
{
    // Position, packed colour, normal and base UV: 48 bytes a vertex.
    FltRecordBytes r(85, 12 + 2 * 48);
    r.u32(4, 2).u32(8, 0xB8000000u);
    r.f64(60, 1.5).f64(68, -2.5).f64(76, 3.5).abgr(84, 255, 1, 2, 3).f32(88, 0).f32(92, 0).f32(96, 1);
    r.f32(100, 0.25f).f32(104, 0.75f);
    std::vector<char> bytes = exact(r);
    FltLocalVertexPool pool;
    EXPECT_TRUE(fltDecodeLocalVertexPool(bytes.data(), bytes.size(), pool));
    EXPECT_EQ((std::vector<bool>{pool.hasPosition, pool.hasColorIndex, pool.hasPackedColor, pool.hasNormal, pool.hasUv}),
              (std::vector<bool>{true, false, true, true, true}));
    const FltPoolVertex& v = pool.vertices.at(1);
    EXPECT_EQ((std::vector<double>{v.position[0], v.position[1], v.position[2], double(v.colorIndex),
                                   double(v.packedColor[0]), double(v.packedColor[3]), v.normal[2], v.uv[0], v.uv[1]}),
              (std::vector<double>{1.5, -2.5, 3.5, 0, 255, 3, 1, 0.25, 0.75}));

    // Every attribute: 24 + 4 + 4 + 12 + 8 bytes kept and 7 UV layers of 8 bytes, 108 a vertex.
    FltRecordBytes all(85, 12 + 2 * 108);
    all.u32(4, 2).u32(8, 0xFFF00000u).f64(120, 4.0).u32(144, 77).f32(164, 0.5f).f32(168, 0.125f);
    bytes = exact(all);
    EXPECT_TRUE(fltDecodeLocalVertexPool(bytes.data(), bytes.size(), pool));
    const FltPoolVertex& w = pool.vertices.at(1);
    EXPECT_EQ((std::vector<double>{w.position[0], double(w.colorIndex), w.uv[0], w.uv[1]}),
              (std::vector<double>{4.0, 77, 0.5, 0.125}));
}

TEST(MeshRecords, poolKeepsOnlyTheVerticesItsBytesHold)
{
    struct Case { uint32_t count; size_t length; uint32_t mask; size_t kept; bool ok; };
    for (const Case& c : std::vector<Case>{{2, 12 + 2 * 48, 0xB8000000u, 2, true},
                                           {3, 12 + 2 * 48 + 47, 0xB8000000u, 2, false},
                                           {4000000000u, 16, 0x80000000u, 0, false},
                                           {4000000000u, 16, 0x00000000u, 0, false},
                                           {1, 11, 0x80000000u, 0, false}}) {
        FltRecordBytes r(85, c.length);
        if (c.length >= 12) r.u32(4, c.count).u32(8, c.mask);
        std::vector<char> bytes = exact(r);
        FltLocalVertexPool pool;
        EXPECT_EQ(fltDecodeLocalVertexPool(bytes.data(), bytes.size(), pool), c.ok) << c.count << " in " << c.length;
        EXPECT_EQ(pool.vertices.size(), c.kept) << c.count << " in " << c.length;
    }
}

TEST(MeshRecords, primitiveIndicesAreReadAtTheirIndexSize)
{
    struct Case { uint16_t indexSize; uint32_t count; std::vector<uint32_t> stored; bool ok; std::vector<uint32_t> kept; };
    for (const Case& c : std::vector<Case>{{1, 3, {7, 200, 255}, true, {7, 200, 255}},
                                           {2, 3, {7, 60000, 1}, true, {7, 60000, 1}},
                                           {4, 2, {70000, 4000000000u}, true, {70000, 4000000000u}},
                                           {4, 4000000000u, {5, 6}, false, {5, 6}},
                                           {3, 2, {1, 2}, false, {}}}) {
        FltRecordBytes r(86, 12 + c.stored.size() * (c.indexSize == 3 ? 4 : c.indexSize));
        r.i16(4, 4).u16(6, c.indexSize).u32(8, c.count);
        for (size_t i = 0; i < c.stored.size(); ++i) {
            const size_t at = 12 + i * c.indexSize;
            if (c.indexSize == 1) r.u8(at, uint8_t(c.stored[i]));
            else if (c.indexSize == 2) r.u16(at, uint16_t(c.stored[i]));
            else if (c.indexSize == 4) r.u32(at, c.stored[i]);
        }
        std::vector<char> bytes = exact(r);
        FltMeshPrimitive p;
        EXPECT_EQ(fltDecodeMeshPrimitive(bytes.data(), bytes.size(), p), c.ok) << "index size " << c.indexSize;
        EXPECT_EQ(p.indices, c.kept) << "index size " << c.indexSize;
    }
}

TEST(MeshRecords, primitivesExpandToPolygonsOfPoolIndicesWithOneWinding)
{
    struct Case { int16_t type; std::vector<uint32_t> indices; Polygons polygons; };
    for (const Case& c : std::vector<Case>{
             {1, {10, 11, 12, 13, 14}, {{10, 11, 12}, {12, 11, 13}, {12, 13, 14}}},
             {1, {10, 11}, {}},
             {2, {10, 11, 12, 13, 14}, {{10, 11, 12}, {10, 12, 13}, {10, 13, 14}}},
             {3, {10, 11, 12, 13, 14, 15, 16}, {{10, 11, 13, 12}, {12, 13, 15, 14}}},
             {4, {10, 11, 12, 13, 14}, {{10, 11, 12, 13, 14}}},
             {4, {10, 11}, {}},
             {9, {10, 11, 12}, {}}}) {
        FltMeshPrimitive p;
        p.type = c.type;
        p.indices = c.indices;
        EXPECT_EQ(fltMeshPrimitivePolygons(p), c.polygons) << "type " << c.type << ", " << c.indices.size() << " indices";
    }
}

TEST(MeshRecords, continuationsJoinWithoutTheirHeadersIntoOneDecodableRecord)
{
    // 20000 four-byte indices overflow the 16-bit length field; the rest goes on in a continuation.
    FltRecordBytes whole(86, 12 + 4 * 20000);
    whole.i16(4, 1).u16(6, 4).u32(8, 20000).u32(12 + 4 * 19999, 123456);
    const std::string& all = whole.bytes();
    const size_t split = 65532;
    const std::string rest = std::string("\x00\x17\x00\x00", 4) + all.substr(split);
    const std::string tooShort("\x00\x17\x00", 3);
    const std::string joined = fltJoinContinuations(all.data(), split,
                                                    {{rest.data(), rest.size()}, {tooShort.data(), tooShort.size()}});
    EXPECT_EQ(joined, all);
    FltMeshPrimitive p;
    EXPECT_TRUE(fltDecodeMeshPrimitive(joined.data(), joined.size(), p));
    ASSERT_EQ(p.indices.size(), 20000u);
    EXPECT_EQ(p.indices.back(), 123456u);
}
