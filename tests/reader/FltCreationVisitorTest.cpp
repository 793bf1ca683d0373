// The opcode factory: every opcode yields an object, with the table's class, category and
// heading, and the table's three deliberate decisions.
#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <memory>
#include <sstream>

#include "FltFixture.h"
#include "TestSupport.h"
#include "reader/FltCreationVisitor.h"
#include "reader/FltRawData.h"
#include "reader/FltRecordGroupAndObject.h"
#include "reader/FltRecordTransformations.h"
#include "reader/FltRecordUnknown.h"

namespace {

struct Row {
    const char* category;
    const char* heading;
};

// The opcodes that have a class of their own.
const std::map<int, Row> kExpected = {
    {1, {"PRIMARY_RECORD", "\n HEADER RECORD "}},
    {2, {"PRIMARY_RECORD", "\n GROUP RECORD "}},
    {3, {"PRIMARY_RECORD", "\n OLD LEVEL_OF_DETAIL (LOD) RECORD (OBSOLETE) "}},
    {4, {"PRIMARY_RECORD", "\n OBJECT RECORD "}},
    {5, {"PRIMARY_RECORD", "\n FACE RECORD "}},
    {7, {"PRIMARY_RECORD", "\n OLD VERTEX RECORD (OBSOLETE)"}},
    {8, {"PRIMARY_RECORD", "\n OLD VERTEX COLOR RECORD (OBSOLETE)"}},
    {9, {"PRIMARY_RECORD", "\n OLD VERTEX COLOR NORMAL RECORD (OBSOLETE)"}},
    {10, {"CONTROL_RECORD", "\n PUSH LEVEL RECORD "}},
    {11, {"CONTROL_RECORD", "\n POP LEVEL RECORD "}},
    {14, {"PRIMARY_RECORD", "\n DOF RECORD "}},
    {19, {"CONTROL_RECORD", "\n PUSH SUBFACE RECORD "}},
    {20, {"CONTROL_RECORD", "\n POP SUBFACE RECORD "}},
    {21, {"CONTROL_RECORD", "\n PUSH EXTENSION RECORD "}},
    {22, {"CONTROL_RECORD", "\n POP EXTENSION RECORD "}},
    {31, {"ANCILLARY_RECORD", "\n COMMENT RECORD "}},
    {32, {"PALETTE_RECORD", "\n COLOR PALETTE RECORD "}},
    {33, {"ANCILLARY_RECORD", "\n LONG_ID RECORD "}},
    {49, {"ANCILLARY_RECORD", "\n MATRIX RECORD "}},
    {50, {"ANCILLARY_RECORD", "\n VECTOR RECORD "}},
    {51, {"ANCILLARY_RECORD", "\n OLD BOUNDING BOX "}},
    {52, {"ANCILLARY_RECORD", "\n MULTI TEXTURE RECORD "}},
    {60, {"ANCILLARY_RECORD", "\n REPLICATE RECORD "}},
    {61, {"CONTROL_RECORD", "\n INSTANCE REFERENCE RECORD "}},
    {62, {"CONTROL_RECORD", "\n INSTANCE DEFINITION RECORD "}},
    {63, {"PRIMARY_RECORD", "\n EXTERNAL REFERENCE RECORD "}},
    {64, {"PALETTE_RECORD", "\n TEXTURE_PATTERN RECORD "}},
    {66, {"PALETTE_RECORD", "\n OLD MATERIAL PALETTE RECORD (OBSOLETE)"}},
    {67, {"PALETTE_RECORD", "\n VERTEX PALETTE RECORD "}},
    {68, {"PALETTE_RECORD", "\n VERTEX COLOR RECORD "}},
    {69, {"PALETTE_RECORD", "\n VERTEX COLOR NORMAL RECORD "}},
    {70, {"PALETTE_RECORD", "\n VERTEX COLOR NORMAL UV RECORD "}},
    {71, {"PALETTE_RECORD", "\n VERTEX COLOR UV (TEXTURE) RECORD "}},
    {72, {"PRIMARY_RECORD", "\n VERTEX LIST RECORD "}},
    {73, {"PRIMARY_RECORD", "\n LEVEL_OF_DETAIL (LOD) RECORD "}},
    {74, {"ANCILLARY_RECORD", "\n BOUNDING BOX "}},
    {76, {"ANCILLARY_RECORD", "\n ROTATE ABOUT EDGE RECORD "}},
    {78, {"ANCILLARY_RECORD", "\n TRANSLATE RECORD "}},
    {79, {"ANCILLARY_RECORD", "\n SCALE NON UNIFORM RECORD "}},
    {80, {"ANCILLARY_RECORD", "\n ROTATE ABOUT POINT RECORD "}},
    {82, {"ANCILLARY_RECORD", "\n ROTATE ABOUT EDGE RECORD "}},
    {83, {"PALETTE_RECORD", "\n EYEPOINT TRACKPLANE RECORD "}},
    {89, {"PRIMARY_RECORD", "\n MORPH VERTEX LIST RECORD "}},
    {91, {"PRIMARY_RECORD", "\n SOUND RECORD "}},
    {93, {"PALETTE_RECORD", "\n SOUND PALETTE RECORD "}},
    {94, {"ANCILLARY_RECORD", "\n GENERAL_MATRIX RECORD "}},
    {95, {"PRIMARY_RECORD", "\n TEXT RECORD "}},
    {96, {"PRIMARY_RECORD", "\n SWITCH RECORD "}},
    {97, {"PALETTE_RECORD", "\n LINE STYLE PALETTE RECORD "}},
    {98, {"PRIMARY_RECORD", "\n CLIP REGION RECORD "}},
    {100, {"ANCILLARY_RECORD", "\n EXTENSION ATTRIBUTE RECORD "}},
    {101, {"PRIMARY_RECORD", "\n LIGHT SOURCE RECORD "}},
    {102, {"PALETTE_RECORD", "\n LIGHT SOURCE PALETTE RECORD "}},
    {105, {"ANCILLARY_RECORD", "\n BOUNDING VOLUME SPHERE "}},
    {106, {"ANCILLARY_RECORD", "\n BOUNDING VOLUME CYLINDER "}},
    {108, {"ANCILLARY_RECORD", "\n BOUNDING VOLUME CENTER "}},
    {109, {"ANCILLARY_RECORD", "\n BOUNDING VOLUME ORIENTATION "}},
    {111, {"PRIMARY_RECORD", "\n LIGHT POINT RECORD "}},
    {112, {"PALETTE_RECORD", "\n TEXTURE MAPPING PALETTE RECORD "}},
    {113, {"PALETTE_RECORD", "\n MATERIAL PALETTE RECORD "}},
    {114, {"PALETTE_RECORD", "\n NAME PALETTE RECORD "}},
};

std::string headingBlock(const FltRecord& record)
{
    std::ostringstream os;
    record.nameOpcodeAndLength(os);
    return os.str();
}

// Builds one record through the visitor, from a zero-filled body of the given length.
std::unique_ptr<FltRecord> build(Flt_15_7_CreationVisitor& visitor, uint16_t opcode, uint16_t length)
{
    FltRecordBytes bytes(opcode, length);
    std::string data = bytes.bytes();
    FltRawData raw(opcode, length, data.data());
    FltRecord* out = nullptr;
    visitor.visitFltRawData(out, &raw);
    return std::unique_ptr<FltRecord>(out);
}

}  // namespace

TEST(OpcodeFactory, everyOpcodeYieldsAnObjectWithTheTablesCategoryAndHeading)
{
    for (unsigned opcode = 0; opcode <= 65535; ++opcode) {
        std::unique_ptr<FltRecord> record(Flt_15_7_CreationVisitor::createRecord(opcode, 8, 1570));
        ASSERT_NE(record, nullptr) << opcode;
        auto row = kExpected.find(static_cast<int>(opcode));
        if (row != kExpected.end()) {
            EXPECT_EQ(record->getRecordCategory(), row->second.category) << opcode;
            EXPECT_EQ(headingBlock(*record).substr(0, std::string(row->second.heading).size() + 1),
                      std::string(row->second.heading) + "\n")
                << opcode;
            EXPECT_EQ(record->getOpcode(), opcode == 82 ? 76 : static_cast<int>(opcode));
        } else {
            ASSERT_NE(dynamic_cast<FltRecordUnknown*>(record.get()), nullptr) << opcode;
            EXPECT_EQ(record->getOpcode(), static_cast<int>(static_cast<int16_t>(opcode)));
            EXPECT_EQ(record->getRecordCategory(), "");
            EXPECT_EQ(record->getCategoryKind(), FltCategory::Unknown);
        }
        EXPECT_EQ(record->getLength(), 8u);
    }
}

TEST(OpcodeFactory, unknownOpcodesAboveTheTableReportThemselvesAsSigned16Bit)
{
    std::unique_ptr<FltRecord> a(Flt_15_7_CreationVisitor::createRecord(115, 4, 1570));
    std::unique_ptr<FltRecord> b(Flt_15_7_CreationVisitor::createRecord(65535, 4, 1570));
    EXPECT_EQ(a->getOpcode(), 115);
    EXPECT_EQ(b->getOpcode(), -1);
    std::ostringstream os;
    b->properties(os);
    EXPECT_EQ(os.str(), "\n UNKNOWN RECORD \n  ()\n-- Opcode: -1  Length: 4 --\n");
}

TEST(OpcodeFactory, putTransformIsBuiltAsRotateAboutEdgeAndUvListAsUnknown)
{
    Flt_15_7_CreationVisitor visitor;
    visitor.setDumpStream(nullptr);
    auto put = build(visitor, 82, 156);
    EXPECT_NE(dynamic_cast<FltRecordRotateAboutEdge*>(put.get()), nullptr);
    EXPECT_EQ(put->getOpcode(), 76);
    auto uv = build(visitor, 53, 16);
    EXPECT_NE(dynamic_cast<FltRecordUnknown*>(uv.get()), nullptr);
    EXPECT_EQ(uv->getOpcode(), 53);
    EXPECT_EQ(FltRecordPutTransform(156).getOpcode(), 82);
}

TEST(OpcodeFactory, revisionReachesOnlyTheRecordsThatCarryIt)
{
    Flt_15_7_CreationVisitor visitor;
    visitor.setDumpStream(nullptr);
    visitor.formatRevision = 1420;
    visitor.rgbMode = true;
    auto group = build(visitor, 2, 44);
    auto* versioned = dynamic_cast<FltVersion*>(group.get());
    ASSERT_NE(versioned, nullptr);
    EXPECT_EQ(versioned->formatRevision, 1420);
    EXPECT_FALSE(versioned->rgbMode);  // the colour mode is not copied
}

TEST(OpcodeFactory, unknownRecordCopiesItsFirstBytesFromTheHeaderOn)
{
    Flt_15_7_CreationVisitor visitor;
    visitor.setDumpStream(nullptr);
    std::string data("\x00\x63\x00\x08\xAA\xBB\xCC\xDD", 8);  // opcode 99, length 8
    FltRawData raw(99, 8, data.data());
    FltRecord* out = nullptr;
    visitor.visitFltRawData(out, &raw);
    std::unique_ptr<FltRecord> owned(out);
    auto* unknown = dynamic_cast<FltRecordUnknown*>(out);
    ASSERT_NE(unknown, nullptr);
    ASSERT_EQ(unknown->getDataSize(), 4u);
    EXPECT_EQ(std::string(unknown->data, 4), std::string("\x00\x63\x00\x08", 4));

    auto empty = build(visitor, 99, 4);
    EXPECT_EQ(dynamic_cast<FltRecordUnknown*>(empty.get())->getDataSize(), 0u);
    EXPECT_EQ(dynamic_cast<FltRecordUnknown*>(empty.get())->data, nullptr);
}

TEST(OpcodeFactory, soundPaletteContinuesOnlyDirectlyAfterAnotherOne)
{
    Flt_15_7_CreationVisitor visitor;
    visitor.setDumpStream(nullptr);
    auto first = build(visitor, 93, 16);
    std::string data = FltRecordBytes(93, 16).bytes();
    FltRawData raw(93, 16, data.data());
    FltRecord* again = nullptr;
    visitor.visitFltRawData(again, &raw);
    EXPECT_EQ(again, first.get());
    auto other = build(visitor, 10, 4);
    auto fresh = build(visitor, 93, 16);
    EXPECT_NE(fresh.get(), first.get());
}

TEST(OpcodeFactory, everyRecordIsDumpedToStandardOutputAsItIsCreated)
{
    CaptureStream out(std::cout);
    Flt_15_7_CreationVisitor visitor;
    auto push = build(visitor, 10, 4);
    EXPECT_EQ(out.text(), "\n PUSH LEVEL RECORD \n  (CONTROL_RECORD)\n-- Opcode: 10  Length: 4 --\n");
}

TEST(OpcodeFactory, everyClassDecodesAndDumpsARecordCutShortWithoutReadingPastIt)
{
    // Each record holds only its 4-byte header; the sanitizer build proves no decoder reads
    // past those bytes.
    Flt_15_7_CreationVisitor visitor;
    visitor.formatRevision = 1580;
    std::ostringstream sink;
    visitor.setDumpStream(&sink);
    CaptureStream err(std::cerr);
    for (unsigned opcode = 0; opcode <= 120; ++opcode) {
        std::string data = FltRecordBytes(static_cast<uint16_t>(opcode), 4).bytes();
        char* heap = new char[4];
        std::memcpy(heap, data.data(), 4);
        FltRawData raw(static_cast<uint16_t>(opcode), 4, heap);
        FltRecord* out = nullptr;
        visitor.visitFltRawData(out, &raw);
        ASSERT_NE(out, nullptr);
        delete out;
        visitor.previousRecord = nullptr;
        delete[] heap;
    }
}
