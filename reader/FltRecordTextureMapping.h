// The texture mapping palette record: decoded for the log's dump only, the conversion
// reads no texture mapping.
#pragma once

#include <cstdint>
#include <memory>

#include "reader/FltRecord.h"

// The type-specific blocks of a texture mapping, all starting at record offset 168.

// Type 1, put: the three put points on the texture and on the geometry.
struct FltPutTextureMappingStruct {
    void decode(const FltBytes& in);

    int32_t state = 0;                // 0 to 3 points entered
    int32_t activeGeometryPoint = 0;  // 1 origin, 2 alignment, 3 shear
    double lowerLeftCorner[3] = {};   // of the bounding box
    double upperRightCorner[3] = {};
    int32_t useRealWorldSize[3] = {};  // per put point
    int32_t reserved = 0;
    double textureOriginPoint[3] = {};
    double textureAlignmentPoint[3] = {};
    double textureShearPoint[3] = {};
    double geometryOriginPoint[3] = {};
    double geometryAlignmentPoint[3] = {};
    double geometryShearPoint[3] = {};
    int32_t activeTexturePoint = 0;
    int32_t uvDisplayType = 0;  // 1 XY, 2 UV
    float uRepetition = 0;
    float vRepetition = 0;
};

// Type 2, four-point put: the put points plus a perspective point and the projection plane.
struct FltPointPutTextureMappingStruct {
    void decode(const FltBytes& in);

    int32_t state = 0;                // 0 to 4 points entered
    int32_t activeGeometryPoint = 0;  // 1 origin, 2 alignment, 3 shear, 4 perspective
    double lowerLeftCorner[3] = {};
    double upperRightCorner[3] = {};
    int32_t useRealWorldSize[4] = {};
    double textureOriginPoint[3] = {};
    double textureAlignmentPoint[3] = {};
    double textureShearPoint[3] = {};
    double texturePerspectivePoint[3] = {};
    double geometryOriginPoint[3] = {};
    double geometryAlignmentPoint[3] = {};
    double geometryShearPoint[3] = {};
    double geometryPerspectivePoint[3] = {};
    int32_t activeTexturePoint = 0;
    int32_t uvDisplayType = 0;
    float depthScaleFactor = 0;
    int32_t reserved = 0;
    double projectionMatrix[16] = {};  // row by row
    float uRepetition = 0;
    float vRepetition = 0;
};

// Type 4, spherical projection.
struct FltSphericalTextureMappingStruct {
    void decode(const FltBytes& in);

    float scale = 0;
    double center[3] = {};  // of the projection sphere
    float scaleByMaximumDimension = 0;  // scale / maximumDimension
    float maximumDimension = 0;         // of the mapped geometry's bounding box
};

// Type 5, radial (cylindrical) projection.
struct FltRadialTextureMappingStruct {
    void decode(const FltBytes& in);

    int32_t activeGeometryPoint = 0;  // 1 or 2: an end point of the centre line
    int32_t reserved = 0;
    float radialScale = 0;
    float lengthScale = 0;  // along the cylinder's centre line
    double trackplaneMatrix[16] = {};  // trackplane to XYZ, row by row
    double endPoint1[3] = {};
    double endPoint2[3] = {};
};

// The eight-point warp applied on top of any type when the warped flag is set.
struct FltWarpedTextureMappingStruct {
    void decode(const FltBytes& in);

    int32_t activeWarpPoint = 0;  // 0-7 a "from" point, 8-15 a "to" point
    int32_t warpState = 0;        // 0 to 8 points entered
    int32_t reserved[2] = {};
    double fromPoints[8][2] = {};  // x, y in the plane of the transformation matrix
    double toPoints[8][2] = {};
};

// Texture mapping palette record, opcode 112, variable length: 168 bytes of common part
// (index, name, type, warped flag, a 4x4 matrix) followed by the block of the mapping type.
// Types 1, 2, 4 and 5 have a block; every other type has none. When the warped flag is set
// the warp block is decoded as well, from the same offset 168. A block lying past the end
// of a short record reads as zeros.
class FltRecordTextureMappingPalette : public PaletteFltRecord {
public:
    explicit FltRecordTextureMappingPalette(unsigned int length) : PaletteFltRecord(length) {}
    int getOpcode() const override { return 112; }
    const char* getHeading() const override { return "\n TEXTURE MAPPING PALETTE RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    void putTMproperties(FltDump& out) const;
    void pointPutTMproperties(FltDump& out) const;
    void sphericalTMproperties(FltDump& out) const;
    void radialTMproperties(FltDump& out) const;
    void warpedTMproperties(FltDump& out) const;

    int32_t index = 0;
    int32_t reserved = 0;
    char name[21] = {};
    int32_t type = 0;
    int32_t warpedFlag = 0;
    double matrix[16] = {};  // row by row

    // The blocks decoded from this record; null when the record has none of the kind.
    std::unique_ptr<FltPutTextureMappingStruct> putTextureMapping;
    std::unique_ptr<FltPointPutTextureMappingStruct> pointPutTextureMapping;
    std::unique_ptr<FltSphericalTextureMappingStruct> sphericalTextureMapping;
    std::unique_ptr<FltRadialTextureMappingStruct> radialTextureMapping;
    std::unique_ptr<FltWarpedTextureMappingStruct> warpedTextureMapping;
};
