// Control records: push and pop of level, subface and extension, and the instance records.
#pragma once

#include <cstdint>
#include <functional>

#include "reader/FltRecord.h"

// Parent of the push and pop level and subface records. A control record is 4 bytes
// long; any other length draws a level-1 warning at creation and is kept.
class AbstractControlRecord : public ControlFltRecord {
public:
    explicit AbstractControlRecord(unsigned int length) : ControlFltRecord(length) {}
    ~AbstractControlRecord() override { length = 0; }
};

// Parent of the push and pop extension records. The published form of these records is
// longer than 4 bytes, so each of them draws the opcode factory's length warning: kept on
// purpose.
class AbstractExtensionControlRecord : public ControlFltRecord {
public:
    explicit AbstractExtensionControlRecord(unsigned int length) : ControlFltRecord(length) {}
    ~AbstractExtensionControlRecord() override { length = 0; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    char reserved1[8] = {};
    char reserved2[8] = {};
    char reserved3[2] = {};  // kept as read, not byte-swapped
    uint16_t vertexReferenceIndex = 0;
};

// Opcode 10.
class FltRecordPushLevel : public AbstractControlRecord {
public:
    using AbstractControlRecord::AbstractControlRecord;
    int getOpcode() const override { return 10; }
    const char* getHeading() const override { return "\n PUSH LEVEL RECORD "; }
};

// Opcode 11.
class FltRecordPopLevel : public AbstractControlRecord {
public:
    using AbstractControlRecord::AbstractControlRecord;
    int getOpcode() const override { return 11; }
    const char* getHeading() const override { return "\n POP LEVEL RECORD "; }
};

// Opcode 19.
class FltRecordPushSubface : public AbstractControlRecord {
public:
    using AbstractControlRecord::AbstractControlRecord;
    int getOpcode() const override { return 19; }
    const char* getHeading() const override { return "\n PUSH SUBFACE RECORD "; }
};

// Opcode 20.
class FltRecordPopSubface : public AbstractControlRecord {
public:
    using AbstractControlRecord::AbstractControlRecord;
    int getOpcode() const override { return 20; }
    const char* getHeading() const override { return "\n POP SUBFACE RECORD "; }
};

// Opcode 21.
class FltRecordPushExtension : public AbstractExtensionControlRecord {
public:
    using AbstractExtensionControlRecord::AbstractExtensionControlRecord;
    int getOpcode() const override { return 21; }
    const char* getHeading() const override { return "\n PUSH EXTENSION RECORD "; }
};

// Opcode 22.
class FltRecordPopExtension : public AbstractExtensionControlRecord {
public:
    using AbstractExtensionControlRecord::AbstractExtensionControlRecord;
    int getOpcode() const override { return 22; }
    const char* getHeading() const override { return "\n POP EXTENSION RECORD "; }
};

// A push or pop level or subface record of the usual 4 bytes has no fields, and a large
// database holds two per face. A parse that asks for it (see
// FltCreationVisitor::shareLevelRecords) hands out one shared object per opcode for them,
// which nobody frees and nobody changes.
// The shared object of opcode 10, 11, 19 or 20; null for any other.
AbstractControlRecord* fltSharedLevelRecord(unsigned int opcode);
// Where those shared objects lie: asked once, it tells them from the records a holder must
// free without a call per record.
struct FltSharedLevelRecords {
    const void* first;
    const void* end;
    bool holds(const FltRecord* record) const
    {
        const std::less<const void*> before;
        return !before(record, first) && before(record, end);
    }
};
FltSharedLevelRecords fltSharedLevelRecords();
// Whether a record is one of those shared objects, which its holder must not free.
inline bool fltIsSharedLevelRecord(const FltRecord* record) { return fltSharedLevelRecords().holds(record); }

// Parent of the instance records, 8 bytes: a spare int16 and the instance number.
class AbstractInstanceRecord : public ControlFltRecord {
public:
    using ControlFltRecord::ControlFltRecord;
    ~AbstractInstanceRecord() override { length = 0; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    int16_t spare = 0;
    int16_t instanceDefinitionNumber = 0;
};

// Opcode 61.
class FltRecordInstanceReference : public AbstractInstanceRecord {
public:
    using AbstractInstanceRecord::AbstractInstanceRecord;
    int getOpcode() const override { return 61; }
    const char* getHeading() const override { return "\n INSTANCE REFERENCE RECORD "; }
};

// Opcode 62.
class FltRecordInstanceDefinition : public AbstractInstanceRecord {
public:
    using AbstractInstanceRecord::AbstractInstanceRecord;
    int getOpcode() const override { return 62; }
    const char* getHeading() const override { return "\n INSTANCE DEFINITION RECORD "; }
};
