// The header record at the revisions where its layout changes (the golden log shows 1570).
#include <gtest/gtest.h>

#include "RecordTestSupport.h"
#include "reader/FltRecordHeader.h"

namespace {

// A 324-byte header laid out as revision 1580 files are, whose fields hold their own offset,
// so that a test can tell from which offset each field was read.
std::unique_ptr<FltRecordHeader> decodeHeader(int32_t revision)
{
    FltRecordBytes bytes(1, 324);
    bytes.i32(12, revision).i16(60, -100);
    bytes.i16(164, 11).i16(166, 12).i16(176, 13).i16(178, 14).i16(180, 15).i16(182, 16);
    // The corner block starts at 188 from revision 1500, at 184 before.
    const size_t b = revision > 1499 ? 188 : 184;
    for (size_t off = b; off < b + 64; off += 8) bytes.f64(off, static_cast<double>(off));
    bytes.i16(b + 64, static_cast<int16_t>(b + 64)).i32(b + 80, static_cast<int32_t>(b + 80));
    bytes.i16(272, 272).i16(274, 274).i16(276, 276).i16(278, 278);
    bytes.f64(284, 284).f64(292, 292).i16(300, 300).i16(302, 302).f64(308, 308).f64(316, 316);
    return decodeRecord<FltRecordHeader>(bytes, revision);
}

}  // namespace

TEST(HeaderRecord, eachRevisionReadsAndDumpsItsOwnLayout)
{
    struct Case {
        int32_t revision;
        int16_t idNextSound;
        double southWestCornerLatitude;
        int16_t idNextAdaptive, idNextCurve, utmZone, idNextMesh;
        double earthMinorAxis;
        const char* shown;  // which of kGated the dump holds
    };
    const char* const kGated[] = {"\nidNextSound: ", "\nidNextAdaptive : ",       "\nidNextCurve: ",
                                  "\nutmZone: ",     "\nZdeltaToPlaceDatabase: ", "\nearthMajorAxis: "};
    // 1570 to 1579 read depth, radius and mesh 6 bytes before a 1580 file: the mesh number
    // is then bytes 2-3 of the double 292.0 (the established behaviour).
    const Case cases[] = {
        {1400, 0, 0, 0, 0, 0, 0, 0, "000000"},
        {1499, 11, 184, 0, 0, 0, 0, 0, "100000"},
        {1500, 11, 188, 0, 0, 0, 0, 0, "100000"},
        {1545, 11, 188, 272, 0, 0, 0, 0, "110000"},
        {1570, 11, 188, 272, 274, 0, 0x4000, 0, "111010"},
        {1580, 11, 188, 272, 274, 276, 300, 316, "111111"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.revision);
        auto h = decodeHeader(c.revision);
        EXPECT_EQ(h->multiplierDiviserUnit, -100);  // the golden log's is 0
        EXPECT_EQ(h->idNextSound, c.idNextSound);
        EXPECT_EQ(h->southWestCornerLatitude, c.southWestCornerLatitude);
        EXPECT_EQ(h->earthEllipsoidModel, c.southWestCornerLatitude ? c.southWestCornerLatitude + 80 : 0);
        EXPECT_EQ(h->idNextAdaptive, c.idNextAdaptive);
        EXPECT_EQ(h->idNextCurve, c.idNextCurve);
        EXPECT_EQ(h->utmZone, c.utmZone);
        EXPECT_EQ(h->idNextMesh, c.idNextMesh);
        EXPECT_EQ(h->earthMinorAxis, c.earthMinorAxis);
        const std::string dump = dumpOf(*h);
        for (size_t i = 0; i < 6; ++i)
            EXPECT_EQ(dump.find(kGated[i]) != std::string::npos, c.shown[i] == '1') << kGated[i];
    }
    EXPECT_TRUE(endsWith(dumpOf(*decodeHeader(1580)),
                         "earthEllipsoidModel: 268\nidNextAdaptive : 272\nidNextCurve: 274\nutmZone: 276\n"
                         "ZdeltaToPlaceDatabase: 284\nradius: 292\nidNextMesh: 300\nidNextLightPointSystem: 302\n"
                         "earthMajorAxis: 308\nearthMinorAxis: 316\n"));
}
