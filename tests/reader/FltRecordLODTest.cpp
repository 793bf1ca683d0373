// Level-of-detail records, current and obsolete: the values the converter builds LODs from.
#include <gtest/gtest.h>

#include "RecordTestSupport.h"
#include "reader/FltRecordLOD.h"

TEST(LODRecord, decodesDistancesAndCentre)
{
    FltRecordBytes bytes(73, 80);
    bytes.chars(4, "lod_0001", 8).f64(16, 1000.0).f64(24, 10.5).u32(36, 0xE0000000u);
    bytes.f64(40, 1.25).f64(48, -2.0).f64(56, 3e7).f64(64, 0.125);
    auto lod = decodeRecord<FltRecordLOD>(bytes);
    ASSERT_TRUE(lod);
    EXPECT_STREQ(lod->idASCII, "lod_0001");  // all eight characters, still terminated
    EXPECT_EQ((std::vector<double>{lod->switchInDistance, lod->switchOutDistance, lod->XcenterCoordinate,
                                   lod->YcenterCoordinate, lod->ZcenterCoordinate, lod->transitionRange}),
              (std::vector<double>{1000, 10.5, 1.25, -2, 3e7, 0.125}));
    EXPECT_EQ(lod->flags, static_cast<int32_t>(0xE0000000u));
}

TEST(OldLODRecord, keepsUnsignedDistancesAndSignedIntegerCentre)
{
    FltRecordBytes bytes(3, 40);
    bytes.chars(4, "old", 8).u32(12, 3000000000u).u32(16, 20).i32(28, -7).i32(32, 8).i32(36, 9);
    auto lod = decodeRecord<FltRecordOLDLOD>(bytes);
    ASSERT_TRUE(lod);
    EXPECT_EQ(lod->switchInDistance, 3000000000u);
    EXPECT_EQ(lod->switchOutDistance, 20u);
    EXPECT_EQ((std::vector<int>{lod->XcenterCoordinate, lod->YcenterCoordinate, lod->ZcenterCoordinate}),
              (std::vector<int>{-7, 8, 9}));
}

TEST(LODRecords, fieldsCutByTheRecordsEndReadAsZero)
{
    // 28 bytes: the distance at 24 is cut after its high half (the high half of 1.0).
    FltRecordBytes bytes(73, 28);
    bytes.f64(16, 500.0).u32(24, 0x3FF00000u);
    auto lod = decodeRecord<FltRecordLOD>(bytes);
    EXPECT_EQ(lod->switchInDistance, 500.0);
    EXPECT_EQ(lod->switchOutDistance, 0.0);
    EXPECT_EQ(lod->flags, 0);

    FltRecordBytes old(3, 34);  // cut inside the centre's y
    old.i32(28, 11).u8(32, 0x7F).u8(33, 0xFF);
    auto oldLod = decodeRecord<FltRecordOLDLOD>(old);
    EXPECT_EQ(oldLod->XcenterCoordinate, 11);
    EXPECT_EQ(oldLod->YcenterCoordinate, 0);
}
