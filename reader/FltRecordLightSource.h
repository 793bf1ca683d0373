// Light source record and light source palette.
#pragma once

#include "reader/FltRecord.h"

// Opcode 101.
class FltRecordLightSource : public PrimaryFltRecord {
public:
    explicit FltRecordLightSource(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 101; }
    const char* getHeading() const override { return "\n LIGHT SOURCE RECORD "; }
};

// Opcode 102.
class FltRecordLightSourcePalette : public PaletteFltRecord {
public:
    explicit FltRecordLightSourcePalette(unsigned int length) : PaletteFltRecord(length) {}
    int getOpcode() const override { return 102; }
    const char* getHeading() const override { return "\n LIGHT SOURCE PALETTE RECORD "; }
};
