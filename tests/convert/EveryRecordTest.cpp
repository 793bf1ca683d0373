// A database holding every record type: its log, its scene written as Inventor text and its
// console messages are compared with golden copies, so that any change to a dump line, a
// node or a message shows. The golden log holds the heading of every record type the
// opcode table knows, so a record the table loses shows there too.
#include <gtest/gtest.h>

#include "ConvertSupport.h"
#include "EveryRecordDatabase.h"

TEST(EveryRecord, logSceneAndMessagesMatchTheGoldenCopies)
{
    Converted c(everyrecord::build(), "every-record.flt");
    compareWithGolden(c.log(), QETZFLT_SOURCE_DIR "/tests/golden/every-record.log");
    compareWithGolden(sceneText(c.root), QETZFLT_SOURCE_DIR "/tests/golden/every-record.iv");
    compareWithGolden(c.messageLines(), QETZFLT_SOURCE_DIR "/tests/golden/every-record.messages");
    EXPECT_EQ(c.root->getRefCount(), 1);
}
