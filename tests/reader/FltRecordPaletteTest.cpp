// Material, old material, texture pattern, name and line style palette records.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "RecordTestSupport.h"
#include "reader/FltRecordLineStyle.h"
#include "reader/FltRecordMaterial.h"
#include "reader/FltRecordNamePalette.h"
#include "reader/FltRecordTexturePattern.h"

TEST(MaterialRecord, saysNotUsedWhenTheTopFlagBitIsSet)
{
    // The golden log pins the layout and the used case.
    FltRecordBytes bytes(113, 84);
    bytes.u32(20, 0x80000000u);
    EXPECT_NE(fieldsOf(*decodeRecord<FltRecordMaterial>(bytes)).find("\nflags: material IS NOT used\n"),
              std::string::npos);
}

TEST(OldMaterialPalette, emptiesTheNamesBelowRevision14AndReadsMaterialsPastACutAsZero)
{
    // The golden log pins the 64 entries at their stride. Material k has ambient red k,
    // diffuse green 0.5, shininess 32, alpha 1 and name "mk".
    auto palette = [](size_t materials) {
        FltRecordBytes r(66, 4 + 184 * materials);
        for (size_t k = 0; k < materials; ++k) {
            const size_t at = 4 + 184 * k;
            r.f32(at, static_cast<float>(k)).f32(at + 16, 0.5f).f32(at + 48, 32.0f).f32(at + 52, 1.0f);
            r.i32(at + 56, -1).chars(at + 60, "m" + std::to_string(k), 12);
        }
        return r;
    };
    EXPECT_STREQ(decodeRecord<FltRecordOLDMaterialPalette>(palette(64), 14)->material(63).name, "m63");
    auto old = decodeRecord<FltRecordOLDMaterialPalette>(palette(64), 13);
    for (int k = 0; k < 64; ++k) ASSERT_STREQ(old->material(k).name, "");
    EXPECT_EQ(old->material(5).ambientRed, 5.0f);

    auto cut = decodeRecord<FltRecordOLDMaterialPalette>(palette(2), 1570);
    EXPECT_EQ(cut->material(1).alpha, 1.0f);
    EXPECT_EQ(cut->material(2).alpha, 0.0f);
}

TEST(TexturePattern, the96ByteLayoutHasAShorterNameAndEveryNameStaysTerminated)
{
    for (size_t name : {80, 200}) {  // the name fills its field, then index and location follow
        FltRecordBytes bytes(64, name + 16);
        bytes.chars(4, std::string(name, 'a'), name).i32(name + 4, 7).i32(name + 8, -1).i32(name + 12, 20);
        auto t = decodeRecord<FltRecordTexturePattern>(bytes);
        EXPECT_EQ(std::string(t->fileName), std::string(name, 'a'));
        EXPECT_EQ((std::vector<int>{t->patternIndex, t->XlocationInTexturePalette, t->YlocationInTexturePalette}),
                  (std::vector<int>{7, -1, 20}));
    }
}

namespace {

struct NameEntry {
    int32_t length;  // as stored; 6 + name bytes for a well-formed entry
    uint16_t index;
    std::string name;
};
using Names = std::map<int, std::string>;

// The names a name palette holds whose entries are laid end to end (at least 6 bytes apart);
// `patch` (offset, word) then overwrites one 32-bit word.
Names namesOf(int32_t count, const std::vector<NameEntry>& entries, std::pair<size_t, int32_t> patch = {0, 0})
{
    size_t size = 10;
    for (const NameEntry& e : entries) size += e.length < 6 ? 6 : static_cast<size_t>(e.length);
    FltRecordBytes r(114, size);
    r.i32(4, count).u16(8, 12);
    size_t at = 10;
    for (const NameEntry& e : entries) {
        r.i32(at, e.length).u16(at + 4, e.index).chars(at + 6, e.name, e.name.size());
        at += e.length < 6 ? 6 : static_cast<size_t>(e.length);
    }
    if (patch.first) r.i32(patch.first, patch.second);
    return decodeRecord<FltRecordNamePalette>(r)->names;
}

}  // namespace

TEST(NamePalette, namesAreKeyedByIndexALaterEntryWinsAndNamesAreCutAt80Characters)
{
    EXPECT_EQ(namesOf(3, {{6 + 5, 4, "house"}, {6 + 4, 1, "tree"}, {6 + 5, 4, "barn"}}),
              (Names{{1, "tree"}, {4, "barn"}}));
    EXPECT_EQ(namesOf(1, {{6 + 120, 65535, std::string(120, 'n')}}), (Names{{65535, std::string(80, 'n')}}));
}

TEST(NamePalette, damagedEntriesStopTheWalk)
{
    // Length 0 would be read again and again, count times; 1 to 5 is shorter than the header.
    EXPECT_TRUE(namesOf(1000000, {{0, 1, ""}, {7, 2, "b"}}).empty());
    EXPECT_TRUE(namesOf(2, {{5, 1, ""}, {7, 2, "b"}}).empty());
    EXPECT_EQ(namesOf(0x7FFFFFFF, {{7, 2, "b"}}), (Names{{2, "b"}}));
    // Entry lengths past the record's end, and negative ones, end the walk.
    EXPECT_EQ(namesOf(2, {{7, 2, "b"}, {10, 3, "c"}}, {17, 4000}), (Names{{2, "b"}}));
    EXPECT_EQ(namesOf(2, {{7, 2, "b"}, {10, 3, "c"}}, {17, -6}), (Names{{2, "b"}}));
}

TEST(LineStylePalette, readsIndexMaskAndWidth)
{
    FltRecordBytes bytes(97, 12);
    auto style = decodeRecord<FltRecordLineStylePalette>(bytes.i16(4, -3).u16(6, 0xF0F0).i32(8, 2));
    EXPECT_EQ((std::vector<int>{style->lineStyleIndex, style->patternMask, style->lineWidth}),
              (std::vector<int>{-3, 0xF0F0, 2}));
}
