// The statistics file: header, per-opcode counts in ascending order, exact line format.
#include <gtest/gtest.h>

#include <Inventor/SoDB.h>

#include "FltFixture.h"
#include "MemoryInput.h"
#include "TestSupport.h"
#include "convert/FltToInventor.h"
#include "diagnostics/FltStatisticsTool.h"
#include "diagnostics/FltWarningMessageConsole.h"
#include "reader/FltFileInput.h"
#include "reader/FltParser.h"

namespace {

const std::string kHeader = "#Openflight Statistics File\n\n\n************************\n";

// Parses a database file with a converter and writes its statistics, as a host does.
std::string statisticsOf(FltFixture& db, const ScratchDir& dir, const std::string& name)
{
    SoDB::init();
    const std::string path = dir.file(name);
    db.save(path);
    CaptureStream out(std::cout), err(std::cerr);
    FltFileInput input(path.c_str());
    FltToInventor converter;
    converter.setFltInputToconvert(&input);
    converter.getFltParser()->run();
    converter.makeStats();
    return readFile(path + ".stat");
}

}  // namespace

TEST(Statistics, countsEachOpcodeOnceInAscendingOrderWithoutAFinalLineFeed)
{
    ScratchDir dir;
    FltFixture db;
    db.header().push().group("g").face().face().pop();
    const std::string path = dir.file("model.flt");
    EXPECT_EQ(statisticsOf(db, dir, "model.flt"), kHeader + path + "\n" +
                                                      " \n Opcode 1:  1 "
                                                      " \n Opcode 2:  1 "
                                                      " \n Opcode 5:  2 "
                                                      " \n Opcode 10:  1 "
                                                      " \n Opcode 11:  1 ");
}

TEST(Statistics, scatteredRecordsOfOneOpcodeAreCountedTogether)
{
    ScratchDir dir;
    FltFixture db;
    db.header().add(FltRecordBytes(200, 8)).push().add(FltRecordBytes(200, 8)).group("a").pop();
    db.add(FltRecordBytes(65535, 4)).add(FltRecordBytes(82, 60));
    const std::string stat = statisticsOf(db, dir, "scattered.flt");
    // Unknown opcodes above 32767 count as negative numbers; 82 counts as the record it
    // builds (76).
    EXPECT_NE(stat.find(" \n Opcode -1:  1  \n Opcode 1:  1  \n Opcode 2:  1  \n Opcode 10:  1 "
                        " \n Opcode 11:  1  \n Opcode 76:  1  \n Opcode 200:  2 "),
              std::string::npos)
        << stat;
}

TEST(Statistics, emptyRecordArrayWritesOnlyTheHeader)
{
    ScratchDir dir;
    std::vector<FltRecord*> none;
    FltStatisticsTool tool;
    tool.setFltFile("a.flt");
    tool.setStatFile(dir.file("a.flt.stat").c_str());
    tool.makeEmptyFile();
    tool.setVectorOfFltRecords(none);
    tool.makeStatistics();
    EXPECT_EQ(readFile(dir.file("a.flt.stat")), kHeader + "a.flt\n");
    // A second run on the non-empty file appends counts without another header.
    tool.makeStatistics();
    EXPECT_EQ(readFile(dir.file("a.flt.stat")), kHeader + "a.flt\n");
}

TEST(Statistics, unwritableStatisticsFileIsReportedOnTheConsole)
{
    ScratchDir dir;
    FltWarningMessageConsole::clearMessages();
    FltStatisticsTool tool;
    const std::string name = dir.file("missing-dir/a.flt.stat");
    tool.setStatFile(name.c_str());
    CaptureStream err(std::cerr);
    tool.makeEmptyFile();
    tool.makeStatistics();
    ASSERT_EQ(FltWarningMessageConsole::getMessages().size(), 2u);
    EXPECT_EQ(FltWarningMessageConsole::getMessages()[0].message, "ERROR ! Cannot open the statistics file " + name);
}
