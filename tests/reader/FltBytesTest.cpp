// The byte reader and the dump helper's number format, checked with known bit patterns and
// edge values (the golden log shows every kind of dump line); records cut short, which read
// through it.
#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "RecordTestSupport.h"
#include "reader/FltBytes.h"
#include "reader/FltDump.h"
#include "reader/FltRecordControl.h"
#include "reader/FltRecordExternalReference.h"
#include "reader/FltRecordFace.h"
#include "reader/FltRecordLOD.h"
#include "reader/FltRecordText.h"
#include "reader/FltRecordTransformations.h"

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

TEST(FltBytes, recordsCutShortKeepTheFieldsTheyHoldAndReadTheRestAsZero)
{
    // The LOD's distance at 24 is cut after its high half (that of 1.0).
    auto lod = decodeRecord<FltRecordLOD>(FltRecordBytes(73, 28).f64(16, 500.0).u32(24, 0x3FF00000u));
    EXPECT_EQ((std::vector<double>{lod->switchInDistance, lod->switchOutDistance, double(lod->flags)}),
              (std::vector<double>{500, 0, 0}));
    auto oldLod = decodeRecord<FltRecordOLDLOD>(FltRecordBytes(3, 34).i32(28, 11).u8(32, 0x7F).u8(33, 0xFF));
    EXPECT_EQ((std::vector<int>{oldLod->XcenterCoordinate, oldLod->YcenterCoordinate}), (std::vector<int>{11, 0}));
    FltRecordBytes matrixBytes(49, 36);
    for (size_t n = 0; n < 8; ++n) matrixBytes.f32(4 + 4 * n, 1);
    auto matrix = decodeRecord<FltRecordMatrix>(matrixBytes);
    EXPECT_EQ((std::vector<float>{matrix->matrix[1][3], matrix->matrix[2][0], matrix->matrix[3][3]}),
              (std::vector<float>{1, 0, 0}));
    auto face = decodeRecord<FltRecordFace>(FltRecordBytes(5, 42).chars(4, "cut", 8).u16(40, 7));
    EXPECT_EQ(face->transparency, 7);
    EXPECT_EQ(face->flags | face->textureMappingIndex | face->primaryColorIndex | face->packedColor[3], 0);
    auto text = decodeRecord<FltRecordText>(FltRecordBytes(95, 180).f64(164, 6).chars(172, "Cour", 8));
    EXPECT_EQ(text->ZupperRightCorner, 6.0);
    EXPECT_STREQ(text->fontName, "Cour");
    EXPECT_EQ(text->lineStyle, 0);
    auto path = decodeRecord<FltRecordExternalReference>(FltRecordBytes(63, 12).chars(4, "abcdefgh", 8));
    EXPECT_STREQ(path->asciiPath, "abcdefgh");
    EXPECT_EQ(path->flags, 0);
    auto instance = decodeRecord<FltRecordInstanceReference>(FltRecordBytes(61, 6).i16(4, 5));  // before its number
    EXPECT_EQ((std::vector<int>{instance->spare, instance->instanceDefinitionNumber}), (std::vector<int>{5, 0}));
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
