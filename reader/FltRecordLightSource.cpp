// Light source record and light source palette.
#include "reader/FltRecordLightSource.h"

#include "reader/FltBytes.h"
#include "reader/FltDump.h"

void FltRecordLightSource::decode(const FltBytes& in)
{
    in.chars(4, 8, idASCII);
    reserved1 = in.i32(12);
    paletteIndex = in.i32(16);
    reserved2 = in.i32(20);
    flags = in.u32(24);
    reserved3 = in.i32(28);
    positionX = in.f64(32);
    positionY = in.f64(40);
    positionZ = in.f64(48);
    yaw = in.f32(56);
    pitch = in.f32(60);
}

void FltRecordLightSource::dumpFields(FltDump& out) const
{
    out.str("idASCII: ", idASCII, 8)
        .i32("paletteIndex: ", paletteIndex)
        .text("flags: ").nl()
        .flag("     enabled: ", flags & 0x80000000u)
        .flag("     global: ", flags & 0x40000000u)
        .flag("     export: ", flags & 0x10000000u)
        .f64("positionX: ", positionX)
        .f64("positionY: ", positionY)
        .f64("positionZ: ", positionZ)
        .f64("yaw: ", yaw)
        .f64("pitch: ", pitch);
}

void FltRecordLightSourcePalette::decode(const FltBytes& in)
{
    paletteIndex = in.i32(4);
    in.chars(8, 8, reserved1);
    in.chars(16, 20, lightSourceName);
    reserved2 = in.i32(36);
    ambientRed = in.f32(40);
    ambientGreen = in.f32(44);
    ambientBlue = in.f32(48);
    ambientAlpha = in.f32(52);
    diffuseRed = in.f32(56);
    diffuseGreen = in.f32(60);
    diffuseBlue = in.f32(64);
    diffuseAlpha = in.f32(68);
    specularRed = in.f32(72);
    specularGreen = in.f32(76);
    specularBlue = in.f32(80);
    specularAlpha = in.f32(84);
    lightType = in.i32(88);
    // 92 to 131: reserved.
    spotExponentialDropoffTerm = in.f32(132);
    spotCutoffAngle = in.f32(136);
    yaw = in.f32(140);
    pitch = in.f32(144);
    constantAttenuationCoefficient = in.f32(148);
    linearAttenuationCoefficient = in.f32(152);
    quadraticAttenuationCoefficient = in.f32(156);
    modelingLight = in.i32(160);
}

void FltRecordLightSourcePalette::dumpFields(FltDump& out) const
{
    // The irregular blanks before some colons are the established labels, kept on purpose.
    out.i32("paletteIndex: ", paletteIndex)
        .str("lightSourceName: ", lightSourceName, 20)
        .f64("ambientRed: ", ambientRed)
        .f64("ambientGreen: ", ambientGreen)
        .f64("ambientBlue: ", ambientBlue)
        .f64("ambientAlpha : ", ambientAlpha)
        .f64("diffuseRed : ", diffuseRed)
        .f64("diffuseGreen : ", diffuseGreen)
        .f64("diffuseBlue: ", diffuseBlue)
        .f64("diffuseAlpha: ", diffuseAlpha)
        .f64("specularRed: ", specularRed)
        .f64("specularGreen: ", specularGreen)
        .f64("specularBlue: ", specularBlue)
        .f64("specularAlpha: ", specularAlpha)
        .i32("lightType: ", lightType)
        .f64("spotExponentialDropoffTerm : ", spotExponentialDropoffTerm)
        .f64("spotCutoffAngle: ", spotCutoffAngle)
        .f64("yaw: ", yaw)
        .f64("pitch: ", pitch)
        .f64("constantAttenuationCoefficient: ", constantAttenuationCoefficient)
        .f64("linearAttenuationCoefficient: ", linearAttenuationCoefficient)
        .f64("quadraticAttenuationCoefficient: ", quadraticAttenuationCoefficient)
        .i32("modelingLight: ", modelingLight);
}
