// Material palette records, current and obsolete.
#pragma once

#include "reader/FltRecord.h"

// Opcode 66.
class FltRecordOLDMaterialPalette : public PaletteFltRecord, public FltVersion {
public:
    explicit FltRecordOLDMaterialPalette(unsigned int length) : PaletteFltRecord(length) {}
    int getOpcode() const override { return 66; }
    const char* getHeading() const override { return "\n OLD MATERIAL PALETTE RECORD (OBSOLETE)"; }
};

// Opcode 113.
class FltRecordMaterial : public PaletteFltRecord {
public:
    explicit FltRecordMaterial(unsigned int length) : PaletteFltRecord(length) {}
    int getOpcode() const override { return 113; }
    const char* getHeading() const override { return "\n MATERIAL PALETTE RECORD "; }
};
