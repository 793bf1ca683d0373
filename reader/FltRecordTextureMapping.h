// The texture mapping palette record.
#pragma once

#include "reader/FltRecord.h"

// Opcode 112.
class FltRecordTextureMappingPalette : public PaletteFltRecord {
public:
    explicit FltRecordTextureMappingPalette(unsigned int length) : PaletteFltRecord(length) {}
    int getOpcode() const override { return 112; }
    const char* getHeading() const override { return "\n TEXTURE MAPPING PALETTE RECORD "; }
};
