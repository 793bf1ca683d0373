// Transformation records.
#include "reader/FltRecordTransformations.h"

#include "reader/FltBytes.h"
#include "reader/FltDump.h"

namespace {
// The one decoder and dump of the matrix and general matrix records.
void decodeMatrix(const FltBytes& in, float matrix[4][4])
{
    for (size_t row = 0; row < 4; ++row)
        for (size_t col = 0; col < 4; ++col) matrix[row][col] = in.f32(4 + 16 * row + 4 * col);
}

void dumpMatrix(FltDump& out, const float matrix[4][4])
{
    for (int row = 0; row < 4; ++row) {
        out.text("|  ");
        for (int col = 0; col < 4; ++col) out.real(matrix[row][col]).text("  ");
        out.text("  |").nl();
    }
}
}  // namespace

void FltRecordMatrix::decode(const FltBytes& in) { decodeMatrix(in, matrix); }

void FltRecordMatrix::dumpFields(FltDump& out) const { dumpMatrix(out, matrix); }

void FltRecordGeneralMatrix::decode(const FltBytes& in) { decodeMatrix(in, matrix); }

void FltRecordGeneralMatrix::dumpFields(FltDump& out) const { dumpMatrix(out, matrix); }

void FltRecordVector::decode(const FltBytes& in)
{
    i = in.f32(4);
    j = in.f32(8);
    k = in.f32(12);
}

void FltRecordVector::dumpFields(FltDump& out) const
{
    out.text("i=").real(i).text("  j=").real(j).text("  k=").real(k).nl();
}

void FltRecordTranslate::decode(const FltBytes& in)
{
    reserved = in.i32(4);
    x = in.f64(8);
    y = in.f64(16);
    z = in.f64(24);
    deltaX = in.f64(32);
    deltaY = in.f64(40);
    deltaZ = in.f64(48);
}

void FltRecordTranslate::dumpFields(FltDump& out) const
{
    out.text("x=").real(x).text("  y=").real(y).text("  z=").real(z).nl();
    out.text("deltaX=").real(deltaX).text("  deltaY=").real(deltaY).text("  deltaZ=").real(deltaZ).nl();
}

void FltRecordScaleNonUniform::decode(const FltBytes& in)
{
    reserved = in.i32(4);
    XCenter = in.f64(8);
    YCenter = in.f64(16);
    ZCenter = in.f64(24);
    XScaleFactor = in.f32(32);
    YScaleFactor = in.f32(36);
    ZScaleFactor = in.f32(40);
}

void FltRecordScaleNonUniform::dumpFields(FltDump& out) const
{
    out.f64("XCenter.: ", XCenter)
        .f64("YCenter: ", YCenter)
        .f64("ZCenter: ", ZCenter)
        .f64("XScaleFactor: ", XScaleFactor)
        .f64("YScaleFactor: ", YScaleFactor)
        .f64("ZScaleFactor: ", ZScaleFactor);
}

void FltRecordRotateAboutPoint::decode(const FltBytes& in)
{
    reserved = in.i32(4);
    XCenterOfRotation = in.f64(8);
    YCenterOfRotation = in.f64(16);
    ZCenterOfRotation = in.f64(24);
    IAxisOfRotation = in.f32(32);
    JAxisOfRotation = in.f32(36);
    KAxisOfRotation = in.f32(40);
    angleToRotate = in.f32(44);
}

void FltRecordRotateAboutPoint::dumpFields(FltDump& out) const
{
    out.f64("XCenterOfRotation: ", XCenterOfRotation)
        .f64("YCenterOfRotation: ", YCenterOfRotation)
        .f64("ZCenterOfRotation: ", ZCenterOfRotation)
        .f64("IAxisOfRotation: ", IAxisOfRotation)
        .f64("JAxisOfRotation: ", JAxisOfRotation)
        .f64("KAxisOfRotation: ", KAxisOfRotation)
        .f64("angleToRotate: ", angleToRotate);
}

void FltRecordRotateAboutEdge::decode(const FltBytes& in)
{
    reserved = in.i32(4);
    XCenter1 = in.f64(8);
    YCenter1 = in.f64(16);
    ZCenter1 = in.f64(24);
    XCenter2 = in.f64(32);
    YCenter2 = in.f64(40);
    ZCenter2 = in.f64(48);
    angleToRotate = in.f32(56);
}

void FltRecordRotateAboutEdge::dumpFields(FltDump& out) const
{
    out.f64("XCenter1: ", XCenter1)
        .f64("YCenter1: ", YCenter1)
        .f64("ZCenter1: ", ZCenter1)
        .f64("XCenter2: ", XCenter2)
        .f64("YCenter2: ", YCenter2)
        .f64("ZCenter2: ", ZCenter2)
        .f64("angleToRotate: ", angleToRotate);
}

void FltRecordPutTransform::decode(const FltBytes& in)
{
    reserved = in.i32(4);
    XFromOrigin = in.f64(8);
    YFromOrigin = in.f64(16);
    ZFromOrigin = in.f64(24);
    XFromAlign = in.f64(32);
    YFromAlign = in.f64(40);
    ZFromAlign = in.f64(48);
    XFromTrack = in.f64(56);
    YFromTrack = in.f64(64);
    ZFromTrack = in.f64(72);
    XToOrigin = in.f64(80);
    YToOrigin = in.f64(88);
    ZToOrigin = in.f64(96);
    XToAlign = in.f64(104);
    YToAlign = in.f64(112);
    ZToAlign = in.f64(120);
    XToTrack = in.f64(128);
    YToTrack = in.f64(136);
    ZToTrack = in.f64(144);
    angleToRotate = in.f32(152);
}

void FltRecordPutTransform::dumpFields(FltDump& out) const
{
    out.f64("XFromOrigin: ", XFromOrigin)
        .f64("YFromOrigin: ", YFromOrigin)
        .f64("ZFromOrigin: ", ZFromOrigin)
        .f64("XFromAlign: ", XFromAlign)
        .f64("YFromAlign: ", YFromAlign)
        .f64("ZFromAlign: ", ZFromAlign)
        .f64("XFromTrack: ", XFromTrack)
        .f64("YFromTrack: ", YFromTrack)
        .f64("ZFromTrack: ", ZFromTrack)
        .f64("XToOrigin: ", XToOrigin)
        .f64("YToOrigin: ", YToOrigin)
        .f64("ZToOrigin: ", ZToOrigin)
        .f64("XToAlign: ", XToAlign)
        .f64("YToAlign: ", YToAlign)
        .f64("ZToAlign: ", ZToAlign)
        .f64("XToTrack: ", XToTrack)
        .f64("YToTrack: ", YToTrack)
        .f64("ZToTrack: ", ZToTrack)
        .f64("angleToRotate: ", angleToRotate);
}
