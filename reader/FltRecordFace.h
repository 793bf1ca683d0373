// The face record: one polygon's colour, material, texture and drawing attributes.
#pragma once

#include <cstdint>

#include "reader/FltRecord.h"

// Face record, opcode 5, 80 bytes from revision 1500 (64 bytes before). Offsets 64 to 79
// are read only from revision 1500 on; an older file gets fixed defaults there instead, so
// that the geometry builder needs no branch on the revision.
class FltRecordFace : public PrimaryFltRecord, public FltVersion {
public:
    explicit FltRecordFace(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 5; }
    const char* getHeading() const override { return "\n FACE RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    bool isNoColor() const { return (static_cast<uint32_t>(flags) & 0x40000000u) != 0; }
    bool isPackedColor() const { return (static_cast<uint32_t>(flags) & 0x10000000u) != 0; }
    bool isHidden() const { return (static_cast<uint32_t>(flags) & 0x04000000u) != 0; }

    char idField[9] = {};
    int32_t IRColorCode = 0;
    int16_t relativePriority = 0;
    int8_t drawType = 0;
    int8_t textureWhite = 0;
    uint16_t colorNameIndex = 0;
    uint16_t alternateColorNameIndex = 0;
    int8_t reserved1 = 0;
    int8_t templateBillboard = 0;
    int16_t detailTexturePatternIndex = 0;
    int16_t texturePatternIndex = 0;
    int16_t materialIndex = 0;
    int16_t surfaceMaterialCode = 0;
    int16_t idFeature = 0;
    int32_t IRMaterialCode = 0;
    uint16_t transparency = 0;
    uint8_t LODGenerationControl = 0;
    uint8_t lineStyleIndex = 0;
    int32_t flags = 0;
    uint8_t lightMode = 0;
    uint8_t reserved2 = 0;
    uint16_t reserved3 = 0;
    int32_t reserved4 = 0;
    uint8_t packedColor[4] = {};           // file order: alpha, blue, green, red
    uint8_t alternatePackedColor[4] = {};  // same order
    // From revision 1500.
    int16_t textureMappingIndex = 0;
    int16_t reserved5 = 0;
    int32_t primaryColorIndex = 0;
    int32_t alternateColorIndex = 0;
    int16_t reserved6 = 0;
    int16_t reserved7 = 0;
};
