// The statistics file: header, per-opcode counts in ascending order, exact line format.
#include <gtest/gtest.h>

#include "tools/FltFixture.h"
#include "TestSupport.h"
#include "QetzFlt/QetzFlt.h"
#include "diagnostics/FltStatisticsTool.h"
#include "diagnostics/FltWarningMessageConsole.h"

namespace {
const std::string kHeader = "#Openflight Statistics File\n\n\n************************\n";
}  // namespace

TEST(Statistics, countsEachOpcodeOnceInAscendingOrderWithoutAFinalLineFeed)
{
    ScratchDir dir;
    FltFixture db;
    db.header().add(FltRecordBytes(200, 8)).push().add(FltRecordBytes(200, 8)).group("a").face().face().pop();
    db.add(FltRecordBytes(65535, 4)).add(FltRecordBytes(82, 60));
    const std::string path = dir.file("model.flt");
    db.save(path);
    ASSERT_EQ(qetzfltWriteStatistics(path.c_str()), 0);
    // Scattered records of one opcode are counted together; unknown opcodes above 32767
    // count as negative numbers; 82 counts as the record it builds (76).
    EXPECT_EQ(readFile(path + ".stat"), kHeader + path + "\n \n Opcode -1:  1  \n Opcode 1:  1  \n Opcode 2:  1 " +
                                            " \n Opcode 5:  2  \n Opcode 10:  1  \n Opcode 11:  1 " +
                                            " \n Opcode 76:  1  \n Opcode 200:  2 ");
}

TEST(Statistics, emptyRecordArrayWritesTheHeaderOnce_unwritableFileIsReported)
{
    ScratchDir dir;
    FltStatisticsTool tool;
    tool.setFltFile("a.flt");
    tool.setStatFile(dir.file("a.flt.stat").c_str());
    tool.makeEmptyFile();
    tool.makeStatistics();
    tool.makeStatistics();  // appends to the non-empty file without another header
    EXPECT_EQ(readFile(dir.file("a.flt.stat")), kHeader + "a.flt\n");

    FltWarningMessageConsole::clearMessages();
    const std::string name = dir.file("missing-dir/a.flt.stat");
    tool.setStatFile(name.c_str());
    CaptureStream err(std::cerr);
    tool.makeEmptyFile();
    tool.makeStatistics();
    const std::string echo = "ERROR ! Cannot open the statistics file " + name + "\n(Warning Level: 3)\n\n";
    EXPECT_EQ(err.text(), echo + echo);
    EXPECT_EQ(FltWarningMessageConsole::getMessages().size(), 2u);
}

TEST(Statistics, inspectionAndStatisticsCapRepeatedMessagesLikeAConversion)
{
    // Push records of 8 bytes each give the same warning: both entry points keep it only as
    // often as a conversion does, then sum it up.
    ScratchDir dir;
    FltFixture db;
    db.header();
    const int repeats = FltWarningMessageConsole::kMaxRepeats + 50;
    for (int i = 0; i < repeats; ++i) db.add(FltRecordBytes(10, 8));
    const std::string path = dir.file("pushes.flt");
    db.save(path);
    for (bool statistics : {false, true}) {
        FltWarningMessageConsole::clearMessages();
        if (statistics)
            ASSERT_EQ(qetzfltWriteStatistics(path.c_str()), 0);
        else
            ASSERT_EQ(qetzfltInspect(path.c_str(), [](void*, const char*, const char*) {}, nullptr), 0);
        ASSERT_EQ(qetzfltMessageCount(), FltWarningMessageConsole::kMaxRepeats + 1) << "statistics: " << statistics;
        EXPECT_NE(std::string(qetzfltMessageText(FltWarningMessageConsole::kMaxRepeats)).find("came 50 more times"),
                  std::string::npos);
    }
}
