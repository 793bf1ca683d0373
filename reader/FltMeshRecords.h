// Mesh records: a mesh (opcode 84), its local vertex pool (85) and its primitives (86).
//
// The parser keeps these records as unknown records, so nothing here touches the scene
// graph: each decoder reads one record's bytes into plain values. A pool or primitive
// longer than 65535 bytes goes on in continuation records; join them with
// fltJoinContinuations first, then decode the joined bytes (the decoders trust `size`,
// never the record's own 16-bit length field).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// The drawing fields a mesh record carries, laid out as a face's (see below).
// A mesh is a face with 4 reserved bytes after its name, so every later field sits 4 bytes
// further on; the full record is 84 bytes.
struct FltMeshFields {
    char id[9] = {};
    int8_t drawType = 0;
    int8_t textureWhite = 0;
    uint16_t colorNameIndex = 0;
    int8_t templateBillboard = 0;
    int16_t texturePatternIndex = 0;
    int16_t materialIndex = 0;
    uint16_t transparency = 0;
    int32_t flags = 0;
    uint8_t lightMode = 0;
    uint8_t packedColor[4] = {};  // file order: alpha, blue, green, red
    int16_t textureMappingIndex = 0;
    int32_t primaryColorIndex = 0;
    int32_t alternateColorIndex = 0;
};

// data points at the record's opcode; size = record length. False when the record is
// shorter than 84 bytes; the fields it does hold are filled all the same.
bool fltDecodeMesh(const char* data, size_t size, FltMeshFields& out);

// One vertex of a local vertex pool; absent attributes stay zero and their has* flag false.
struct FltPoolVertex {
    double position[3] = {};
    uint32_t colorIndex = 0;
    uint8_t packedColor[4] = {};  // alpha, blue, green, red
    float normal[3] = {};
    float uv[2] = {};
};

struct FltLocalVertexPool {
    uint32_t attributeMask = 0;
    bool hasPosition = false, hasColorIndex = false, hasPackedColor = false, hasNormal = false, hasUv = false;
    std::vector<FltPoolVertex> vertices;
};

// False when the 12-byte header is cut or the record holds fewer vertices than it
// announces; the vertices that fit are kept. UV layers 1 to 7 are stepped over, not kept.
bool fltDecodeLocalVertexPool(const char* data, size_t size, FltLocalVertexPool& out);

struct FltMeshPrimitive {
    int16_t type = 0;  // 1 triangle strip, 2 triangle fan, 3 quadrilateral strip, 4 indexed polygon
    uint16_t indexSize = 0;  // bytes per index: 1, 2 or 4
    std::vector<uint32_t> indices;
};

// False when the 12-byte header is cut, the index size is not 1, 2 or 4, or the record
// holds fewer indices than it announces; the indices that fit are kept.
bool fltDecodeMeshPrimitive(const char* data, size_t size, FltMeshPrimitive& out);

// The polygons a primitive draws, as lists of pool indices, all wound as the primitive's first one.
std::vector<std::vector<uint32_t>> fltMeshPrimitivePolygons(const FltMeshPrimitive& primitive);

// The record's bytes followed by each continuation's bytes without its 4-byte header.
std::string fltJoinContinuations(const char* data, size_t size,
                                 const std::vector<std::pair<const char*, size_t>>& continuations);
