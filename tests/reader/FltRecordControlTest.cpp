// Control records: push and pop length check, extension fields, instance records.
#include <gtest/gtest.h>

#include <iostream>

#include "RecordTestSupport.h"
#include "TestSupport.h"
#include "diagnostics/FltWarningMessageConsole.h"
#include "reader/FltRecordControl.h"

namespace {
const char* const kLengthWarning = "WARNING ! this ControlRecord hasn t the correct length !";

class ControlRecordTest : public ::testing::Test {
protected:
    void SetUp() override { FltWarningMessageConsole::clearMessages(); }
    void TearDown() override { FltWarningMessageConsole::clearMessages(); }
    static const std::vector<FltWarningMessage>& messages() { return FltWarningMessageConsole::getMessages(); }
};
}  // namespace

TEST_F(ControlRecordTest, pushAndPopOfLength4AreSilentAndDumpOnlyTheirHeading)
{
    auto push = decodeRecord<FltRecordPushLevel>(FltRecordBytes(10, 4));
    auto pop = decodeRecord<FltRecordPopLevel>(FltRecordBytes(11, 4));
    auto pushSub = decodeRecord<FltRecordPushSubface>(FltRecordBytes(19, 4));
    auto popSub = decodeRecord<FltRecordPopSubface>(FltRecordBytes(20, 4));
    ASSERT_TRUE(push && pop && pushSub && popSub);
    EXPECT_TRUE(messages().empty());
    EXPECT_EQ(dumpOf(*push), "\n PUSH LEVEL RECORD \n  (CONTROL_RECORD)\n-- Opcode: 10  Length: 4 --\n");
    EXPECT_EQ(dumpOf(*popSub), "\n POP SUBFACE RECORD \n  (CONTROL_RECORD)\n-- Opcode: 20  Length: 4 --\n");
}

TEST_F(ControlRecordTest, pushOfLength8WarnsOnceUnshownAndKeepsItsLength)
{
    CaptureStream err(std::cerr);
    auto push = decodeRecord<FltRecordPushLevel>(FltRecordBytes(10, 8));
    ASSERT_TRUE(push);
    EXPECT_EQ(push->getLength(), 8u);
    ASSERT_EQ(messages().size(), 1u);
    EXPECT_STREQ(messages()[0].getMessage(), kLengthWarning);
    EXPECT_EQ(messages()[0].getLevel(), 1);
    EXPECT_EQ(err.text(), "");
    EXPECT_EQ(dumpOf(*push), "\n PUSH LEVEL RECORD \n  (CONTROL_RECORD)\n-- Opcode: 10  Length: 8 --\n");
}

TEST_F(ControlRecordTest, everyPushOrPopKindChecksItsLength)
{
    decodeRecord<FltRecordPopLevel>(FltRecordBytes(11, 12));
    decodeRecord<FltRecordPushSubface>(FltRecordBytes(19, 6));
    decodeRecord<FltRecordPopSubface>(FltRecordBytes(20, 5));
    EXPECT_EQ(messages().size(), 3u);
}

TEST_F(ControlRecordTest, pushExtensionOfNormalLengthWarnsAndReadsItsVertexReference)
{
    FltRecordBytes bytes(21, 24);
    bytes.chars(4, "reserved", 8).chars(12, "siteName", 8).u8(20, 0x12).u8(21, 0x34).u16(22, 0xBEEF);
    auto push = decodeRecord<FltRecordPushExtension>(bytes);
    ASSERT_TRUE(push);
    ASSERT_EQ(messages().size(), 1u);
    EXPECT_STREQ(messages()[0].getMessage(), kLengthWarning);
    EXPECT_EQ(push->vertexReferenceIndex, 0xBEEF);
    EXPECT_EQ(push->reserved3[0], 0x12);  // kept in file order
    EXPECT_EQ(push->reserved3[1], 0x34);
    EXPECT_EQ(dumpOf(*push),
              "\n PUSH EXTENSION RECORD \n  (CONTROL_RECORD)\n-- Opcode: 21  Length: 24 --\n"
              "vertexReferenceIndex: 48879\n");
}

TEST_F(ControlRecordTest, popExtensionOfLength4IsSilentAndReadsZeros)
{
    auto pop = decodeRecord<FltRecordPopExtension>(FltRecordBytes(22, 4));
    ASSERT_TRUE(pop);
    EXPECT_TRUE(messages().empty());
    EXPECT_EQ(pop->vertexReferenceIndex, 0);
    EXPECT_EQ(fieldsOf(*pop), "vertexReferenceIndex: 0\n");
}

TEST_F(ControlRecordTest, instanceRecordsCarryTheirNumber)
{
    FltRecordBytes definition(62, 8);
    definition.i16(4, -2).i16(6, 17);
    auto def = decodeRecord<FltRecordInstanceDefinition>(definition);
    ASSERT_TRUE(def);
    EXPECT_EQ(def->instanceDefinitionNumber, 17);
    EXPECT_EQ(dumpOf(*def),
              "\n INSTANCE DEFINITION RECORD \n  (CONTROL_RECORD)\n-- Opcode: 62  Length: 8 --\n"
              "spare: -2\ninstanceDefinitionNumber: 17\n");

    FltRecordBytes reference(61, 8);
    reference.i16(6, -300);
    auto ref = decodeRecord<FltRecordInstanceReference>(reference);
    ASSERT_TRUE(ref);
    EXPECT_EQ(ref->instanceDefinitionNumber, -300);
    EXPECT_EQ(dumpOf(*ref),
              "\n INSTANCE REFERENCE RECORD \n  (CONTROL_RECORD)\n-- Opcode: 61  Length: 8 --\n"
              "spare: 0\ninstanceDefinitionNumber: -300\n");
    EXPECT_TRUE(messages().empty());  // instance records have no length check
}

TEST_F(ControlRecordTest, instanceRecordCutBeforeItsNumberReadsZero)
{
    FltRecordBytes cut(61, 6);
    cut.i16(4, 5);
    auto ref = decodeRecord<FltRecordInstanceReference>(cut);
    EXPECT_EQ(ref->spare, 5);
    EXPECT_EQ(ref->instanceDefinitionNumber, 0);
}
