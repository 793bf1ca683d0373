// The put transform's own class, which no file creates (the golden log pins the other
// transformation dumps, the put transform read as rotate-about-edge among them; the matrix
// conversion test pins the order of the values; FltBytesTest a matrix cut short).
#include <gtest/gtest.h>

#include "RecordTestSupport.h"
#include "reader/FltRecordTransformations.h"

TEST(PutTransformRecord, hasItsOwnDecoderAndDump)
{
    // Eighteen doubles 1 to 18, then the angle 33.
    FltRecordBytes bytes(82, 156);
    for (size_t n = 0; n < 18; ++n) bytes.f64(8 + 8 * n, static_cast<double>(n + 1));
    auto put = decodeDirectly<FltRecordPutTransform>(bytes.f32(152, 33.0f));
    EXPECT_EQ(put->XToOrigin, 10.0);
    EXPECT_EQ(dumpOf(*put),
              "\n PUT TRANSFORM RECORD \n  (ANCILLARY_RECORD)\n-- Opcode: 82  Length: 156 --\n"
              "XFromOrigin: 1\nYFromOrigin: 2\nZFromOrigin: 3\nXFromAlign: 4\nYFromAlign: 5\nZFromAlign: 6\n"
              "XFromTrack: 7\nYFromTrack: 8\nZFromTrack: 9\nXToOrigin: 10\nYToOrigin: 11\nZToOrigin: 12\n"
              "XToAlign: 13\nYToAlign: 14\nZToAlign: 15\nXToTrack: 16\nYToTrack: 17\nZToTrack: 18\n"
              "angleToRotate: 33\n");
}
