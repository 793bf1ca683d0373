// The text record.
#include <gtest/gtest.h>

#include "RecordTestSupport.h"
#include "reader/FltRecordText.h"

TEST(TextRecord, fullWidthNameAndFontStayTerminated)
{
    const std::string font(120, 'f');
    FltRecordBytes bytes(95, 316);
    bytes.chars(4, "label_01", 8).i32(12, 0x41414141).chars(172, font, 120).i32(292, 0x7F7F7F7F);
    auto text = decodeRecord<FltRecordText>(bytes);
    ASSERT_TRUE(text);
    EXPECT_STREQ(text->idASCII, "label_01");
    EXPECT_EQ(std::string(text->fontName), font);
}

TEST(TextRecord, decodesTheFieldsItDumps)
{
    FltRecordBytes bytes(95, 316);
    bytes.chars(4, "t", 8).i32(16, 1).i32(20, 3).i32(24, -1).f64(28, 2.5).i32(36, 42);
    bytes.i32(60, 6).i32(64, 100).i32(68, 101).i32(72, 5).i32(80, 2).i32(84, 64).i32(88, 11);
    bytes.i32(92, 3).i32(96, 1).i32(100, -10).i32(104, 10).f64(108, -0.5).f64(116, 0.5);
    bytes.f64(124, 1).f64(132, 2).f64(140, 3).f64(148, 4).f64(156, 5).f64(164, 6);
    bytes.chars(172, "Helvetica", 120).i32(292, 1).i32(296, 0).i32(300, 1).i32(304, 0).i32(308, 9);
    auto text = decodeRecord<FltRecordText>(bytes);
    EXPECT_EQ(text->floatingPointValue, 2.5);
    EXPECT_EQ(text->highFloatingPointValue, 0.5);
    EXPECT_EQ(text->ZupperRightCorner, 6.0);
    EXPECT_STREQ(text->fontName, "Helvetica");
    EXPECT_EQ(text->lineStyle, 9);
    EXPECT_EQ(dumpOf(*text),
              "\n TEXT RECORD \n  (PRIMARY_RECORD)\n-- Opcode: 95  Length: 316 --\n"
              "idASCII: t\ntype: 1\ndrawType: 3\njustification: -1\nfloatingPointValue: 2.5\n"
              "integerValue: 42\nflags: 6\ncolor: 100\ncolor2: 101\nmaterial: 5\n"
              "maxNumberOfLines: 2\nmaxNumberOfCharacters: 64\ncurrentLengthOfText: 11\n"
              "nextLineNumberAvailable: 3\nlineNumberAtTopOfDisplay: 1\n"
              "lowIntegerValue: -10\nhighIntegerValue: 10\n"
              "lowFloatingPointValue: -0.5\nhighFloatingPointValue: 0.5\n"
              "XlowerLeftCorner: 1\nYlowerLeftCorner: 2\nZlowerLeftCorner: 3\n"
              "XupperRightCorner: 4\nYupperRightCorner: 5\nZupperRightCorner: 6\n"
              "fontName: Helvetica\ndrawVertical: 1\ndrawItalic: 0\ndrawBold: 1\ndrawUnderline: 0\nlineStyle: 9\n");
}

TEST(TextRecord, shortRecordReadsZerosPastItsEnd)
{
    FltRecordBytes bytes(95, 180);
    bytes.chars(4, "short", 8).f64(164, 6).chars(172, "Cour", 8);
    auto text = decodeRecord<FltRecordText>(bytes);
    EXPECT_STREQ(text->idASCII, "short");
    EXPECT_EQ(text->ZupperRightCorner, 6.0);
    EXPECT_STREQ(text->fontName, "Cour");
    EXPECT_EQ(text->lineStyle, 0);
}
