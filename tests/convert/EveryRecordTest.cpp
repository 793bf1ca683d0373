// A database holding every record type: its log, its scene written as Inventor text and its
// console messages are compared with golden copies, so that any change to a dump line, a
// node or a message shows.
#include <gtest/gtest.h>

#include <cstdlib>

#include "ConvertSupport.h"
#include "EveryRecordDatabase.h"

namespace {

const std::string kGoldenLog = QETZFLT_SOURCE_DIR "/tests/golden/every-record.log";
const std::string kGoldenScene = QETZFLT_SOURCE_DIR "/tests/golden/every-record.iv";
const std::string kGoldenMessages = QETZFLT_SOURCE_DIR "/tests/golden/every-record.messages";

// With QETZFLT_UPDATE_GOLDEN set, the golden file is rewritten instead of compared.
void compareWithGolden(const std::string& actual, const std::string& golden)
{
    if (std::getenv("QETZFLT_UPDATE_GOLDEN")) {
        writeFile(golden, actual);
        GTEST_SKIP() << "rewrote " << golden;
    }
    const std::string expected = readFile(golden);
    ASSERT_FALSE(expected.empty()) << golden << " is missing";
    if (actual == expected) return;
    size_t at = 0;
    while (at < actual.size() && at < expected.size() && actual[at] == expected[at]) ++at;
    const size_t from = at > 200 ? at - 200 : 0;
    FAIL() << "differs from " << golden << " at byte " << at << "\nexpected: ..." << expected.substr(from, 300)
           << "\nactual:   ..." << actual.substr(from, 300);
}

}  // namespace

TEST(EveryRecord, logMatchesTheGoldenCopy)
{
    Converted c(everyrecord::build(), "every-record.flt");
    compareWithGolden(c.log(), kGoldenLog);
}

TEST(EveryRecord, sceneAndMessagesMatchTheGoldenCopies)
{
    Converted c(everyrecord::build(), "every-record.flt");
    compareWithGolden(sceneText(c.root), kGoldenScene);
    std::string messages;
    for (size_t i = 0; i < c.messages.size(); ++i)
        messages += "[" + std::to_string(c.levels[i]) + "] " + c.messages[i] + "\n";
    compareWithGolden(messages, kGoldenMessages);
}

TEST(EveryRecord, everyHeadingOfTheTableAppearsInTheLog)
{
    Converted c(everyrecord::build(), "every-record.flt");
    const std::string log = c.log();
    for (const char* heading :
         {"HEADER RECORD", "GROUP RECORD", "OLD LEVEL_OF_DETAIL (LOD) RECORD (OBSOLETE)", "OBJECT RECORD",
          "FACE RECORD", "OLD VERTEX RECORD (OBSOLETE)", "OLD VERTEX COLOR RECORD (OBSOLETE)",
          "OLD VERTEX COLOR NORMAL RECORD (OBSOLETE)", "PUSH LEVEL RECORD", "POP LEVEL RECORD", "DOF RECORD",
          "PUSH SUBFACE RECORD", "POP SUBFACE RECORD", "PUSH EXTENSION RECORD", "POP EXTENSION RECORD",
          "COMMENT RECORD", "COLOR PALETTE RECORD", "LONG_ID RECORD", "MATRIX RECORD", "VECTOR RECORD",
          "OLD BOUNDING BOX", "MULTI TEXTURE RECORD", "REPLICATE RECORD", "INSTANCE REFERENCE RECORD",
          "INSTANCE DEFINITION RECORD", "EXTERNAL REFERENCE RECORD", "TEXTURE_PATTERN RECORD",
          "OLD MATERIAL PALETTE RECORD (OBSOLETE)", "VERTEX PALETTE RECORD", "VERTEX COLOR RECORD",
          "VERTEX COLOR NORMAL RECORD", "VERTEX COLOR NORMAL UV RECORD", "VERTEX COLOR UV (TEXTURE) RECORD",
          "VERTEX LIST RECORD", "LEVEL_OF_DETAIL (LOD) RECORD", "BOUNDING BOX", "ROTATE ABOUT EDGE RECORD",
          "TRANSLATE RECORD", "SCALE NON UNIFORM RECORD", "ROTATE ABOUT POINT RECORD", "EYEPOINT TRACKPLANE RECORD",
          "MORPH VERTEX LIST RECORD", "SOUND RECORD", "SOUND PALETTE RECORD", "GENERAL_MATRIX RECORD", "TEXT RECORD",
          "SWITCH RECORD", "LINE STYLE PALETTE RECORD", "CLIP REGION RECORD", "EXTENSION ATTRIBUTE RECORD",
          "LIGHT SOURCE RECORD", "LIGHT SOURCE PALETTE RECORD", "BOUNDING VOLUME SPHERE",
          "BOUNDING VOLUME CYLINDER", "BOUNDING VOLUME CENTER", "BOUNDING VOLUME ORIENTATION", "LIGHT POINT RECORD",
          "TEXTURE MAPPING PALETTE RECORD", "MATERIAL PALETTE RECORD", "NAME PALETTE RECORD", "UNKNOWN RECORD"})
        EXPECT_NE(log.find(std::string("\n ") + heading), std::string::npos) << heading;
    EXPECT_EQ(c.root->getRefCount(), 1);
}
