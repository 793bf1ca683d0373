// The conversion run from a file to a root separator: entry points, refusals, the log file,
// reference counts and standard output.
#include <gtest/gtest.h>

#include <filesystem>

#include "ConvertSupport.h"

TEST(ConversionRun, emptyPathReturnsNullAndWritesNoLog)
{
    const bool existed = std::filesystem::exists(".log");
    EXPECT_EQ(convertFrom(""), nullptr);
    EXPECT_EQ(convertFrom(nullptr), nullptr);
    EXPECT_EQ(std::filesystem::exists(".log"), existed);
}

TEST(ConversionRun, convertedRootHasOneReferenceAndARefusedOneNone)
{
    // Revision 11 is the oldest converted; 10 is refused after the parse.
    for (int32_t revision : {1570, 11}) {
        FltFixture db;
        db.header(revision).push().pop();
        Converted c(db);
        ASSERT_NE(c.root, nullptr);
        EXPECT_EQ(c.root->getRefCount(), 1) << revision;
        EXPECT_EQ(c.root->getName(), SbName("root"));
        EXPECT_GT(c.root->getNumChildren(), 0);
        EXPECT_TRUE(c.messages.empty());
    }
    FltFixture old;
    old.header(10).push().pop();
    Converted c(old);
    EXPECT_EQ(c.root->getNumChildren(), 0);
    EXPECT_EQ(c.root->getRefCount(), 0);
    EXPECT_EQ(c.messages, Names{"ERROR ! Openflight Format Revision not supported !"});
}

TEST(ConversionRun, missingFileGivesAnEmptyRootAndStillCreatesTheLog)
{
    ScratchDir dir;
    const std::string path = dir.file("missing.flt");
    Converted c(Converted::File{path});
    ASSERT_NE(c.root, nullptr);
    EXPECT_EQ(c.root->getRefCount(), 0);
    EXPECT_EQ(c.root->getNumChildren(), 0);
    EXPECT_EQ(c.errors, "Error in opening file: " + path + "\nERROR ! FltParser has no INPUT !\n(Warning Level: 3)\n\n");
    EXPECT_TRUE(std::filesystem::exists(path + ".log"));
}

TEST(ConversionRun, filesThatAreNotOpenFlightAreRefusedByTheEntryTestAndMessagesAccumulate)
{
    const size_t before = FltWarningMessageConsole::getMessages().size();
    for (const std::string& bytes : {std::string("this is not a database"), std::string()}) {
        Converted c(bytes);
        ASSERT_NE(c.root, nullptr);
        EXPECT_EQ(c.root->getNumChildren(), 0);
        EXPECT_EQ(c.messages, Names{"ERROR! Not an Openflight Input !"});
    }
    EXPECT_EQ(FltWarningMessageConsole::getMessages().size(), before + 2);
}

TEST(ConversionRun, logFileHoldsTheDumpAndStandardOutputTheOpeningLine)
{
    FltFixture db;
    db.header().push().group("g1").pop();
    Converted c(db);
    EXPECT_EQ(c.printed, "\nSuccess in opening file: " + c.path + "\n");
    const std::string log = c.log();
    EXPECT_EQ(log.rfind("beginning of parsing\n\n HEADER RECORD \n", 0), 0u);
    EXPECT_NE(log.find("\n GROUP RECORD \n"), std::string::npos);
    EXPECT_EQ(log.substr(log.size() - 15), "end of parsing\n");
    // The next conversion truncates the log rather than appending to it.
    Converted again(Converted::File{c.path});
    EXPECT_EQ(again.log(), log);
}

TEST(ConversionRun, standardOutputIsRestoredAfterAConversionWhetherOrNotTheLogOpens)
{
    FltFixture db;
    db.header().push().pop();
    ScratchDir dir;
    db.save(dir.file("x.flt"));
    db.save(dir.file("y.flt"));
    // The log name y.flt.log is taken by a directory, so that log cannot be opened.
    std::filesystem::create_directory(dir.file("y.flt.log"));
    for (const char* name : {"x.flt", "y.flt"}) {
        CaptureStream out(std::cout), err(std::cerr);
        SoSeparator* root = convertFrom(dir.file(name).c_str());
        ASSERT_NE(root, nullptr);
        EXPECT_EQ(root->getName(), SbName("root"));
        std::cout << "after the conversion\n";
        EXPECT_NE(out.text().find("after the conversion\n"), std::string::npos) << name;
        root->unref();
    }
    EXPECT_EQ(readFile(dir.file("x.flt.log")).find("after the conversion"), std::string::npos);
}

TEST(ConversionRun, damagedFileKeepsTheRecordsBeforeTheDamage)
{
    FltFixture db;
    db.header().push().group("before").push().pop();
    db.raw(std::string("\x00\x02\x00\x00", 4));  // a group record of length 0
    Converted c(db);
    EXPECT_EQ(c.root->getRefCount(), 1);
    EXPECT_NE(findNamed(c.root, "before"), nullptr);
    ASSERT_EQ(c.messages.size(), 1u);
    EXPECT_NE(c.messages[0].find("opcode 2 at byte offset 380 has length 0"), std::string::npos);
}
