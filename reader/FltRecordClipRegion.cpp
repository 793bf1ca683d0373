// The clip region record.
#include "reader/FltRecordClipRegion.h"

#include "reader/FltBytes.h"
#include "reader/FltDump.h"

namespace {
void dumpPoint(FltDump& out, const char* label, const double point[3])
{
    out.text(label).real(point[0]).text("  ").real(point[1]).text("  ").real(point[2]).nl();
}
}  // namespace

void FltRecordClipRegion::decode(const FltBytes& in)
{
    in.chars(4, 8, idASCII);
    reserved1 = in.i32(12);
    reserved2 = in.i16(16);
    for (size_t f = 0; f < 6; ++f) flags[f] = in.u8(18 + f);
    in.f64s(24, clipRegion1, 3);
    in.f64s(48, clipRegion2, 3);
    in.f64s(72, clipRegion3, 3);
    in.f64s(96, clipRegion4, 3);
    for (size_t coef = 0; coef < 4; ++coef) in.f64s(120 + 40 * coef, clipRegionCoefs[coef], kPlanes);
}

void FltRecordClipRegion::dumpFields(FltDump& out) const
{
    out.str("idASCII: ", idASCII, 8).i32("reserved1: ", reserved1).i16("reserved2: ", reserved2);
    // The five plane enable bytes on one line, plane 0 first.
    out.text("flags:");
    for (int plane = 0; plane < kPlanes; ++plane) out.ch(' ').unum(flags[plane]);
    out.nl();
    dumpPoint(out, "clipRegion1: ", clipRegion1);
    dumpPoint(out, "clipRegion2: ", clipRegion2);
    dumpPoint(out, "clipRegion3: ", clipRegion3);
    dumpPoint(out, "clipRegion4: ", clipRegion4);
    // One line per plane: A, B, C and D.
    out.text("clipRegionCoefs: ").nl();
    for (int plane = 0; plane < kPlanes; ++plane) {
        out.text("|  ");
        for (int coef = 0; coef < 4; ++coef) out.real(clipRegionCoefs[coef][plane]).text("  ");
        out.text("  |").nl();
    }
}
