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

TEST(ConversionRun, convertedRootHasOneReference)
{
    for (int32_t revision : {1570, 11}) {  // 11 is the oldest revision converted
        FltFixture db;
        Converted c(db.header(revision).push().pop());
        EXPECT_EQ(c.root->getRefCount(), 1) << revision;
        EXPECT_EQ(c.root->getName(), SbName("root"));
        EXPECT_GT(c.root->getNumChildren(), 0);
        EXPECT_TRUE(c.messages.empty());
    }
}

TEST(ConversionRun, refusedFilesGiveAnEmptyRootWithoutReferenceAndStillCreateTheLog)
{
    FltFixture old;
    const struct {
        std::string bytes;  // "absent": no file at all
        std::string message;
    } cases[] = {
        {"absent", "ERROR ! FltParser has no INPUT !"},
        {"this is not a database", "ERROR! Not an Openflight Input !"},
        {"", "ERROR! Not an Openflight Input !"},
        {old.header(10).push().pop().bytes(), "ERROR ! Openflight Format Revision not supported !"},
    };
    const size_t before = FltWarningMessageConsole::getMessages().size();
    for (const auto& k : cases) {
        ScratchDir dir;
        const std::string path = dir.file("db.flt");
        if (k.bytes != "absent") writeFile(path, k.bytes);
        Converted c(Converted::File{path});
        ASSERT_NE(c.root, nullptr);
        EXPECT_EQ(c.root->getRefCount(), 0) << k.message;
        EXPECT_EQ(c.root->getNumChildren(), 0);
        EXPECT_EQ(c.messages, Names{k.message});
        EXPECT_TRUE(std::filesystem::exists(path + ".log"));
        const std::string opening = k.bytes == "absent" ? "Error in opening file: " + path + "\n" : "";
        EXPECT_EQ(c.errors, opening + k.message + "\n(Warning Level: 3)\n\n");
    }
    // The console keeps the messages of successive conversions.
    EXPECT_EQ(FltWarningMessageConsole::getMessages().size(), before + 4);
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
