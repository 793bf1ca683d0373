// The eyepoint and trackplane palette record: decoded for the log's dump only, the
// conversion reads no eyepoint.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "reader/FltRecord.h"

// One saved view, 272 bytes.
struct FltEyePointStruct {
    void decode(const FltBytes& in, size_t at);

    double centerX = 0, centerY = 0, centerZ = 0;  // rotation centre
    float yawAngle = 0, pitchAngle = 0, rollAngle = 0;
    float rotationMatrix[16] = {};
    float viewField = 0;  // field of view
    float scale = 0;
    float nearClippingPlane = 0;
    float farClippingPlane = 0;
    float flyThroughMatrix[16] = {};
    float eyePointX = 0, eyePointY = 0, eyePointZ = 0;
    float flyThroughYaw = 0;
    float pitchThroughYaw = 0;  // the pitch of the fly-through
    float eyeVectorI = 0, eyeVectorJ = 0, eyeVectorK = 0;
    int32_t flyThroughFlag = 0;  // set when there is no fly-through
    int32_t orthoDrawingFlag = 0;
    int32_t isValidEyePointFlag = 0;
    int32_t imageOffsetX = 0, imageOffsetY = 0;
    int32_t imageZoom = 0;
};

// One saved trackplane with its grid, 128 bytes.
struct FltTrackPlaneStruct {
    void decode(const FltBytes& in, size_t at);

    int32_t activeFlag = 0;  // -1 for a valid trackplane
    int32_t reserved1 = 0;
    double originX = 0, originY = 0, originZ = 0;
    double alignmentX = 0, alignmentY = 0, alignmentZ = 0;
    double planeX = 0, planeY = 0, planeZ = 0;
    uint8_t gridFlag = 0;   // grid visible
    uint8_t gridType = 0;   // 0 rectangular, 1 radial
    uint8_t gridUnder = 0;  // 0 drawn over, 1 under
    uint8_t reserved2 = 0;
    float gridAngle = 0;  // of a radial grid
    double gridSpacingX = 0, gridSpacingY = 0;
    uint8_t radialDirectionControl = 0;
    uint8_t rectangularDirectionControl = 0;
    uint8_t gridSnap = 0;
    uint8_t gridFlagReserved = 0;
    int32_t reserved3 = 0;
    double gridSize = 0;
    int32_t gridVisibilityMask = 0;  // the four quadrants
    int32_t reserved4 = 0;
};

// Eyepoint and trackplane palette record, opcode 83, 4008 bytes: a reserved word, ten
// eyepoints from offset 8 and ten trackplanes from offset 2728. Only the entries that the
// record holds whole are decoded, so a short record yields fewer of them.
class FltRecordEyePointTrackPlane : public PaletteFltRecord {
public:
    static constexpr int kMaxEyePoints = 10;
    static constexpr int kMaxTrackPlanes = 10;

    explicit FltRecordEyePointTrackPlane(unsigned int length) : PaletteFltRecord(length) {}
    int getOpcode() const override { return 83; }
    const char* getHeading() const override { return "\n EYEPOINT TRACKPLANE RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    int32_t reserved = 0;
    int numberOfEyePoints = 0;    // entries of eyePoints decoded
    int numberOfTrackPlanes = 0;  // entries of trackPlanes decoded
    // Only the entries decoded: a full record's 4 KB of tables would otherwise be taken by
    // every record, however short.
    std::vector<FltEyePointStruct> eyePoints;
    std::vector<FltTrackPlaneStruct> trackPlanes;
};
