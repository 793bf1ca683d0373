// External reference and extension attribute records.
#include "reader/FltRecordExternalReference.h"

#include "reader/FltBytes.h"
#include "reader/FltDump.h"

void FltRecordExternalReference::decode(const FltBytes& in)
{
    in.chars(4, 200, asciiPath);
    asciiPath[200] = '\0';
    reserved1 = in.i32(204);
    flags = in.i32(208);
    reserved2 = static_cast<uint16_t>(in.u32(212));
}

void FltRecordExternalReference::dumpFields(FltDump& out) const
{
    const uint32_t bits = static_cast<uint32_t>(flags);
    out.str("asciiPath: ", asciiPath, 200)
        .text("Flags: ").nl()
        .flag("      Color palette override: ", bits & 0x80000000u)
        .flag("      Material palette override: ", bits & 0x40000000u)
        .flag("      Texture and texture mapping palette override: ", bits & 0x20000000u)
        .flag("      Line style palette override: ", bits & 0x10000000u)
        .flag("      Sound palette override: ", bits & 0x08000000u)
        .flag("      Light source palette override: ", bits & 0x04000000u)
        .flag("      Light point palette override: ", bits & 0x02000000u)
        .nl();
}

void FltRecordExtensionAttribute::decode(const FltBytes& in)
{
    in.chars(4, 8, idASCII);
    in.chars(12, 8, idSite);
    reserved = in.u8(20);
    revision = in.u8(21);
    recordCode = in.u16(22);

    delete[] data;
    data = nullptr;
    dataLength = in.size() > 24 ? in.size() - 24 : 0;
    if (dataLength) {
        data = new char[dataLength];
        in.chars(24, dataLength, data);
    }
}

void FltRecordExtensionAttribute::dumpFields(FltDump& out) const
{
    out.str("idASCII: ", idASCII, 8)
        .str("idSite: ", idSite, 8)
        .u16("revision: ", revision)
        .u16("recordCode: ", recordCode);
}
