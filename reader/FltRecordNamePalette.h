// The name palette record.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "reader/FltRecord.h"

// Name palette record, opcode 114, variable length: a count, the next free index, then the
// entries (a 32-bit entry length, a 16-bit index and the name). Names longer than 80
// characters are cut to 80; a repeated index keeps the later name.
class FltRecordNamePalette : public PaletteFltRecord {
public:
    explicit FltRecordNamePalette(unsigned int length) : PaletteFltRecord(length) {}
    int getOpcode() const override { return 114; }
    const char* getHeading() const override { return "\n NAME PALETTE RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    int32_t numberOfNames = 0;
    uint16_t nextAvailableIndex = 0;
    std::map<int, std::string> names;
};
