// Control records: push and pop length check and instance records (the golden log pins the
// extension records' vertex references).
#include <gtest/gtest.h>

#include <iostream>

#include "RecordTestSupport.h"
#include "TestSupport.h"
#include "reader/FltRecordControl.h"

using ControlRecordTest = ConsoleMessagesTest;

TEST_F(ControlRecordTest, everyPushOrPopKindOfAnotherLengthThan4WarnsOnceUnshownAndKeepsItsLength)
{
    // The extension records' published form is longer than 4 bytes: they warn too, on purpose.
    struct Case {
        uint16_t opcode, length;
    };
    const Case cases[] = {{10, 4}, {11, 4}, {19, 4}, {20, 4}, {21, 4}, {22, 4},
                          {10, 8}, {11, 12}, {19, 6}, {20, 5}, {21, 24}, {22, 24}};
    for (const Case& c : cases) {
        FltWarningMessageConsole::clearMessages();
        CaptureStream err(std::cerr);
        auto record = decodeRecord<FltRecord>(FltRecordBytes(c.opcode, c.length));
        EXPECT_EQ(record->getOpcode(), c.opcode);
        EXPECT_EQ(record->getLength(), c.length);
        EXPECT_EQ(err.text(), "");
        ASSERT_EQ(messages().size(), c.length == 4 ? 0u : 1u) << c.opcode << " of " << c.length;
        if (c.length == 4) continue;
        EXPECT_STREQ(messages()[0].getMessage(), "WARNING ! this ControlRecord hasn t the correct length !");
        EXPECT_EQ(messages()[0].getLevel(), 1);
    }
}

TEST_F(ControlRecordTest, instanceRecordsCarryTheirNumberWithoutALengthCheck)
{
    FltRecordBytes definition(62, 8);
    definition.i16(4, -2).i16(6, 17);
    EXPECT_EQ(decodeRecord<FltRecordInstanceDefinition>(definition)->instanceDefinitionNumber, 17);
    FltRecordBytes reference(61, 12);
    reference.i16(6, -300);
    EXPECT_EQ(decodeRecord<FltRecordInstanceReference>(reference)->instanceDefinitionNumber, -300);
    EXPECT_TRUE(messages().empty());
}
