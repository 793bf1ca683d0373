// The light point record: decoded for the log's dump only, the conversion builds no node
// from it.
#pragma once

#include <cstdint>

#include "reader/FltRecord.h"

// Light point record, opcode 111, 156 bytes: the appearance, directionality and animation
// of the light points in the vertices below it.
class FltRecordLightPoint : public PrimaryFltRecord {
public:
    explicit FltRecordLightPoint(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 111; }
    const char* getHeading() const override { return "\n LIGHT POINT RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    char idASCII[9] = {};
    int16_t surfaceMaterialCode = 0;
    int16_t featureID = 0;
    uint32_t backColor = 0;  // colour of the back side of bidirectional points
    int32_t displayMode = 0;  // 0 raster, 1 calligraphic, 2 either
    float intensity = 0;
    float backIntensity = 0;
    float minimumDefocus = 0;
    float maximumDefocus = 0;
    int32_t fadingMode = 0;
    int32_t fogPunchMode = 0;
    int32_t directionalMode = 0;
    int32_t rangeMode = 0;  // 0 depth (Z buffer), 1 slant range
    float minPixelSize = 0;
    float maxPixelSize = 0;
    float actualSize = 0;
    float transparentFalloffPixelSize = 0;
    float transparentFalloffExponent = 0;
    float transparentFalloffScalar = 0;
    float transparentFalloffClamp = 0;
    float fogScalar = 0;
    float reserved = 0;
    float sizeDifferenceThreshold = 0;
    int32_t directionality = 0;  // 0 omnidirectional, 1 unidirectional, 2 bidirectional
    float horizontalLobeAngle = 0;
    float verticalLobeAngle = 0;
    float lobeRollAngle = 0;
    float directionalFalloffExponent = 0;
    float directionalAmbientIntensity = 0;
    float animationPeriod = 0;
    float animationPhaseDelay = 0;
    float animationEnabledPeriod = 0;
    float significance = 0;
    int32_t calligraphicDrawOrder = 0;
    uint32_t flags = 0;
    float axisOfRotationX = 0, axisOfRotationY = 0, axisOfRotationZ = 0;
};
