// The light point record.
#include "reader/FltRecordLightPoint.h"

#include "reader/FltBytes.h"
#include "reader/FltDump.h"

void FltRecordLightPoint::decode(const FltBytes& in)
{
    in.chars(4, 8, idASCII);
    surfaceMaterialCode = in.i16(12);
    featureID = in.i16(14);
    backColor = in.u32(16);
    displayMode = in.i32(20);
    intensity = in.f32(24);
    backIntensity = in.f32(28);
    minimumDefocus = in.f32(32);
    maximumDefocus = in.f32(36);
    fadingMode = in.i32(40);
    fogPunchMode = in.i32(44);
    directionalMode = in.i32(48);
    rangeMode = in.i32(52);
    minPixelSize = in.f32(56);
    maxPixelSize = in.f32(60);
    actualSize = in.f32(64);
    transparentFalloffPixelSize = in.f32(68);
    transparentFalloffExponent = in.f32(72);
    transparentFalloffScalar = in.f32(76);
    transparentFalloffClamp = in.f32(80);
    fogScalar = in.f32(84);
    reserved = in.f32(88);
    sizeDifferenceThreshold = in.f32(92);
    directionality = in.i32(96);
    horizontalLobeAngle = in.f32(100);
    verticalLobeAngle = in.f32(104);
    lobeRollAngle = in.f32(108);
    directionalFalloffExponent = in.f32(112);
    directionalAmbientIntensity = in.f32(116);
    animationPeriod = in.f32(120);
    animationPhaseDelay = in.f32(124);
    animationEnabledPeriod = in.f32(128);
    significance = in.f32(132);
    calligraphicDrawOrder = in.i32(136);
    flags = in.u32(140);
    axisOfRotationX = in.f32(144);
    axisOfRotationY = in.f32(148);
    axisOfRotationZ = in.f32(152);
}

void FltRecordLightPoint::dumpFields(FltDump& out) const
{
    out.str("idASCII: ", idASCII, 8)
        .i16("surfaceMaterialCode: ", surfaceMaterialCode)
        .i16("featureID: ", featureID)
        .u32("backColor: ", backColor)
        .i32("displayMode: ", displayMode)
        .f64("intensity: ", intensity)
        .f64("backIntensity: ", backIntensity)
        .f64("minimumDefocus: ", minimumDefocus)
        .f64("maximumDefocus: ", maximumDefocus)
        .i32("fadingMode: ", fadingMode)
        .i32("fogPunchMode: ", fogPunchMode)
        .i32("directionalMode: ", directionalMode)
        .i32("rangeMode: ", rangeMode)
        .f64("minPixelSize: ", minPixelSize)
        .f64("maxPixelSize: ", maxPixelSize)
        .f64("actualSize: ", actualSize)
        .f64("transparentFalloffPixelSize: ", transparentFalloffPixelSize)
        .f64("transparentFalloffExponent: ", transparentFalloffExponent)
        .f64("transparentFalloffScalar: ", transparentFalloffScalar)
        .f64("transparentFalloffClamp: ", transparentFalloffClamp)
        .f64("fogScalar: ", fogScalar)
        .f64("sizeDifferenceThreshold: ", sizeDifferenceThreshold)
        .i32("directionality: ", directionality)
        .f64("horizontalLobeAngle: ", horizontalLobeAngle)
        .f64("verticalLobeAngle: ", verticalLobeAngle)
        .f64("lobeRollAngle: ", lobeRollAngle)
        .f64("directionalFalloffExponent: ", directionalFalloffExponent)
        .f64("directionalAmbientIntensity: ", directionalAmbientIntensity)
        .f64("animationPeriod: ", animationPeriod)
        .f64("animationPhaseDelay: ", animationPhaseDelay)
        .f64("animationEnabledPeriod: ", animationEnabledPeriod)
        .f64("significance: ", significance)
        .i32("calligraphicDrawOrder: ", calligraphicDrawOrder)
        .text("flags: ").nl()
        .flag("     no back color: ", flags & 0x40000000u)
        .flag("     calligraphic proximity occulting: ", flags & 0x10000000u)
        .flag("     reflective non-color light: ", flags & 0x08000000u)
        .u16("     randomize intensity: ", static_cast<uint16_t>((flags >> 24) & 0x7u))
        .flag("     perspective mode: ", flags & 0x00800000u)
        .flag("     flashing: ", flags & 0x00400000u)
        .flag("     rotating: ", flags & 0x00200000u)
        .flag("     rotate counter clockwise: ", flags & 0x00100000u)
        .flag("     quality: ", flags & 0x00040000u)
        .flag("     visible during day: ", flags & 0x00020000u)
        .flag("     visible during dusk: ", flags & 0x00010000u)
        .flag("     visible during night: ", flags & 0x00008000u)
        .f64("axisOfRotationX: ", axisOfRotationX)
        .f64("axisOfRotationY: ", axisOfRotationY)
        .f64("axisOfRotationZ: ", axisOfRotationZ);
}
