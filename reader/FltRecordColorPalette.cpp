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
constexpr size_t kOldColorBytes = 3 * (32 + 56);  // up to revision 13, from offset 4

uint32_t rgb(uint32_t red, uint32_t green, uint32_t blue) { return red | (green << 8) | (blue << 16); }

// How many of count fields of this width from offset lie inside the record. When some do
// not, the record is marked short, as reading them would have done.
size_t fieldsHeld(const FltBytes& in, size_t offset, size_t width, size_t count)
{
    const size_t fit = in.size() > offset ? (in.size() - offset) / width : 0;
    if (fit >= count) return count;
    in.u8(in.size());
    return fit;
}

}  // namespace

void FltRecordColorPalette::decode(const FltBytes& in)
{
    if (formatRevision <= 13) {
        const size_t n = fieldsHeld(in, 4, 1, kOldColorBytes);
        rgbBytes_.assign(n, 0);
        in.chars(4, n, reinterpret_cast<char*>(rgbBytes_.data()));
        // A base colour fills its 128 intensities even when only some of its bytes are held.
        if (n > 96)
            slotsHeld_ = 4096 + static_cast<int>((n - 96 + 2) / 3);
        else
            slotsHeld_ = 128 * static_cast<int>((n + 2) / 3);
        return;
    }
    size_t first = 4, count = 512;
    if (formatRevision > 1420) {
        in.chars(4, sizeof reserved, reserved);
        first = 132, count = 1024;
    }
    packed_.assign(fieldsHeld(in, first, 4, count), 0);
    for (size_t c = 0; c < packed_.size(); ++c) packed_[c] = in.u32(first + 4 * c);
    slotsHeld_ = static_cast<int>(packed_.size());
    if (formatRevision > 1420) decodeColorNames(in);
}

uint32_t FltRecordColorPalette::colorAt(int slot) const
{
    if (slot < 0 || slot >= slotsHeld_) return 0;
    if (rgbBytes_.empty()) return packed_[slot];
    // A byte past the record's end reads zero.
    const auto byte = [this](size_t k) -> uint32_t { return k < rgbBytes_.size() ? rgbBytes_[k] : 0; };
    if (slot >= 4096) {
        const size_t at = 96 + 3 * static_cast<size_t>(slot - 4096);
        return rgb(byte(at), byte(at + 1), byte(at + 2));
    }
    // Base colour slot / 128 at intensity slot % 128, from black up to 127/128 of the colour;
    // alpha stays 0.
    const size_t at = 3 * static_cast<size_t>(slot / 128);
    const double f = (slot % 128) * 0.0078125;
    return rgb(static_cast<uint32_t>(byte(at) * f), static_cast<uint32_t>(byte(at + 1) * f),
               static_cast<uint32_t>(byte(at + 2) * f));
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
