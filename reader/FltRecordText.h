// The text record.
#pragma once

#include "reader/FltRecord.h"

// Opcode 95.
class FltRecordText : public PrimaryFltRecord {
public:
    explicit FltRecordText(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 95; }
    const char* getHeading() const override { return "\n TEXT RECORD "; }
};
