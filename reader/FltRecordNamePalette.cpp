// Name palette record: the entry walk and the dump.
#include "reader/FltRecordNamePalette.h"

#include "reader/FltBytes.h"
#include "reader/FltDump.h"

namespace {
constexpr size_t kFirstEntryOffset = 10;
constexpr size_t kEntryHeader = 6;
constexpr size_t kLongestName = 80;
}  // namespace

void FltRecordNamePalette::decode(const FltBytes& in)
{
    numberOfNames = in.i32(4);
    nextAvailableIndex = in.u16(8);
    names.clear();
    // Entries are walked only while they lie inside the record: an entry shorter than its
    // own header or running past the end stops the walk, whatever the count says.
    size_t at = kFirstEntryOffset;
    for (int32_t k = 0; k < numberOfNames; ++k) {
        if (!in.has(at, kEntryHeader)) break;
        const uint32_t entryLength = in.u32(at);
        if (entryLength < kEntryHeader || !in.has(at, entryLength)) break;
        const size_t nameBytes = entryLength - kEntryHeader;
        char name[kLongestName + 1] = {};
        in.chars(at + kEntryHeader, nameBytes < kLongestName ? nameBytes : kLongestName, name);
        names[in.u16(at + 4)] = name;
        at += entryLength;
    }
}

void FltRecordNamePalette::dumpFields(FltDump& out) const
{
    out.text("numberOfNames:").num(numberOfNames).nl();
    out.text("nextAvailableIndex:").unum(nextAvailableIndex).nl();
    for (const auto& [index, name] : names) out.text("name[").num(index).text("] :").text(name.c_str()).nl();
}
