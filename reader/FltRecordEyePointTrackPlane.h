// The eyepoint and trackplane palette record.
#pragma once

#include "reader/FltRecord.h"

// Opcode 83.
class FltRecordEyePointTrackPlane : public PaletteFltRecord {
public:
    explicit FltRecordEyePointTrackPlane(unsigned int length) : PaletteFltRecord(length) {}
    int getOpcode() const override { return 83; }
    const char* getHeading() const override { return "\n EYEPOINT TRACKPLANE RECORD "; }
};
