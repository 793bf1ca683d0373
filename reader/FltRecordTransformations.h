// Transformation records: the full matrices and the modelling operations they were built
// from (vector, translate, scale, rotations, put). Only the matrix record reaches the scene
// graph; the others are decoded for the dump.
#pragma once

#include <cstdint>

#include "reader/FltRecord.h"

// Matrix record, opcode 49, 68 bytes: a 4x4 float32 matrix stored row after row, the
// translation in the fourth row.
class FltRecordMatrix : public AncillaryFltRecord {
public:
    explicit FltRecordMatrix(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 49; }
    const char* getHeading() const override { return "\n MATRIX RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    float matrix[4][4] = {};
};

// Vector record, opcode 50, 16 bytes: a float32 direction.
class FltRecordVector : public AncillaryFltRecord {
public:
    explicit FltRecordVector(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 50; }
    const char* getHeading() const override { return "\n VECTOR RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    float i = 0;
    float j = 0;
    float k = 0;
};

// Rotate-about-edge record, opcode 76, 64 bytes: two points on the axis and an angle. The
// factory also builds this class for opcode 82 (put transform), whose bytes are then read
// with this layout: kept on purpose.
class FltRecordRotateAboutEdge : public AncillaryFltRecord {
public:
    explicit FltRecordRotateAboutEdge(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 76; }
    const char* getHeading() const override { return "\n ROTATE ABOUT EDGE RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    int32_t reserved = 0;
    double XCenter1 = 0;
    double YCenter1 = 0;
    double ZCenter1 = 0;
    double XCenter2 = 0;
    double YCenter2 = 0;
    double ZCenter2 = 0;
    float angleToRotate = 0;
};

// Translate record, opcode 78, 56 bytes: a "from" point and the displacement applied to it.
class FltRecordTranslate : public AncillaryFltRecord {
public:
    explicit FltRecordTranslate(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 78; }
    const char* getHeading() const override { return "\n TRANSLATE RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    int32_t reserved = 0;
    double x = 0;
    double y = 0;
    double z = 0;
    double deltaX = 0;
    double deltaY = 0;
    double deltaZ = 0;
};

// Non-uniform scale record, opcode 79, 44 bytes: a float64 centre and three float32 factors.
// The "XCenter.: " label keeps its stray full stop on purpose.
class FltRecordScaleNonUniform : public AncillaryFltRecord {
public:
    explicit FltRecordScaleNonUniform(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 79; }
    const char* getHeading() const override { return "\n SCALE NON UNIFORM RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    int32_t reserved = 0;
    double XCenter = 0;
    double YCenter = 0;
    double ZCenter = 0;
    float XScaleFactor = 0;
    float YScaleFactor = 0;
    float ZScaleFactor = 0;
};

// Rotate-about-point record, opcode 80, 48 bytes: a float64 centre, a float32 axis and angle.
class FltRecordRotateAboutPoint : public AncillaryFltRecord {
public:
    explicit FltRecordRotateAboutPoint(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 80; }
    const char* getHeading() const override { return "\n ROTATE ABOUT POINT RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    int32_t reserved = 0;
    double XCenterOfRotation = 0;
    double YCenterOfRotation = 0;
    double ZCenterOfRotation = 0;
    float IAxisOfRotation = 0;
    float JAxisOfRotation = 0;
    float KAxisOfRotation = 0;
    float angleToRotate = 0;
};

// Put-transform record, opcode 82: three "from" points, three "to" points and an angle.
// The factory never creates this class (opcode 82 becomes a rotate-about-edge record); it
// keeps its own decoder and dump all the same.
class FltRecordPutTransform : public AncillaryFltRecord {
public:
    explicit FltRecordPutTransform(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 82; }
    const char* getHeading() const override { return "\n PUT TRANSFORM RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    int32_t reserved = 0;
    double XFromOrigin = 0;
    double YFromOrigin = 0;
    double ZFromOrigin = 0;
    double XFromAlign = 0;
    double YFromAlign = 0;
    double ZFromAlign = 0;
    double XFromTrack = 0;
    double YFromTrack = 0;
    double ZFromTrack = 0;
    double XToOrigin = 0;
    double YToOrigin = 0;
    double ZToOrigin = 0;
    double XToAlign = 0;
    double YToAlign = 0;
    double ZToAlign = 0;
    double XToTrack = 0;
    double YToTrack = 0;
    double ZToTrack = 0;
    float angleToRotate = 0;
};

// General matrix record, opcode 94, 68 bytes: the layout, decoder and dump of the matrix
// record. A class of its own, not a matrix record, so that the converter (which applies
// only matrix records) never takes it for one.
class FltRecordGeneralMatrix : public AncillaryFltRecord {
public:
    explicit FltRecordGeneralMatrix(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 94; }
    const char* getHeading() const override { return "\n GENERAL_MATRIX RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    float matrix[4][4] = {};
};
