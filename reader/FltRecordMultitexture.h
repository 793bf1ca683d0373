// Multitexture and UV list records.
#pragma once

#include "reader/FltRecord.h"

// Opcode 52.
class FltRecordMultitexture : public AncillaryFltRecord {
public:
    explicit FltRecordMultitexture(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 52; }
    const char* getHeading() const override { return "\n MULTI TEXTURE RECORD "; }
};

// Opcode 53.
class FltRecordUVList : public AncillaryFltRecord {
public:
    explicit FltRecordUVList(unsigned int length) : AncillaryFltRecord(length) {}
    int getOpcode() const override { return 53; }
    const char* getHeading() const override { return "\n UV LIST RECORD "; }
};
