// The colour palette record and its colour name entries.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "reader/FltRecord.h"

// One colour name entry of a colour palette: the four 16-bit header values and an owned,
// zero-terminated copy of the name (null when the entry holds no name bytes).
class FltColorEntry {
public:
    FltColorEntry() = default;
    ~FltColorEntry() { delete[] name; }
    FltColorEntry(const FltColorEntry& other);
    FltColorEntry& operator=(const FltColorEntry& other);
    FltColorEntry(FltColorEntry&& other) noexcept;
    FltColorEntry& operator=(FltColorEntry&& other) noexcept;

    // Replaces the name by a copy of n bytes (an empty copy gives no name).
    void setName(const char* bytes, size_t n);
    const char* getName() const { return name ? name : ""; }

    uint16_t length = 0;
    uint16_t reserved1 = 0;
    int16_t index = 0;
    uint16_t reserved2 = 0;
    char* name = nullptr;

private:
    size_t nameSize_ = 0;  // bytes of name, without the added terminator
};

// Colour palette record, opcode 32. Three layouts by revision: up to 13, 32 base colours
// (expanded into 128 intensities each) and 56 fixed colours, all red, green, blue bytes;
// 14 to 1420, 512 packed colours at offset 4; from 1421, 128 reserved bytes, 1024 packed
// colours at offset 132, then the colour names from offset 4228 when the record is long
// enough. A colour reads with red in bits 0-7, green 8-15, blue 16-23 and alpha 24-31;
// slots a layout or the record's length does not fill read zero.
class FltRecordColorPalette : public PaletteFltRecord, public FltVersion {
public:
    static constexpr int kColorCount = 4152;

    explicit FltRecordColorPalette(unsigned int length) : PaletteFltRecord(length) {}
    int getOpcode() const override { return 32; }
    const char* getHeading() const override { return "\n COLOR PALETTE RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    // The colour of a table slot, 0 to kColorCount - 1.
    uint32_t colorAt(int slot) const;
    // Slots from this one on read zero.
    int slotsHeld() const { return slotsHeld_; }

    char reserved[128] = {};  // from revision 1421
    int32_t numberOfColorNames = 0;
    std::map<int, FltColorEntry> setOfColorEntries;

private:
    void decodeColorNames(const FltBytes& in);

    // Only what the record's bytes hold is kept, so that a short record costs little: up to
    // revision 13 the red, green, blue bytes from offset 4 (intensities are derived on
    // lookup), later the packed colours from slot 0.
    std::vector<uint8_t> rgbBytes_;
    std::vector<uint32_t> packed_;
    int slotsHeld_ = 0;
};
