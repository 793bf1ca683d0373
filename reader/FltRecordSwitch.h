// The switch record.
#pragma once

#include "reader/FltRecord.h"

// Opcode 96.
class FltRecordSwitch : public PrimaryFltRecord {
public:
    explicit FltRecordSwitch(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 96; }
    const char* getHeading() const override { return "\n SWITCH RECORD "; }
};
