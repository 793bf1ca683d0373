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

TEST(MaterialRecord, dumpsEveryFieldAndSaysNotUsedWhenTheTopBitIsSet)
{
    FltRecordBytes bytes(113, 84);
    bytes.i32(4, 12).chars(8, "brushedsteel", 12);
    const float values[14] = {0.1f, 0.2f, 0.3f, 0.4f, 0.5f, 0.6f, 0.7f, 0.8f, 0.9f, 1, 0, 0.25f, 64, 0.75f};
    for (int i = 0; i < 14; ++i) bytes.f32(24 + 4 * i, values[i]);
    auto m = decodeRecord<FltRecordMaterial>(bytes);
    ASSERT_TRUE(m);
    EXPECT_EQ(dumpOf(*m), "\n MATERIAL PALETTE RECORD \n  (PALETTE_RECORD)\n-- Opcode: 113  Length: 84 --\n"
                          "index: 12\nname : brushedsteel\nflags: material IS used\n"
                          "ambient  (RGB) :0.1 0.2 0.3\ndiffuse  (RGB) :0.4 0.5 0.6\n"
                          "specular (RGB) :0.7 0.8 0.9\nemissive (RGB) :1 0 0.25\n"
                          "shininess      :64\nalpha          :0.75\n");
    EXPECT_STREQ(m->name, "brushedsteel");  // all 12 bytes, still terminated

    bytes.u32(20, 0x80000000u);
    EXPECT_NE(fieldsOf(*decodeRecord<FltRecordMaterial>(bytes)).find("\nflags: material IS NOT used\n"),
              std::string::npos);
}

namespace {

// The obsolete palette: material k has ambient red k, shininess 32, alpha 1 and name "mk".
FltRecordBytes oldMaterialPalette(size_t materials = 64)
{
    FltRecordBytes r(66, 4 + 184 * materials);
    for (size_t k = 0; k < materials; ++k) {
        const size_t at = 4 + 184 * k;
        r.f32(at, static_cast<float>(k)).f32(at + 20, 0.5f).f32(at + 48, 32.0f).f32(at + 52, 1.0f);
        r.i32(at + 56, k == 0 ? -1 : 0).chars(at + 60, "m" + std::to_string(k), 12);
    }
    return r;
}

}  // namespace

TEST(OldMaterialPalette, decodes64EntriesAtTheirStride)
{
    auto palette = decodeRecord<FltRecordOLDMaterialPalette>(oldMaterialPalette(), 14);
    ASSERT_TRUE(palette);
    EXPECT_EQ(palette->materials[63].ambientRed, 63.0f);
    EXPECT_STREQ(palette->materials[63].name, "m63");
    const std::string dump = fieldsOf(*palette);
    EXPECT_EQ(dump.rfind("Material at index:0\nambientRed: 0\nambientGreen: 0\n", 0), 0u);
    EXPECT_NE(dump.find("\nemissiveBlue: 0\nshininess: 32\nalpha: 1\nflags: -1\nmaterial used:1\nname: m0\n"
                        "Material at index:1\n"),
              std::string::npos);
    EXPECT_NE(dump.find("Material at index:63\nambientRed: 63\n"), std::string::npos);
}

TEST(OldMaterialPalette, namesAreEmptiedBelowRevision14AndMissingEntriesStayZero)
{
    auto old = decodeRecord<FltRecordOLDMaterialPalette>(oldMaterialPalette(), 13);
    for (const FltOldMaterial& m : old->materials) ASSERT_STREQ(m.name, "");
    EXPECT_EQ(old->materials[5].ambientRed, 5.0f);

    auto cut = decodeRecord<FltRecordOLDMaterialPalette>(oldMaterialPalette(2), 1570);
    EXPECT_EQ(cut->materials[1].alpha, 1.0f);
    EXPECT_EQ(cut->materials[2].alpha, 0.0f);
}

TEST(TexturePattern, layoutFollowsTheLength)
{
    FltRecordBytes small(64, 96);
    small.chars(4, std::string(80, 'a'), 80).i32(84, 7).i32(88, 10).i32(92, 20);
    auto t = decodeRecord<FltRecordTexturePattern>(small);
    ASSERT_TRUE(t);
    EXPECT_EQ(std::string(t->fileName), std::string(80, 'a'));
    EXPECT_EQ((std::vector<int>{t->patternIndex, t->XlocationInTexturePalette, t->YlocationInTexturePalette}),
              (std::vector<int>{7, 10, 20}));

    FltRecordBytes large(64, 216);
    large.chars(4, "tex/a.rgb", 200).i32(84, 99).i32(204, 3).i32(208, -1).i32(212, 2);
    EXPECT_EQ(dumpOf(*decodeRecord<FltRecordTexturePattern>(large)),
              "\n TEXTURE_PATTERN RECORD \n  (PALETTE_RECORD)\n-- Opcode: 64  Length: 216 --\n"
              "fileName: tex/a.rgb\npatternIndex: 3\nXlocationInTexturePalette: -1\n"
              "YlocationInTexturePalette: 2\n");

    // A name filling all 200 bytes still ends inside the member.
    large.chars(4, std::string(200, 'z'), 200);
    EXPECT_EQ(std::string(decodeRecord<FltRecordTexturePattern>(large)->fileName).size(), 200u);
}

namespace {

struct NameEntry {
    int32_t length;  // as stored; 6 + name bytes for a well-formed entry
    uint16_t index;
    std::string name;
};

// A name palette whose entries are laid end to end (at least 6 bytes apart).
FltRecordBytes namePalette(int32_t count, const std::vector<NameEntry>& entries)
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
    return r;
}

using Names = std::map<int, std::string>;

}  // namespace

TEST(NamePalette, namesAreKeyedByIndexAndALaterEntryWins)
{
    auto palette = decodeRecord<FltRecordNamePalette>(
        namePalette(3, {{6 + 5, 4, "house"}, {6 + 4, 1, "tree"}, {6 + 5, 4, "barn"}}));
    ASSERT_TRUE(palette);
    EXPECT_EQ(palette->names, (Names{{1, "tree"}, {4, "barn"}}));
    EXPECT_EQ(dumpOf(*palette), "\n NAME PALETTE RECORD \n  (PALETTE_RECORD)\n-- Opcode: 114  Length: 42 --\n"
                                "numberOfNames:3\nnextAvailableIndex:12\nname[1] :tree\nname[4] :barn\n");

    const std::string longName(120, 'n');
    auto cut = decodeRecord<FltRecordNamePalette>(namePalette(1, {{6 + 120, 65535, longName}}));
    EXPECT_EQ(cut->names, (Names{{65535, std::string(80, 'n')}}));
}

TEST(NamePalette, damagedEntriesStopTheWalk)
{
    // Length 0 would be read again and again, count times; 1 to 5 is shorter than the header.
    EXPECT_TRUE(decodeRecord<FltRecordNamePalette>(namePalette(1000000, {{0, 1, ""}, {7, 2, "b"}}))->names.empty());
    EXPECT_TRUE(decodeRecord<FltRecordNamePalette>(namePalette(2, {{5, 1, ""}, {7, 2, "b"}}))->names.empty());
    EXPECT_EQ(decodeRecord<FltRecordNamePalette>(namePalette(0x7FFFFFFF, {{7, 2, "b"}}))->names, (Names{{2, "b"}}));

    // Entry lengths past the record's end, and negative ones, end the walk.
    FltRecordBytes past = namePalette(2, {{7, 2, "b"}, {10, 3, "c"}});
    past.i32(17, 4000);
    EXPECT_EQ(decodeRecord<FltRecordNamePalette>(past)->names, (Names{{2, "b"}}));
    past.i32(17, -6);
    EXPECT_EQ(decodeRecord<FltRecordNamePalette>(past)->names, (Names{{2, "b"}}));
}

TEST(LineStylePalette, decodesAndDumpsItsThreeValues)
{
    FltRecordBytes bytes(97, 12);
    bytes.i16(4, -3).u16(6, 0xF0F0).i32(8, 2);
    auto style = decodeRecord<FltRecordLineStylePalette>(bytes);
    ASSERT_TRUE(style);
    EXPECT_EQ(dumpOf(*style), "\n LINE STYLE PALETTE RECORD \n  (PALETTE_RECORD)\n-- Opcode: 97  Length: 12 --\n"
                              "lineStyleIndex: -3\npatternMask: 61680\nlineWidth: 2\n");
}
