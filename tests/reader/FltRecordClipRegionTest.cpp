// The clip region record: the planes the converter builds and their enable bytes.
#include <gtest/gtest.h>

#include "RecordTestSupport.h"
#include "reader/FltRecordClipRegion.h"

namespace {
// A clip region whose plane p has coefficients A = p + 0.5, B = 10 p, C = -p, D = 100 + p,
// enable bytes 0 0 1 2 0 and a sixth byte 1; a shorter record holds the fields that fit.
FltRecordBytes clipBytes(size_t length = 280)
{
    FltRecordBytes bytes(98, length);
    auto f64 = [&](size_t offset, double value) {
        if (offset + 8 <= length) bytes.f64(offset, value);
    };
    bytes.chars(4, "clip", 8).u8(18, 0).u8(19, 0).u8(20, 1).u8(21, 2).u8(22, 0).u8(23, 1);
    for (size_t corner = 0; corner < 4; ++corner) f64(24 + 24 * corner, static_cast<double>(10 * corner));
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

TEST(ClipRegionRecord, enablesAPlaneOnlyWhenItsByteIsExactlyOne)
{
    // ClipRegion.ancillaryRecordsThenFivePlanes... pins the planes of the first four
    // coefficients and that a byte of 2 enables nothing; the golden log the layout.
    auto clip = decodeRecord<FltRecordClipRegion>(clipBytes());
    EXPECT_EQ(clip->getUsedFlags(), 5);
    for (int plane : {-1, 2, 5})  // the sixth byte is no plane
        EXPECT_EQ(clip->isEnabledClipPlane(plane), plane == 2) << plane;
    EXPECT_EQ(clip->flags[5], 1);
}

TEST(ClipRegionRecord, shortRecordLeavesTheMissingPlanesAndEnableBytesZero)
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
