// Control records: extension and instance fields.
#include "reader/FltRecordControl.h"

#include "reader/FltBytes.h"
#include "reader/FltDump.h"

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
