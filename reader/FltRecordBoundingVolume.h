// Bounding box and bounding volume records: decoded and dumped, never converted.
#pragma once

#include <cstdint>

#include "reader/FltRecord.h"

// Old bounding box record, opcode 51, 28 bytes: two integer corners. Unlike the current
// records it has no leading reserved word; the value at offset 4 is the lowest corner's x.
class FltRecordOldBoundingBox : public AncillaryFltRecord {
public:
    explicit FltRecordOldBoundingBox(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 51; }
    const char* getHeading() const override { return "\n OLD BOUNDING BOX "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    int32_t XcoordinateLowestCorner = 0;
    int32_t YcoordinateLowestCorner = 0;
    int32_t ZcoordinateLowestCorner = 0;
    int32_t XcoordinateHighestCorner = 0;
    int32_t YcoordinateHighestCorner = 0;
    int32_t ZcoordinateHighestCorner = 0;
};

// Bounding box record, opcode 74, 56 bytes: the lowest and highest float64 corners.
class FltRecordBoundingBox : public AncillaryFltRecord {
public:
    explicit FltRecordBoundingBox(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 74; }
    const char* getHeading() const override { return "\n BOUNDING BOX "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    int32_t reserved = 0;
    double XcoordinateLowestCorner = 0;
    double YcoordinateLowestCorner = 0;
    double ZcoordinateLowestCorner = 0;
    double XcoordinateHighestCorner = 0;
    double YcoordinateHighestCorner = 0;
    double ZcoordinateHighestCorner = 0;
};

// Bounding sphere record, opcode 105, 16 bytes.
class FltRecordBoundingVolumeSphere : public AncillaryFltRecord {
public:
    explicit FltRecordBoundingVolumeSphere(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 105; }
    const char* getHeading() const override { return "\n BOUNDING VOLUME SPHERE "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    int32_t reserved = 0;
    double radius = 0;
};

// Bounding cylinder record, opcode 106, 24 bytes. The misspelt "heitght: " label (and the
// member named after it) is kept on purpose.
class FltRecordBoundingVolumeCylinder : public AncillaryFltRecord {
public:
    explicit FltRecordBoundingVolumeCylinder(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 106; }
    const char* getHeading() const override { return "\n BOUNDING VOLUME CYLINDER "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    int32_t reserved = 0;
    double radius = 0;
    double heitght = 0;
};

// Bounding volume centre record, opcode 108, 32 bytes.
class FltRecordBoundingVolumeCenter : public AncillaryFltRecord {
public:
    explicit FltRecordBoundingVolumeCenter(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 108; }
    const char* getHeading() const override { return "\n BOUNDING VOLUME CENTER "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    int32_t reserved = 0;
    double XcoordinateCenter = 0;
    double YcoordinateCenter = 0;
    double ZcoordinateCenter = 0;
};

// Bounding volume orientation record, opcode 109, 32 bytes: yaw, pitch and roll in degrees,
// laid out as the centre record.
class FltRecordBoundingVolumeOrientation : public AncillaryFltRecord {
public:
    explicit FltRecordBoundingVolumeOrientation(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 109; }
    const char* getHeading() const override { return "\n BOUNDING VOLUME ORIENTATION "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    int32_t reserved = 0;
    double yawAngle = 0;
    double pitchAngle = 0;
    double rollAngle = 0;
};
