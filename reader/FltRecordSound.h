// Sound record and sound palette.
#pragma once

#include "reader/FltBytes.h"
#include "reader/FltRecord.h"

// Opcode 91.
class FltRecordSound : public PrimaryFltRecord {
public:
    explicit FltRecordSound(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 91; }
    const char* getHeading() const override { return "\n SOUND RECORD "; }
};

// Opcode 93.
class FltRecordSoundPalette : public PaletteFltRecord {
public:
    explicit FltRecordSoundPalette(unsigned int length) : PaletteFltRecord(length) {}
    int getOpcode() const override { return 93; }
    const char* getHeading() const override { return "\n SOUND PALETTE RECORD "; }
    // Decodes a following sound palette record into this object.
    void decodeContinuation(const char* data, unsigned int size) { decode(FltBytes(data, size)); }
};
