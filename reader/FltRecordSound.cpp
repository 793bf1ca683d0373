// Sound record and sound palette.
#include "reader/FltRecordSound.h"

#include <string>

#include "reader/FltDump.h"

void FltRecordSound::decode(const FltBytes& in)
{
    in.chars(4, 8, idASCII);
    reserved1 = in.i32(12);
    paletteIndex = in.i32(16);
    reserved2 = in.i32(20);
    offsetX = in.f64(24);
    offsetY = in.f64(32);
    offsetZ = in.f64(40);
    directionI = in.f32(48);
    directionJ = in.f32(52);
    directionK = in.f32(56);
    amplitude = in.f32(60);
    pitchBend = in.f32(64);
    priority = in.f32(68);
    falloff = in.f32(72);
    width = in.f32(76);
    flags = in.u32(80);
    reserved3 = in.i32(84);
}

void FltRecordSound::dumpFields(FltDump& out) const
{
    out.str("idASCII: ", idASCII, 8)
        .i32("paletteIndex: ", paletteIndex)
        .f64("offsetX: ", offsetX)
        .f64("offsetY: ", offsetY)
        .f64("offsetZ: ", offsetZ)
        .f64("directionI: ", directionI)
        .f64("directionJ: ", directionJ)
        .f64("directionK: ", directionK)
        .f64("amplitude: ", amplitude)
        .f64("pitchBend: ", pitchBend)
        .f64("priority: ", priority)
        .f64("falloff: ", falloff)
        .f64("width: ", width)
        .text("flags: ").nl()
        .flag("     doppler: ", flags & 0x80000000u)
        .flag("     absorption: ", flags & 0x40000000u)
        .flag("     delay: ", flags & 0x20000000u);
}

namespace {
constexpr size_t kFirstSoundEntry = 32;
constexpr size_t kSoundEntrySize = 12;
constexpr size_t kPackedNames = 12;
}  // namespace

void FltRecordSoundPalette::decode(const FltBytes& in)
{
    subType = in.i32(4);
    if (subType == 1) {
        maxNumber = in.i32(8);
        actualNumber = in.i32(12);
        totalLength = in.i32(16);
        soundEntries.clear();
        // Only the entries the record holds are read, whatever actualNumber claims.
        const size_t held = in.size() > kFirstSoundEntry ? (in.size() - kFirstSoundEntry) / kSoundEntrySize : 0;
        const size_t wanted = actualNumber > 0 ? static_cast<size_t>(actualNumber) : 0;
        const size_t count = wanted < held ? wanted : held;
        for (size_t i = 0; i < count; ++i) {
            const size_t at = kFirstSoundEntry + i * kSoundEntrySize;
            FltSoundEntry entry;
            entry.index = in.i32(at);
            entry.reserved = in.i32(at + 4);
            entry.fileNameOffset = in.i32(at + 8);
            soundEntries[entry.index] = entry;  // a repeated index keeps the later entry
        }
    } else if (subType == 2) {
        dataLength = in.i32(8);
        // The buffer holds at most the names present in the record, never what the file
        // announces beyond them.
        const size_t held = in.size() > kPackedNames ? in.size() - kPackedNames : 0;
        const size_t wanted = dataLength > 0 ? static_cast<size_t>(dataLength) : 0;
        const size_t n = wanted < held ? wanted : held;
        char* names = new char[n + 1];
        in.chars(kPackedNames, n, names);
        names[n] = '\0';
        delete[] packedData;
        packedData = names;
        packedDataSize = n;
    }
}

void FltRecordSoundPalette::dumpFields(FltDump& out) const
{
    out.i32("subType : ", subType);
    if (subType == 1) {
        out.i32("maxNumber : ", maxNumber).i32("actualNumber : ", actualNumber).i32("totalLength : ", totalLength);
        for (const auto& [index, entry] : soundEntries)
            out.text("fileNameOffset[").num(index).text("] : ").num(entry.fileNameOffset).nl();
    } else if (subType == 2) {
        // The names are NUL-separated: each separator shows as a blank, the padding after
        // the last name is left out.
        std::string names(packedData ? packedData : "", packedDataSize);
        while (!names.empty() && names.back() == '\0') names.pop_back();
        for (char& c : names)
            if (c == '\0') c = ' ';
        out.i32("dataLength : ", dataLength).text("packedData : ").text(names.c_str()).nl();
    }
}
