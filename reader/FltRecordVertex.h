// Vertex palette, vertex records (current and obsolete), vertex list and morph vertex list.
#pragma once

#include "reader/FltRecord.h"

// Opcode 67.
class FltRecordVertexPalette : public PaletteFltRecord {
public:
    explicit FltRecordVertexPalette(unsigned int length) : PaletteFltRecord(length) {}
    int getOpcode() const override { return 67; }
    const char* getHeading() const override { return "\n VERTEX PALETTE RECORD "; }
};

// Opcode 68, and the common part of the other current vertex kinds.
class FltRecordVertexColor : public PaletteFltRecord, public FltVersion {
public:
    explicit FltRecordVertexColor(unsigned int length) : PaletteFltRecord(length) {}
    int getOpcode() const override { return 68; }
    const char* getHeading() const override { return "\n VERTEX COLOR RECORD "; }
};

// Opcode 69.
class FltRecordVertexColorNormal : public FltRecordVertexColor {
public:
    explicit FltRecordVertexColorNormal(unsigned int length) : FltRecordVertexColor(length) {}
    int getOpcode() const override { return 69; }
    const char* getHeading() const override { return "\n VERTEX COLOR NORMAL RECORD "; }
};

// Opcode 70.
class FltRecordVertexColorNormalUv : public FltRecordVertexColor {
public:
    explicit FltRecordVertexColorNormalUv(unsigned int length) : FltRecordVertexColor(length) {}
    int getOpcode() const override { return 70; }
    const char* getHeading() const override { return "\n VERTEX COLOR NORMAL UV RECORD "; }
};

// Opcode 71.
class FltRecordVertexColorUv : public FltRecordVertexColor {
public:
    explicit FltRecordVertexColorUv(unsigned int length) : FltRecordVertexColor(length) {}
    int getOpcode() const override { return 71; }
    const char* getHeading() const override { return "\n VERTEX COLOR UV (TEXTURE) RECORD "; }
};

// Opcode 72.
class FltRecordVertexList : public PrimaryFltRecord {
public:
    explicit FltRecordVertexList(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 72; }
    const char* getHeading() const override { return "\n VERTEX LIST RECORD "; }
};

// Opcode 89.
class FltRecordMorphVertexList : public PrimaryFltRecord {
public:
    explicit FltRecordMorphVertexList(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 89; }
    const char* getHeading() const override { return "\n MORPH VERTEX LIST RECORD "; }
};

// Opcode 7.
class FltRecordOldVertex : public PrimaryFltRecord {
public:
    explicit FltRecordOldVertex(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 7; }
    const char* getHeading() const override { return "\n OLD VERTEX RECORD (OBSOLETE)"; }
};

// Opcode 8.
class FltRecordOldVertexColor : public PrimaryFltRecord {
public:
    explicit FltRecordOldVertexColor(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 8; }
    const char* getHeading() const override { return "\n OLD VERTEX COLOR RECORD (OBSOLETE)"; }
};

// Opcode 9.
class FltRecordOldVertexColorNormal : public PrimaryFltRecord {
public:
    explicit FltRecordOldVertexColorNormal(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 9; }
    const char* getHeading() const override { return "\n OLD VERTEX COLOR NORMAL RECORD (OBSOLETE)"; }
};
