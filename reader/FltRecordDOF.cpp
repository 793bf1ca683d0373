// The degree-of-freedom record.
#include "reader/FltRecordDOF.h"

#include "reader/FltBytes.h"
#include "reader/FltDump.h"

void FltRecordDOF::decode(const FltBytes& in)
{
    in.chars(4, 8, idASCII);
    reserved = in.i32(12);
    XOriginOfDOFLocalCoordinateSystem = in.f64(16);
    YOriginOfDOFLocalCoordinateSystem = in.f64(24);
    ZOriginOfDOFLocalCoordinateSystem = in.f64(32);
    XPointOnXAxisOfDOFLocalCoordinateSystem = in.f64(40);
    YPointOnXAxisOfDOFLocalCoordinateSystem = in.f64(48);
    ZPointOnXAxisOfDOFLocalCoordinateSystem = in.f64(56);
    XPointInXYPlaneOfDOFLocalCoordinateSystem = in.f64(64);
    YPointInXYPlaneOfDOFLocalCoordinateSystem = in.f64(72);
    ZPointInXYPlaneOfDOFLocalCoordinateSystem = in.f64(80);
    ZMinValue = in.f64(88);
    ZMaxValue = in.f64(96);
    ZCurrentValue = in.f64(104);
    ZIncrement = in.f64(112);
    YMinValue = in.f64(120);
    YMaxValue = in.f64(128);
    YCurrentValue = in.f64(136);
    YIncrement = in.f64(144);
    XMinValue = in.f64(152);
    XMaxValue = in.f64(160);
    XCurrentValue = in.f64(168);
    XIncrement = in.f64(176);
    minimumPitch = in.f64(184);
    maxPitch = in.f64(192);
    currentPitch = in.f64(200);
    incrementInPitch = in.f64(208);
    minimumRoll = in.f64(216);
    maxRoll = in.f64(224);
    currentRoll = in.f64(232);
    incrementInRoll = in.f64(240);
    minimumYaw = in.f64(248);
    maxYaw = in.f64(256);
    currentYaw = in.f64(264);
    incrementInYaw = in.f64(272);
    ZMinScale = in.f64(280);
    ZMaxScale = in.f64(288);
    ZCurrentScale = in.f64(296);
    ZIncrementForScale = in.f64(304);
    YMinScale = in.f64(312);
    YMaxScale = in.f64(320);
    YCurrentScale = in.f64(328);
    YIncrementForScale = in.f64(336);
    XMinScale = in.f64(344);
    XMaxScale = in.f64(352);
    XCurrentScale = in.f64(360);
    XIncrementForScale = in.f64(368);
    flags = in.i32(376);
}

void FltRecordDOF::dumpFields(FltDump& out) const
{
    const uint32_t bits = static_cast<uint32_t>(flags);
    out.str("idASCII: ", idASCII, 8)
        .f64("XOriginOfDOFLocalCoordinateSystem: ", XOriginOfDOFLocalCoordinateSystem)
        .f64("YOriginOfDOFLocalCoordinateSystem: ", YOriginOfDOFLocalCoordinateSystem)
        .f64("ZOriginOfDOFLocalCoordinateSystem: ", ZOriginOfDOFLocalCoordinateSystem)
        .f64("XPointOnXAxisOfDOFLocalCoordinateSystem : ", XPointOnXAxisOfDOFLocalCoordinateSystem)
        .f64("YPointOnXAxisOfDOFLocalCoordinateSystem: ", YPointOnXAxisOfDOFLocalCoordinateSystem)
        .f64("ZPointOnXAxisOfDOFLocalCoordinateSystem : ", ZPointOnXAxisOfDOFLocalCoordinateSystem)
        .f64("XPointInXYPlaneOfDOFLocalCoordinateSystem: ", XPointInXYPlaneOfDOFLocalCoordinateSystem)
        .f64("YPointInXYPlaneOfDOFLocalCoordinateSystem: ", YPointInXYPlaneOfDOFLocalCoordinateSystem)
        .f64("ZPointInXYPlaneOfDOFLocalCoordinateSystem : ", ZPointInXYPlaneOfDOFLocalCoordinateSystem)
        .f64("ZMinValue: ", ZMinValue)
        .f64("ZMaxValue: ", ZMaxValue)
        .f64("ZCurrentValue: ", ZCurrentValue)
        .f64("ZIncrement: ", ZIncrement)
        .f64("YMinValue: ", YMinValue)
        .f64("YMaxValue: ", YMaxValue)
        .f64("YCurrentValue: ", YCurrentValue)
        .f64("YIncrement: ", YIncrement)
        .f64("XMinValue: ", XMinValue)
        .f64("XMaxValue: ", XMaxValue)
        .f64("XCurrentValue: ", XCurrentValue)
        .f64("XIncrement: ", XIncrement)
        .f64("minimumPitch: ", minimumPitch)
        .f64("maxPitch : ", maxPitch)
        .f64("currentPitch: ", currentPitch)
        .f64("incrementInPitch: ", incrementInPitch)
        .f64("minimumRoll: ", minimumRoll)
        .f64("maxRoll : ", maxRoll)
        .f64("currentRoll: ", currentRoll)
        .f64("incrementInRoll: ", incrementInRoll)
        .f64("minimumYaw: ", minimumYaw)
        .f64("maxYaw : ", maxYaw)
        .f64("currentYaw: ", currentYaw)
        .f64("incrementInYaw: ", incrementInYaw)
        .f64("ZMinScale   : ", ZMinScale)
        .f64("ZMaxScale  : ", ZMaxScale)
        .f64("ZCurrentScale: ", ZCurrentScale)
        .f64("ZIncrementForScale: ", ZIncrementForScale)
        .f64("YMinScale   : ", YMinScale)
        .f64("YMaxScale  : ", YMaxScale)
        .f64("YCurrentScale: ", YCurrentScale)
        .f64("YIncrementForScale: ", YIncrementForScale)
        .f64("XMinScale : ", XMinScale)
        .f64("XMaxScale : ", XMaxScale)
        .f64("XCurrentScale: ", XCurrentScale)
        .f64("XIncrementForScale    : ", XIncrementForScale)
        .text("flags: ").nl()
        .flag("     x translation is limited: ", bits & 0x80000000u)
        .flag("     y translation is limited: ", bits & 0x40000000u)
        .flag("     z translation is limited: ", bits & 0x20000000u)
        .flag("     pitch rotation is limited: ", bits & 0x10000000u)
        .flag("     roll rotation is limited: ", bits & 0x08000000u)
        .flag("     yaw rotation is limited: ", bits & 0x04000000u)
        .flag("     x scale is limited: ", bits & 0x02000000u)
        .flag("     y scale is limited: ", bits & 0x01000000u)
        .flag("     z scale is limited: ", bits & 0x00800000u);
}
