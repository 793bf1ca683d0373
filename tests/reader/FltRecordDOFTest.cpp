// The degree-of-freedom record.
#include <gtest/gtest.h>

#include "RecordTestSupport.h"
#include "reader/FltRecordDOF.h"

namespace {
// A DOF record whose 45 doubles hold their own offset, so each label shows where its value
// was read.
FltRecordBytes dofBytes(size_t length)
{
    FltRecordBytes bytes(14, length);
    bytes.chars(4, "dof1", 8).i32(12, 5);
    for (size_t offset = 16; offset + 8 <= 376 && offset + 8 <= length; offset += 8)
        bytes.f64(offset, static_cast<double>(offset));
    return bytes;
}
}  // namespace

TEST(DOFRecord, dumpsEveryValueWithItsOwnLabelAndNineFlagLines)
{
    FltRecordBytes bytes = dofBytes(384);
    bytes.u32(376, 0xA0800000u);
    auto dof = decodeRecord<FltRecordDOF>(bytes);
    ASSERT_TRUE(dof);
    EXPECT_STREQ(dof->idASCII, "dof1");
    EXPECT_EQ(dof->reserved, 5);
    EXPECT_EQ(dof->XOriginOfDOFLocalCoordinateSystem, 16.0);
    EXPECT_EQ(dof->maxPitch, 192.0);
    EXPECT_EQ(dof->ZMinScale, 280.0);
    EXPECT_EQ(dof->XIncrementForScale, 368.0);
    EXPECT_EQ(dof->flags, static_cast<int32_t>(0xA0800000u));
    EXPECT_EQ(dumpOf(*dof),
              "\n DOF RECORD \n  (PRIMARY_RECORD)\n-- Opcode: 14  Length: 384 --\n"
              "idASCII: dof1\n"
              "XOriginOfDOFLocalCoordinateSystem: 16\n"
              "YOriginOfDOFLocalCoordinateSystem: 24\n"
              "ZOriginOfDOFLocalCoordinateSystem: 32\n"
              "XPointOnXAxisOfDOFLocalCoordinateSystem : 40\n"
              "YPointOnXAxisOfDOFLocalCoordinateSystem: 48\n"
              "ZPointOnXAxisOfDOFLocalCoordinateSystem : 56\n"
              "XPointInXYPlaneOfDOFLocalCoordinateSystem: 64\n"
              "YPointInXYPlaneOfDOFLocalCoordinateSystem: 72\n"
              "ZPointInXYPlaneOfDOFLocalCoordinateSystem : 80\n"
              "ZMinValue: 88\nZMaxValue: 96\nZCurrentValue: 104\nZIncrement: 112\n"
              "YMinValue: 120\nYMaxValue: 128\nYCurrentValue: 136\nYIncrement: 144\n"
              "XMinValue: 152\nXMaxValue: 160\nXCurrentValue: 168\nXIncrement: 176\n"
              "minimumPitch: 184\nmaxPitch : 192\ncurrentPitch: 200\nincrementInPitch: 208\n"
              "minimumRoll: 216\nmaxRoll : 224\ncurrentRoll: 232\nincrementInRoll: 240\n"
              "minimumYaw: 248\nmaxYaw : 256\ncurrentYaw: 264\nincrementInYaw: 272\n"
              "ZMinScale   : 280\nZMaxScale  : 288\nZCurrentScale: 296\nZIncrementForScale: 304\n"
              "YMinScale   : 312\nYMaxScale  : 320\nYCurrentScale: 328\nYIncrementForScale: 336\n"
              "XMinScale : 344\nXMaxScale : 352\nXCurrentScale: 360\nXIncrementForScale    : 368\n"
              "flags: \n"
              "     x translation is limited: 1\n"
              "     y translation is limited: 0\n"
              "     z translation is limited: 1\n"
              "     pitch rotation is limited: 0\n"
              "     roll rotation is limited: 0\n"
              "     yaw rotation is limited: 0\n"
              "     x scale is limited: 0\n"
              "     y scale is limited: 0\n"
              "     z scale is limited: 1\n");
}

TEST(DOFRecord, eachFlagBitDrivesItsOwnLine)
{
    const char* labels[] = {"x translation", "y translation", "z translation", "pitch rotation", "roll rotation",
                            "yaw rotation",  "x scale",       "y scale",       "z scale"};
    for (int bit = 0; bit < 9; ++bit) {
        FltRecordBytes bytes(14, 384);
        bytes.u32(376, 0x80000000u >> bit);
        const std::string dump = fieldsOf(*decodeRecord<FltRecordDOF>(bytes));
        for (int other = 0; other < 9; ++other) {
            const std::string line = std::string("     ") + labels[other] + " is limited: " + (other == bit ? "1" : "0");
            EXPECT_NE(dump.find(line + "\n"), std::string::npos) << "bit " << bit << ": " << line;
        }
    }
}

TEST(DOFRecord, shortRecordReadsZerosPastItsEnd)
{
    auto dof = decodeRecord<FltRecordDOF>(dofBytes(200));
    EXPECT_EQ(dof->currentPitch, 0.0);  // offset 200: past the end
    EXPECT_EQ(dof->minimumPitch, 184.0);
    EXPECT_EQ(dof->XIncrementForScale, 0.0);
    EXPECT_EQ(dof->flags, 0);
}
