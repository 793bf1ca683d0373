// The clip region record.
#pragma once

#include "reader/FltRecord.h"

// Opcode 98.
class FltRecordClipRegion : public PrimaryFltRecord {
public:
    explicit FltRecordClipRegion(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 98; }
    const char* getHeading() const override { return "\n CLIP REGION RECORD "; }
};
