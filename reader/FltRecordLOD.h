// Level-of-detail records: the current one and the obsolete integer one of old databases.
#pragma once

#include <cstdint>

#include "reader/FltRecord.h"

// Old level-of-detail record, opcode 3, 40 bytes. Distances and centre coordinates are
// integers here; the converter widens them into a current LOD record.
class FltRecordOLDLOD : public PrimaryFltRecord {
public:
    explicit FltRecordOLDLOD(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 3; }
    const char* getHeading() const override { return "\n OLD LEVEL_OF_DETAIL (LOD) RECORD (OBSOLETE) "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    char idASCII[9] = {};
    uint32_t switchInDistance = 0;
    uint32_t switchOutDistance = 0;
    int16_t id1specialEffect = 0;
    int16_t id2specialEffect = 0;
    int32_t flags = 0;
    int32_t XcenterCoordinate = 0;
    int32_t YcenterCoordinate = 0;
    int32_t ZcenterCoordinate = 0;
};

// Level-of-detail record, opcode 73, 80 bytes. The flag bit 0x40000000 stays in the word
// but is not printed for this record.
class FltRecordLOD : public PrimaryFltRecord {
public:
    explicit FltRecordLOD(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 73; }
    const char* getHeading() const override { return "\n LEVEL_OF_DETAIL (LOD) RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    char idASCII[9] = {};
    int32_t spare = 0;
    double switchInDistance = 0;
    double switchOutDistance = 0;
    int16_t id1specialEffect = 0;
    int16_t id2specialEffect = 0;
    int32_t flags = 0;
    double XcenterCoordinate = 0;
    double YcenterCoordinate = 0;
    double ZcenterCoordinate = 0;
    double transitionRange = 0;
};
