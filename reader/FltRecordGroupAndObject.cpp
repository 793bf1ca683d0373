// Group, object, comment, long identifier and replicate records.
#include "reader/FltRecordGroupAndObject.h"

#include "reader/FltBytes.h"
#include "reader/FltDump.h"

void FltRecordGroup::decode(const FltBytes& in)
{
    in.chars(4, 8, idASCII);
    relativePriority = in.i16(12);
    spare = in.i16(14);
    flags = in.u32(16);
    id1SpecialEffect = in.i16(20);
    id2SpecialEffect = in.i16(22);
    significance = in.i16(24);
    layerCode = in.u8(26);
    spare2 = in.u8(27);
    if (formatRevision > 1420) reserved = in.i32(28);
}

void FltRecordGroup::dumpFields(FltDump& out) const
{
    out.str("idASCII: ", idASCII, 8)
        .i16("relativePriority: ", relativePriority)
        .text("flags: ").nl()
        .flag("     forward animation: ", flags & 0x40000000u)
        .flag("     swing animation: ", flags & 0x20000000u)
        .flag("     bounding box follows: ", flags & 0x10000000u)
        .flag("     freeze bounding box: ", flags & 0x08000000u)
        .flag("     default parent: ", flags & 0x04000000u)
        .flag("     backward animation: ", flags & 0x02000000u)
        .i16("id1SpecialEffect: ", id1SpecialEffect)
        .i16("id2SpecialEffect: ", id2SpecialEffect)
        .i16("significance: ", significance)
        .u16("layerCode: ", layerCode);
}

void FltRecordObject::decode(const FltBytes& in)
{
    in.chars(4, 8, idASCII);
    flags = in.i32(12);
    relativePriority = in.i16(16);
    transparency = in.u16(18);
    id1SpecialEffect = in.i16(20);
    id2SpecialEffect = in.i16(22);
    significance = in.i16(24);
    spare = in.i16(26);
}

void FltRecordObject::dumpFields(FltDump& out) const
{
    const uint32_t bits = static_cast<uint32_t>(flags);
    out.str("idASCII: ", idASCII, 8)
        .i16("relativePriority: ", relativePriority)
        .u16("transparency: ", transparency)
        .text("flags: ").nl()
        .flag("don t display in daylight: ", bits & 0x80000000u)
        .flag(" ---------    at dusk: ", bits & 0x40000000u)
        .flag(" ---------    at night: ", bits & 0x20000000u)
        .flag("don t illuminate: ", bits & 0x10000000u)
        .flag("flat shaded: ", bits & 0x08000000u)
        .flag("group's shadow object: ", bits & 0x04000000u)
        .i16("id1SpecialEffect: ", id1SpecialEffect)
        .i16("id2SpecialEffect: ", id2SpecialEffect)
        .i16("significance: ", significance)
        .i16("spare: ", spare);
}

namespace {
// The bytes from offset 4 to the record's end, in a new zero-terminated array.
char* copyTextToEnd(const FltBytes& in, unsigned int length)
{
    const size_t n = length > 4 ? length - 4 : 0;
    char* text = new char[n + 1];
    in.chars(4, n, text);
    text[n] = '\0';
    return text;
}
}  // namespace

void FltRecordComment::decode(const FltBytes& in)
{
    // Allocated before the old text goes, so that a failed allocation leaves it in place.
    char* text = copyTextToEnd(in, length);
    delete[] textDescription;
    textDescription = text;
}

void FltRecordComment::dumpFields(FltDump& out) const { out.text("textDescription: ").text(getText()).nl(); }

void FltRecordLongID::decode(const FltBytes& in)
{
    char* text = copyTextToEnd(in, length);
    delete[] idASCII;
    idASCII = text;
}

void FltRecordLongID::dumpFields(FltDump& out) const { out.text("idASCII: ").text(getText()).nl(); }

void FltRecordReplicate::decode(const FltBytes& in)
{
    numberOfReplications = in.i32(4);
    reserved = in.i32(8);
}

void FltRecordReplicate::dumpFields(FltDump& out) const { out.i32("numberOfReplications: ", numberOfReplications); }
