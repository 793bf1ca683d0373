// The line style palette record.
#pragma once

#include <cstdint>

#include "reader/FltRecord.h"

// Line style palette record, opcode 97, 12 bytes: one line style (index, 16-bit on/off
// pattern, width in pixels).
class FltRecordLineStylePalette : public PaletteFltRecord {
public:
    explicit FltRecordLineStylePalette(unsigned int length) : PaletteFltRecord(length) {}
    int getOpcode() const override { return 97; }
    const char* getHeading() const override { return "\n LINE STYLE PALETTE RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    int16_t lineStyleIndex = 0;
    uint16_t patternMask = 0;
    int32_t lineWidth = 0;
};
