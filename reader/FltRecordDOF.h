// The degree-of-freedom record.
#pragma once

#include <cstdint>

#include "reader/FltRecord.h"

// Degree-of-freedom record, opcode 14, 384 bytes: a local coordinate system, the limits
// and current values of its translations, rotations and scales, and a flags word telling
// which of them are limited. The dump labels keep their stray blanks before the colons on
// purpose; the member names drop them.
class FltRecordDOF : public PrimaryFltRecord {
public:
    explicit FltRecordDOF(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 14; }
    const char* getHeading() const override { return "\n DOF RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    char idASCII[9] = {};
    int32_t reserved = 0;
    double XOriginOfDOFLocalCoordinateSystem = 0;
    double YOriginOfDOFLocalCoordinateSystem = 0;
    double ZOriginOfDOFLocalCoordinateSystem = 0;
    double XPointOnXAxisOfDOFLocalCoordinateSystem = 0;
    double YPointOnXAxisOfDOFLocalCoordinateSystem = 0;
    double ZPointOnXAxisOfDOFLocalCoordinateSystem = 0;
    double XPointInXYPlaneOfDOFLocalCoordinateSystem = 0;
    double YPointInXYPlaneOfDOFLocalCoordinateSystem = 0;
    double ZPointInXYPlaneOfDOFLocalCoordinateSystem = 0;
    double ZMinValue = 0;
    double ZMaxValue = 0;
    double ZCurrentValue = 0;
    double ZIncrement = 0;
    double YMinValue = 0;
    double YMaxValue = 0;
    double YCurrentValue = 0;
    double YIncrement = 0;
    double XMinValue = 0;
    double XMaxValue = 0;
    double XCurrentValue = 0;
    double XIncrement = 0;
    double minimumPitch = 0;
    double maxPitch = 0;
    double currentPitch = 0;
    double incrementInPitch = 0;
    double minimumRoll = 0;
    double maxRoll = 0;
    double currentRoll = 0;
    double incrementInRoll = 0;
    double minimumYaw = 0;
    double maxYaw = 0;
    double currentYaw = 0;
    double incrementInYaw = 0;
    double ZMinScale = 0;
    double ZMaxScale = 0;
    double ZCurrentScale = 0;
    double ZIncrementForScale = 0;
    double YMinScale = 0;
    double YMaxScale = 0;
    double YCurrentScale = 0;
    double YIncrementForScale = 0;
    double XMinScale = 0;
    double XMaxScale = 0;
    double XCurrentScale = 0;
    double XIncrementForScale = 0;
    int32_t flags = 0;
};
