// The colour palette: the three revision layouts, colour names and damaged name tables.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "RecordTestSupport.h"
#include "reader/FltRecordColorPalette.h"

namespace {

struct NameEntry {
    uint16_t length;  // as stored; 8 + name bytes for a well-formed entry
    int16_t index;
    std::string name;
};

// A 15.x palette followed by a name count and the given entries from offset 4232, laid end
// to end (at least 8 bytes apart).
FltRecordBytes paletteWithNames(int32_t count, const std::vector<NameEntry>& entries)
{
    size_t size = 4232;
    for (const NameEntry& e : entries) size += e.length < 8 ? 8 : e.length;
    FltRecordBytes r(32, size);
    r.i32(4228, count);
    size_t at = 4232;
    for (const NameEntry& e : entries) {
        r.u16(at, e.length).u16(at + 2, 1).i16(at + 4, e.index).u16(at + 6, 2).chars(at + 8, e.name, e.name.size());
        at += e.length < 8 ? 8 : e.length;
    }
    return r;
}

size_t namesHeld(int32_t count, const std::vector<NameEntry>& entries)
{
    return decodeRecord<FltRecordColorPalette>(paletteWithNames(count, entries), 1570)->setOfColorEntries.size();
}

}  // namespace

TEST(ColorPalette, revision13ExpandsBaseColoursInto128Intensities)
{
    FltRecordBytes bytes(32, 4 + 96 + 168);
    bytes.u8(7, 200).u8(8, 100).u8(9, 50);   // base colour 1: red, green, blue
    bytes.u8(109, 9).u8(110, 8).u8(111, 7);  // fixed colour 3
    auto palette = decodeRecord<FltRecordColorPalette>(bytes, 13);
    EXPECT_EQ(palette->colorAt(128), 0u);                                 // intensity 0 is black
    EXPECT_EQ(palette->colorAt(128 + 64), 100u | 50u << 8 | 25u << 16);   // half
    EXPECT_EQ(palette->colorAt(128 + 127), 198u | 99u << 8 | 49u << 16);  // 127/128, truncated
    EXPECT_EQ(palette->colorAt(4096 + 3), 9u | 8u << 8 | 7u << 16);
    for (int slot = 0; slot < FltRecordColorPalette::kColorCount; ++slot)
        ASSERT_EQ(palette->colorAt(slot) >> 24, 0u) << "alpha is 0 everywhere";
}

TEST(ColorPalette, revisions14To1420Read512ColoursAndLaterOnes1024AfterTheReservedBlock)
{
    FltRecordBytes bytes(32, 4228);  // ends before the name count: no names
    bytes.abgr(4, 0xFF, 0x00, 0x00, 0x80).abgr(4 + 511 * 4, 1, 2, 3, 4);
    bytes.abgr(132, 0xFF, 0x00, 0x00, 0x81).abgr(132 + 1023 * 4, 5, 6, 7, 8);
    for (int revision : {14, 1420}) {  // red in the low byte
        auto palette = decodeRecord<FltRecordColorPalette>(bytes, revision);
        EXPECT_EQ((std::vector<uint32_t>{palette->colorAt(0), palette->colorAt(511), palette->colorAt(512)}),
                  (std::vector<uint32_t>{0xFF000080u, 0x01020304u, 0}));
    }
    auto palette = decodeRecord<FltRecordColorPalette>(bytes, 1421);
    EXPECT_EQ((std::vector<uint32_t>{palette->colorAt(0), palette->colorAt(1023), palette->colorAt(1024)}),
              (std::vector<uint32_t>{0xFF000081u, 0x05060708u, 0}));
    EXPECT_EQ(palette->numberOfColorNames, 0);
}

TEST(ColorPalette, colourNamesAreKeyedByIndexAndALaterEntryWins)
{
    auto palette = decodeRecord<FltRecordColorPalette>(
        paletteWithNames(3, {{8 + 4, 5, "red"}, {8 + 5, -2, "green"}, {8 + 4, 5, "blue"}}), 1570);
    ASSERT_EQ(palette->setOfColorEntries.size(), 2u);
    const FltColorEntry& five = palette->setOfColorEntries.at(5);
    EXPECT_STREQ(five.getName(), "blue");
    EXPECT_EQ(five.length, 12);
    EXPECT_EQ(five.reserved1 + five.reserved2, 3);
    // "green" fills its 5 bytes without a terminator: the copy still ends.
    EXPECT_EQ(fieldsOf(*palette), "numberOfColorNames: 3\ncolorName[-2] :green\ncolorName[5] :blue\n");
}

TEST(ColorPalette, damagedNameEntriesStopTheWalk)
{
    // Length 0 would be read again and again, count times; 1 to 7 is shorter than the header.
    EXPECT_EQ(namesHeld(1000000, {{0, 1, ""}, {8 + 3, 2, "tan"}}), 0u);
    EXPECT_EQ(namesHeld(2, {{7, 1, ""}, {8 + 3, 2, "tan"}}), 0u);
    // An absurd count stops at the record's end; a negative one reads nothing.
    EXPECT_EQ(namesHeld(0x7FFFFFFF, {{8 + 3, 1, "one"}, {8 + 3, 2, "two"}}), 2u);
    EXPECT_EQ(namesHeld(-1, {{8 + 3, 1, "one"}}), 0u);

    // An entry claiming more than the record holds is dropped.
    FltRecordBytes past = paletteWithNames(2, {{8 + 3, 1, "one"}, {20, 2, "two"}});
    past.u16(4232 + 11, 200);
    EXPECT_EQ(decodeRecord<FltRecordColorPalette>(past, 1570)->setOfColorEntries.size(), 1u);
    // A record ending inside the name count has none.
    EXPECT_EQ(decodeRecord<FltRecordColorPalette>(FltRecordBytes(32, 4230), 1570)->numberOfColorNames, 0);
}

TEST(ColorEntry, copiesOwnTheirName)
{
    FltColorEntry original, assigned;
    original.setName("grey", 4);
    FltColorEntry copy(original);
    assigned = original;
    original.setName("black", 5);
    FltColorEntry moved(std::move(copy));
    EXPECT_STREQ(assigned.getName(), "grey");
    EXPECT_STREQ(moved.getName(), "grey");
}
