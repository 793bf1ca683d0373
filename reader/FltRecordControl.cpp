// Control records: the length check of push and pop records, extension and instance fields.
#include "reader/FltRecordControl.h"

#include "diagnostics/FltWarningMessageConsole.h"
#include "reader/FltBytes.h"
#include "reader/FltDump.h"

namespace {
void checkControlLength(unsigned int length)
{
    if (length != 4)
        FltWarningMessageConsole::notifyMessage("WARNING ! this ControlRecord hasn t the correct length !", 1,
                                                false);
}
}  // namespace

AbstractControlRecord::AbstractControlRecord(unsigned int length) : ControlFltRecord(length)
{
    checkControlLength(length);
}

AbstractExtensionControlRecord::AbstractExtensionControlRecord(unsigned int length) : ControlFltRecord(length)
{
    checkControlLength(length);
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
