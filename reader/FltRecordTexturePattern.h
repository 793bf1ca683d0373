// The texture pattern palette record.
#pragma once

#include "reader/FltRecord.h"

// Opcode 64.
class FltRecordTexturePattern : public PaletteFltRecord {
public:
    explicit FltRecordTexturePattern(unsigned int length) : PaletteFltRecord(length) {}
    int getOpcode() const override { return 64; }
    const char* getHeading() const override { return "\n TEXTURE_PATTERN RECORD "; }
};
