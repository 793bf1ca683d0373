// The current and old vertex kinds, vertex lists and morph vertex lists.
#include <gtest/gtest.h>

#include "RecordTestSupport.h"
#include "reader/FltRecordVertex.h"

TEST(CurrentVertexKinds, readTheColourIndexFrom1540AndTheTrailingWordFrom1580)
{
    // The golden log pins each kind's fields at revision 1570; only the tail after the
    // packed colour depends on the revision.
    struct Kind {
        uint16_t opcode;
        size_t length, colour;  // the packed colour's offset
    };
    for (const Kind& k : {Kind{68, 40, 32}, Kind{69, 56, 44}, Kind{70, 64, 52}, Kind{71, 48, 40}}) {
        FltRecordBytes r(k.opcode, k.length);
        r.i32(k.colour + 4, 49157);
        const bool trailing = k.colour + 12 <= k.length;  // the kinds with a normal
        if (trailing) r.i32(k.colour + 8, 99);
        for (int revision : {1539, 1540, 1579, 1580}) {
            SCOPED_TRACE(testing::Message() << k.opcode << " at " << revision);
            auto v = decodeRecord<FltRecordVertexColor>(r, revision);
            EXPECT_EQ(v->vertexColorIndex, revision >= 1540 ? 49157 : -1);
            EXPECT_EQ(v->trailing, trailing && revision >= 1580 ? 99 : 0);
        }
    }
}

TEST(VertexList, holdsOneOffsetPerWholeWordAndALengthBelowTheHeaderHoldsNone)
{
    FltRecordBytes bytes(72, 18);  // three words and a stray half word
    bytes.i32(4, 8).i32(8, 48).i32(12, -1).u16(16, 1);
    auto list = decodeRecord<FltRecordVertexList>(bytes);
    EXPECT_EQ(std::vector<int32_t>(list->offsets.begin(), list->offsets.end()), (std::vector<int32_t>{8, 48, -1}));
    EXPECT_EQ(fieldsOf(*decodeRecord<FltRecordVertexList>(FltRecordBytes(72, 4))), "Offset: \n");

    // A length below the header must not wrap into a huge word count.
    char data[4] = {0, 72, 0, 2};
    FltRecordVertexList cut(2);
    cut.getPropertiesFromData(data);
    EXPECT_TRUE(cut.offsets.empty());
    FltRecordMorphVertexList morph(3);
    morph.getPropertiesFromData(data);
    EXPECT_TRUE(morph.offsets.empty());
}

TEST(VertexList, holdsListsPastFourOffsetsAndDecodesAgainOverALongerOne)
{
    FltRecordBytes six(72, 28);
    for (int i = 0; i < 6; ++i) six.i32(4 + 4 * i, 8 * (i + 1));
    auto list = decodeRecord<FltRecordVertexList>(six);
    EXPECT_EQ(std::vector<int32_t>(list->offsets.begin(), list->offsets.end()),
              (std::vector<int32_t>{8, 16, 24, 32, 40, 48}));
    EXPECT_EQ(fieldsOf(*list), "Offset: 8  16  24  32  40  48  \n");

    FltRecordBytes two(72, 12);
    two.i32(4, 5).i32(8, 6);
    list->length = 12;
    list->decodeFrom(two.bytes().data(), two.bytes().size());
    EXPECT_EQ(std::vector<int32_t>(list->offsets.begin(), list->offsets.end()), (std::vector<int32_t>{5, 6}));
}

TEST(MorphVertexList, pairsEveryWordWithTheValueNBytesFurtherOn)
{
    // One stored pair (8, 48) in 12 bytes: n = 2 words give two pairs, each second value
    // 2 bytes after its first (bytes 6..9 are 00 08 00 00); the last one lies past the end.
    FltRecordBytes bytes(89, 12);
    bytes.i32(4, 8).i32(8, 48);
    auto morph = decodeRecord<FltRecordMorphVertexList>(bytes);
    EXPECT_EQ(morph->offsets, (std::vector<std::pair<int32_t, int32_t>>{{8, 0x80000}, {48, 0}}));

    FltRecordBytes four(89, 20);
    four.i32(4, 1).i32(8, 2).i32(12, 3).i32(16, 4);
    EXPECT_EQ(decodeRecord<FltRecordMorphVertexList>(four)->offsets,
              (std::vector<std::pair<int32_t, int32_t>>{{1, 2}, {2, 3}, {3, 4}, {4, 0}}));
}

TEST(OldVertexKinds, haveTextureCoordinatesOnlyAtTheirExactTexturedLength)
{
    // The golden log pins the textured lengths 24, 28 and 40.
    for (size_t length : {20, 26}) {
        EXPECT_FALSE(decodeRecord<FltRecordOldVertex>(FltRecordBytes(7, length))->hasTexture) << length;
        EXPECT_FALSE(decodeRecord<FltRecordOldVertexColor>(FltRecordBytes(8, length + 4))->hasTexture) << length;
        EXPECT_FALSE(decodeRecord<FltRecordOldVertexColorNormal>(FltRecordBytes(9, length + 12))->hasTexture)
            << length;
    }
    EXPECT_EQ(fieldsOf(*decodeRecord<FltRecordOldVertex>(FltRecordBytes(7, 20))),
              "Xcoordinate: 0\nYcoordinate: 0\nZcoordinate: 0\n");
}
