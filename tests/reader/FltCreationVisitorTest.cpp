// The opcode factory: every opcode yields an object, the table's deliberate decisions (the
// put transform's class, which no file creates, among them), every class decoding every cut
// of a record without reading past it, and the block allocation of record objects. The
// headings and categories of the table are pinned by the golden log of
// tests/convert/EveryRecordTest.cpp, the other transformation dumps too.
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <sstream>

#include "EveryRecordDatabase.h"
#include "RecordTestSupport.h"
#include "reader/FltCreationVisitor.h"
#include "reader/FltRecordAllocator.h"
#include "reader/FltRecordTransformations.h"
#include "reader/FltRecordUnknown.h"

namespace {

// Builds one record through the visitor, with no sound palette continuation between builds.
std::unique_ptr<FltRecord> build(Flt_15_7_CreationVisitor& visitor, const std::string& bytes)
{
    std::unique_ptr<FltRecord> record(feed(visitor, bytes));
    visitor.previousRecord = nullptr;
    return record;
}

}  // namespace

TEST(OpcodeFactory, everyOpcodeYieldsAnObjectAndOnlyTheTablesOpcodesHaveAClass)
{
    // 53 (UV list) stays unknown and 82 (put transform) is built as rotate-about-edge, on purpose.
    const std::set<unsigned> known = {1,  2,  3,  4,  5,  7,  8,  9,  10, 11,  14,  19,  20,  21,  22, 31,
                                      32, 33, 49, 50, 51, 52, 60, 61, 62, 63,  64,  66,  67,  68,  69, 70,
                                      71, 72, 73, 74, 76, 78, 79, 80, 82, 83,  89,  91,  93,  94,  95, 96,
                                      97, 98, 100, 101, 102, 105, 106, 108, 109, 111, 112, 113, 114};
    for (unsigned opcode = 0; opcode <= 65535; ++opcode) {
        std::unique_ptr<FltRecord> record(Flt_15_7_CreationVisitor::createRecord(opcode, 8, 1570));
        ASSERT_NE(record, nullptr) << opcode;
        EXPECT_EQ(record->getLength(), 8u);
        if (known.count(opcode)) {
            EXPECT_EQ(dynamic_cast<FltRecordUnknown*>(record.get()), nullptr) << opcode;
            EXPECT_EQ(record->getOpcode(), opcode == 82 ? 76 : static_cast<int>(opcode));
        } else {
            ASSERT_NE(dynamic_cast<FltRecordUnknown*>(record.get()), nullptr) << opcode;
            EXPECT_EQ(record->getOpcode(), static_cast<int>(static_cast<int16_t>(opcode)));  // 65535 is -1
            EXPECT_EQ(record->getRecordCategory(), "");
            EXPECT_EQ(record->getCategoryKind(), FltCategory::Unknown);
        }
    }
    std::unique_ptr<FltRecord> put(Flt_15_7_CreationVisitor::createRecord(82, 156, 1570));
    EXPECT_NE(dynamic_cast<FltRecordRotateAboutEdge*>(put.get()), nullptr);
}

TEST(OpcodeFactory, unknownRecordCopiesItsFirstBytesFromTheHeaderOn)
{
    Flt_15_7_CreationVisitor visitor;
    visitor.setDumpStream(nullptr);
    auto record = build(visitor, std::string("\x00\x63\x00\x08\xAA\xBB\xCC\xDD", 8));  // opcode 99
    auto& unknown = dynamic_cast<FltRecordUnknown&>(*record);
    ASSERT_EQ(unknown.getDataSize(), 4u);
    EXPECT_EQ(std::string(unknown.data, 4), std::string("\x00\x63\x00\x08", 4));

    auto empty = build(visitor, FltRecordBytes(99, 4).bytes());
    EXPECT_EQ(dynamic_cast<FltRecordUnknown&>(*empty).getDataSize(), 0u);
    EXPECT_EQ(dynamic_cast<FltRecordUnknown&>(*empty).data, nullptr);
}

TEST(OpcodeFactory, everyClassDecodesAndDumpsEveryCutOfARecordWithoutReadingPastIt)
{
    // Each record body follows a fixed byte pattern, so its counts, lengths and types are
    // arbitrary and often absurd; it is cut at every length up to 600 bytes and at every 7th
    // byte beyond, up to past the largest layouts. The sanitizer build proves that no decoder
    // or dump reads past the cut. Some records are swept again with a chosen subtype or type.
    struct Variant {
        unsigned opcode;
        size_t offset;
        int32_t value;
    };
    const Variant variants[] = {{0, 0, 0},    {93, 4, 1},   {93, 4, 2},   {112, 32, 1}, {112, 32, 2},
                                {112, 32, 4}, {112, 32, 5}, {112, 36, 1}, {32, 4228, 3}, {114, 4, 3}};
    const std::set<unsigned> revisioned = {1, 2, 5, 32, 66, 68, 69, 70, 71};
    Flt_15_7_CreationVisitor visitor;
    std::ostringstream sink;
    visitor.setDumpStream(&sink);
    size_t decoded = 0;
    for (unsigned opcode = 0; opcode <= 115; ++opcode) {
        const size_t longest = opcode == 66 ? 11800 : (opcode == 32 || opcode == 83) ? 4300 : 620;
        for (const Variant& variant : variants) {
            if (variant.opcode != 0 && variant.opcode != opcode) continue;
            FltRecordBytes pattern = everyrecord::patterned(static_cast<uint16_t>(opcode), longest);
            if (variant.opcode) pattern.i32(variant.offset, variant.value);
            for (int revision : {13, 1420, 1499, 1545, 1570, 1580}) {
                if (revision != 1570 && !revisioned.count(opcode)) continue;
                visitor.formatRevision = revision;
                for (size_t length = 4; length <= longest; length += length < 600 ? 1 : 7) {
                    auto record = build(visitor, pattern.bytes().substr(0, length));
                    ASSERT_NE(record, nullptr);
                    ASSERT_EQ(record->getLength(), length);
                    sink.str("");
                    ++decoded;
                }
            }
        }
    }
    EXPECT_GT(decoded, 70000u);
}

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

// The room of a record replaced right after it was built is reused; any other freed room
// waits for its whole block.
TEST(FltRecordAllocator, onlyTheObjectCarvedLastGivesItsRoomBack)
{
    void* first = fltrecordmemory::allocate(400);
    fltrecordmemory::release(first, 400);
    void* again = fltrecordmemory::allocate(48);
    EXPECT_EQ(again, first);

    void* next = fltrecordmemory::allocate(48);
    EXPECT_NE(next, again);
    fltrecordmemory::release(again, 48);  // not the last one carved: its room stays taken
    void* after = fltrecordmemory::allocate(48);
    EXPECT_NE(after, again);
    EXPECT_NE(after, next);
    fltrecordmemory::release(after, 48);
    fltrecordmemory::release(next, 48);
}
