// External reference and extension attribute records.
#pragma once

#include "reader/FltRecord.h"

// Opcode 63.
class FltRecordExternalReference : public PrimaryFltRecord {
public:
    explicit FltRecordExternalReference(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 63; }
    const char* getHeading() const override { return "\n EXTERNAL REFERENCE RECORD "; }
};

// Opcode 100.
class FltRecordExtensionAttribute : public AncillaryFltRecord {
public:
    explicit FltRecordExtensionAttribute(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 100; }
    const char* getHeading() const override { return "\n EXTENSION ATTRIBUTE RECORD "; }
};
