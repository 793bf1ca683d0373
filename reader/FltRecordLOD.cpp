// Level-of-detail records, current and obsolete.
#include "reader/FltRecordLOD.h"

#include "reader/FltBytes.h"
#include "reader/FltDump.h"

void FltRecordOLDLOD::decode(const FltBytes& in)
{
    in.chars(4, 8, idASCII);
    switchInDistance = in.u32(12);
    switchOutDistance = in.u32(16);
    id1specialEffect = in.i16(20);
    id2specialEffect = in.i16(22);
    flags = in.i32(24);
    XcenterCoordinate = in.i32(28);
    YcenterCoordinate = in.i32(32);
    ZcenterCoordinate = in.i32(36);
}

void FltRecordOLDLOD::dumpFields(FltDump& out) const
{
    const uint32_t bits = static_cast<uint32_t>(flags);
    out.str("idASCII: ", idASCII, 8)
        .u32("switchInDistance: ", switchInDistance)
        .u32("switchOutDistance: ", switchOutDistance)
        .i16("id1specialEffect: ", id1specialEffect)
        .i16("id2specialEffect: ", id2specialEffect)
        .text("flags: ").nl()
        .flag("      Use Previous Slant Range: ", bits & 0x80000000u)
        .flag("      SPT Flag: ", bits & 0x40000000u)
        .flag("      FreezeCenter (don't recalculate): ", bits & 0x20000000u)
        .i32("XcenterCoordinate: ", XcenterCoordinate)
        .i32("YcenterCoordinate: ", YcenterCoordinate)
        .i32("ZcenterCoordinate: ", ZcenterCoordinate);
}

void FltRecordLOD::decode(const FltBytes& in)
{
    in.chars(4, 8, idASCII);
    spare = in.i32(12);
    switchInDistance = in.f64(16);
    switchOutDistance = in.f64(24);
    id1specialEffect = in.i16(32);
    id2specialEffect = in.i16(34);
    flags = in.i32(36);
    XcenterCoordinate = in.f64(40);
    YcenterCoordinate = in.f64(48);
    ZcenterCoordinate = in.f64(56);
    transitionRange = in.f64(64);
}

void FltRecordLOD::dumpFields(FltDump& out) const
{
    const uint32_t bits = static_cast<uint32_t>(flags);
    out.str("idASCII: ", idASCII, 8)
        .f64("switchInDistance: ", switchInDistance)
        .f64("switchOutDistance: ", switchOutDistance)
        .i16("id1specialEffect: ", id1specialEffect)
        .i16("id2specialEffect: ", id2specialEffect)
        .text("flags: ").nl()
        .flag("      Use Previous Slant Range: ", bits & 0x80000000u)
        .flag("      FreezeCenter (don't recalculate): ", bits & 0x20000000u)
        .f64("XcenterCoordinate: ", XcenterCoordinate)
        .f64("YcenterCoordinate: ", YcenterCoordinate)
        .f64("ZcenterCoordinate: ", ZcenterCoordinate)
        .f64("transitionRange: ", transitionRange);
}
