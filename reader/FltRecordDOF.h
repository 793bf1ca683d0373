// The degree-of-freedom record.
#pragma once

#include "reader/FltRecord.h"

// Opcode 14.
class FltRecordDOF : public PrimaryFltRecord {
public:
    explicit FltRecordDOF(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 14; }
    const char* getHeading() const override { return "\n DOF RECORD "; }
};
