// Bounding box and bounding volume records.
#pragma once

#include "reader/FltRecord.h"

// Opcode 51.
class FltRecordOldBoundingBox : public AncillaryFltRecord {
public:
    explicit FltRecordOldBoundingBox(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 51; }
    const char* getHeading() const override { return "\n OLD BOUNDING BOX "; }
};

// Opcode 74.
class FltRecordBoundingBox : public AncillaryFltRecord {
public:
    explicit FltRecordBoundingBox(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 74; }
    const char* getHeading() const override { return "\n BOUNDING BOX "; }
};

// Opcode 105.
class FltRecordBoundingVolumeSphere : public AncillaryFltRecord {
public:
    explicit FltRecordBoundingVolumeSphere(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 105; }
    const char* getHeading() const override { return "\n BOUNDING VOLUME SPHERE "; }
};

// Opcode 106.
class FltRecordBoundingVolumeCylinder : public AncillaryFltRecord {
public:
    explicit FltRecordBoundingVolumeCylinder(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 106; }
    const char* getHeading() const override { return "\n BOUNDING VOLUME CYLINDER "; }
};

// Opcode 108.
class FltRecordBoundingVolumeCenter : public AncillaryFltRecord {
public:
    explicit FltRecordBoundingVolumeCenter(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 108; }
    const char* getHeading() const override { return "\n BOUNDING VOLUME CENTER "; }
};

// Opcode 109.
class FltRecordBoundingVolumeOrientation : public AncillaryFltRecord {
public:
    explicit FltRecordBoundingVolumeOrientation(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 109; }
    const char* getHeading() const override { return "\n BOUNDING VOLUME ORIENTATION "; }
};
