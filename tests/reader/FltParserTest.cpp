// Cutting a database into records: entry test, progress lines, damage, observers.
#include <gtest/gtest.h>

#include "MemoryInput.h"
#include "RecordTestSupport.h"
#include "TestSupport.h"
#include "reader/FltCreationVisitor.h"
#include "reader/FltDump.h"
#include "reader/FltRecordControl.h"
#include "reader/FltRecordGroupAndObject.h"
#include "reader/FltRecordHeader.h"

namespace {

class ParserTest : public ConsoleMessagesTest {
protected:
    static std::vector<int> opcodes(const FltParser& parser)
    {
        std::vector<int> result;
        for (const FltRecord* r : parser.records) result.push_back(r->getOpcode());
        return result;
    }
};

class RecordingObserver : public FltRecordObserver {
public:
    void update(const FltRecord* record) override { seen.push_back(record->getOpcode()); }
    std::vector<int> seen;
};

}  // namespace

TEST_F(ParserTest, inputsFailingTheEntryTestAreRefusedWithoutAnyRecord)
{
    // The entry test itself: ConversionRun.aFileIsADatabaseWhenItBeginsWithAHeaderRecord.
    for (const std::string& bytes : {std::string(), std::string("\x00\x02\x01\x44", 4)}) {
        ParsedBytes p(bytes);
        CaptureStream out(std::cout), err(std::cerr);
        EXPECT_EQ(p.parser.run(), 1);
        EXPECT_TRUE(p.parser.records.empty());
        EXPECT_FALSE(p.parser.isAllFltRecordsCreated());
        EXPECT_EQ(out.text(), "");
        EXPECT_EQ(err.text(), "ERROR! Not an Openflight Input !\n(Warning Level: 3)\n\n");
    }
}

TEST_F(ParserTest, cutsRecordsInFileOrderForEveryObserverAndWritesTheProgressLines)
{
    FltFixture db;
    db.header(1420, 0, 0x40000000).push().group("g1").pop();
    ParsedBytes p(db.bytes());
    RecordingObserver a, b;  // a is attached twice and hears twice; b is detached, then absent
    for (RecordingObserver* o : {&a, &b, &a}) p.parser.attachFltObserver(o);
    p.parser.detachFltObserver(&b);
    p.parser.detachFltObserver(&b);
    CaptureStream out(std::cout);
    ASSERT_EQ(p.parser.run(), 0);
    EXPECT_EQ(opcodes(p.parser), (std::vector<int>{1, 10, 2, 11}));
    EXPECT_EQ(a.seen, (std::vector<int>{1, 1, 10, 10, 2, 2, 11, 11}));
    EXPECT_TRUE(b.seen.empty());
    EXPECT_EQ(p.parser.getNumberOfFltRawData(), 4u);
    EXPECT_TRUE(p.parser.isAllFltRecordsCreated());
    EXPECT_EQ(p.parser.creationVisitor->formatRevision, 1420);
    EXPECT_TRUE(p.parser.creationVisitor->rgbMode);
    // Records created after the header carry the file's revision, never its colour mode.
    const auto& group = dynamic_cast<FltRecordGroup&>(*p.parser.records.at(2));
    EXPECT_EQ(group.formatRevision, 1420);
    EXPECT_FALSE(group.rgbMode);
    // The golden log pins the lines around the dump.
    EXPECT_NE(out.text().find("OpenFlight file version: 1420\nRGB mode: true\n\n PUSH LEVEL RECORD "),
              std::string::npos);

    // The packed colour mode is the second most significant flag bit, not the first.
    FltFixture top;
    ParsedBytes q(top.header(1570, 0, static_cast<int32_t>(0x80000000u)).bytes());
    ASSERT_EQ(q.parser.run(), 0);
    EXPECT_NE(out.text().find("RGB mode: false\n"), std::string::npos);
    EXPECT_FALSE(q.parser.creationVisitor->rgbMode);
}

TEST_F(ParserTest, fourBytePushAndPopRecordsAreSharedAndAPaddedOneIsItsOwn)
{
    FltFixture db;
    db.header().push().push().pop().add(FltRecordBytes(11, 8)).pop();
    ParsedBytes p(db.bytes());
    CaptureStream out(std::cout);
    ASSERT_EQ(p.parser.run(), 0);
    const FltRecordStore& records = p.parser.records;
    EXPECT_EQ(records[1], records[2]);
    EXPECT_EQ(records[3], records[5]);
    EXPECT_TRUE(fltIsSharedLevelRecord(records[3]));
    EXPECT_FALSE(fltIsSharedLevelRecord(records[4]));
    EXPECT_EQ(records[4]->getLength(), 8u);
    EXPECT_EQ(records[3]->getLength(), 4u);
}

TEST_F(ParserTest, damagedRecordStopsTheParseWithItsOffsetAndKeepsWhatCameBefore)
{
    struct Case {
        std::string tail;  // after a header and a push: byte offset 328
        std::string message;
    };
    const Case cases[] = {
        {std::string("\x00\x05\x00\x00\x00\x0B\x00\x04", 8),
         "Record of opcode 5 at byte offset 328 has length 0, shorter than its 4-byte header"},
        {std::string("\x00\x0A\x00\x03", 4),
         "Record of opcode 10 at byte offset 328 has length 3, shorter than its 4-byte header"},
        {FltRecordBytes(2, 44).bytes().substr(0, 20),
         "Record of opcode 2 at byte offset 328 has length 44 but only 20 bytes remain in the file"},
        {std::string("\x00\x0A", 2), "2 bytes at byte offset 328 are too few for a record header"},
    };
    for (const Case& c : cases) {
        FltWarningMessageConsole::clearMessages();
        FltFixture db;
        db.header().push().raw(c.tail);
        ParsedBytes p(db.bytes());
        CaptureStream out(std::cout), err(std::cerr);
        EXPECT_EQ(p.parser.run(), 0);
        EXPECT_EQ(opcodes(p.parser), (std::vector<int>{1, 10}));
        ASSERT_EQ(messages().size(), 1u);
        EXPECT_EQ(messages()[0].message, "ERROR ! " + c.message + ": parsing stopped");
        EXPECT_NE(err.text().find("(Warning Level: 3)"), std::string::npos);
        EXPECT_FALSE(p.parser.isAllFltRecordsCreated());
        EXPECT_NE(out.text().find("end of parsing\n"), std::string::npos);
    }
}

TEST_F(ParserTest, recordsShorterThanTheirLayoutAreNamedTenTimesThenCounted)
{
    FltFixture db;
    db.header(1570).push();
    db.add(FltRecordBytes(5, 64));   // a 15.7 face needs 80 bytes
    db.add(FltRecordBytes(89, 12));  // a morph vertex list reads past its end by design
    for (int i = 0; i < 25; ++i) db.add(FltRecordBytes(73, 8));
    ParsedBytes p(db.bytes());
    CaptureStream out(std::cout), err(std::cerr);
    ASSERT_EQ(p.parser.run(), 0);
    EXPECT_EQ(p.parser.records.size(), 29u);
    EXPECT_TRUE(p.parser.isAllFltRecordsCreated());
    ASSERT_EQ(messages().size(), 11u);
    EXPECT_EQ(messages()[0].message,
              "WARNING ! Record of opcode 5 at byte offset 328 is 64 bytes long, shorter than its layout: the fields "
              "past its end read as zero");
    EXPECT_EQ(messages()[1].message.find("WARNING ! Record of opcode 73 at byte offset 404 "), 0u);
    EXPECT_EQ(messages()[10].message,
              "WARNING ! 16 more records were shorter than their layout (their missing fields read as zero)");
    for (const FltWarningMessage& m : messages()) EXPECT_EQ(m.level, 2);
}

TEST_F(ParserTest, shortRecordsLackingMoreThanTheFileHoldsBecomeUnknownRecords)
{
    // Once the short records lack more than the file's size plus 1 MiB, each counted as
    // lacking at least 64 bytes, the short ones after are kept as unknown records, with one
    // message naming where. Whole records keep their types.
    const std::string where = "WARNING ! The records shorter than their layout lack more bytes than the file's size "
                              "plus 1 MiB (each counted as lacking at least 64) at the record of opcode ";
    const std::string tail = ": the short records after it are kept as unknown records and not converted";
    struct Case {
        int opcode, count;
        size_t lastWhole;  // index of the last record kept whole
    } cases[] = {
        {14, 3000, (324 + 3000 * 4 + 52 + (1u << 20)) / 376 + 1},  // a 4-byte DOF lacks 376 bytes
        {62, 20000, (324 + 20000 * 4 + 52 + (1u << 20)) / 64 + 1},   // an instance definition, 4
    };
    for (const Case& c : cases) {
        FltWarningMessageConsole::clearMessages();
        FltFixture db;
        db.header(1570);
        for (int i = 0; i < c.count; ++i) db.add(FltRecordBytes(c.opcode, 4));
        db.group("whole").add(FltRecordBytes(1, 4)).add(FltRecordBytes(c.opcode, 4));
        ParsedBytes p(db.bytes());
        CaptureStream out(std::cout), err(std::cerr);
        ASSERT_EQ(p.parser.run(), 0);
        ASSERT_EQ(p.parser.records.size(), size_t(c.count) + 4);
        std::vector<std::string> limit;
        for (const FltWarningMessage& m : messages())
            if (m.message.find(where) == 0) limit.push_back(m.message);
        ASSERT_EQ(limit.size(), 1u) << c.opcode;
        EXPECT_EQ(limit[0], where + std::to_string(c.opcode) + " at byte offset " +
                                std::to_string(324 + 4 * (c.lastWhole - 1)) + tail);
        const FltRecordStore& r = p.parser.records;
        EXPECT_NE(r[c.lastWhole]->getCategoryKind(), FltCategory::Unknown) << c.opcode;
        EXPECT_EQ(r[c.lastWhole + 1]->getCategoryKind(), FltCategory::Unknown) << c.opcode;
        EXPECT_EQ(r[c.lastWhole + 1]->getOpcode(), c.opcode);
        EXPECT_TRUE(dynamic_cast<FltRecordGroup*>(r[c.count + 1]));
        EXPECT_EQ(r[c.count + 2]->getCategoryKind(), FltCategory::Unknown);  // a header too
        EXPECT_EQ(r[c.count + 3]->getCategoryKind(), FltCategory::Unknown);
        // Named ten times and counted like every short record (the 4-byte header is one too).
        EXPECT_EQ(messages().back().message, "WARNING ! " + std::to_string(c.count + 2 - 10) +
                                                 " more records were shorter than their layout (their missing "
                                                 "fields read as zero)");
    }
}

TEST_F(ParserTest, theDumpStopsAtTheLogLimitAndTheParseGoesOn)
{
    // A 4-byte old material palette dumps 64 whole materials: the third one passes 64 bytes
    // of log per byte of this file.
    FltFixture db;
    db.header(1570);
    for (int i = 0; i < 20; ++i) db.add(FltRecordBytes(66, 4));
    ParsedBytes p(db.bytes());
    p.parser.setLogLimit(64, 0);
    CaptureStream out(std::cout), err(std::cerr);
    ASSERT_EQ(p.parser.run(), 0);
    EXPECT_EQ(p.parser.records.size(), 21u);
    EXPECT_LT(out.text().size(), 64 * db.bytes().size() + 2 * 20000);
    EXPECT_NE(out.text().find("end of parsing"), std::string::npos);
    const std::string limit =
        "WARNING ! The log has grown past 64 times the size of the files read at the record of opcode 66 at byte offset ";
    size_t reported = 0;
    for (const FltWarningMessage& m : messages())
        if (m.message.rfind(limit, 0) == 0) {
            ++reported;
            EXPECT_EQ(m.level, 2);
            EXPECT_NE(m.message.find(": the records after it are not dumped"), std::string::npos);
        }
    EXPECT_EQ(reported, 1u);
    // The dump is on again for the next run.
    EXPECT_EQ(p.parser.creationVisitor->getDumpStream(), &std::cout);

    // Parses of one conversion share one budget, to which a file read again under another
    // name adds nothing: once passed, the later parses dump nothing and say nothing more.
    auto budget = std::make_shared<FltLogBudget>(64, 0, FltDump::bytesWritten());
    std::string dumped;
    for (int parse = 0; parse < 3; ++parse) {
        ParsedBytes again(db.bytes());
        again.input.identity = {7, 7};
        again.parser.shareLogBudget(budget);
        CaptureStream out(std::cout), err(std::cerr);
        ASSERT_EQ(again.parser.run(), 0);
        dumped += out.text();
    }
    EXPECT_LT(dumped.size(), 64 * db.bytes().size() + 2 * 20000 + 3 * 100);
    EXPECT_TRUE(budget->exhausted);
    reported = 0;
    for (const FltWarningMessage& m : messages()) reported += m.message.rfind(limit, 0) == 0;
    EXPECT_EQ(reported, 2u);
}

TEST_F(ParserTest, continuedSoundPaletteIsStoredTwiceAndASecondRunAppendsRecordsAndResetsTheCount)
{
    FltFixture db;
    db.header().add(FltRecordBytes(93, 16)).add(FltRecordBytes(93, 16)).push().add(FltRecordBytes(93, 16));
    ParsedBytes p(db.bytes());
    RecordingObserver observer;
    p.parser.attachFltObserver(&observer);
    CaptureStream out(std::cout);
    ASSERT_EQ(p.parser.run(), 0);
    ASSERT_EQ(p.parser.run(), 0);
    ASSERT_EQ(p.parser.records.size(), 10u);
    EXPECT_EQ(p.parser.getNumberOfFltRawData(), 5u);
    EXPECT_EQ(observer.seen.size(), 10u);
    EXPECT_EQ(p.parser.records[6], p.parser.records[7]);
    EXPECT_NE(p.parser.records[7], p.parser.records[9]);
    EXPECT_NE(p.parser.records[2], p.parser.records[6]);

    std::ostringstream again;  // every record dumped again, as the run printed it
    p.parser.showAllFltRecords(again);
    EXPECT_NE(out.text().find(again.str().substr(0, 300)), std::string::npos);
    EXPECT_NE(again.str().find("\n PUSH LEVEL RECORD \n  (CONTROL_RECORD)\n-- Opcode: 10  Length: 4 --\n"),
              std::string::npos);
}
