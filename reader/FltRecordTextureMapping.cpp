// The texture mapping palette record and its type-specific blocks.
#include "reader/FltRecordTextureMapping.h"

#include "reader/FltBytes.h"
#include "reader/FltDump.h"

namespace {

// Three lines: name followed by "X: ", "Y: " and "Z: ".
void dumpXyz(FltDump& out, const char* name, const double v[3])
{
    out.text(name).text("X: ").real(v[0]).nl();
    out.text(name).text("Y: ").real(v[1]).nl();
    out.text(name).text("Z: ").real(v[2]).nl();
}

}  // namespace

void FltPutTextureMappingStruct::decode(const FltBytes& in)
{
    state = in.i32(168);
    activeGeometryPoint = in.i32(172);
    in.f64s(176, lowerLeftCorner, 3);
    in.f64s(200, upperRightCorner, 3);
    for (int i = 0; i < 3; ++i) useRealWorldSize[i] = in.i32(224 + 4 * i);
    reserved = in.i32(236);
    in.f64s(240, textureOriginPoint, 3);
    in.f64s(264, textureAlignmentPoint, 3);
    in.f64s(288, textureShearPoint, 3);
    in.f64s(312, geometryOriginPoint, 3);
    in.f64s(336, geometryAlignmentPoint, 3);
    in.f64s(360, geometryShearPoint, 3);
    activeTexturePoint = in.i32(384);
    uvDisplayType = in.i32(388);
    uRepetition = in.f32(392);
    vRepetition = in.f32(396);
}

void FltPointPutTextureMappingStruct::decode(const FltBytes& in)
{
    state = in.i32(168);
    activeGeometryPoint = in.i32(172);
    in.f64s(176, lowerLeftCorner, 3);
    in.f64s(200, upperRightCorner, 3);
    for (int i = 0; i < 4; ++i) useRealWorldSize[i] = in.i32(224 + 4 * i);
    in.f64s(240, textureOriginPoint, 3);
    in.f64s(264, textureAlignmentPoint, 3);
    in.f64s(288, textureShearPoint, 3);
    in.f64s(312, texturePerspectivePoint, 3);
    in.f64s(336, geometryOriginPoint, 3);
    in.f64s(360, geometryAlignmentPoint, 3);
    in.f64s(384, geometryShearPoint, 3);
    in.f64s(408, geometryPerspectivePoint, 3);
    activeTexturePoint = in.i32(432);
    uvDisplayType = in.i32(436);
    depthScaleFactor = in.f32(440);
    reserved = in.i32(444);
    in.f64s(448, projectionMatrix, 16);
    uRepetition = in.f32(576);
    vRepetition = in.f32(580);
}

void FltSphericalTextureMappingStruct::decode(const FltBytes& in)
{
    scale = in.f32(168);
    // The centre sits on a 4-byte boundary (172) in the format's layout, not 8.
    in.f64s(172, center, 3);
    scaleByMaximumDimension = in.f32(196);
    maximumDimension = in.f32(200);
}

void FltRadialTextureMappingStruct::decode(const FltBytes& in)
{
    activeGeometryPoint = in.i32(168);
    reserved = in.i32(172);
    radialScale = in.f32(176);
    lengthScale = in.f32(180);
    in.f64s(184, trackplaneMatrix, 16);
    in.f64s(312, endPoint1, 3);
    in.f64s(336, endPoint2, 3);
}

void FltWarpedTextureMappingStruct::decode(const FltBytes& in)
{
    activeWarpPoint = in.i32(168);
    warpState = in.i32(172);
    reserved[0] = in.i32(176);
    reserved[1] = in.i32(180);
    for (size_t p = 0; p < 8; ++p) {
        in.f64s(184 + 16 * p, fromPoints[p], 2);
        in.f64s(312 + 16 * p, toPoints[p], 2);
    }
}

void FltRecordTextureMappingPalette::decode(const FltBytes& in)
{
    index = in.i32(4);
    reserved = in.i32(8);
    in.chars(12, 20, name);
    type = in.i32(32);
    warpedFlag = in.i32(36);
    in.f64s(40, matrix, 16);

    // A new decode replaces every block held before.
    putTextureMapping.reset();
    pointPutTextureMapping.reset();
    sphericalTextureMapping.reset();
    radialTextureMapping.reset();
    warpedTextureMapping.reset();
    switch (type) {
    case 1:
        putTextureMapping = std::make_unique<FltPutTextureMappingStruct>();
        putTextureMapping->decode(in);
        break;
    case 2:
        pointPutTextureMapping = std::make_unique<FltPointPutTextureMappingStruct>();
        pointPutTextureMapping->decode(in);
        break;
    case 4:
        sphericalTextureMapping = std::make_unique<FltSphericalTextureMappingStruct>();
        sphericalTextureMapping->decode(in);
        break;
    case 5:
        radialTextureMapping = std::make_unique<FltRadialTextureMappingStruct>();
        radialTextureMapping->decode(in);
        break;
    default:
        break;
    }
    // The warp block is read from 168 as well, over the type's block: the established
    // reading, kept on purpose.
    if (warpedFlag != 0) {
        warpedTextureMapping = std::make_unique<FltWarpedTextureMappingStruct>();
        warpedTextureMapping->decode(in);
    }
}

void FltRecordTextureMappingPalette::dumpFields(FltDump& out) const
{
    out.i32("index: ", index).str("name: ", name, 20).i32("type: ", type).i32("warpedFlag: ", warpedFlag);
    putTMproperties(out);
    pointPutTMproperties(out);
    sphericalTMproperties(out);
    radialTMproperties(out);
    warpedTMproperties(out);
}

void FltRecordTextureMappingPalette::putTMproperties(FltDump& out) const
{
    if (!putTextureMapping) return;
    const FltPutTextureMappingStruct& p = *putTextureMapping;
    out.i32("state: ", p.state).i32("activeGeometryPoint: ", p.activeGeometryPoint);
    dumpXyz(out, "lowerLeftCorner", p.lowerLeftCorner);
    dumpXyz(out, "upperRightCorner", p.upperRightCorner);
    out.i32("useRealWorldSizeOrigin: ", p.useRealWorldSize[0])
        .i32("useRealWorldSizeAlignment: ", p.useRealWorldSize[1])
        .i32("useRealWorldSizeShear: ", p.useRealWorldSize[2]);
    dumpXyz(out, "textureOriginPoint", p.textureOriginPoint);
    dumpXyz(out, "textureAlignmentPoint", p.textureAlignmentPoint);
    dumpXyz(out, "textureShearPoint", p.textureShearPoint);
    dumpXyz(out, "geometryOriginPoint", p.geometryOriginPoint);
    dumpXyz(out, "geometryAlignmentPoint", p.geometryAlignmentPoint);
    dumpXyz(out, "geometryShearPoint", p.geometryShearPoint);
    out.i32("activeTexturePoint: ", p.activeTexturePoint)
        .i32("uvDisplayType: ", p.uvDisplayType)
        .f64("uRepetition: ", p.uRepetition)
        .f64("vRepetition: ", p.vRepetition);
}

void FltRecordTextureMappingPalette::pointPutTMproperties(FltDump& out) const
{
    if (!pointPutTextureMapping) return;
    const FltPointPutTextureMappingStruct& p = *pointPutTextureMapping;
    out.i32("state: ", p.state).i32("activeGeometryPoint: ", p.activeGeometryPoint);
    dumpXyz(out, "lowerLeftCorner", p.lowerLeftCorner);
    dumpXyz(out, "upperRightCorner", p.upperRightCorner);
    out.i32("useRealWorldSizeOrigin: ", p.useRealWorldSize[0])
        .i32("useRealWorldSizeAlignment: ", p.useRealWorldSize[1])
        .i32("useRealWorldSizeShear: ", p.useRealWorldSize[2])
        .i32("useRealWorldSizePerspective: ", p.useRealWorldSize[3]);
    dumpXyz(out, "textureOriginPoint", p.textureOriginPoint);
    dumpXyz(out, "textureAlignmentPoint", p.textureAlignmentPoint);
    dumpXyz(out, "textureShearPoint", p.textureShearPoint);
    dumpXyz(out, "texturePerspectivePoint", p.texturePerspectivePoint);
    dumpXyz(out, "geometryOriginPoint", p.geometryOriginPoint);
    dumpXyz(out, "geometryAlignmentPoint", p.geometryAlignmentPoint);
    dumpXyz(out, "geometryShearPoint", p.geometryShearPoint);
    dumpXyz(out, "geometryPerspectivePoint", p.geometryPerspectivePoint);
    out.i32("activeTexturePoint: ", p.activeTexturePoint)
        .i32("uvDisplayType: ", p.uvDisplayType)
        .f64("depthScaleFactor: ", p.depthScaleFactor);
    out.reals("projectionMatrix: ", p.projectionMatrix, 16);
    out.f64("uRepetition: ", p.uRepetition).f64("vRepetition: ", p.vRepetition);
}

void FltRecordTextureMappingPalette::sphericalTMproperties(FltDump& out) const
{
    if (!sphericalTextureMapping) return;
    const FltSphericalTextureMappingStruct& s = *sphericalTextureMapping;
    out.f64("scale: ", s.scale);
    dumpXyz(out, "center", s.center);
    out.f64("scaleByMaximumDimension: ", s.scaleByMaximumDimension).f64("maximumDimension: ", s.maximumDimension);
}

void FltRecordTextureMappingPalette::radialTMproperties(FltDump& out) const
{
    if (!radialTextureMapping) return;
    const FltRadialTextureMappingStruct& r = *radialTextureMapping;
    out.i32("activeGeometryPoint: ", r.activeGeometryPoint)
        .f64("radialScale: ", r.radialScale)
        .f64("lengthScale: ", r.lengthScale);
    out.reals("trackplaneMatrix: ", r.trackplaneMatrix, 16);
    dumpXyz(out, "endPoint1", r.endPoint1);
    dumpXyz(out, "endPoint2", r.endPoint2);
}

void FltRecordTextureMappingPalette::warpedTMproperties(FltDump& out) const
{
    if (!warpedTextureMapping) return;
    const FltWarpedTextureMappingStruct& w = *warpedTextureMapping;
    out.i32("activeWarpPoint: ", w.activeWarpPoint).i32("warpState: ", w.warpState);
    for (int p = 0; p < 8; ++p)
        out.text("fromPoint[").num(p).text("]: ").real(w.fromPoints[p][0]).ch(' ').real(w.fromPoints[p][1]).nl();
    for (int p = 0; p < 8; ++p)
        out.text("toPoint[").num(p).text("]: ").real(w.toPoints[p][0]).ch(' ').real(w.toPoints[p][1]).nl();
}
