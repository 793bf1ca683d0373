// The texture pattern palette record.
#pragma once

#include <cstdint>

#include "reader/FltRecord.h"

// Texture pattern record, opcode 64. The layout follows the length alone: a 96-byte record
// holds an 80-byte file name (index at 84), any other length a 200-byte one (index at 204).
class FltRecordTexturePattern : public PaletteFltRecord {
public:
    explicit FltRecordTexturePattern(unsigned int length) : PaletteFltRecord(length) {}
    int getOpcode() const override { return 64; }
    const char* getHeading() const override { return "\n TEXTURE_PATTERN RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    char fileName[201] = {};
    int32_t patternIndex = 0;
    int32_t XlocationInTexturePalette = 0;
    int32_t YlocationInTexturePalette = 0;
};
