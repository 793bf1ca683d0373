// The colour palette record.
#pragma once

#include "reader/FltRecord.h"

// Opcode 32.
class FltRecordColorPalette : public PaletteFltRecord, public FltVersion {
public:
    explicit FltRecordColorPalette(unsigned int length) : PaletteFltRecord(length) {}
    int getOpcode() const override { return 32; }
    const char* getHeading() const override { return "\n COLOR PALETTE RECORD "; }
};
