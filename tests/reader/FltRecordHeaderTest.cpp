// The header record at the revisions where its layout changes.
#include <gtest/gtest.h>

#include <sstream>

#include "FltFixture.h"
#include "reader/FltRecordHeader.h"

namespace {

// A 324-byte header whose fields hold their own offset, so that a test can tell from which
// offset each field was read.
FltRecordHeader decodeHeader(int32_t revision)
{
    FltRecordBytes bytes(1, 324);
    bytes.chars(4, "dbname", 8).i32(12, revision).i32(16, 7).chars(20, "Mon Nov 2 2026", 32);
    bytes.i16(52, 1).i16(54, 2).i16(56, 3).i16(58, 4).i16(60, -100).u8(62, 4).u8(63, 1);
    bytes.u32(64, 0xA0000000u).i32(92, 3).i16(124, 5).i16(126, 1).i32(128, 9);
    for (size_t off = 132; off + 8 <= 164; off += 8) bytes.f64(off, static_cast<double>(off));
    bytes.i16(164, 11).i16(166, 12).i16(176, 13).i16(178, 14).i16(180, 15).i16(182, 16);
    // The corner block starts at 188 from revision 1500, at 184 before.
    const size_t b = revision > 1499 ? 188 : 184;
    for (size_t off = b; off < b + 64; off += 8) bytes.f64(off, static_cast<double>(off));
    bytes.i16(b + 64, static_cast<int16_t>(b + 64)).i16(b + 66, 0).i16(b + 68, 0).i16(b + 70, 0);
    bytes.i32(b + 80, static_cast<int32_t>(b + 80)).i16(272, 272).i16(274, 274).i16(276, 276).i16(278, 278);
    bytes.f64(284, 284).f64(292, 292).i16(300, 300).i16(302, 302).f64(308, 308).f64(316, 316);
    FltRecordHeader header(324);
    std::string data = bytes.bytes();
    header.getPropertiesFromData(data.data());
    return header;
}

std::string dumpOf(const FltRecordHeader& header)
{
    std::ostringstream os;
    header.properties(os);
    return os.str();
}

}  // namespace

TEST(HeaderRecord, revision1400StopsAfterTheDatabasePlacement)
{
    FltRecordHeader h = decodeHeader(1400);
    EXPECT_STREQ(h.ID, "dbname");
    EXPECT_EQ(h.formatRevisionLevel, 1400);
    EXPECT_EQ(h.editRevisionLevel, 7);
    EXPECT_EQ(h.multiplierDiviserUnit, -100);
    EXPECT_EQ(h.vertexCoordinateUnits, 4);
    EXPECT_EQ(h.idDatabaseOrigin, 9);
    EXPECT_EQ(h.YdeltaToPlaceDatabase, 156.0);
    EXPECT_EQ(h.idNextSound, 0);
    EXPECT_EQ(h.southWestCornerLatitude, 0.0);
    const std::string dump = dumpOf(h);
    EXPECT_EQ(dump.find("idNextSound"), std::string::npos);
    EXPECT_EQ(dump.substr(dump.size() - 27), "YdeltaToPlaceDatabase: 156\n");
}

TEST(HeaderRecord, revisionsUpTo1499ReadTheCornerBlockFourBytesEarlier)
{
    FltRecordHeader old = decodeHeader(1499);
    EXPECT_EQ(old.southWestCornerLatitude, 184.0);
    EXPECT_EQ(old.idNextSwitch, 16);
    EXPECT_EQ(old.idNextAdaptive, 0);
    FltRecordHeader newer = decodeHeader(1500);
    EXPECT_EQ(newer.southWestCornerLatitude, 188.0);
    EXPECT_EQ(newer.LambertLowerLatitude, 244.0);
    EXPECT_EQ(newer.idNextLightSource, 252);
    EXPECT_EQ(newer.earthEllipsoidModel, 268);
}

TEST(HeaderRecord, revision1545ReadsAdaptiveButNoCurve)
{
    FltRecordHeader h = decodeHeader(1545);
    EXPECT_EQ(h.idNextAdaptive, 272);
    EXPECT_EQ(h.idNextCurve, 0);
    EXPECT_EQ(h.reserved7, 274);
    EXPECT_EQ(h.ZdeltaToPlaceDatabase, 0.0);
    const std::string dump = dumpOf(h);
    EXPECT_NE(dump.find("idNextAdaptive : 272\n"), std::string::npos);
    EXPECT_EQ(dump.find("idNextCurve"), std::string::npos);
}

TEST(HeaderRecord, revision1570ReadsDepthAndRadiusSixBytesBeforeA1580File)
{
    FltRecordHeader h = decodeHeader(1570);
    EXPECT_EQ(h.idNextCurve, 274);
    EXPECT_EQ(h.utmZone, 0);
    EXPECT_EQ(h.idNextMesh, 0x4000);         // read at 294: bytes 2-3 of the double 292.0
    EXPECT_EQ(h.earthMajorAxis, 0.0);
    const std::string dump = dumpOf(h);
    EXPECT_NE(dump.find("ZdeltaToPlaceDatabase: "), std::string::npos);
    EXPECT_EQ(dump.find("utmZone"), std::string::npos);
    EXPECT_EQ(dump.find("earthMajorAxis"), std::string::npos);
}

TEST(HeaderRecord, revision1580DecodesEveryFieldUpToEarthMinorAxis)
{
    FltRecordHeader h = decodeHeader(1580);
    EXPECT_EQ(h.utmZone, 276);
    EXPECT_EQ(h.ZdeltaToPlaceDatabase, 284.0);
    EXPECT_EQ(h.radius, 292.0);
    EXPECT_EQ(h.idNextMesh, 300);
    EXPECT_EQ(h.idNextLightPointSystem, 302);
    EXPECT_EQ(h.earthMajorAxis, 308.0);
    EXPECT_EQ(h.earthMinorAxis, 316.0);
}

TEST(HeaderRecord, dumpFollowsTheLayoutOrderWithFlagLinesIndentedByEightBlanks)
{
    const std::string dump = dumpOf(decodeHeader(1580));
    const std::string expectedStart =
        "\n HEADER RECORD \n  (PRIMARY_RECORD)\n-- Opcode: 1  Length: 324 --\n"
        "formatRevisionLevel: 1580\neditRevisionLevel: 7\nlastRevisionDateTime: Mon Nov 2 2026\n"
        "idNextGroup: 1\nidNextLOD: 2\nidNextObject: 3\nidNextFace: 4\nmultiplierDiviserUnit: -100\n"
        "vertexCoordinateUnits: 4\ntextWhite: 1\nflags: \n"
        "        Save vertex normals: 1\n        Packed Color mode: 0\n        CAD View mode: 1\n"
        "projectionType: 3\nidNextDegreeOfFreedom: 5\nidVertexStorageType: 1\nidDatabaseOrigin: 9\n"
        "southWestDatabaseCoordinateX: 132\n";
    EXPECT_EQ(dump.substr(0, expectedStart.size()), expectedStart);
    const std::string expectedEnd =
        "earthEllipsoidModel: 268\nidNextAdaptive : 272\nidNextCurve: 274\nutmZone: 276\n"
        "ZdeltaToPlaceDatabase: 284\nradius: 292\nidNextMesh: 300\nidNextLightPointSystem: 302\n"
        "earthMajorAxis: 308\nearthMinorAxis: 316\n";
    EXPECT_EQ(dump.substr(dump.size() - expectedEnd.size()), expectedEnd);
}

TEST(HeaderRecord, shortHeaderReadsZerosPastItsEnd)
{
    FltRecordBytes bytes(1, 16);
    bytes.i32(12, 1580);
    std::string data = bytes.bytes();
    FltRecordHeader h(16);
    h.getPropertiesFromData(data.data());
    EXPECT_EQ(h.formatRevisionLevel, 1580);
    EXPECT_EQ(h.flags, 0);
    EXPECT_EQ(h.earthMinorAxis, 0.0);
}
