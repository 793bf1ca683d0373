// Multitexture and UV list records: the extra texture layers of a face and their
// per-vertex coordinates.
#pragma once

#include <cstddef>
#include <cstdint>

#include "reader/FltRecord.h"

// One texture layer of a multitexture record.
struct FltTextureLayer {
    uint16_t texture = 0;  // texture pattern index
    uint16_t effect = 0;
    uint16_t mapping = 0;  // texture mapping index
    uint16_t data = 0;
};

// Multitexture record, opcode 52, 8 bytes plus 8 per present layer. Layer n is present when
// bit n of the attribute mask, counted from the least significant bit, is set; a mask whose
// only set bits are high bits thus selects no layer. This reading is kept on purpose.
class FltRecordMultitexture : public AncillaryFltRecord {
public:
    explicit FltRecordMultitexture(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 52; }
    const char* getHeading() const override { return "\n MULTI TEXTURE RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;
    bool hasLayerN(int n) const;

    int32_t attributeMask = 0;
    FltTextureLayer layer[8];
};

// UV list record, opcode 53: per vertex of the face's vertex list, a u and v pair for each
// present layer (two pairs, at 0% and 100%, when the list belongs to a morph vertex list).
// Layers follow the multitexture record's least-significant-bit rule. The factory never
// creates this class (opcode 53 stays an unknown record), so nothing sets vertexType.
class FltRecordUVList : public AncillaryFltRecord {
public:
    enum VertexType { PlainVertices = 0, MorphVertices = 1 };

    explicit FltRecordUVList(unsigned int length) : AncillaryFltRecord(length) {}
    ~FltRecordUVList() override { delete[] uv; }
    FltRecordUVList(const FltRecordUVList&) = delete;
    FltRecordUVList& operator=(const FltRecordUVList&) = delete;
    int getOpcode() const override { return 53; }
    const char* getHeading() const override { return "\n UV LIST RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    int getVertexType() const { return vertexType; }
    bool hasLayerN(int n) const;
    // The coordinates of one vertex on one layer; false (and zeros) when the layer is absent
    // or the vertex is not in the record.
    bool getUV(int vertex, int layerNumber, double& u, double& v) const;
    bool getMorphUV(int vertex, int layerNumber, double& u0, double& v0, double& u100, double& v100) const;

    int vertexType = PlainVertices;
    int32_t attributeMask = 0;
    size_t uvCount = 0;   // float32 values kept from offset 8 on
    float* uv = nullptr;  // uvCount values in file order

private:
    int presentLayers() const;
    // The index in uv of the first value of (vertex, layer), or -1 when it is not there.
    long long firstValue(int vertex, int layerNumber, int valuesPerLayer) const;
};
