// Transformation records: matrices, vector, translate, scale, rotations, put.
#pragma once

#include "reader/FltRecord.h"

// Opcode 49.
class FltRecordMatrix : public AncillaryFltRecord {
public:
    explicit FltRecordMatrix(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 49; }
    const char* getHeading() const override { return "\n MATRIX RECORD "; }
};

// Opcode 50.
class FltRecordVector : public AncillaryFltRecord {
public:
    explicit FltRecordVector(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 50; }
    const char* getHeading() const override { return "\n VECTOR RECORD "; }
};

// Opcode 76.
class FltRecordRotateAboutEdge : public AncillaryFltRecord {
public:
    explicit FltRecordRotateAboutEdge(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 76; }
    const char* getHeading() const override { return "\n ROTATE ABOUT EDGE RECORD "; }
};

// Opcode 78.
class FltRecordTranslate : public AncillaryFltRecord {
public:
    explicit FltRecordTranslate(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 78; }
    const char* getHeading() const override { return "\n TRANSLATE RECORD "; }
};

// Opcode 79.
class FltRecordScaleNonUniform : public AncillaryFltRecord {
public:
    explicit FltRecordScaleNonUniform(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 79; }
    const char* getHeading() const override { return "\n SCALE NON UNIFORM RECORD "; }
};

// Opcode 80.
class FltRecordRotateAboutPoint : public AncillaryFltRecord {
public:
    explicit FltRecordRotateAboutPoint(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 80; }
    const char* getHeading() const override { return "\n ROTATE ABOUT POINT RECORD "; }
};

// Opcode 82.
class FltRecordPutTransform : public AncillaryFltRecord {
public:
    explicit FltRecordPutTransform(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 82; }
    const char* getHeading() const override { return "\n PUT TRANSFORM RECORD "; }
};

// Opcode 94.
class FltRecordGeneralMatrix : public AncillaryFltRecord {
public:
    explicit FltRecordGeneralMatrix(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 94; }
    const char* getHeading() const override { return "\n GENERAL_MATRIX RECORD "; }
};
