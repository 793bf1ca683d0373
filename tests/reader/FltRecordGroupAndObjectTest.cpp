// Group, object, comment, replicate and text records (the golden log shows a long identifier
// and the text's dump).
#include <gtest/gtest.h>

#include "RecordTestSupport.h"
#include "reader/FltRecordGroupAndObject.h"
#include "reader/FltRecordText.h"

TEST(GroupRecord, wordAtOffset28IsReadOnlyAfterRevision1420)
{
    FltRecordBytes bytes(2, 32);
    bytes.chars(4, "abcdefgh", 8).i32(28, 77);
    auto old = decodeRecord<FltRecordGroup>(bytes, 1420);
    EXPECT_STREQ(old->idASCII, "abcdefgh");  // all eight characters, still terminated
    EXPECT_EQ(old->reserved, 0);
    EXPECT_EQ(decodeRecord<FltRecordGroup>(bytes, 1421)->reserved, 77);
}

TEST(ObjectRecord, transparencyIsReadAfterTheFlags)
{
    // The golden log pins the rest of the layout; its object's transparency is 0.
    FltRecordBytes bytes(4, 28);
    bytes.u32(12, 0x88000000u).i16(16, 1).u16(18, 65535);
    EXPECT_EQ(decodeRecord<FltRecordObject>(bytes)->transparency, 65535);
}

TEST(CommentRecord, holdsTheRestOfTheRecordAsTextEvenWhenThereIsNone)
{
    // The golden log pins a comment without terminator.
    EXPECT_STREQ(decodeRecord<FltRecordComment>(FltRecordBytes(31, 4))->textDescription, "");
}

TEST(ReplicateRecord, countIsOne32BitWordSoA16BitCountIsMultiplied)
{
    FltRecordBytes bytes(60, 8);
    bytes.u8(5, 3);  // 00 03 00 00
    EXPECT_EQ(decodeRecord<FltRecordReplicate>(bytes)->numberOfReplications, 196608);  // 12 bytes: the golden log
}

TEST(TextRecord, fullWidthNameAndFontStayTerminated)
{
    const std::string font(120, 'f');
    FltRecordBytes bytes(95, 316);
    bytes.chars(4, "label_01", 8).i32(12, 0x41414141).chars(172, font, 120).i32(292, 0x7F7F7F7F);
    auto text = decodeRecord<FltRecordText>(bytes);
    EXPECT_STREQ(text->idASCII, "label_01");
    EXPECT_EQ(std::string(text->fontName), font);
}
