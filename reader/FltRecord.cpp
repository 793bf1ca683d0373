// Dump and decode mechanics shared by every record class.
#include "reader/FltRecord.h"

#include "reader/FltBytes.h"
#include "reader/FltDump.h"
#include "reader/FltRecordAllocator.h"

void* AbstractFltRecord::operator new(std::size_t size) { return fltrecordmemory::allocate(size); }

void AbstractFltRecord::operator delete(void* p, std::size_t size) noexcept { fltrecordmemory::release(p, size); }

void AbstractFltRecord::writeHeadingBlock(FltDump& out) const
{
    out.headingBlock(getHeading(), getCategoryName(), getOpcode()).unum(getLength()).text(" --").nl();
}

std::ostream& AbstractFltRecord::opcodeAndLength(std::ostream& os) const
{
    FltDump out(os);
    out.text("  (").text(getCategoryName()).text(")").nl();
    out.text("-- Opcode: ").num(getOpcode()).text("  Length: ").unum(getLength()).text(" --").nl();
    return os;
}

std::ostream& AbstractFltRecord::nameOpcodeAndLength(std::ostream& os) const
{
    {
        FltDump out(os);
        out.text(getHeading()).nl();
    }
    return opcodeAndLength(os);
}

std::ostream& AbstractFltRecord::properties(std::ostream& os) const
{
    FltDump out(os);
    writeHeadingBlock(out);
    dumpFields(out);
    return os;
}

void AbstractFltRecord::getPropertiesFromData(char* data) { decodeFrom(data, data ? length : 0); }

size_t AbstractFltRecord::decodeFrom(const char* data, size_t size)
{
    const FltBytes in(data, size);
    decode(in);
    return in.truncated() ? in.wanted() - size : 0;
}

void AbstractFltRecord::decode(const FltBytes&) {}

void AbstractFltRecord::dumpFields(FltDump&) const {}

FltCategory fltCategoryFromString(const std::string& category)
{
    if (category == "PRIMARY_RECORD") return FltCategory::Primary;
    if (category == "ANCILLARY_RECORD") return FltCategory::Ancillary;
    if (category == "CONTROL_RECORD") return FltCategory::Control;
    if (category == "PALETTE_RECORD") return FltCategory::Palette;
    return FltCategory::Unknown;
}
