// The header record, opcode 1: the first record of every database.
#pragma once

#include <cstdint>

#include "reader/FltRecord.h"

// Header record, opcode 1. Its layout grew over the format's revisions: the decoder reads
// only what the file's own formatRevisionLevel says is there (up to YdeltaToPlaceDatabase
// below 1420, up to earthEllipsoidModel below 1540, up to earthMinorAxis at 324 bytes from
// 1580 on), whatever the record's length says.
class FltRecordHeader : public PrimaryFltRecord {
public:
    explicit FltRecordHeader(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 1; }
    const char* getHeading() const override { return "\n HEADER RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    int32_t getFormatRevisionLevel() const { return formatRevisionLevel; }
    int32_t getFlags() const { return flags; }
    uint8_t getVertexCoordinateUnits() const { return vertexCoordinateUnits; }
    // Metres in one unit of the vertex coordinates (codes 0 metres, 1 kilometres, 4 feet,
    // 5 inches, 8 nautical miles; any other code reads as metres).
    double metresPerUnit() const
    {
        switch (vertexCoordinateUnits) {
        case 1: return 1000.0;
        case 4: return 0.3048;
        case 5: return 0.0254;
        case 8: return 1852.0;
        default: return 1.0;
        }
    }
    int16_t getMultiplierDiviserUnit() const { return multiplierDiviserUnit; }
    bool isPackedColorMode() const { return (static_cast<uint32_t>(flags) & 0x40000000u) != 0; }

    char ID[9] = {};
    int32_t formatRevisionLevel = 0;
    int32_t editRevisionLevel = 0;
    char lastRevisionDateTime[33] = {};
    int16_t idNextGroup = 0;
    int16_t idNextLOD = 0;
    int16_t idNextObject = 0;
    int16_t idNextFace = 0;
    int16_t multiplierDiviserUnit = 0;
    uint8_t vertexCoordinateUnits = 0;
    uint8_t textWhite = 0;
    int32_t flags = 0;
    char reserved1[24] = {};
    int32_t projectionType = 0;
    char reserved2[24] = {};
    char reserved3[4] = {};
    int16_t idNextDegreeOfFreedom = 0;
    int16_t idVertexStorageType = 0;
    int32_t idDatabaseOrigin = 0;
    double southWestDatabaseCoordinateX = 0;
    double southWestDatabaseCoordinateY = 0;
    double XdeltaToPlaceDatabase = 0;
    double YdeltaToPlaceDatabase = 0;
    // From revision 1420.
    int16_t idNextSound = 0;
    int16_t idNextPath = 0;
    char reserved4[8] = {};
    int16_t idNextClip = 0;
    int16_t idNextText = 0;
    int16_t idNextBSP = 0;
    int16_t idNextSwitch = 0;
    int32_t reserved5 = 0;
    double southWestCornerLatitude = 0;
    double southWestCornerLongitude = 0;
    double northEastCornerLatitude = 0;
    double northEastCornerLongitude = 0;
    double originLatitude = 0;
    double originLongitude = 0;
    double LambertUpperLatitude = 0;
    double LambertLowerLatitude = 0;
    int16_t idNextLightSource = 0;
    int16_t idNextLightPoint = 0;
    int16_t idNextRoad = 0;
    int16_t idNextCat = 0;
    char reserved6[8] = {};
    int32_t earthEllipsoidModel = 0;
    // From revision 1540.
    int16_t idNextAdaptive = 0;
    int16_t idNextCurve = 0;
    int16_t reserved7 = 0;
    int16_t utmZone = 0;
    char reserved8[6] = {};
    // From revision 1570.
    double ZdeltaToPlaceDatabase = 0;
    double radius = 0;
    int16_t idNextMesh = 0;
    int16_t idNextLightPointSystem = 0;  // reserved below 1580
    int32_t reserved9 = 0;
    double earthMajorAxis = 0;
    double earthMinorAxis = 0;
};
