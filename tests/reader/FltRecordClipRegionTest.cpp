// The clip region record.
#include <gtest/gtest.h>

#include "RecordTestSupport.h"
#include "reader/FltRecordClipRegion.h"

namespace {
// A clip region whose plane p has coefficients A = p + 0.5, B = 10 p, C = -p, D = 100 + p;
// a shorter record holds the fields that fit.
FltRecordBytes clipBytes(size_t length = 280)
{
    FltRecordBytes bytes(98, length);
    auto f64 = [&](size_t offset, double value) {
        if (offset + 8 <= length) bytes.f64(offset, value);
    };
    bytes.chars(4, "clip", 8).i32(12, -1).i16(16, 7);
    bytes.u8(18, 0).u8(19, 0).u8(20, 1).u8(21, 2).u8(22, 0).u8(23, 1);
    for (size_t corner = 0; corner < 4; ++corner)
        for (size_t c = 0; c < 3; ++c) f64(24 + 24 * corner + 8 * c, static_cast<double>(10 * corner + c));
    for (size_t p = 0; p < 5; ++p) {
        const double plane = static_cast<double>(p);
        f64(120 + 8 * p, plane + 0.5);
        f64(160 + 8 * p, 10 * plane);
        f64(200 + 8 * p, -plane);
        f64(240 + 8 * p, 100 + plane);
    }
    return bytes;
}
}  // namespace

TEST(ClipRegionRecord, decodesCornersAndCoefficientsPerPlane)
{
    auto clip = decodeRecord<FltRecordClipRegion>(clipBytes());
    ASSERT_TRUE(clip);
    EXPECT_STREQ(clip->idASCII, "clip");
    EXPECT_EQ(clip->reserved1, -1);
    EXPECT_EQ(clip->reserved2, 7);
    EXPECT_EQ(clip->clipRegion1[2], 2.0);
    EXPECT_EQ(clip->clipRegion4[0], 30.0);
    EXPECT_EQ(clip->clipRegionCoefs[FltRecordClipRegion::A][4], 4.5);
    EXPECT_EQ(clip->clipRegionCoefs[FltRecordClipRegion::B][3], 30.0);
    EXPECT_EQ(clip->clipRegionCoefs[FltRecordClipRegion::C][2], -2.0);
    EXPECT_EQ(clip->clipRegionCoefs[FltRecordClipRegion::D][0], 100.0);
}

TEST(ClipRegionRecord, planeIsEnabledOnlyWhenItsByteIsExactlyOne)
{
    auto clip = decodeRecord<FltRecordClipRegion>(clipBytes());
    EXPECT_EQ(clip->getUsedFlags(), 5);
    EXPECT_FALSE(clip->isEnabledClipPlane(0));
    EXPECT_FALSE(clip->isEnabledClipPlane(1));
    EXPECT_TRUE(clip->isEnabledClipPlane(2));
    EXPECT_FALSE(clip->isEnabledClipPlane(3));  // byte 2
    EXPECT_FALSE(clip->isEnabledClipPlane(4));
    EXPECT_EQ(clip->flags[5], 1);               // the sixth byte is read but is no plane
    EXPECT_FALSE(clip->isEnabledClipPlane(5));
    EXPECT_FALSE(clip->isEnabledClipPlane(-1));
}

TEST(ClipRegionRecord, dumpsCornersAndOnePlaneALine)
{
    auto clip = decodeRecord<FltRecordClipRegion>(clipBytes());
    EXPECT_EQ(dumpOf(*clip),
              "\n CLIP REGION RECORD \n  (PRIMARY_RECORD)\n-- Opcode: 98  Length: 280 --\n"
              "idASCII: clip\nreserved1: -1\nreserved2: 7\nflags: 0 0 1 2 0\n"
              "clipRegion1: 0  1  2\nclipRegion2: 10  11  12\nclipRegion3: 20  21  22\nclipRegion4: 30  31  32\n"
              "clipRegionCoefs: \n"
              "|  0.5  0  -0  100    |\n"
              "|  1.5  10  -1  101    |\n"
              "|  2.5  20  -2  102    |\n"
              "|  3.5  30  -3  103    |\n"
              "|  4.5  40  -4  104    |\n");
}

TEST(ClipRegionRecord, shortRecordLeavesTheLaterPlanesZero)
{
    auto clip = decodeRecord<FltRecordClipRegion>(clipBytes(200));
    EXPECT_EQ(clip->clipRegionCoefs[FltRecordClipRegion::B][4], 40.0);  // 192-199, the last bytes
    EXPECT_EQ(clip->clipRegionCoefs[FltRecordClipRegion::C][0], 0.0);
    EXPECT_EQ(clip->clipRegionCoefs[FltRecordClipRegion::D][4], 0.0);
    EXPECT_TRUE(clip->isEnabledClipPlane(2));

    FltRecordBytes cutInFlags(98, 20);  // the enable bytes of planes 2 to 4 are missing
    cutInFlags.u8(18, 1).u8(19, 1);
    auto tiny = decodeRecord<FltRecordClipRegion>(cutInFlags);
    EXPECT_TRUE(tiny->isEnabledClipPlane(1));
    EXPECT_FALSE(tiny->isEnabledClipPlane(2));
    EXPECT_EQ(tiny->getUsedFlags(), 5);
}
