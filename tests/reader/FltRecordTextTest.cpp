// The text record: its name becomes a node name (the golden log pins its dump).
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
