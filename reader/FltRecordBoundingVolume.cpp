// Bounding box and bounding volume records.
#include "reader/FltRecordBoundingVolume.h"

#include "reader/FltBytes.h"
#include "reader/FltDump.h"

void FltRecordOldBoundingBox::decode(const FltBytes& in)
{
    XcoordinateLowestCorner = in.i32(4);
    YcoordinateLowestCorner = in.i32(8);
    ZcoordinateLowestCorner = in.i32(12);
    XcoordinateHighestCorner = in.i32(16);
    YcoordinateHighestCorner = in.i32(20);
    ZcoordinateHighestCorner = in.i32(24);
}

void FltRecordOldBoundingBox::dumpFields(FltDump& out) const
{
    out.i32("XcoordinateLowestCorner: ", XcoordinateLowestCorner)
        .i32("YcoordinateLowestCorner: ", YcoordinateLowestCorner)
        .i32("ZcoordinateLowestCorner: ", ZcoordinateLowestCorner)
        .i32("XcoordinateHighestCorner: ", XcoordinateHighestCorner)
        .i32("YcoordinateHighestCorner: ", YcoordinateHighestCorner)
        .i32("ZcoordinateHighestCorner: ", ZcoordinateHighestCorner);
}

void FltRecordBoundingBox::decode(const FltBytes& in)
{
    reserved = in.i32(4);
    XcoordinateLowestCorner = in.f64(8);
    YcoordinateLowestCorner = in.f64(16);
    ZcoordinateLowestCorner = in.f64(24);
    XcoordinateHighestCorner = in.f64(32);
    YcoordinateHighestCorner = in.f64(40);
    ZcoordinateHighestCorner = in.f64(48);
}

void FltRecordBoundingBox::dumpFields(FltDump& out) const
{
    out.f64("XcoordinateLowestCorner: ", XcoordinateLowestCorner)
        .f64("YcoordinateLowestCorner: ", YcoordinateLowestCorner)
        .f64("ZcoordinateLowestCorner: ", ZcoordinateLowestCorner)
        .f64("XcoordinateHighestCorner: ", XcoordinateHighestCorner)
        .f64("YcoordinateHighestCorner: ", YcoordinateHighestCorner)
        .f64("ZcoordinateHighestCorner: ", ZcoordinateHighestCorner);
}

void FltRecordBoundingVolumeSphere::decode(const FltBytes& in)
{
    reserved = in.i32(4);
    radius = in.f64(8);
}

void FltRecordBoundingVolumeSphere::dumpFields(FltDump& out) const { out.f64("radius: ", radius); }

void FltRecordBoundingVolumeCylinder::decode(const FltBytes& in)
{
    reserved = in.i32(4);
    radius = in.f64(8);
    heitght = in.f64(16);
}

void FltRecordBoundingVolumeCylinder::dumpFields(FltDump& out) const
{
    out.f64("radius: ", radius).f64("heitght: ", heitght);
}

void FltRecordBoundingVolumeCenter::decode(const FltBytes& in)
{
    reserved = in.i32(4);
    XcoordinateCenter = in.f64(8);
    YcoordinateCenter = in.f64(16);
    ZcoordinateCenter = in.f64(24);
}

void FltRecordBoundingVolumeCenter::dumpFields(FltDump& out) const
{
    out.f64("XcoordinateCenter: ", XcoordinateCenter)
        .f64("YcoordinateCenter: ", YcoordinateCenter)
        .f64("ZcoordinateCenter: ", ZcoordinateCenter);
}

void FltRecordBoundingVolumeOrientation::decode(const FltBytes& in)
{
    reserved = in.i32(4);
    yawAngle = in.f64(8);
    pitchAngle = in.f64(16);
    rollAngle = in.f64(24);
}

void FltRecordBoundingVolumeOrientation::dumpFields(FltDump& out) const
{
    out.f64("yawAngle: ", yawAngle).f64("pitchAngle: ", pitchAngle).f64("rollAngle: ", rollAngle);
}
