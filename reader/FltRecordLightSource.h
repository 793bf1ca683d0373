// Light source record and light source palette: decoded for the log's dump only, the
// conversion builds no lights from them.
#pragma once

#include <cstdint>

#include "reader/FltRecord.h"

// Light source record, opcode 101, 64 bytes: a light placed in the hierarchy that refers
// to a light source palette entry by index.
class FltRecordLightSource : public PrimaryFltRecord {
public:
    explicit FltRecordLightSource(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 101; }
    const char* getHeading() const override { return "\n LIGHT SOURCE RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    char idASCII[9] = {};
    int32_t reserved1 = 0;
    int32_t paletteIndex = 0;
    int32_t reserved2 = 0;
    uint32_t flags = 0;  // enabled, global, export (most significant bit first)
    int32_t reserved3 = 0;
    double positionX = 0, positionY = 0, positionZ = 0;
    float yaw = 0, pitch = 0;
};

// Light source palette record, opcode 102, 240 bytes: one light definition (colours,
// type, spot and attenuation terms). The name area from offset 8 (two reserved words, then
// the 20-character name) is copied raw.
class FltRecordLightSourcePalette : public PaletteFltRecord {
public:
    explicit FltRecordLightSourcePalette(unsigned int length) : PaletteFltRecord(length) {}
    int getOpcode() const override { return 102; }
    const char* getHeading() const override { return "\n LIGHT SOURCE PALETTE RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    int32_t paletteIndex = 0;
    char reserved1[8] = {};
    char lightSourceName[21] = {};
    int32_t reserved2 = 0;
    float ambientRed = 0, ambientGreen = 0, ambientBlue = 0, ambientAlpha = 0;
    float diffuseRed = 0, diffuseGreen = 0, diffuseBlue = 0, diffuseAlpha = 0;
    float specularRed = 0, specularGreen = 0, specularBlue = 0, specularAlpha = 0;
    int32_t lightType = 0;  // 0 infinite, 1 local, 2 spot
    float spotExponentialDropoffTerm = 0;
    float spotCutoffAngle = 0;  // degrees
    float yaw = 0, pitch = 0;
    float constantAttenuationCoefficient = 0;
    float linearAttenuationCoefficient = 0;
    float quadraticAttenuationCoefficient = 0;
    int32_t modelingLight = 0;
};
