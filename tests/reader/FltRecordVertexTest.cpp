// The current and old vertex kinds, vertex lists and morph vertex lists.
#include <gtest/gtest.h>

#include "RecordTestSupport.h"
#include "reader/FltRecordVertex.h"

namespace {

// The head shared by the four current kinds: colour name 7, flags, coordinates.
FltRecordBytes vertexHead(uint16_t opcode, size_t length)
{
    FltRecordBytes r(opcode, length);
    r.u16(4, 7).u16(6, 0x9000).f64(8, 1.5).f64(16, -2.25).f64(24, 1e10);
    return r;
}

const char* const kHeadDump =
    "colorNameIndex: 7\nflags: Start Hard Edge: 1\n         Normal frozen: 0\n"
    "              No Color: 0\n          Packed Color: 1\n"
    "Xcoordinate: 1.5\nYcoordinate: -2.25\nZcoordinate: 1e+10\n";

}  // namespace

TEST(VertexColor, dumpsHeadAndTailAndReadsTheColourIndexFrom1540)
{
    FltRecordBytes bytes = vertexHead(68, 40);
    bytes.abgr(32, 255, 0x10, 0x20, 0x80).i32(36, 49157);
    auto v = decodeRecord<FltRecordVertexColor>(bytes, 1540);
    ASSERT_TRUE(v);
    EXPECT_TRUE(v->isPackedColor() && !v->isNoColor());
    EXPECT_EQ(dumpOf(*v), std::string("\n VERTEX COLOR RECORD \n  (PALETTE_RECORD)\n-- Opcode: 68  Length: 40 --\n") +
                              kHeadDump +
                              "packedColor: alpha=1\n              blue=0.0627451\n             green=0.12549\n"
                              "               red=0.501961\nvertexColorIndex: 49157\n");
    EXPECT_EQ(decodeRecord<FltRecordVertexColor>(bytes, 1539)->vertexColorIndex, -1);
}

TEST(VertexColorNormal, dumpsTheNormalAndReadsTheTrailingWordFrom1580)
{
    FltRecordBytes bytes = vertexHead(69, 56);
    bytes.f32(32, 0.0f).f32(36, -1.0f).f32(40, 0.5f).abgr(44, 0, 0, 0, 255).i32(48, 9).i32(52, 99);
    auto v = decodeRecord<FltRecordVertexColorNormal>(bytes, 1580);
    EXPECT_EQ(v->trailing, 99);
    EXPECT_EQ(fieldsOf(*v), std::string(kHeadDump) +
                                "vertexNormal: i=0\n              j=-1\n              k=0.5\n"
                                "packedColor: alpha=0\n              blue=0\n             green=0\n"
                                "               red=1\nvertexColorIndex: 9\n");
    EXPECT_EQ(decodeRecord<FltRecordVertexColorNormal>(bytes, 1579)->trailing, 0);
}

TEST(VertexColorUvKinds, readTextureAndColourAtTheirOwnOffsets)
{
    FltRecordBytes both = vertexHead(70, 64);
    both.f32(40, 0.75f).f32(44, 2.0f).f32(48, -3.0f).abgr(52, 255, 0, 0, 0).i32(56, 77).i32(60, 98);
    auto nuv = decodeRecord<FltRecordVertexColorNormalUv>(both, 1580);
    EXPECT_EQ(nuv->trailing, 98);
    EXPECT_NE(fieldsOf(*nuv).find("              k=0.75\ntexture: u=2\n         v=-3\npackedColor: alpha=1\n"),
              std::string::npos);
    EXPECT_EQ(decodeRecord<FltRecordVertexColorNormalUv>(both, 1570)->trailing, 0);

    FltRecordBytes uvOnly = vertexHead(71, 48);
    uvOnly.f32(32, 0.125f).f32(36, 1.0f).abgr(40, 0, 0, 255, 0).i32(44, 5);
    auto uv = decodeRecord<FltRecordVertexColorUv>(uvOnly, 1570);
    EXPECT_EQ(fieldsOf(*uv), std::string(kHeadDump) +
                                 "texture: u=0.125\n         v=1\n"
                                 "packedColor: alpha=0\n              blue=0\n             green=1\n"
                                 "               red=0\nvertexColorIndex: 5\n");
    EXPECT_EQ(decodeRecord<FltRecordVertexColorUv>(uvOnly, 1530)->vertexColorIndex, -1);
}

TEST(VertexList, holdsOneOffsetPerWholeWord)
{
    FltRecordBytes bytes(72, 18);  // three words and a stray half word
    bytes.i32(4, 8).i32(8, 48).i32(12, -1).u16(16, 1);
    auto list = decodeRecord<FltRecordVertexList>(bytes);
    EXPECT_EQ(list->offsets, (std::vector<int32_t>{8, 48, -1}));
    EXPECT_EQ(fieldsOf(*list), "Offset: 8  48  -1  \n");
    EXPECT_EQ(fieldsOf(*decodeRecord<FltRecordVertexList>(FltRecordBytes(72, 4))), "Offset: \n");
}

TEST(VertexLists, lengthBelowTheHeaderDoesNotWrapIntoAHugeCount)
{
    char data[4] = {0, 72, 0, 2};
    FltRecordVertexList list(2);
    list.getPropertiesFromData(data);
    EXPECT_TRUE(list.offsets.empty());
    FltRecordMorphVertexList morph(3);
    morph.getPropertiesFromData(data);
    EXPECT_TRUE(morph.offsets.empty());
}

TEST(MorphVertexList, pairsEveryWordWithTheValueNBytesFurtherOn)
{
    // One stored pair (8, 48) in 12 bytes: n = 2 words give two pairs, each second value
    // 2 bytes after its first (bytes 6..9 are 00 08 00 00); the last one lies past the end.
    FltRecordBytes bytes(89, 12);
    bytes.i32(4, 8).i32(8, 48);
    auto morph = decodeRecord<FltRecordMorphVertexList>(bytes);
    EXPECT_EQ(morph->offsets, (std::vector<std::pair<int32_t, int32_t>>{{8, 0x80000}, {48, 0}}));
    EXPECT_EQ(fieldsOf(*morph), "Offset: (8,524288)  (48,0)  \n");

    FltRecordBytes four(89, 20);
    four.i32(4, 1).i32(8, 2).i32(12, 3).i32(16, 4);
    EXPECT_EQ(decodeRecord<FltRecordMorphVertexList>(four)->offsets,
              (std::vector<std::pair<int32_t, int32_t>>{{1, 2}, {2, 3}, {3, 4}, {4, 0}}));
}

TEST(OldVertexKinds, textureCoordinatesOnlyAtTheExactLength)
{
    FltRecordBytes plain(7, 20);
    plain.i32(4, -10).i32(8, 20).i32(12, 30);
    EXPECT_EQ(dumpOf(*decodeRecord<FltRecordOldVertex>(plain)),
              "\n OLD VERTEX RECORD (OBSOLETE)\n  (PRIMARY_RECORD)\n-- Opcode: 7  Length: 20 --\n"
              "Xcoordinate: -10\nYcoordinate: 20\nZcoordinate: 30\n");
    FltRecordBytes textured(7, 24);
    textured.f32(16, 0.5f).f32(20, 0.25f);
    EXPECT_EQ(fieldsOf(*decodeRecord<FltRecordOldVertex>(textured)),
              "Xcoordinate: 0\nYcoordinate: 0\nZcoordinate: 0\ntexture: u=0.5\n         v=0.25\n");

    FltRecordBytes colored(8, 28);
    colored.i32(4, 1).u8(16, 'Y').u8(17, 'N').u16(18, 65000).f32(20, 1.0f).f32(24, 2.0f);
    EXPECT_EQ(fieldsOf(*decodeRecord<FltRecordOldVertexColor>(colored)),
              "Xcoordinate: 1\nYcoordinate: 0\nZcoordinate: 0\nhardEdgeFlag: Y\nshadingFlag: N\n"
              "colorIndex : 65000\ntexture: u=1\n         v=2\n");
    EXPECT_FALSE(decodeRecord<FltRecordOldVertexColor>(FltRecordBytes(8, 20))->hasTexture);
}

TEST(OldVertexColorNormal, dumpsTheScaledNormal)
{
    FltRecordBytes bytes(9, 32);
    bytes.u8(16, '1').u8(17, '0').u16(18, 4).i32(24, -1073741824).i32(28, 1073741824);
    EXPECT_EQ(fieldsOf(*decodeRecord<FltRecordOldVertexColorNormal>(bytes)),
              "Xcoordinate: 0\nYcoordinate: 0\nZcoordinate: 0\nhardEdgeFlag: 1\nshadingFlag: 0\n"
              "colorIndex : 4\nvertexNormalScaled: i=0\n                    j=-1073741824\n"
              "                    k=1073741824\n");
    FltRecordBytes textured(9, 40);
    textured.f32(36, 4.0f);
    EXPECT_EQ(decodeRecord<FltRecordOldVertexColorNormal>(textured)->texture[1], 4.0f);
}
