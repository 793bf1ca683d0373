// The light point record.
#include <gtest/gtest.h>

#include "RecordTestSupport.h"
#include "reader/FltRecordLightPoint.h"

TEST(LightPointRecord, decodesTheFormatsOffsetsAndSplitsTheRandomIntensityField)
{
    FltRecordBytes r(111, 156);
    r.chars(4, "runway", 8).i16(12, -2).u32(16, 33).f32(64, 2.5f).i32(96, 2).i32(136, 4).f32(152, 1);
    // no back color, randomize intensity 3 (bits 5-7 = 011), flashing, visible at night.
    r.u32(140, 0x40000000u | 0x03000000u | 0x00400000u | 0x00008000u);
    auto point = decodeRecord<FltRecordLightPoint>(r);
    ASSERT_TRUE(point);
    EXPECT_EQ(point->surfaceMaterialCode, -2);
    EXPECT_EQ(point->backColor, 33u);
    EXPECT_FLOAT_EQ(point->actualSize, 2.5f);
    EXPECT_EQ(point->directionality, 2);
    EXPECT_EQ(point->calligraphicDrawOrder, 4);
    EXPECT_FLOAT_EQ(point->axisOfRotationZ, 1.0f);
    const std::string dump = fieldsOf(*point);
    EXPECT_EQ(dump.find("idASCII: runway\nsurfaceMaterialCode: -2\nfeatureID: 0\nbackColor: 33\n"), 0u);
    EXPECT_NE(dump.find("calligraphicDrawOrder: 4\nflags: \n     no back color: 1\n"
                        "     calligraphic proximity occulting: 0\n     reflective non-color light: 0\n"
                        "     randomize intensity: 3\n     perspective mode: 0\n     flashing: 1\n"
                        "     rotating: 0\n     rotate counter clockwise: 0\n     quality: 0\n"
                        "     visible during day: 0\n     visible during dusk: 0\n     visible during night: 1\n"
                        "axisOfRotationX: 0\naxisOfRotationY: 0\naxisOfRotationZ: 1\n"),
              std::string::npos);
}
