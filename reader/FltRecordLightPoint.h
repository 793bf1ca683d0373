// The light point record.
#pragma once

#include "reader/FltRecord.h"

// Opcode 111.
class FltRecordLightPoint : public PrimaryFltRecord {
public:
    explicit FltRecordLightPoint(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 111; }
    const char* getHeading() const override { return "\n LIGHT POINT RECORD "; }
};
