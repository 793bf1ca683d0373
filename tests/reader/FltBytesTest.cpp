// The byte reader and the dump helper's number format, checked with known bit patterns and
// edge values (the golden log shows every kind of dump line).
#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "reader/FltBytes.h"
#include "reader/FltDump.h"

TEST(FltBytes, readsBigEndianValuesAndFieldsPastTheEndAsZeroMarkingTruncation)
{
    // 1.5 as float64 is 3FF8 0000 0000 0000; 1.5f is 3FC0 0000.
    const char bytes[] = {'\x3F', '\xF8', 0, 0, 0, 0, 0, 0, '\xFF', '\xFF', '\x3F', '\xC0', 0, 0};
    FltBytes in(bytes, sizeof bytes);
    EXPECT_DOUBLE_EQ(in.f64(0), 1.5);
    EXPECT_EQ(in.i16(8), -1);
    EXPECT_EQ(in.u16(8), 0xFFFF);
    EXPECT_FLOAT_EQ(in.f32(10), 1.5f);
    EXPECT_EQ(in.i32(8), static_cast<int32_t>(0xFFFF3FC0));
    uint8_t abgr[4];
    in.packedColor(9, abgr);  // alpha, blue, green, red as stored
    EXPECT_EQ(std::vector<int>(abgr, abgr + 4), (std::vector<int>{0xFF, 0x3F, 0xC0, 0x00}));
    EXPECT_FALSE(in.truncated());

    EXPECT_EQ(in.wanted(), 0u);

    EXPECT_EQ(in.u32(11), 0u);  // needs 4 bytes, only 3 exist
    EXPECT_TRUE(in.truncated());
    EXPECT_EQ(in.wanted(), 15u);  // the record would need 15 bytes for what was read
    EXPECT_EQ(in.f64(SIZE_MAX - 2), 0.0);  // offsets near the top never wrap around
    EXPECT_EQ(in.wanted(), SIZE_MAX);
    char text[5];
    in.chars(11, 5, text);
    EXPECT_EQ(std::string(text, 5), std::string("\xC0\0\0\0\0", 5));
}

TEST(FltDump, formatsNumbersAsTheStandardStreamDoes)
{
    auto viaDump = [](auto v) {
        std::ostringstream os;
        {
            FltDump out(os);
            out.real(v);
        }
        return os.str();
    };
    for (double v : {0.0, 1.0, -2.5, 0.50196078431, 1e-7, 123456789.0, 1.0 / 3, 1e300, -0.0, 999999.0, -999999.0, 1e6}) {
        std::ostringstream expected;
        expected << v;
        EXPECT_EQ(viaDump(v), expected.str()) << "for " << v;
    }
    std::ostringstream floatExpected;
    floatExpected << 0.1f;
    EXPECT_EQ(viaDump(0.1f), floatExpected.str());
}
