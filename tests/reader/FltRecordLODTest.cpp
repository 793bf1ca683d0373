// Level-of-detail records cut short. The golden log pins both layouts (the old record's
// unsigned distances and signed centre among them) and the level-of-detail conversion test
// the distances and centres the converter builds from.
#include <gtest/gtest.h>

#include "RecordTestSupport.h"
#include "reader/FltRecordLOD.h"

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
