// Line style palette record: decoding and dump.
#include "reader/FltRecordLineStyle.h"

#include "reader/FltBytes.h"
#include "reader/FltDump.h"

void FltRecordLineStylePalette::decode(const FltBytes& in)
{
    lineStyleIndex = in.i16(4);
    patternMask = in.u16(6);
    lineWidth = in.i32(8);
}

void FltRecordLineStylePalette::dumpFields(FltDump& out) const
{
    out.i16("lineStyleIndex: ", lineStyleIndex).u16("patternMask: ", patternMask).i32("lineWidth: ", lineWidth);
}
