// The eyepoint and trackplane palette record.
#include <gtest/gtest.h>

#include "RecordTestSupport.h"
#include "reader/FltRecordEyePointTrackPlane.h"

namespace {

// Layout: a reserved word, ten 272-byte eyepoints from 8, ten 128-byte trackplanes from 2728.
constexpr size_t kEyePoint = 8, kEyePointSize = 272, kTrackPlane = 2728, kTrackPlaneSize = 128, kFull = 4008;

size_t eyePointAt(int i) { return kEyePoint + kEyePointSize * i; }
size_t trackPlaneAt(int i) { return kTrackPlane + kTrackPlaneSize * i; }

size_t count(const std::string& text, const std::string& part)
{
    size_t n = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++n;
    return n;
}

}  // namespace

TEST(EyePointTrackPlane, fullRecordHoldsTenEyepointsAndTenTrackplanes)
{
    FltRecordBytes r(83, kFull);
    const size_t e = eyePointAt(3);
    r.f64(e, 1).f64(e + 16, -3).f32(e + 28, 45).f32(e + 36, 1).f32(e + 96, 2).f32(e + 100, 60);
    r.f32(e + 112, 5000).f32(e + 116, 7).f32(e + 188, 12).f32(e + 196, -10).f32(e + 208, -1);
    r.i32(e + 212, 1).i32(e + 220, 1).i32(e + 232, 4);
    r.i32(trackPlaneAt(0), 1);  // only -1 marks a valid trackplane
    const size_t t = trackPlaneAt(9);
    r.i32(t, -1).f64(t + 8, 100).f64(t + 72, 1).u8(t + 80, 1).u8(t + 81, 1).f32(t + 84, 15);
    r.f64(t + 96, 0.5).u8(t + 106, 1).u8(t + 107, 7).f64(t + 112, 64).i32(t + 120, 0xF);
    auto palette = decodeRecord<FltRecordEyePointTrackPlane>(r);
    ASSERT_TRUE(palette);
    EXPECT_EQ(palette->numberOfEyePoints, 10);
    EXPECT_EQ(palette->numberOfTrackPlanes, 10);
    const FltEyePointStruct& eye = palette->eyePoints[3];
    EXPECT_DOUBLE_EQ(eye.centerZ, -3.0);
    EXPECT_FLOAT_EQ(eye.rotationMatrix[15], 2.0f);
    EXPECT_EQ(eye.imageZoom, 4);
    const FltTrackPlaneStruct& plane = palette->trackPlanes[9];
    EXPECT_DOUBLE_EQ(plane.gridSize, 64.0);
    EXPECT_EQ(plane.gridVisibilityMask, 0xF);

    const std::string dump = fieldsOf(*palette);
    EXPECT_EQ(count(dump, "]: *****\n"), 20u);
    EXPECT_EQ(count(dump, "activeFlag != -1 (it is not a valid trackplane)\n"), 9u);
    EXPECT_EQ(dump.substr(0, 33), "eyePoint[0]: *****\ncenterX: 0\ncen");
    EXPECT_NE(dump.find("eyePoint[3]: *****\ncenterX: 1\ncenterY: 0\ncenterZ: -3\nyawAngle: 0\npitchAngle: 45\n"
                        "rollAngle: 0\nrotationMatrix: 1 0 0 0 0 0 0 0 0 0 0 0 0 0 0 2\nviewField: 60\nscale: 0\n"
                        "nearClippingPlane: 0\nfarClippingPlane: 5000\n"
                        "flyThroughMatrix: 7 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0\neyePointX: 0\neyePointY: 0\n"
                        "eyePointZ: 12\nflyThroughYaw: 0\npitchThroughYaw: -10\neyeVectorI: 0\neyeVectorJ: 0\n"
                        "eyeVectorK: -1\nflyThroughFlag: 1\northoDrawingFlag: 0\nisValidEyePointFlag: 1\n"
                        "imageOffsetX: 0\nimageOffsetY: 0\nimageZoom: 4\neyePoint[4]: *****\n"),
              std::string::npos);
    const std::string last = "trackplane[9]: *****\nactiveFlag: -1\noriginX: 100\noriginY: 0\noriginZ: 0\n"
                             "alignmentX: 0\nalignmentY: 0\nalignmentZ: 0\nplaneX: 0\nplaneY: 0\nplaneZ: 1\n"
                             "gridFlag: 1\ngridType: 1\ngridUnder: 0\ngridAngle: 15\ngridSpacingX: 0\n"
                             "gridSpacingY: 0.5\nradialDirectionControl: 0\nrectangularDirectionControl: 0\n"
                             "gridSnap: 1\ngridFlagReserved: 7\ngridSize: 64\ngridVisibilityMask: 15\n";
    ASSERT_GT(dump.size(), last.size());
    EXPECT_EQ(dump.substr(dump.size() - last.size()), last);
    EXPECT_NE(dump.find("trackplane[8]: *****\nactiveFlag != -1 (it is not a valid trackplane)\ntrackplane[9]"),
              std::string::npos);
}

TEST(EyePointTrackPlane, entriesDecodedAreTheWholeOnesTheRecordHoldsAtMostTenOfEach)
{
    auto two = decodeRecord<FltRecordEyePointTrackPlane>(FltRecordBytes(83, eyePointAt(2) + 100));
    EXPECT_EQ(two->numberOfEyePoints, 2);
    EXPECT_EQ(two->numberOfTrackPlanes, 0);
    const std::string dump = fieldsOf(*two);
    EXPECT_EQ(count(dump, "eyePoint["), 2u);
    EXPECT_EQ(count(dump, "trackplane["), 0u);

    FltRecordBytes cut(83, trackPlaneAt(1) + 5);
    cut.i32(trackPlaneAt(0), -1).f64(trackPlaneAt(0) + 112, 32);
    auto one = decodeRecord<FltRecordEyePointTrackPlane>(cut);
    EXPECT_EQ(one->numberOfEyePoints, 10);
    EXPECT_EQ(one->numberOfTrackPlanes, 1);
    EXPECT_DOUBLE_EQ(one->trackPlanes[0].gridSize, 32.0);

    auto overlong = decodeRecord<FltRecordEyePointTrackPlane>(FltRecordBytes(83, 60000));
    EXPECT_EQ(overlong->numberOfEyePoints, 10);
    EXPECT_EQ(overlong->numberOfTrackPlanes, 10);

    for (size_t length : {size_t(4), size_t(8), size_t(279)}) {
        auto none = decodeRecord<FltRecordEyePointTrackPlane>(FltRecordBytes(83, length));
        EXPECT_EQ(none->numberOfEyePoints, 0) << length;
        EXPECT_EQ(fieldsOf(*none), "") << length;
    }
}
