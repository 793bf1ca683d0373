// Colour palette record: the three revision layouts and the colour name entries.
#include "reader/FltRecordColorPalette.h"

#include <cstring>
#include <string>
#include <utility>

#include "reader/FltBytes.h"
#include "reader/FltDump.h"

// ---- FltColorEntry ----

FltColorEntry::FltColorEntry(const FltColorEntry& other)
    : length(other.length), reserved1(other.reserved1), index(other.index), reserved2(other.reserved2)
{
    setName(other.name, other.nameSize_);
}

FltColorEntry& FltColorEntry::operator=(const FltColorEntry& other)
{
    if (this == &other) return *this;
    length = other.length;
    reserved1 = other.reserved1;
    index = other.index;
    reserved2 = other.reserved2;
    setName(other.name, other.nameSize_);
    return *this;
}

FltColorEntry::FltColorEntry(FltColorEntry&& other) noexcept
    : length(other.length),
      reserved1(other.reserved1),
      index(other.index),
      reserved2(other.reserved2),
      name(std::exchange(other.name, nullptr)),
      nameSize_(std::exchange(other.nameSize_, 0))
{
}

FltColorEntry& FltColorEntry::operator=(FltColorEntry&& other) noexcept
{
    if (this == &other) return *this;
    length = other.length;
    reserved1 = other.reserved1;
    index = other.index;
    reserved2 = other.reserved2;
    delete[] name;
    name = std::exchange(other.name, nullptr);
    nameSize_ = std::exchange(other.nameSize_, 0);
    return *this;
}

void FltColorEntry::setName(const char* bytes, size_t n)
{
    char* copy = nullptr;
    if (bytes && n > 0) {
        // One byte more than the entry holds, so that a name without its own terminator
        // still ends inside the copy.
        copy = new char[n + 1];
        std::memcpy(copy, bytes, n);
        copy[n] = '\0';
    }
    delete[] name;
    name = copy;
    nameSize_ = copy ? n : 0;
}

// ---- FltRecordColorPalette ----

namespace {

constexpr size_t kNamesCountOffset = 4228;
constexpr size_t kFirstNameOffset = 4232;
constexpr size_t kNameEntryHeader = 8;

uint32_t rgb(uint32_t red, uint32_t green, uint32_t blue) { return red | (green << 8) | (blue << 16); }

}  // namespace

void FltRecordColorPalette::decode(const FltBytes& in)
{
    if (formatRevision <= 13) {
        // 32 base colours, each spread over 128 intensities from black up to 127/128 of the
        // colour; alpha stays 0.
        for (int b = 0; b < 32; ++b) {
            const size_t at = 4 + 3 * static_cast<size_t>(b);
            const uint8_t red = in.u8(at), green = in.u8(at + 1), blue = in.u8(at + 2);
            for (int i = 0; i < 128; ++i) {
                const double f = i * 0.0078125;
                colors[128 * b + i] = rgb(static_cast<uint32_t>(red * f), static_cast<uint32_t>(green * f),
                                          static_cast<uint32_t>(blue * f));
            }
        }
        for (int k = 0; k < 56; ++k) {
            const size_t at = 100 + 3 * static_cast<size_t>(k);
            colors[4096 + k] = rgb(in.u8(at), in.u8(at + 1), in.u8(at + 2));
        }
        return;
    }
    if (formatRevision <= 1420) {
        for (int c = 0; c < 512; ++c) colors[c] = in.u32(4 + 4 * static_cast<size_t>(c));
        return;
    }
    in.chars(4, sizeof reserved, reserved);
    for (int c = 0; c < 1024; ++c) colors[c] = in.u32(132 + 4 * static_cast<size_t>(c));
    decodeColorNames(in);
}

void FltRecordColorPalette::decodeColorNames(const FltBytes& in)
{
    if (length <= kNamesCountOffset) {
        numberOfColorNames = 0;
        return;
    }
    numberOfColorNames = in.i32(kNamesCountOffset);
    // Entries are walked only while they lie inside the record: an entry shorter than its
    // own header or running past the end stops the walk, whatever the count says.
    size_t at = kFirstNameOffset;
    for (int32_t k = 0; k < numberOfColorNames; ++k) {
        if (!in.has(at, kNameEntryHeader)) break;
        const uint16_t entryLength = in.u16(at);
        if (entryLength < kNameEntryHeader || !in.has(at, entryLength)) break;
        const size_t nameBytes = entryLength - kNameEntryHeader;
        std::string text(nameBytes, '\0');
        in.chars(at + kNameEntryHeader, nameBytes, &text[0]);

        // A later entry for the same index replaces the earlier one.
        FltColorEntry& entry = setOfColorEntries[in.i16(at + 4)];
        entry.length = entryLength;
        entry.reserved1 = in.u16(at + 2);
        entry.index = in.i16(at + 4);
        entry.reserved2 = in.u16(at + 6);
        entry.setName(text.data(), nameBytes);
        at += entryLength;
    }
}

void FltRecordColorPalette::dumpFields(FltDump& out) const
{
    out.i32("numberOfColorNames: ", numberOfColorNames);
    for (const auto& [index, entry] : setOfColorEntries)
        out.text("colorName[").num(index).text("] :").text(entry.getName()).nl();
}
