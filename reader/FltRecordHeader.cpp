// Header record: revision-dependent decoding and dump.
#include "reader/FltRecordHeader.h"

#include "reader/FltBytes.h"
#include "reader/FltDump.h"

void FltRecordHeader::decode(const FltBytes& in)
{
    in.chars(4, 8, ID);
    formatRevisionLevel = in.i32(12);
    editRevisionLevel = in.i32(16);
    in.chars(20, 32, lastRevisionDateTime);
    idNextGroup = in.i16(52);
    idNextLOD = in.i16(54);
    idNextObject = in.i16(56);
    idNextFace = in.i16(58);
    multiplierDiviserUnit = in.i16(60);
    vertexCoordinateUnits = in.u8(62);
    textWhite = in.u8(63);
    flags = in.i32(64);
    in.chars(68, 24, reserved1);
    projectionType = in.i32(92);
    in.chars(96, 24, reserved2);
    in.chars(120, 4, reserved3);
    idNextDegreeOfFreedom = in.i16(124);
    idVertexStorageType = in.i16(126);
    idDatabaseOrigin = in.i32(128);
    southWestDatabaseCoordinateX = in.f64(132);
    southWestDatabaseCoordinateY = in.f64(140);
    XdeltaToPlaceDatabase = in.f64(148);
    YdeltaToPlaceDatabase = in.f64(156);

    const int32_t revision = formatRevisionLevel;
    if (revision < 1420) return;
    idNextSound = in.i16(164);
    idNextPath = in.i16(166);
    in.chars(168, 8, reserved4);
    idNextClip = in.i16(176);
    idNextText = in.i16(178);
    idNextBSP = in.i16(180);
    idNextSwitch = in.i16(182);

    // Revisions up to 1499 have no reserved word at 184: the block below is read 4 bytes
    // earlier. Kept as the established behaviour.
    size_t b = 184;
    if (revision > 1499) {
        reserved5 = in.i32(184);
        b = 188;
    }
    southWestCornerLatitude = in.f64(b);
    southWestCornerLongitude = in.f64(b + 8);
    northEastCornerLatitude = in.f64(b + 16);
    northEastCornerLongitude = in.f64(b + 24);
    originLatitude = in.f64(b + 32);
    originLongitude = in.f64(b + 40);
    LambertUpperLatitude = in.f64(b + 48);
    LambertLowerLatitude = in.f64(b + 56);
    idNextLightSource = in.i16(b + 64);
    idNextLightPoint = in.i16(b + 66);
    idNextRoad = in.i16(b + 68);
    idNextCat = in.i16(b + 70);
    in.chars(b + 72, 8, reserved6);
    earthEllipsoidModel = in.i32(b + 80);

    if (revision < 1540) return;
    idNextAdaptive = in.i16(272);
    size_t p = 274;
    if (revision > 1549) {
        idNextCurve = in.i16(274);
        p = 276;
    }
    size_t q;
    if (revision < 1580) {
        reserved7 = in.i16(p);
        if (revision < 1570) return;
        // 1570 to 1579 read the depth, radius and mesh fields 6 bytes before a 1580 file:
        // the established behaviour.
        q = p + 2;
    } else {
        utmZone = in.i16(p);
        in.chars(p + 2, 6, reserved8);
        q = p + 8;
    }
    ZdeltaToPlaceDatabase = in.f64(q);
    radius = in.f64(q + 8);
    idNextMesh = in.i16(q + 16);
    if (revision < 1580) return;
    idNextLightPointSystem = in.i16(q + 18);
    reserved9 = in.i32(q + 20);
    earthMajorAxis = in.f64(q + 24);
    earthMinorAxis = in.f64(q + 32);
}

void FltRecordHeader::dumpFields(FltDump& out) const
{
    const uint32_t bits = static_cast<uint32_t>(flags);
    out.i32("formatRevisionLevel: ", formatRevisionLevel)
        .i32("editRevisionLevel: ", editRevisionLevel)
        .str("lastRevisionDateTime: ", lastRevisionDateTime, sizeof lastRevisionDateTime)
        .i16("idNextGroup: ", idNextGroup)
        .i16("idNextLOD: ", idNextLOD)
        .i16("idNextObject: ", idNextObject)
        .i16("idNextFace: ", idNextFace)
        .i16("multiplierDiviserUnit: ", multiplierDiviserUnit)
        .u16("vertexCoordinateUnits: ", vertexCoordinateUnits)
        .u16("textWhite: ", textWhite)
        .text("flags: ").nl()
        .flag("        Save vertex normals: ", bits & 0x80000000u)
        .flag("        Packed Color mode: ", bits & 0x40000000u)
        .flag("        CAD View mode: ", bits & 0x20000000u)
        .i32("projectionType: ", projectionType)
        .i16("idNextDegreeOfFreedom: ", idNextDegreeOfFreedom)
        .i16("idVertexStorageType: ", idVertexStorageType)
        .i32("idDatabaseOrigin: ", idDatabaseOrigin)
        .f64("southWestDatabaseCoordinateX: ", southWestDatabaseCoordinateX)
        .f64("southWestDatabaseCoordinateY: ", southWestDatabaseCoordinateY)
        .f64("XdeltaToPlaceDatabase: ", XdeltaToPlaceDatabase)
        .f64("YdeltaToPlaceDatabase: ", YdeltaToPlaceDatabase);

    const int32_t revision = formatRevisionLevel;
    if (revision > 1419) {
        out.i16("idNextSound: ", idNextSound)
            .i16("idNextPath: ", idNextPath)
            .i16("idNextClip: ", idNextClip)
            .i16("idNextText: ", idNextText)
            .i16("idNextBSP: ", idNextBSP)
            .i16("idNextSwitch: ", idNextSwitch)
            .f64("southWestCornerLatitude: ", southWestCornerLatitude)
            .f64("southWestCornerLongitude: ", southWestCornerLongitude)
            .f64("northEastCornerLatitude: ", northEastCornerLatitude)
            .f64("northEastCornerLongitude: ", northEastCornerLongitude)
            .f64("originLatitude: ", originLatitude)
            .f64("originLongitude: ", originLongitude)
            .f64("LambertUpperLatitude: ", LambertUpperLatitude)
            .f64("LambertLowerLatitude: ", LambertLowerLatitude)
            .i16("idNextLightSource: ", idNextLightSource)
            .i16("idNextLightPoint: ", idNextLightPoint)
            .i16("idNextRoad: ", idNextRoad)
            .i16("idNextCat: ", idNextCat)
            .i32("earthEllipsoidModel: ", earthEllipsoidModel);
    }
    if (revision > 1539) out.i16("idNextAdaptive : ", idNextAdaptive);
    if (revision > 1549) out.i16("idNextCurve: ", idNextCurve);
    if (revision > 1579) out.i16("utmZone: ", utmZone);
    if (revision > 1569) {
        out.f64("ZdeltaToPlaceDatabase: ", ZdeltaToPlaceDatabase)
            .f64("radius: ", radius)
            .i16("idNextMesh: ", idNextMesh);
    }
    if (revision > 1579) {
        out.i16("idNextLightPointSystem: ", idNextLightPointSystem)
            .f64("earthMajorAxis: ", earthMajorAxis)
            .f64("earthMinorAxis: ", earthMinorAxis);
    }
}
