// Level-of-detail records, current and obsolete.
#pragma once

#include "reader/FltRecord.h"

// Opcode 3.
class FltRecordOLDLOD : public PrimaryFltRecord {
public:
    explicit FltRecordOLDLOD(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 3; }
    const char* getHeading() const override { return "\n OLD LEVEL_OF_DETAIL (LOD) RECORD (OBSOLETE) "; }
};

// Opcode 73.
class FltRecordLOD : public PrimaryFltRecord {
public:
    explicit FltRecordLOD(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 73; }
    const char* getHeading() const override { return "\n LEVEL_OF_DETAIL (LOD) RECORD "; }
};
