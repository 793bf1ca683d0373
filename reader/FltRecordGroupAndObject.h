// Group, object, comment, long identifier and replicate records.
#pragma once

#include "reader/FltRecord.h"

// Opcode 2.
class FltRecordGroup : public PrimaryFltRecord, public FltVersion {
public:
    explicit FltRecordGroup(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 2; }
    const char* getHeading() const override { return "\n GROUP RECORD "; }
};

// Opcode 4.
class FltRecordObject : public PrimaryFltRecord {
public:
    explicit FltRecordObject(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 4; }
    const char* getHeading() const override { return "\n OBJECT RECORD "; }
};

// Opcode 31.
class FltRecordComment : public AncillaryFltRecord {
public:
    explicit FltRecordComment(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 31; }
    const char* getHeading() const override { return "\n COMMENT RECORD "; }
};

// Opcode 33.
class FltRecordLongID : public AncillaryFltRecord {
public:
    explicit FltRecordLongID(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 33; }
    const char* getHeading() const override { return "\n LONG_ID RECORD "; }
};

// Opcode 60.
class FltRecordReplicate : public AncillaryFltRecord {
public:
    explicit FltRecordReplicate(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 60; }
    const char* getHeading() const override { return "\n REPLICATE RECORD "; }
};
