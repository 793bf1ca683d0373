// The eyepoint and trackplane palette record: how many entries a record holds, and the
// valid trackplane (the golden log shows only invalid ones).
#include <gtest/gtest.h>

#include "RecordTestSupport.h"
#include "reader/FltRecordEyePointTrackPlane.h"

namespace {
// Layout: a reserved word, ten 272-byte eyepoints from 8, ten 128-byte trackplanes from 2728.
size_t eyePointAt(int i) { return 8 + 272 * i; }
size_t trackPlaneAt(int i) { return 2728 + 128 * i; }
}  // namespace

TEST(EyePointTrackPlane, onlyMinusOneMarksAValidTrackplaneWhichDumpsItsFields)
{
    FltRecordBytes r(83, 4008);
    r.i32(trackPlaneAt(0), 1);  // the golden log pins the eyepoints
    const size_t t = trackPlaneAt(9);
    r.i32(t, -1).f64(t + 8, 100).f64(t + 72, 1).u8(t + 80, 1).u8(t + 81, 1).f32(t + 84, 15);
    r.f64(t + 96, 0.5).u8(t + 106, 1).u8(t + 107, 7).f64(t + 112, 64).i32(t + 120, 0xF);
    auto palette = decodeRecord<FltRecordEyePointTrackPlane>(r);
    const std::string dump = fieldsOf(*palette);
    EXPECT_TRUE(endsWith(dump, "trackplane[8]: *****\nactiveFlag != -1 (it is not a valid trackplane)\n"
                               "trackplane[9]: *****\nactiveFlag: -1\noriginX: 100\noriginY: 0\noriginZ: 0\n"
                               "alignmentX: 0\nalignmentY: 0\nalignmentZ: 0\nplaneX: 0\nplaneY: 0\nplaneZ: 1\n"
                               "gridFlag: 1\ngridType: 1\ngridUnder: 0\ngridAngle: 15\ngridSpacingX: 0\n"
                               "gridSpacingY: 0.5\nradialDirectionControl: 0\nrectangularDirectionControl: 0\n"
                               "gridSnap: 1\ngridFlagReserved: 7\ngridSize: 64\ngridVisibilityMask: 15\n"));
    EXPECT_NE(dump.find("trackplane[0]: *****\nactiveFlag != -1 (it is not a valid trackplane)\n"), std::string::npos);
}

TEST(EyePointTrackPlane, entriesDecodedAreTheWholeOnesTheRecordHoldsAtMostTenOfEach)
{
    struct Case {
        size_t length;
        int eyePoints, trackPlanes;
    };
    for (const Case& c : {Case{4, 0, 0}, Case{8, 0, 0}, Case{279, 0, 0}, Case{eyePointAt(2) + 100, 2, 0},
                          Case{trackPlaneAt(1) + 5, 10, 1}, Case{60000, 10, 10}}) {
        FltRecordBytes r(83, c.length);
        if (c.trackPlanes == 1) r.i32(trackPlaneAt(0), -1).f64(trackPlaneAt(0) + 112, 32);
        auto palette = decodeRecord<FltRecordEyePointTrackPlane>(r);
        EXPECT_EQ(palette->numberOfEyePoints, c.eyePoints) << c.length;
        EXPECT_EQ(palette->numberOfTrackPlanes, c.trackPlanes) << c.length;
        const std::string dump = fieldsOf(*palette);
        EXPECT_EQ(dump.empty(), c.eyePoints == 0) << c.length;
        EXPECT_EQ(dump.find("eyePoint[" + std::to_string(c.eyePoints) + "]"), std::string::npos) << c.length;
        if (c.trackPlanes == 1) {
            EXPECT_TRUE(endsWith(dump, "\ngridSize: 32\ngridVisibilityMask: 0\n"));
        }
    }
}
