// The face record.
#pragma once

#include "reader/FltRecord.h"

// Opcode 5.
class FltRecordFace : public PrimaryFltRecord, public FltVersion {
public:
    explicit FltRecordFace(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 5; }
    const char* getHeading() const override { return "\n FACE RECORD "; }
};
