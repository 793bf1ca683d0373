// Bounding box and bounding volume records.
#include <gtest/gtest.h>

#include "RecordTestSupport.h"
#include "reader/FltRecordBoundingVolume.h"

TEST(BoundingBoxRecord, cornersFollowAReservedWord)
{
    FltRecordBytes bytes(74, 56);
    bytes.i32(4, 77).f64(8, -1).f64(16, -2).f64(24, -3).f64(32, 1).f64(40, 2).f64(48, 3.5);
    auto box = decodeRecord<FltRecordBoundingBox>(bytes);
    ASSERT_TRUE(box);
    EXPECT_EQ(box->reserved, 77);
    EXPECT_EQ(dumpOf(*box),
              "\n BOUNDING BOX \n  (ANCILLARY_RECORD)\n-- Opcode: 74  Length: 56 --\n"
              "XcoordinateLowestCorner: -1\nYcoordinateLowestCorner: -2\nZcoordinateLowestCorner: -3\n"
              "XcoordinateHighestCorner: 1\nYcoordinateHighestCorner: 2\nZcoordinateHighestCorner: 3.5\n");
}

TEST(BoundingBoxRecord, oldBoxReadsIntegersFromOffset4)
{
    FltRecordBytes bytes(51, 28);
    bytes.i32(4, -10).i32(8, -20).i32(12, -30).i32(16, 10).i32(20, 20).i32(24, 30);
    auto box = decodeRecord<FltRecordOldBoundingBox>(bytes);
    ASSERT_TRUE(box);
    EXPECT_EQ(box->XcoordinateLowestCorner, -10);
    EXPECT_EQ(dumpOf(*box),
              "\n OLD BOUNDING BOX \n  (ANCILLARY_RECORD)\n-- Opcode: 51  Length: 28 --\n"
              "XcoordinateLowestCorner: -10\nYcoordinateLowestCorner: -20\nZcoordinateLowestCorner: -30\n"
              "XcoordinateHighestCorner: 10\nYcoordinateHighestCorner: 20\nZcoordinateHighestCorner: 30\n");
}

TEST(BoundingVolumeRecords, sphereCylinderCentreAndOrientationDumpTheirLabels)
{
    FltRecordBytes sphere(105, 16);
    sphere.f64(8, 12.5);
    auto s = decodeRecord<FltRecordBoundingVolumeSphere>(sphere);
    ASSERT_TRUE(s);
    EXPECT_EQ(dumpOf(*s), "\n BOUNDING VOLUME SPHERE \n  (ANCILLARY_RECORD)\n-- Opcode: 105  Length: 16 --\nradius: 12.5\n");

    FltRecordBytes cylinder(106, 24);
    cylinder.f64(8, 2).f64(16, 40);
    auto c = decodeRecord<FltRecordBoundingVolumeCylinder>(cylinder);
    EXPECT_EQ(c->heitght, 40.0);
    EXPECT_EQ(fieldsOf(*c), "radius: 2\nheitght: 40\n");

    FltRecordBytes centre(108, 32);
    centre.f64(8, 1).f64(16, 2).f64(24, 3);
    EXPECT_EQ(fieldsOf(*decodeRecord<FltRecordBoundingVolumeCenter>(centre)),
              "XcoordinateCenter: 1\nYcoordinateCenter: 2\nZcoordinateCenter: 3\n");

    FltRecordBytes orientation(109, 32);
    orientation.f64(8, 90.0);
    auto o = decodeRecord<FltRecordBoundingVolumeOrientation>(orientation);
    ASSERT_TRUE(o);
    EXPECT_EQ(dumpOf(*o),
              "\n BOUNDING VOLUME ORIENTATION \n  (ANCILLARY_RECORD)\n-- Opcode: 109  Length: 32 --\n"
              "yawAngle: 90\npitchAngle: 0\nrollAngle: 0\n");
}

TEST(BoundingVolumeRecords, shortRecordsReadZerosPastTheirEnd)
{
    FltRecordBytes cylinder(106, 16);
    cylinder.f64(8, 7);
    auto c = decodeRecord<FltRecordBoundingVolumeCylinder>(cylinder);
    EXPECT_EQ(c->radius, 7.0);
    EXPECT_EQ(c->heitght, 0.0);

    auto sphere = decodeRecord<FltRecordBoundingVolumeSphere>(FltRecordBytes(105, 4));
    EXPECT_EQ(sphere->radius, 0.0);
    EXPECT_EQ(sphere->reserved, 0);
}
