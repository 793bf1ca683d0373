// The clip region record.
#pragma once

#include <cstdint>

#include "reader/FltRecord.h"

// Clip region record, opcode 98, 280 bytes: a named region of four corner points and five
// clip planes A*x + B*y + C*z + D = 0, each with its own enable byte. The converter turns
// every plane into a clip plane, enabled or not.
class FltRecordClipRegion : public PrimaryFltRecord {
public:
    enum Coefficient { A = 0, B = 1, C = 2, D = 3 };
    static constexpr int kPlanes = 5;

    explicit FltRecordClipRegion(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 98; }
    const char* getHeading() const override { return "\n CLIP REGION RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    // The number of planes the record carries.
    int getUsedFlags() const { return kPlanes; }
    // Whether plane i (0 to 4) is switched on: its flag byte equals 1.
    bool isEnabledClipPlane(int i) const { return i >= 0 && i < kPlanes && flags[i] == 1; }

    char idASCII[9] = {};
    int32_t reserved1 = 0;
    int16_t reserved2 = 0;
    uint8_t flags[6] = {};  // one per plane; the sixth byte is read with them and unused
    double clipRegion1[3] = {};
    double clipRegion2[3] = {};
    double clipRegion3[3] = {};
    double clipRegion4[3] = {};
    // clipRegionCoefs[coefficient][plane], in the file's order: the five A, then the five B...
    double clipRegionCoefs[4][kPlanes] = {};
};
