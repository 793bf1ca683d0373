// Group, object, comment, long identifier and replicate records.
#include <gtest/gtest.h>

#include "RecordTestSupport.h"
#include "reader/FltRecordGroupAndObject.h"

TEST(GroupRecord, wordAtOffset28IsReadOnlyAfterRevision1420)
{
    FltRecordBytes shortGroup(2, 28);
    shortGroup.chars(4, "g1", 8);
    auto old = decodeRecord<FltRecordGroup>(shortGroup, 1420);
    ASSERT_TRUE(old);
    EXPECT_STREQ(old->idASCII, "g1");
    EXPECT_EQ(old->reserved, 0);

    FltRecordBytes full(2, 32);
    full.chars(4, "g2", 8).i32(28, 77);
    EXPECT_EQ(decodeRecord<FltRecordGroup>(full, 1420)->reserved, 0);
    EXPECT_EQ(decodeRecord<FltRecordGroup>(full, 1570)->reserved, 77);
}

TEST(GroupRecord, dumpsFieldsAndFlagLinesInLayoutOrder)
{
    FltRecordBytes bytes(2, 32);
    bytes.chars(4, "abcdefgh", 8).i16(12, -3).u32(16, 0xC2000000u).i16(20, 5).i16(22, 6).i16(24, 7).u8(26, 200);
    auto group = decodeRecord<FltRecordGroup>(bytes);
    EXPECT_EQ(dumpOf(*group),
              "\n GROUP RECORD \n  (PRIMARY_RECORD)\n-- Opcode: 2  Length: 32 --\n"
              "idASCII: abcdefgh\nrelativePriority: -3\nflags: \n"
              "     forward animation: 1\n     swing animation: 0\n     bounding box follows: 0\n"
              "     freeze bounding box: 0\n     default parent: 0\n     backward animation: 1\n"
              "id1SpecialEffect: 5\nid2SpecialEffect: 6\nsignificance: 7\nlayerCode: 200\n");
}

TEST(ObjectRecord, dumpsTransparencyBeforeTheFlags)
{
    FltRecordBytes bytes(4, 28);
    bytes.chars(4, "house", 8).u32(12, 0x88000000u).i16(16, 1).u16(18, 65535).i16(26, 9);
    auto object = decodeRecord<FltRecordObject>(bytes);
    EXPECT_EQ(object->transparency, 65535);
    EXPECT_EQ(fieldsOf(*object),
              "idASCII: house\nrelativePriority: 1\ntransparency: 65535\nflags: \n"
              "don t display in daylight: 1\n ---------    at dusk: 0\n ---------    at night: 0\n"
              "don t illuminate: 0\nflat shaded: 1\ngroup's shadow object: 0\n"
              "id1SpecialEffect: 0\nid2SpecialEffect: 0\nsignificance: 0\nspare: 9\n");
}

TEST(CommentAndLongId, holdTheRestOfTheRecordAsText)
{
    FltRecordBytes comment(31, 4 + 9);
    comment.chars(4, "two\nlines", 9);
    auto c = decodeRecord<FltRecordComment>(comment);
    EXPECT_STREQ(c->textDescription, "two\nlines");
    EXPECT_EQ(fieldsOf(*c), "textDescription: two\nlines\n");

    auto empty = decodeRecord<FltRecordComment>(FltRecordBytes(31, 4));
    EXPECT_STREQ(empty->textDescription, "");

    FltRecordBytes longId(33, 4 + 20);
    longId.chars(4, "a_rather_long_name", 20);
    auto id = decodeRecord<FltRecordLongID>(longId);
    EXPECT_STREQ(id->idASCII, "a_rather_long_name");
    EXPECT_EQ(fieldsOf(*id), "idASCII: a_rather_long_name\n");
}

TEST(ReplicateRecord, countIsOne32BitWordSoA16BitCountIsMultiplied)
{
    FltRecordBytes bytes(60, 8);
    bytes.u8(5, 3);  // 00 03 00 00
    EXPECT_EQ(decodeRecord<FltRecordReplicate>(bytes)->numberOfReplications, 196608);
    FltRecordBytes plain(60, 12);
    plain.i32(4, 4);
    auto r = decodeRecord<FltRecordReplicate>(plain);
    EXPECT_EQ(fieldsOf(*r), "numberOfReplications: 4\n");
}
