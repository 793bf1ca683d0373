// Level-of-detail records, current and obsolete.
#include <gtest/gtest.h>

#include "RecordTestSupport.h"
#include "reader/FltRecordLOD.h"

TEST(LODRecord, decodesEveryFieldAndDumpsTwoFlagLines)
{
    FltRecordBytes bytes(73, 80);
    bytes.chars(4, "lod_0001", 8).i32(12, 99).f64(16, 1000.0).f64(24, 10.5).i16(32, -1).i16(34, 2);
    bytes.u32(36, 0xE0000000u).f64(40, 1.25).f64(48, -2.0).f64(56, 3e7).f64(64, 0.125);
    auto lod = decodeRecord<FltRecordLOD>(bytes);
    ASSERT_TRUE(lod);
    EXPECT_STREQ(lod->idASCII, "lod_0001");  // all eight characters, still terminated
    EXPECT_EQ(lod->spare, 99);
    EXPECT_EQ(lod->switchInDistance, 1000.0);
    EXPECT_EQ(lod->switchOutDistance, 10.5);
    EXPECT_EQ(lod->flags, static_cast<int32_t>(0xE0000000u));
    EXPECT_EQ(lod->ZcenterCoordinate, 3e7);
    EXPECT_EQ(lod->transitionRange, 0.125);
    // Bit 0x40000000 is set but has no line of its own in this record.
    EXPECT_EQ(dumpOf(*lod),
              "\n LEVEL_OF_DETAIL (LOD) RECORD \n  (PRIMARY_RECORD)\n-- Opcode: 73  Length: 80 --\n"
              "idASCII: lod_0001\nswitchInDistance: 1000\nswitchOutDistance: 10.5\n"
              "id1specialEffect: -1\nid2specialEffect: 2\nflags: \n"
              "      Use Previous Slant Range: 1\n      FreezeCenter (don't recalculate): 1\n"
              "XcenterCoordinate: 1.25\nYcenterCoordinate: -2\nZcenterCoordinate: 3e+07\n"
              "transitionRange: 0.125\n");
}

TEST(LODRecords, shortRecordsReadZerosPastTheirEnd)
{
    // 28 bytes: the distance at 24 is cut after its high half (the high half of 1.0), so it
    // reads as zero, as does everything after it.
    FltRecordBytes bytes(73, 28);
    bytes.chars(4, "cut", 8).f64(16, 500.0).u32(24, 0x3FF00000u);
    auto lod = decodeRecord<FltRecordLOD>(bytes);
    EXPECT_EQ(lod->switchInDistance, 500.0);
    EXPECT_EQ(lod->switchOutDistance, 0.0);
    EXPECT_EQ(lod->flags, 0);
    EXPECT_EQ(lod->transitionRange, 0.0);

    FltRecordBytes old(3, 34);  // cut inside the centre's y
    old.i32(28, 11).u8(32, 0x7F).u8(33, 0xFF);
    auto oldLod = decodeRecord<FltRecordOLDLOD>(old);
    EXPECT_EQ(oldLod->XcenterCoordinate, 11);
    EXPECT_EQ(oldLod->YcenterCoordinate, 0);
    EXPECT_EQ(oldLod->ZcenterCoordinate, 0);
}

TEST(OldLODRecord, keepsIntegerDistancesAndPrintsTheSptFlag)
{
    FltRecordBytes bytes(3, 40);
    bytes.chars(4, "old", 8).u32(12, 3000000000u).u32(16, 20).i16(20, 4).i16(22, -5);
    bytes.u32(24, 0x40000000u).i32(28, -7).i32(32, 8).i32(36, 9);
    auto lod = decodeRecord<FltRecordOLDLOD>(bytes);
    ASSERT_TRUE(lod);
    EXPECT_EQ(lod->switchInDistance, 3000000000u);
    EXPECT_EQ(lod->XcenterCoordinate, -7);
    EXPECT_EQ(fieldsOf(*lod),
              "idASCII: old\nswitchInDistance: 3000000000\nswitchOutDistance: 20\n"
              "id1specialEffect: 4\nid2specialEffect: -5\nflags: \n"
              "      Use Previous Slant Range: 0\n      SPT Flag: 1\n"
              "      FreezeCenter (don't recalculate): 0\n"
              "XcenterCoordinate: -7\nYcenterCoordinate: 8\nZcenterCoordinate: 9\n");
    EXPECT_EQ(dumpOf(*lod).rfind("\n OLD LEVEL_OF_DETAIL (LOD) RECORD (OBSOLETE) \n  (PRIMARY_RECORD)\n", 0), 0u);
}
