// The name palette record.
#pragma once

#include "reader/FltRecord.h"

// Opcode 114.
class FltRecordNamePalette : public PaletteFltRecord {
public:
    explicit FltRecordNamePalette(unsigned int length) : PaletteFltRecord(length) {}
    int getOpcode() const override { return 114; }
    const char* getHeading() const override { return "\n NAME PALETTE RECORD "; }
};
