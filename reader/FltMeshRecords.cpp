// Mesh, local vertex pool and mesh primitive records: decoding and polygon expansion.
#include "reader/FltMeshRecords.h"

#include <algorithm>

#include "reader/FltBytes.h"

namespace {

constexpr size_t kMeshLength = 84;
constexpr size_t kPoolHeader = 12;
constexpr size_t kPrimitiveHeader = 12;

constexpr uint32_t kPosition = 0x80000000u;
constexpr uint32_t kColorIndex = 0x40000000u;
constexpr uint32_t kPackedColor = 0x20000000u;
constexpr uint32_t kNormal = 0x10000000u;
constexpr uint32_t kBaseUv = 0x08000000u;
constexpr uint32_t kFirstUvLayer = 0x04000000u;
constexpr uint32_t kLastUvLayer = 0x00100000u;

// Bytes one vertex takes: the sum of the attributes its mask announces. Bits below the
// last UV layer mean nothing and take no room.
size_t poolStride(uint32_t mask)
{
    size_t stride = 0;
    if (mask & kPosition) stride += 24;
    if (mask & kColorIndex) stride += 4;
    if (mask & kPackedColor) stride += 4;
    if (mask & kNormal) stride += 12;
    if (mask & kBaseUv) stride += 8;
    for (uint32_t bit = kFirstUvLayer; bit >= kLastUvLayer; bit >>= 1)
        if (mask & bit) stride += 8;
    return stride;
}

}  // namespace

bool fltDecodeMesh(const char* data, size_t size, FltMeshFields& out)
{
    out = FltMeshFields{};
    const FltBytes in(data, size);
    in.chars(4, 8, out.id);
    out.id[8] = '\0';
    out.drawType = in.i8(22);
    out.textureWhite = in.i8(23);
    out.colorNameIndex = in.u16(24);
    out.templateBillboard = in.i8(29);
    out.texturePatternIndex = in.i16(32);
    out.materialIndex = in.i16(34);
    out.transparency = in.u16(44);
    out.flags = in.i32(48);
    out.lightMode = in.u8(52);
    in.packedColor(60, out.packedColor);
    out.textureMappingIndex = in.i16(68);
    out.primaryColorIndex = in.i32(72);
    out.alternateColorIndex = in.i32(76);
    return in.has(0, kMeshLength);
}

bool fltDecodeLocalVertexPool(const char* data, size_t size, FltLocalVertexPool& out)
{
    out = FltLocalVertexPool{};
    const FltBytes in(data, size);
    if (!in.has(0, kPoolHeader)) return false;
    const uint32_t count = in.u32(4);
    const uint32_t mask = in.u32(8);
    out.attributeMask = mask;
    out.hasPosition = (mask & kPosition) != 0;
    out.hasColorIndex = (mask & kColorIndex) != 0;
    out.hasPackedColor = (mask & kPackedColor) != 0;
    out.hasNormal = (mask & kNormal) != 0;
    out.hasUv = (mask & kBaseUv) != 0;

    // The count comes from the file: only as many vertices as the bytes hold are made, so a
    // damaged count cannot ask for a huge allocation. Without any attribute a vertex takes
    // no bytes, and none can be justified.
    const size_t stride = poolStride(mask);
    const size_t fits = stride ? (in.size() - kPoolHeader) / stride : 0;
    const size_t kept = std::min<size_t>(count, fits);
    out.vertices.resize(kept);
    for (size_t i = 0; i < kept; ++i) {
        FltPoolVertex& v = out.vertices[i];
        size_t at = kPoolHeader + i * stride;
        if (out.hasPosition) { in.f64s(at, v.position, 3); at += 24; }
        if (out.hasColorIndex) { v.colorIndex = in.u32(at); at += 4; }
        if (out.hasPackedColor) { in.packedColor(at, v.packedColor); at += 4; }
        if (out.hasNormal) { in.f32s(at, v.normal, 3); at += 12; }
        if (out.hasUv) in.f32s(at, v.uv, 2);
    }
    return kept == count;
}

bool fltDecodeMeshPrimitive(const char* data, size_t size, FltMeshPrimitive& out)
{
    out = FltMeshPrimitive{};
    const FltBytes in(data, size);
    if (!in.has(0, kPrimitiveHeader)) return false;
    out.type = in.i16(4);
    out.indexSize = in.u16(6);
    if (out.indexSize != 1 && out.indexSize != 2 && out.indexSize != 4) return false;

    // As for the pool: the file's count is believed only as far as the bytes go.
    const uint32_t count = in.u32(8);
    const size_t fits = (in.size() - kPrimitiveHeader) / out.indexSize;
    const size_t kept = std::min<size_t>(count, fits);
    out.indices.resize(kept);
    for (size_t i = 0; i < kept; ++i) {
        const size_t at = kPrimitiveHeader + i * out.indexSize;
        out.indices[i] = out.indexSize == 1 ? in.u8(at) : out.indexSize == 2 ? in.u16(at) : in.u32(at);
    }
    return kept == count;
}

std::vector<std::vector<uint32_t>> fltMeshPrimitivePolygons(const FltMeshPrimitive& primitive)
{
    const std::vector<uint32_t>& i = primitive.indices;
    const size_t n = i.size();
    std::vector<std::vector<uint32_t>> polygons;
    switch (primitive.type) {
    case 1:  // triangle strip
        // Each next triangle turns the other way round; swapping the first two of every odd
        // one gives all of them the first one's winding.
        for (size_t k = 0; k + 2 < n; ++k) {
            if (k % 2) polygons.push_back({i[k + 1], i[k], i[k + 2]});
            else polygons.push_back({i[k], i[k + 1], i[k + 2]});
        }
        break;
    case 2:  // triangle fan
        for (size_t k = 0; k + 2 < n; ++k) polygons.push_back({i[0], i[k + 1], i[k + 2]});
        break;
    case 3:  // quadrilateral strip: the strip's zigzag order, walked round each quad
        for (size_t k = 0; 2 * k + 3 < n; ++k)
            polygons.push_back({i[2 * k], i[2 * k + 1], i[2 * k + 3], i[2 * k + 2]});
        break;
    case 4:  // indexed polygon
        if (n >= 3) polygons.push_back(i);
        break;
    default:  // a type this reader does not know draws nothing rather than guessing
        break;
    }
    return polygons;
}

std::string fltJoinContinuations(const char* data, size_t size,
                                 const std::vector<std::pair<const char*, size_t>>& continuations)
{
    constexpr size_t kHeader = 4;  // each continuation's own opcode and length, not record data
    size_t total = data ? size : 0;
    for (const auto& c : continuations)
        if (c.first && c.second > kHeader) total += c.second - kHeader;
    std::string joined;
    joined.reserve(total);
    if (data) joined.append(data, size);
    for (const auto& c : continuations)
        if (c.first && c.second > kHeader) joined.append(c.first + kHeader, c.second - kHeader);
    return joined;
}
