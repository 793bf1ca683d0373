// Transformation records: matrices, vector, translate, scale, rotations, put.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "RecordTestSupport.h"
#include "reader/FltBytes.h"
#include "reader/FltRecordTransformations.h"

namespace {
// Decodes a record the factory never creates, from a heap block of exactly its bytes.
template <class T>
std::unique_ptr<T> decodeDirectly(const FltRecordBytes& bytes)
{
    auto record = std::make_unique<T>(static_cast<unsigned int>(bytes.size()));
    std::unique_ptr<char[]> exact(new char[bytes.size()]);
    std::copy(bytes.bytes().begin(), bytes.bytes().end(), exact.get());
    record->getPropertiesFromData(exact.get());
    return record;
}

FltRecordBytes matrixBytes(uint16_t opcode, const float values[16])
{
    FltRecordBytes bytes(opcode, 68);
    for (size_t n = 0; n < 16; ++n) bytes.f32(4 + 4 * n, values[n]);
    return bytes;
}

const float kIdentity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
}  // namespace

TEST(MatrixRecord, identityDumpsFourRowsBetweenBars)
{
    auto matrix = decodeRecord<FltRecordMatrix>(matrixBytes(49, kIdentity));
    ASSERT_TRUE(matrix);
    EXPECT_EQ(dumpOf(*matrix),
              "\n MATRIX RECORD \n  (ANCILLARY_RECORD)\n-- Opcode: 49  Length: 68 --\n"
              "|  1  0  0  0    |\n|  0  1  0  0    |\n|  0  0  1  0    |\n|  0  0  0  1    |\n");
}

TEST(MatrixRecord, valuesAreStoredRowAfterRowWithTheTranslationLast)
{
    const float values[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 0.5f, -2.25f, 100, 1};
    auto matrix = decodeRecord<FltRecordMatrix>(matrixBytes(49, values));
    EXPECT_EQ(matrix->matrix[0][1], 2.0f);
    EXPECT_EQ(matrix->matrix[1][0], 5.0f);
    EXPECT_EQ(matrix->matrix[3][0], 0.5f);
    EXPECT_EQ(matrix->matrix[3][1], -2.25f);
    EXPECT_EQ(matrix->matrix[3][2], 100.0f);
    EXPECT_NE(fieldsOf(*matrix).find("|  0.5  -2.25  100  1    |\n"), std::string::npos);
}

TEST(MatrixRecord, generalMatrixSharesTheLayoutButIsNotAMatrixRecord)
{
    const float values[16] = {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 7, 8, 9, 1};
    FltRecordBytes bytes = matrixBytes(94, values);
    auto general = decodeRecord<FltRecordGeneralMatrix>(bytes);
    ASSERT_TRUE(general);
    EXPECT_EQ(general->matrix[3][2], 9.0f);
    EXPECT_FALSE(decodeRecord<FltRecordMatrix>(bytes));
    EXPECT_EQ(dumpOf(*general),
              "\n GENERAL_MATRIX RECORD \n  (ANCILLARY_RECORD)\n-- Opcode: 94  Length: 68 --\n"
              "|  2  0  0  0    |\n|  0  2  0  0    |\n|  0  0  2  0    |\n|  7  8  9  1    |\n");
}

TEST(MatrixRecord, shortRecordLeavesTheMissingRowsZero)
{
    FltRecordBytes bytes(49, 36);
    for (size_t n = 0; n < 8; ++n) bytes.f32(4 + 4 * n, 1.0f);
    auto matrix = decodeRecord<FltRecordMatrix>(bytes);
    EXPECT_EQ(matrix->matrix[1][3], 1.0f);
    EXPECT_EQ(matrix->matrix[2][0], 0.0f);
    EXPECT_EQ(matrix->matrix[3][3], 0.0f);
}

TEST(SmallTransformRecords, dumpTheirValuesOnLabelledLines)
{
    FltRecordBytes vector(50, 16);
    vector.f32(4, 0.5f).f32(8, -1.0f).f32(12, 2.0f);
    EXPECT_EQ(fieldsOf(*decodeRecord<FltRecordVector>(vector)), "i=0.5  j=-1  k=2\n");

    FltRecordBytes translate(78, 56);
    translate.f64(8, 1).f64(16, 2).f64(24, 3).f64(32, -4).f64(40, 0.25).f64(48, 1e9);
    auto t = decodeRecord<FltRecordTranslate>(translate);
    EXPECT_EQ(t->deltaZ, 1e9);
    EXPECT_EQ(fieldsOf(*t), "x=1  y=2  z=3\ndeltaX=-4  deltaY=0.25  deltaZ=1e+09\n");

    FltRecordBytes scale(79, 44);
    scale.f64(8, 1.5).f64(16, 2.5).f64(24, 3.5).f32(32, 2.0f).f32(36, 0.1f).f32(40, -1.0f);
    EXPECT_EQ(fieldsOf(*decodeRecord<FltRecordScaleNonUniform>(scale)),
              "XCenter.: 1.5\nYCenter: 2.5\nZCenter: 3.5\nXScaleFactor: 2\nYScaleFactor: 0.1\nZScaleFactor: -1\n");

    FltRecordBytes point(80, 48);
    point.f64(8, 10).f64(16, 20).f64(24, 30).f32(32, 0).f32(36, 0).f32(40, 1).f32(44, 90);
    auto p = decodeRecord<FltRecordRotateAboutPoint>(point);
    EXPECT_EQ(p->KAxisOfRotation, 1.0f);
    EXPECT_EQ(fieldsOf(*p),
              "XCenterOfRotation: 10\nYCenterOfRotation: 20\nZCenterOfRotation: 30\n"
              "IAxisOfRotation: 0\nJAxisOfRotation: 0\nKAxisOfRotation: 1\nangleToRotate: 90\n");
}

TEST(RotateAboutEdgeRecord, dumpsBothPointsAndTheAngle)
{
    FltRecordBytes bytes(76, 64);
    bytes.f64(8, 1).f64(16, 2).f64(24, 3).f64(32, 4).f64(40, 5).f64(48, 6).f32(56, 45.0f);
    auto edge = decodeRecord<FltRecordRotateAboutEdge>(bytes);
    ASSERT_TRUE(edge);
    EXPECT_EQ(dumpOf(*edge),
              "\n ROTATE ABOUT EDGE RECORD \n  (ANCILLARY_RECORD)\n-- Opcode: 76  Length: 64 --\n"
              "XCenter1: 1\nYCenter1: 2\nZCenter1: 3\nXCenter2: 4\nYCenter2: 5\nZCenter2: 6\n"
              "angleToRotate: 45\n");
}

TEST(RotateAboutEdgeRecord, putTransformInAFileIsReadWithTheEdgeLayout)
{
    // A 156-byte put-transform record: its first six doubles become the two points, the
    // 32-bit value at 56 (the high half of the "from track" x) becomes the angle.
    FltRecordBytes bytes(82, 156);
    for (size_t n = 0; n < 18; ++n) bytes.f64(8 + 8 * n, static_cast<double>(n + 1));
    bytes.f32(152, 33.0f);
    auto edge = decodeRecord<FltRecordRotateAboutEdge>(bytes);
    ASSERT_TRUE(edge);
    EXPECT_EQ(edge->getOpcode(), 76);
    EXPECT_EQ(edge->length, 156u);
    EXPECT_EQ(edge->XCenter1, 1.0);
    EXPECT_EQ(edge->ZCenter2, 6.0);
    FltBytes raw(bytes.bytes().data(), bytes.size());
    EXPECT_EQ(edge->angleToRotate, raw.f32(56));
    EXPECT_EQ(dumpOf(*edge).rfind("\n ROTATE ABOUT EDGE RECORD \n  (ANCILLARY_RECORD)\n-- Opcode: 76  Length: 156 --\n", 0),
              0u);
}

TEST(PutTransformRecord, hasItsOwnDecoderAndDump)
{
    FltRecordBytes bytes(82, 156);
    for (size_t n = 0; n < 18; ++n) bytes.f64(8 + 8 * n, static_cast<double>(n + 1));
    bytes.f32(152, 33.0f);
    auto put = decodeDirectly<FltRecordPutTransform>(bytes);
    EXPECT_EQ(put->XToOrigin, 10.0);
    EXPECT_EQ(put->ZToTrack, 18.0);
    EXPECT_EQ(put->angleToRotate, 33.0f);
    EXPECT_EQ(dumpOf(*put),
              "\n PUT TRANSFORM RECORD \n  (ANCILLARY_RECORD)\n-- Opcode: 82  Length: 156 --\n"
              "XFromOrigin: 1\nYFromOrigin: 2\nZFromOrigin: 3\nXFromAlign: 4\nYFromAlign: 5\nZFromAlign: 6\n"
              "XFromTrack: 7\nYFromTrack: 8\nZFromTrack: 9\nXToOrigin: 10\nYToOrigin: 11\nZToOrigin: 12\n"
              "XToAlign: 13\nYToAlign: 14\nZToAlign: 15\nXToTrack: 16\nYToTrack: 17\nZToTrack: 18\n"
              "angleToRotate: 33\n");
}
