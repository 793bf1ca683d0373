// Control records: extension and instance fields.
#include "reader/FltRecordControl.h"

#include <new>

#include "reader/FltBytes.h"
#include "reader/FltDump.h"

namespace {

struct SharedLevelRecords {
    FltRecordPushLevel pushLevel{4};
    FltRecordPopLevel popLevel{4};
    FltRecordPushSubface pushSubface{4};
    FltRecordPopSubface popSubface{4};
};

// Built on first use and never destroyed: records of a parse may outlive any static object.
SharedLevelRecords& sharedLevelRecords()
{
    alignas(SharedLevelRecords) static unsigned char storage[sizeof(SharedLevelRecords)];
    static SharedLevelRecords* const records = ::new (static_cast<void*>(storage)) SharedLevelRecords;
    return *records;
}

}  // namespace

AbstractControlRecord* fltSharedLevelRecord(unsigned int opcode)
{
    SharedLevelRecords& shared = sharedLevelRecords();
    switch (opcode) {
    case 10: return &shared.pushLevel;
    case 11: return &shared.popLevel;
    case 19: return &shared.pushSubface;
    case 20: return &shared.popSubface;
    default: return nullptr;
    }
}

FltSharedLevelRecords fltSharedLevelRecords()
{
    const SharedLevelRecords* records = &sharedLevelRecords();
    return {records, records + 1};
}

void AbstractExtensionControlRecord::decode(const FltBytes& in)
{
    in.chars(4, 8, reserved1);
    in.chars(12, 8, reserved2);
    in.chars(20, 2, reserved3);
    vertexReferenceIndex = in.u16(22);
}

void AbstractExtensionControlRecord::dumpFields(FltDump& out) const
{
    out.u16("vertexReferenceIndex: ", vertexReferenceIndex);
}

void AbstractInstanceRecord::decode(const FltBytes& in)
{
    spare = in.i16(4);
    instanceDefinitionNumber = in.i16(6);
}

void AbstractInstanceRecord::dumpFields(FltDump& out) const
{
    out.i16("spare: ", spare).i16("instanceDefinitionNumber: ", instanceDefinitionNumber);
}
