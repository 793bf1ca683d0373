// Transformation records: matrices, the put transform read as rotate-about-edge, and the put
// transform's own class, which no file creates (the golden log pins the other dumps).
#include <gtest/gtest.h>

#include "RecordTestSupport.h"
#include "reader/FltBytes.h"
#include "reader/FltRecordTransformations.h"

namespace {
FltRecordBytes matrixBytes(uint16_t opcode, size_t length, const std::vector<float>& values)
{
    FltRecordBytes bytes(opcode, length);
    for (size_t n = 0; n < values.size(); ++n) bytes.f32(4 + 4 * n, values[n]);
    return bytes;
}

// A 156-byte put transform whose eighteen doubles are 1 to 18, followed by the angle 33.
FltRecordBytes putTransformBytes()
{
    FltRecordBytes bytes(82, 156);
    for (size_t n = 0; n < 18; ++n) bytes.f64(8 + 8 * n, static_cast<double>(n + 1));
    return bytes.f32(152, 33.0f);
}
}  // namespace

TEST(MatrixRecords, valuesAreStoredRowAfterRowWithTheTranslationLast)
{
    const std::vector<float> values = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 0.5f, -2.25f, 100, 1};
    auto matrix = decodeRecord<FltRecordMatrix>(matrixBytes(49, 68, values));
    ASSERT_TRUE(matrix);
    EXPECT_EQ(matrix->matrix[0][1], 2.0f);
    EXPECT_EQ(matrix->matrix[1][0], 5.0f);
    EXPECT_EQ((std::vector<float>{matrix->matrix[3][0], matrix->matrix[3][1], matrix->matrix[3][2]}),
              (std::vector<float>{0.5f, -2.25f, 100}));

    // The general matrix shares the layout but is not a matrix record.
    auto general = decodeRecord<FltRecordGeneralMatrix>(matrixBytes(94, 68, values));
    ASSERT_TRUE(general);
    EXPECT_EQ(general->matrix[3][2], 100.0f);
    EXPECT_FALSE(decodeRecord<FltRecordMatrix>(matrixBytes(94, 68, values)));

    auto cut = decodeRecord<FltRecordMatrix>(matrixBytes(49, 36, {1, 1, 1, 1, 1, 1, 1, 1}));
    EXPECT_EQ(cut->matrix[1][3], 1.0f);
    EXPECT_EQ(cut->matrix[2][0], 0.0f);
    EXPECT_EQ(cut->matrix[3][3], 0.0f);
}

TEST(RotateAboutEdgeRecord, putTransformInAFileIsReadWithTheEdgeLayout)
{
    // Its first six doubles become the two points, the 32-bit value at 56 (the high half of
    // the "from track" x) becomes the angle.
    const FltRecordBytes bytes = putTransformBytes();
    auto edge = decodeRecord<FltRecordRotateAboutEdge>(bytes);
    ASSERT_TRUE(edge);
    EXPECT_EQ(edge->getOpcode(), 76);
    EXPECT_EQ(edge->length, 156u);
    EXPECT_EQ(edge->XCenter1, 1.0);
    EXPECT_EQ(edge->ZCenter2, 6.0);
    EXPECT_EQ(edge->angleToRotate, FltBytes(bytes.bytes().data(), bytes.size()).f32(56));
}

TEST(PutTransformRecord, hasItsOwnDecoderAndDump)
{
    auto put = decodeDirectly<FltRecordPutTransform>(putTransformBytes());
    EXPECT_EQ(put->XToOrigin, 10.0);
    EXPECT_EQ(dumpOf(*put),
              "\n PUT TRANSFORM RECORD \n  (ANCILLARY_RECORD)\n-- Opcode: 82  Length: 156 --\n"
              "XFromOrigin: 1\nYFromOrigin: 2\nZFromOrigin: 3\nXFromAlign: 4\nYFromAlign: 5\nZFromAlign: 6\n"
              "XFromTrack: 7\nYFromTrack: 8\nZFromTrack: 9\nXToOrigin: 10\nYToOrigin: 11\nZToOrigin: 12\n"
              "XToAlign: 13\nYToAlign: 14\nZToAlign: 15\nXToTrack: 16\nYToTrack: 17\nZToTrack: 18\n"
              "angleToRotate: 33\n");
}

TEST(ScaleNonUniformRecord, keepsTheStrayFullStopInItsFirstLabel)
{
    FltRecordBytes scale(79, 44);
    scale.f64(8, 1.5).f32(32, 2.0f);
    EXPECT_EQ(fieldsOf(*decodeRecord<FltRecordScaleNonUniform>(scale)).find("XCenter.: 1.5\nYCenter: 0\n"), 0u);
}
