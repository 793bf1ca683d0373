// The line style palette record.
#pragma once

#include "reader/FltRecord.h"

// Opcode 97.
class FltRecordLineStylePalette : public PaletteFltRecord {
public:
    explicit FltRecordLineStylePalette(unsigned int length) : PaletteFltRecord(length) {}
    int getOpcode() const override { return 97; }
    const char* getHeading() const override { return "\n LINE STYLE PALETTE RECORD "; }
};
